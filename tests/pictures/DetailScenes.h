#pragma once

#include "tests/pictures/ShelfScenes.h"

namespace kestrova {

/// The preview pane with items of each kind, ordinary and odd ones.
std::vector<ShelfScene> detailScenes();

} // namespace kestrova
