#pragma once

#include <QPointF>

namespace kestrova {

/// Where the mouse is on an overlay: what the pixel under it stands for, in the view's coordinates.
struct OverlayPointer {
    OverlayPointer() = default;
    /// Where the two are the same.
    OverlayPointer(QPointF both) : corner(both), centre(both) {}
    OverlayPointer(double x, double y) : OverlayPointer(QPointF(x, y)) {}
    OverlayPointer(QPointF cornerOfPixel, QPointF centreOfPixel)
        : corner(cornerOfPixel), centre(centreOfPixel) {}

    /// Where something is cut off, and what is told of the place.
    QPointF corner;
    /// What lies under the mouse.
    QPointF centre;
};

} // namespace kestrova
