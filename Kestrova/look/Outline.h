#pragma once

#include <QPainterPath>
#include <QRectF>
#include <QRegion>
#include <QSize>

namespace kestrova {

/// A rectangle with corners whose curvature grows from nothing: they reach further along the edges than an
/// arc of the same radius, and pass through the same point on the diagonal.
QPainterPath continuousRectangle(const QRectF& rect, double cornerRadius);

/// The pixels whose centres lie in the path, within a picture that has `size` in the path's units and `scale`
/// pixels to each.
QRegion pixelsWithin(const QPainterPath& path, QSize size, double scale = 1);

} // namespace kestrova
