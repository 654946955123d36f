#pragma once

#include "Kestrova/capture/SelectionOverlayDrawing.h"
#include "Kestrova/capture/widgets/OverlayText.h"

#include <QRect>
#include <QRegion>
#include <QSizeF>

class QImage;
class QPainter;

namespace kestrova {

/// Paints what one overlay shows onto a display of some size and scale. Here y is turned over. All edges but
/// the round corners come to lie between pixels, so that none is blurred.
class OverlayPainter {
public:
    /// What lies behind the window: seen where nothing is painted, or not.
    enum class Ground { transparent, opaque };

    /// `size` of the display in points, `scale` in pixels a point.
    OverlayPainter(QSizeF size, double scale) : m_size(size), m_scale(scale) {}

    /// The same in whole points, y downwards from the upper left corner; no smaller than the rectangle.
    QRect toolkitRect(const ScreenRect& rect) const;

    /// The painter's coordinates are points, y downwards from the upper left corner. Only `points` is
    /// painted, and what was there before is replaced. An opaque ground that the drawing does not give is
    /// black.
    void paint(QPainter& painter, const OverlayDrawing& drawing, Ground ground, const OverlayText& text,
               const QRegion& points) const;

private:
    QRect pixels(const ScreenRect& rect) const;
    QRegion pixels(const QRegion& points) const;
    void paintBackground(QPainter& painter, const QImage& background, const QRegion& area) const;
    void paintGround(QPainter& painter, const OverlayDrawing& drawing, Ground ground,
                     const QRegion& area) const;
    void paintBadge(QPainter& painter, const OverlayBadge& badge, const OverlayText& text) const;

    QSizeF m_size;
    double m_scale;
};

} // namespace kestrova
