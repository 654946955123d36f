#pragma once

#include "tests/pictures/ShelfScenes.h"

#include <vector>

namespace kestrova {

/// The screens for preview and for editing, for every kind of content that they show.
std::vector<ShelfScene> screenScenes();

} // namespace kestrova
