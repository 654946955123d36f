#pragma once

#include <chrono>

namespace kestrova {

/// How the status item draws the eye to itself for a moment: it fades out part of the way and comes back.
namespace StatusItemPulse {
inline constexpr std::chrono::milliseconds fadeOut{120};
inline constexpr std::chrono::milliseconds fadeIn{280};
inline constexpr std::chrono::milliseconds duration = fadeOut + fadeIn;
inline constexpr double faintest = 0.4;

/// The opacity that long after the start: down to `faintest` slowing down, then up to 1 speeding up, where it
/// stays.
double opacity(std::chrono::milliseconds elapsed);
} // namespace StatusItemPulse

} // namespace kestrova
