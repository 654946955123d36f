#include "Kestrova/shelf/ItemRow.h"

#include "Kestrova/detail/ColorFormats.h"
#include "Kestrova/detail/QtColor.h"
#include "KestrovaCore/ClipboardItem.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace kestrova {
namespace {

constexpr qsizetype textLength = 120;
constexpr std::size_t quickPasteRows = 9;

/// Letters that never join the one before them.
bool standsAlone(QChar letter) {
    const char16_t code = letter.unicode();
    return (code < 0x300 && code != u'\r') || (code >= 0xAC00 && code <= 0xD7A3);
}

QString oneLine(const QString& content) {
    auto line = firstCharacters(content).toString();
    line.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    for (const auto newline : {u'\n', u'\v', u'\f', u'\r', u'\u0085', u'\u2028', u'\u2029'})
        line.replace(QChar(newline), u' ');
    return line.trimmed();
}

QString lastPathComponent(const QString& path) {
    auto rest = QStringView(path);
    while (rest.size() > 1 && rest.endsWith(u'/'))
        rest.chop(1);
    return rest.size() > 1 ? rest.sliced(rest.lastIndexOf(u'/') + 1).toString() : rest.toString();
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
    // Rows are made at each painting, so ordinary text is not walked by the segmentation.
    const auto plain = text.first(std::min(textLength + 1, text.size()));
    if (std::ranges::all_of(plain, standsAlone))
        return text.first(std::min(textLength, text.size()));
    for (qsizetype looked = 4 * textLength;; looked *= 4) {
        const auto piece = text.first(std::min(looked, text.size()));
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, piece.data(), piece.size());
        for (qsizetype passed = 0; passed < textLength && finder.toNextBoundary() != -1; ++passed) {
        }
        // At the piece's end the last character may be cut, unless the text ends there too.
        if (const auto end = finder.position(); end != -1 && end < piece.size())
            return text.first(end);
        if (piece.size() == text.size())
            return text;
    }
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
