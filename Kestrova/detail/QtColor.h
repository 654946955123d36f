#pragma once

#include "Kestrova/detail/RGBA.h"

#include <QColor>

namespace kestrova {

/// What a display can show of a colour: channels outside 0 to 1 are drawn in, and one that is not a number
/// is 0.
QColor qColor(const RGBA& color);

} // namespace kestrova
