#pragma once

namespace kestrova {

/// A colour. Channels go from 0 to 1 in normal use, but nothing draws them in: what a text says stays
/// what it says.
struct RGBA {
    double r = 0;
    double g = 0;
    double b = 0;
    double a = 1;

    bool operator==(const RGBA&) const = default;
};

} // namespace kestrova
