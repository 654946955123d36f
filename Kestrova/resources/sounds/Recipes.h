#pragma once

#include "Kestrova/resources/sounds/Recipe.h"

#include <vector>

namespace kestrova::sounds {

/// The fourteen sounds, in the order in which a person chooses among them.
std::vector<Recipe> recipes();

} // namespace kestrova::sounds
