#include "Kestrova/shelf/ItemGridCard.h"

#include "Kestrova/detail/ItemParts.h"
#include "Kestrova/shelf/ItemRow.h"
#include "KestrovaCore/ClipboardItem.h"

namespace kestrova {
namespace {

QString placeholderOf(ClipboardItemType type) {
    switch (type) {
    case ClipboardItemType::image:
    case ClipboardItemType::color:
    case ClipboardItemType::url:
        return symbolName(type);
    case ClipboardItemType::file:
        return QStringLiteral("doc");
    case ClipboardItemType::text:
    case ClipboardItemType::rtf:
        return {};
    }
    Q_UNREACHABLE();
}

QString hostLine(const ClipboardItem& item) {
    const auto url = linkOf(item);
    const auto host = url ? url->host() : QString();
    return host.isEmpty() ? item.content() : host;
}

} // namespace

ItemGridCard ItemGridCard::of(const ClipboardItem& item,
                              const std::optional<LinkPreviewCache::Preview>& preview) {
    const auto row = ItemRow::of(item, 0);
    const auto type = item.type();
    ItemGridCard card;
    card.hasThumbnail = row.hasThumbnail;
    card.swatch = row.swatch;
    if (type == ClipboardItemType::text || type == ClipboardItemType::rtf)
        card.text = firstCharacters(item.content()).toString();
    card.placeholder = placeholderOf(type);
    card.isPinned = row.isPinned;
    card.caption = row.primaryText;
    if (type != ClipboardItemType::url)
        return card;
    card.caption = hostLine(item);
    if (preview) {
        card.linkPicture = preview->image;
        card.favicon = preview->favicon;
        card.title = preview->title.value_or(QString());
    }
    return card;
}

} // namespace kestrova
