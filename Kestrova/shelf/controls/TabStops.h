#pragma once

#include <cstddef>
#include <vector>

class QWidget;

namespace kestrova {

/// The controls within the widget that Tab reaches now, from the top down and from the left.
std::vector<QWidget*> tabStopsIn(const QWidget& widget);

/// The place behind `place` among `count`, or before it; from the last one to the first. `count` itself
/// stands for none, and leads to the first or the last.
std::size_t placeBehind(std::ptrdiff_t place, std::ptrdiff_t count, bool forwards);

/// Gives the keyboard to the control behind the one that has it, or before it; from the last one to the
/// first. False if there is none.
bool focusNextIn(const QWidget& widget, bool forwards);

} // namespace kestrova
