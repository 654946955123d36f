#pragma once

#include "Kestrova/resources/sounds/Recipe.h"

#include <cstdint>
#include <vector>

namespace kestrova::sounds {

inline constexpr int samplesPerSecond = 44100;

/// The sound of a recipe in one channel, from silence to silence, its loudest sample 9 dB below full scale.
/// The same recipe always gives the same samples.
std::vector<std::int16_t> synthesized(const Recipe& recipe);

} // namespace kestrova::sounds
