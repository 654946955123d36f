#pragma once

#include <QColor>
#include <QStringView>

#include <optional>

namespace kestrova {

/// The colour that a text names: a hash with 3, 6 or 8 hexadecimal digits (red, green, blue and, of eight,
/// alpha last), or rgb, rgba, hsl or hsla with their numbers between parentheses. White space around it does
/// not matter. Channels outside their range are drawn in.
std::optional<QColor> parsedColor(QStringView text);

} // namespace kestrova
