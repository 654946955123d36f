#include "Kestrova/detail/ActionRows.h"

#include "Kestrova/clipboard/PasteService.h"
#include "Kestrova/detail/ItemActions.h"
#include "KestrovaCore/CollectionMembership.h"

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

const QString inCollection = u"checkmark.circle.fill"_s;
const QString notInCollection = u"circle"_s;

} // namespace

std::vector<ActionRow> rootRows(const ItemActions& actions, const std::function<void()>& openCollections) {
    const auto& item = *actions.item;
    std::vector<ActionRow> rows;
    rows.push_back(
        {.icon = u"doc.on.clipboard"_s, .label = u"Paste"_s, .shortcut = u"⏎"_s, .invoke = actions.onPaste});
    rows.push_back(
        {.icon = u"doc.on.doc"_s, .label = u"Copy"_s, .shortcut = u"⌘C"_s, .invoke = actions.onCopy});
    if (actions.onEdit)
        rows.push_back(
            {.icon = u"pencil"_s, .label = u"Edit"_s, .shortcut = u"⌘E"_s, .invoke = actions.onEdit});
    if (actions.onEditImage)
        rows.push_back({.icon = u"pencil.tip.crop.circle"_s,
                        .label = u"이미지 편집"_s,
                        .shortcut = u"⌘E"_s,
                        .invoke = actions.onEditImage});
    rows.push_back(
        {.icon = u"eye"_s, .label = u"Preview"_s, .shortcut = u"Space"_s, .invoke = actions.onPreview});
    rows.push_back({.icon = item.pinned() ? u"pin.slash"_s : u"pin"_s,
                    .label = item.pinned() ? u"Unpin"_s : u"Pin"_s,
                    .shortcut = u"⌘P"_s,
                    .invoke = actions.onTogglePin});
    rows.push_back({.icon = u"rectangle.stack"_s,
                    .label = u"Collection"_s,
                    .shortcut = u"▸"_s,
                    .invoke = openCollections});
    rows.push_back({.icon = u"square.and.arrow.up"_s, .label = u"Share…"_s, .invoke = actions.onShare});
    if (actions.onRemoveFromCurrentCollection)
        rows.push_back({.icon = u"rectangle.stack.badge.minus"_s,
                        .label = u"이 컬렉션에서 빼기"_s,
                        .invoke = actions.onRemoveFromCurrentCollection});
    if (const auto url = PasteService::fileURL(item)) {
        rows.push_back({.icon = u"arrow.up.right.square"_s,
                        .label = u"열기"_s,
                        .invoke = [open = actions.onOpenURL, url = *url] { open(url); }});
        rows.push_back({.icon = u"folder"_s,
                        .label = u"Finder 에서 보기"_s,
                        .invoke = [show = actions.onShowInFinder, url = *url] { show(url); }});
    }
    rows.push_back({.icon = u"trash"_s,
                    .label = u"Delete"_s,
                    .shortcut = u"⌫"_s,
                    .destructive = true,
                    .invoke = actions.onDelete});
    return rows;
}

std::vector<ActionRow> collectionRows(const ItemActions& actions, const std::function<void()>& goBack) {
    std::vector<ActionRow> rows{{.icon = u"chevron.left"_s, .label = u"뒤로"_s, .invoke = goBack}};
    for (const auto& collection : actions.allCollections)
        rows.push_back({.icon = isInCollection(*actions.item, *collection) ? inCollection : notInCollection,
                        .label = collection->name(),
                        .invoke = [toggle = actions.onToggleCollection, collection] { toggle(collection); }});
    if (actions.allCollections.empty())
        rows.push_back({.icon = u"tray"_s, .label = u"컬렉션 없음"_s, .disabled = true});
    return rows;
}

std::optional<bool> membership(const ActionRow& row) {
    const bool isIn = row.icon == inCollection;
    return isIn || row.icon == notInCollection ? std::optional(isIn) : std::nullopt;
}

} // namespace kestrova
