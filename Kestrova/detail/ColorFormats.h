#pragma once

#include "Kestrova/detail/RGBA.h"

#include <QString>
#include <QStringView>

#include <optional>

namespace kestrova {

/// The colour that a text names: a hash with 3, 6 or 8 hexadecimal digits (red, green, blue and, of eight,
/// alpha last), or rgb, rgba, hsl or hsla with their numbers between parentheses. White space around it does
/// not matter. Numbers are decimal whatever the locale; a piece between the parentheses that is no finite
/// number is passed over. Absent if the text names none; the channels of a colour are finite.
std::optional<RGBA> parseColor(QStringView text);

// The forms of a colour as text, whatever the locale. Alpha stands in them only if it is below 1. What stands
// there is rounded and always digits: what is infinite becomes the nearest finite number, and what is not a
// number becomes 0. Otherwise nothing is drawn in; hexString and rgbString, whose channels are whole numbers
// of 32 bits, take the nearest of these.

/// "#RRGGBB" or "#RRGGBBAA".
QString hexString(const RGBA& color);
/// "rgb(255, 0, 0)" or "rgba(255, 0, 0, 0.50)".
QString rgbString(const RGBA& color);
/// "hsl(0, 100%, 50%)" or "hsla(0, 100%, 50%, 0.50)". The numbers are those of `hsl`, whatever it gives for
/// channels beyond 0 and 1.
QString hslString(const RGBA& color);

/// `hue` in degrees, the others from 0 to 1 in normal use.
struct HSL {
    double hue = 0;
    double saturation = 0;
    double lightness = 0;

    bool operator==(const HSL&) const = default;
};
/// A grey has the hue and the saturation 0. Channels beyond 0 and 1 can make the saturation infinite: where
/// the largest and the smallest one add up to 0 or 2.
HSL hsl(double r, double g, double b);

} // namespace kestrova
