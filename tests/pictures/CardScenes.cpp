#include "tests/pictures/CardScenes.h"

#include "Kestrova/detail/widgets/ItemActionsCardWidget.h"
#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaCollection.h"

#include <algorithm>

namespace kestrova {
namespace {

using Type = ClipboardItemType;
using History = ShelfScene::History;

void openCard(ShelfPanelView& view, Type type) {
    const auto& items = view.items();
    const auto item = std::ranges::find(items, type, &ClipboardItem::type);
    if (item == items.end())
        qFatal("The history has no such item.");
    view.perform([&] { view._route = DetailRoute::actions(*item); });
}

/// All rows that an item can have: a screenshot that was saved, pinned, in the collection that is shown.
void openFullCard(ShelfPanelView& view) {
    const auto& items = view.items();
    const auto shot = *std::ranges::find(items, ItemSource::screenshot, &ClipboardItem::source);
    const auto collection = view.allCollections().front();
    // Not saved: the other scenes have the same store.
    view.perform([&] {
        shot->setPinned(true);
        shot->setFileURLString(QStringLiteral("file:///home/user/Pictures/Screenshot.png"));
        shot->setCollections({{collection}});
        view._collectionFilter = CollectionFilter::collection(collection->id());
    });
    view.perform([&] { view._route = DetailRoute::actions(shot); });
}

ItemActionsCard& cardOf(ShelfPanelWidget& panel) {
    for (auto* const child : panel.findChildren<QWidget*>())
        if (auto* const widget = dynamic_cast<ItemActionsCardWidget*>(child))
            return widget->card();
    qFatal("The card is not open.");
}

auto showCollections(std::ptrdiff_t selected) {
    return [selected](ShelfPanelWidget& panel) {
        auto& card = cardOf(panel);
        card.perform([&] { card.go(CardScreen::collections); });
        card.perform([&] { card.selectedIndex = selected; });
    };
}

auto openCardOf(Type type) {
    return [type](ShelfPanelView& view) { openCard(view, type); };
}

} // namespace

std::vector<ShelfScene> cardScenes() {
    return {
        {.name = u"actions"_qs, .enter = openCardOf(Type::text)},
        {.name = u"actions-picture"_qs, .enter = openCardOf(Type::image)},
        {.name = u"actions-file"_qs, .enter = openCardOf(Type::file)},
        {.name = u"actions-every-row"_qs, .enter = openFullCard},
        {.name = u"actions-delete"_qs,
         .enter = openCardOf(Type::text),
         .act =
             [](ShelfPanelWidget& panel) {
                 auto& card = cardOf(panel);
                 card.perform([&] { card.hoveredIndex = std::ssize(card.rows()) - 1; });
             }},
        {.name = u"actions-collections"_qs, .enter = openFullCard, .act = showCollections(1)},
        {.name = u"actions-no-collections"_qs,
         .enter = openCardOf(Type::text),
         .act =
             [](ShelfPanelWidget& panel) {
                 cardOf(panel).collectionsChanged({}, {});
                 showCollections(0)(panel);
             }},
        {.name = u"actions-many-collections"_qs,
         .enter = openCardOf(Type::text),
         .history = History::many,
         .act = showCollections(20)},
        {.name = u"actions-extremes"_qs, .enter = openCardOf(Type::text), .history = History::extremes},
        {.name = u"actions-extreme-collections"_qs,
         .enter = openCardOf(Type::text),
         .history = History::extremes,
         .act = showCollections(2)},
    };
}

} // namespace kestrova
