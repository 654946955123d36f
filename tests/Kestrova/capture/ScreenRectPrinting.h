#pragma once

#include "Platform/Screens.h"

#include <ostream>

namespace kestrova {

inline void PrintTo(const ScreenRect& rect, std::ostream* out) {
    *out << '(' << rect.x << ", " << rect.y << ", " << rect.width << " x " << rect.height << ')';
}

} // namespace kestrova
