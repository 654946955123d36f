#include "Kestrova/detail/ItemParts.h"

#include "KestrovaCore/ClipboardItem.h"

namespace kestrova {

std::optional<QUrl> linkOf(const ClipboardItem& item) {
    return linkOf(item.type(), item.content());
}

std::optional<QUrl> linkOf(ClipboardItemType type, const QString& content) {
    if (type != ClipboardItemType::url)
        return std::nullopt;
    const QUrl url(content.trimmed());
    return url.isValid() ? std::optional{url} : std::nullopt;
}

QString lastPathComponent(const QString& path) {
    auto rest = QStringView(path);
    while (rest.size() > 1 && rest.endsWith(u'/'))
        rest.chop(1);
    return rest.size() > 1 ? rest.sliced(rest.lastIndexOf(u'/') + 1).toString() : rest.toString();
}

} // namespace kestrova
