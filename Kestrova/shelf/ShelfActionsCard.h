#pragma once

#include "Kestrova/detail/ItemActionsCard.h"

#include <memory>

namespace kestrova {

class ClipboardItem;
class ShelfPanelView;

/// What can be done with the item from the shelf as it stands now. An item that is deleted later can still be
/// read and copied; nothing is changed of it. `view` outlives what is returned.
ItemActions itemActions(ShelfPanelView& view, const std::shared_ptr<ClipboardItem>& item);

/// The card of an open `actions` route, with the keys of the panel. `view` outlives it.
std::unique_ptr<ItemActionsCard> makeItemActionsCard(ShelfPanelView& view,
                                                     const std::shared_ptr<ClipboardItem>& item);

/// Tells the card which collections there are now.
void followCollections(ItemActionsCard& card, ShelfPanelView& view);

} // namespace kestrova
