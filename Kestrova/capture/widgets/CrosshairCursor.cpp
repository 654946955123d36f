#include "Kestrova/capture/widgets/CrosshairCursor.h"

#include "Kestrova/capture/SelectionOverlayDrawing.h"

#include <QPainter>

#include <cmath>

namespace kestrova {

namespace {

/// Moves lines that are an odd number of pixels wide from the corners of pixels to their centres.
double toPixelCentres(double scale) {
    return std::lround(scale) % 2 == 1 ? 0.5 : 0;
}

} // namespace

QPixmap CrosshairCursor::picture(double scale) {
    const int side = static_cast<int>(std::lround(Crosshair::side * scale));
    QPixmap pixels(side, side);
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(toPixelCentres(scale), toPixelCentres(scale));
    painter.scale(scale, scale);
    for (const auto& stroke : Crosshair::strokes) {
        const auto white = static_cast<float>(stroke.white);
        painter.setPen(QPen(QColor::fromRgbF(white, white, white, static_cast<float>(stroke.alpha)),
                            stroke.width, Qt::SolidLine, Qt::SquareCap));
        for (const auto& segment : Crosshair::segments)
            painter.drawLine(segment.from, segment.to);
    }
    return pixels;
}

const QCursor& CrosshairCursor::forScale(double scale) {
    const auto known = m_cursors.find(scale);
    if (known != m_cursors.end())
        return known->second;
    // In pixels: the X server knows no points, and the toolkit hands both over as they are.
    const auto hotSpot = (Crosshair::hotSpot * scale).toPoint();
    return m_cursors.emplace(scale, QCursor(picture(scale), hotSpot.x(), hotSpot.y())).first->second;
}

} // namespace kestrova
