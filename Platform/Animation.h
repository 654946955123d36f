#pragma once

#include <chrono>

namespace kestrova {

/// How an animation moves between its ends.
enum class AnimationTiming { easeIn, easeOut, easeInEaseOut };

using AnimationDuration = std::chrono::milliseconds;

} // namespace kestrova
