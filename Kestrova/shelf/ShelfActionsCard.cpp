#include "Kestrova/shelf/ShelfActionsCard.h"

#include "Kestrova/shelf/ShelfPanelView.h"
#include "KestrovaCore/CollectionMembership.h"

namespace kestrova {
namespace {

using Item = std::shared_ptr<ClipboardItem>;

/// Something that the card does to the shelf.
template<typename Act>
std::function<void()> entering(ShelfPanelView& view, Act act) {
    return [&view, act] { view.perform(act); };
}

/// The same, after which the card goes.
template<typename Act>
std::function<void()> closing(ShelfPanelView& view, Act act) {
    return entering(view, [&view, act] {
        act();
        view.popRoute();
    });
}

/// Something that opens another screen, from which people come back to the card.
template<typename Act>
std::function<void()> suspending(ShelfPanelView& view, Act act) {
    return entering(view, [&view, act] {
        view._suspendedRoute = view._route;
        act();
    });
}

std::function<void()> removalFromCurrentCollection(ShelfPanelView& view, const Item& item) {
    const auto current = view.activeCollection();
    if (!current || !isInCollection(*item, *current))
        return {};
    return closing(view, [&view, item, current] { view.removeFromCollection(*item, *current); });
}

} // namespace

ItemActions itemActions(ShelfPanelView& view, const Item& item) {
    ItemActions actions{.item = item};
    actions.allCollections = view.allCollections();
    actions.onPaste = entering(view, [&view, item] { view.onSelect(item); });
    actions.onCopy = closing(view, [&view, item] { view.copy(item); });
    if (ShelfPanelView::isEditable(*item))
        actions.onEdit = suspending(view, [&view, item] { view.edit(item); });
    if (item->type() == ClipboardItemType::image && item->hasImageData())
        actions.onEditImage = entering(view, [&view, item] { view.onEditImage(item); });
    actions.onPreview = suspending(view, [&view, item] { view.preview(item); });
    actions.onTogglePin = closing(view, [&view, item] { view.togglePin(*item); });
    actions.onToggleCollection = [&view, item](const std::shared_ptr<KovaCollection>& collection) {
        view.perform([&] { view.toggleCollection(*item, collection); });
    };
    actions.onRemoveFromCurrentCollection = removalFromCurrentCollection(view, item);
    actions.isInCurrentCollection = actions.onRemoveFromCurrentCollection != nullptr;
    actions.onShare = entering(view, [&view, item] { view.share(item); });
    actions.onOpenURL = [&view](const QUrl& url) { view.perform([&] { view.open(url); }); };
    actions.onShowInFinder = [&view](const QUrl& url) { view.perform([&] { view.reveal(url); }); };
    actions.onDelete = closing(view, [&view, item] { view.deleteItem(*item); });
    actions.onCancel = entering(view, [&view] { view.popRoute(); });
    return actions;
}

std::unique_ptr<ItemActionsCard> makeItemActionsCard(ShelfPanelView& view, const Item& item) {
    return std::make_unique<ItemActionsCard>(
        ItemActionsCard::Surroundings{
            .eventMonitors = view.eventMonitors(),
            .isOfTheWindow = [&view](const LocalEvent& event) { return view.isOfThePanel(event); },
        },
        itemActions(view, item));
}

void followCollections(ItemActionsCard& card, ShelfPanelView& view) {
    card.collectionsChanged(view.allCollections(), removalFromCurrentCollection(view, card.actions.item));
}

} // namespace kestrova
