#include "Kestrova/shelf/ItemRow.h"

#include "Kestrova/detail/Characters.h"
#include "Kestrova/detail/ColorFormats.h"
#include "Kestrova/detail/ItemParts.h"
#include "Kestrova/detail/QtColor.h"
#include "KestrovaCore/ClipboardItem.h"

namespace kestrova {
namespace {

constexpr qsizetype textLength = 120;
constexpr std::size_t quickPasteRows = 9;

QString oneLine(const QString& content) {
    auto line = firstCharacters(content).toString();
    line.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    for (const auto newline : {u'\n', u'\v', u'\f', u'\r', u'\u0085', u'\u2028', u'\u2029'})
        line.replace(QChar(newline), u' ');
    return line.trimmed();
}

QString pictureText(const ClipboardItem& item) {
    if (!item.width() || !item.height())
        return QStringLiteral("Image");
    return QStringLiteral("Image (%1 × %2)").arg(*item.width()).arg(*item.height());
}

/// Very dark and very light texts would vanish on the panel.
bool isReadable(const RGBA& color) {
    const double luminance = relativeLuminance(color);
    return luminance > 0.15 && luminance < 0.85;
}

} // namespace

QString symbolName(ClipboardItemType type) {
    switch (type) {
    case ClipboardItemType::text:
    case ClipboardItemType::rtf:
        return QStringLiteral("doc.text");
    case ClipboardItemType::image:
        return QStringLiteral("photo");
    case ClipboardItemType::file:
        return QStringLiteral("paperclip");
    case ClipboardItemType::url:
        return QStringLiteral("link");
    case ClipboardItemType::color:
        return QStringLiteral("paintpalette");
    }
    Q_UNREACHABLE();
}

QStringView firstCharacters(QStringView text) {
    return firstCharacters(text, textLength);
}

QString primaryText(const ClipboardItem& item) {
    switch (item.type()) {
    case ClipboardItemType::image:
        return pictureText(item);
    case ClipboardItemType::file:
        return lastPathComponent(item.content());
    case ClipboardItemType::url:
    case ClipboardItemType::color:
        return item.content();
    case ClipboardItemType::text:
    case ClipboardItemType::rtf:
        return oneLine(item.content());
    }
    Q_UNREACHABLE();
}

double relativeLuminance(const RGBA& color) {
    return 0.2126 * color.r + 0.7152 * color.g + 0.0722 * color.b;
}

ItemRow ItemRow::of(const ClipboardItem& item, std::size_t position) {
    ItemRow row;
    row.symbol = symbolName(item.type());
    row.hasThumbnail = item.type() == ClipboardItemType::image && item.hasImageData();
    row.primaryText = kestrova::primaryText(item);
    if (item.type() == ClipboardItemType::color)
        if (const auto color = parseColor(item.content())) {
            row.swatch = qColor(*color);
            // The swatch beside it shows how far the colour lets its ground through; a text must not.
            if (isReadable(*color))
                row.primaryColor = qColor({color->r, color->g, color->b, 1});
        }
    row.isPinned = item.pinned();
    if (position < quickPasteRows)
        row.quickPasteIndex = static_cast<int>(position) + 1;
    return row;
}

} // namespace kestrova
