#pragma once

#include "Kestrova/detail/ActionRow.h"

#include <functional>
#include <optional>
#include <vector>

namespace kestrova {

struct ItemActions;

/// The lines that the card begins with. `openCollections` leads to those of `collectionRows`. What cannot be
/// done with the item has no line.
std::vector<ActionRow> rootRows(const ItemActions& actions, const std::function<void()>& openCollections);
/// A line that goes back, and one for each collection.
std::vector<ActionRow> collectionRows(const ItemActions& actions, const std::function<void()>& goBack);

/// Of a collection's line: whether the item is in it. Absent for all other lines.
std::optional<bool> membership(const ActionRow& row);

} // namespace kestrova
