#include "Kestrova/detail/QtColor.h"

#include <cmath>

namespace kestrova {
namespace {

float drawnIn(double channel) {
    // Passes over what is not a number.
    return static_cast<float>(std::fmin(std::fmax(channel, 0.0), 1.0));
}

} // namespace

QColor qColor(const RGBA& color) {
    return QColor::fromRgbF(drawnIn(color.r), drawnIn(color.g), drawnIn(color.b), drawnIn(color.a));
}

} // namespace kestrova
