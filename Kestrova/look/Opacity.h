#pragma once

class QWidget;

namespace kestrova {

/// Draws the widget and all that lies in it with that opacity, from 0 to 1. At 1 it costs nothing.
void setOpacity(QWidget& widget, double opacity);

} // namespace kestrova
