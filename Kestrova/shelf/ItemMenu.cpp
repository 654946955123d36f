#include "Kestrova/shelf/ItemMenu.h"

#include "Kestrova/clipboard/PasteService.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/CollectionMembership.h"

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using Kind = ItemMenuAction::Kind;

ItemMenuEntry collectionLine(const ClipboardItem& item, const std::shared_ptr<KovaCollection>& collection) {
    const bool isIn = isInCollection(item, *collection);
    return {.title = (isIn ? u"✓ "_s : u"  "_s) + collection->name(),
            .action = ItemMenuAction{isIn ? Kind::removeFromCollection : Kind::addToCollection, collection}};
}

ItemMenuEntry collectionsEntry(const ClipboardItem& item, const ShelfPanelView::Collections& collections) {
    ItemMenuEntry entry{.title = u"Collection"_s};
    for (const auto& collection : collections)
        entry.submenu.push_back(collectionLine(item, collection));
    if (entry.submenu.empty())
        entry.submenu.push_back({.title = u"컬렉션 없음"_s, .isEnabled = false});
    return entry;
}

} // namespace

ItemMenu itemMenu(const ClipboardItem& item, const ShelfPanelView& view) {
    ItemMenu menu{{.title = u"Paste"_s,
                   .shortcut = u"Return"_s,
                   .keys = {Qt::Key_Return, Qt::Key_Enter},
                   .action = ItemMenuAction{Kind::paste}},
                  {.title = u"Copy"_s,
                   .shortcut = u"⌘C"_s,
                   .keys = {Qt::CTRL | Qt::Key_C},
                   .action = ItemMenuAction{Kind::copy}}};
    if (ShelfPanelView::isEditable(item))
        menu.push_back({.title = u"Edit"_s,
                        .shortcut = u"⌘E"_s,
                        .keys = {Qt::CTRL | Qt::Key_E},
                        .action = ItemMenuAction{Kind::edit}});
    menu.emplace_back();
    menu.push_back(collectionsEntry(item, view.allCollections()));
    menu.push_back({.title = u"Preview"_s,
                    .shortcut = u"Space"_s,
                    .keys = {Qt::Key_Space},
                    .action = ItemMenuAction{Kind::preview}});
    menu.push_back({.title = u"Share..."_s, .action = ItemMenuAction{Kind::share}});
    if (const auto current = view.activeCollection())
        menu.push_back({.title = u"이 컬렉션에서 빼기"_s,
                        .symbol = u"rectangle.stack.badge.minus"_s,
                        .action = ItemMenuAction{Kind::removeFromCollection, current}});
    if (PasteService::fileURL(item)) {
        menu.emplace_back();
        menu.push_back({.title = u"열기"_s, .action = ItemMenuAction{Kind::openFile}});
        menu.push_back({.title = u"Finder 에서 보기"_s, .action = ItemMenuAction{Kind::revealFile}});
    }
    menu.emplace_back();
    // Keyboards of this desktop have two keys for it.
    menu.push_back({.title = u"Delete"_s,
                    .shortcut = u"Delete"_s,
                    .keys = {Qt::Key_Delete, Qt::Key_Backspace},
                    .isDestructive = true,
                    .action = ItemMenuAction{Kind::deleteItem}});
    return menu;
}

void perform(const ItemMenuAction& action, const std::shared_ptr<ClipboardItem>& item, ShelfPanelView& view) {
    if (item->isDeleted() || (action.collection && action.collection->isDeleted()))
        return;
    switch (action.kind) {
    case Kind::paste:
        return view.onSelect(item);
    case Kind::copy:
        return view.copy(item);
    case Kind::edit:
        return view.edit(item);
    case Kind::addToCollection:
        return view.addToCollection(*item, action.collection);
    case Kind::removeFromCollection:
        return view.removeFromCollection(*item, *action.collection);
    case Kind::preview:
        return view.preview(item);
    case Kind::share:
        return view.share(item);
    case Kind::openFile:
        return view.openFile(*item);
    case Kind::revealFile:
        return view.revealFile(*item);
    case Kind::deleteItem:
        return view.deleteItem(*item);
    }
    Q_UNREACHABLE();
}

} // namespace kestrova
