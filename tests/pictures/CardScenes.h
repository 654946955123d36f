#pragma once

#include "tests/pictures/ShelfScenes.h"

namespace kestrova {

/// The card of what can be done with an item, on both of its screens.
std::vector<ShelfScene> cardScenes();

} // namespace kestrova
