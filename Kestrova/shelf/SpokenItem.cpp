#include "Kestrova/shelf/SpokenItem.h"

#include "Kestrova/shelf/ItemRow.h"
#include "KestrovaCore/ClipboardItem.h"

#include <QStringList>

namespace kestrova {

QString spokenName(ClipboardItemType type) {
    switch (type) {
    case ClipboardItemType::text:
    case ClipboardItemType::rtf:
        return QStringLiteral("텍스트");
    case ClipboardItemType::image:
        return QStringLiteral("이미지");
    case ClipboardItemType::file:
        return QStringLiteral("파일");
    case ClipboardItemType::url:
        return QStringLiteral("링크");
    case ClipboardItemType::color:
        return QStringLiteral("색상");
    }
    Q_UNREACHABLE();
}

QString spokenName(const ClipboardItem& item, std::size_t position) {
    const auto row = ItemRow::of(item, position);
    QStringList words{spokenName(item.type()), row.primaryText};
    if (row.isPinned)
        words.append(QStringLiteral("고정됨"));
    if (row.quickPasteIndex)
        words.append(QStringLiteral("⌘%1").arg(*row.quickPasteIndex));
    return words.join(QStringLiteral(", "));
}

QString spokenPosition(std::size_t position, std::size_t count) {
    return QStringLiteral("%1 / %2").arg(position + 1).arg(count);
}

QString spokenCount(std::size_t count) {
    return QStringLiteral("항목 %1개").arg(count);
}

} // namespace kestrova
