#include "Kestrova/capture/widgets/OverlayPainter.h"

#include <QImage>
#include <QPainter>

#include <cmath>

namespace kestrova {

namespace {

QColor colorOf(const OverlayFill& fill) {
    QColor color(Qt::black);
    switch (fill.color) {
    case OverlayFill::Color::black:
        break;
    case OverlayFill::Color::systemBlue:
        // Dark enough for white words, also where a white desktop shines through.
        color.setRgbF(0, 0.40F, 0.88F);
        break;
    }
    color.setAlphaF(static_cast<float>(fill.alpha));
    return color;
}

ScreenRect grown(const ScreenRect& rect, double by) {
    return {rect.x - by, rect.y - by, rect.width + 2 * by, rect.height + 2 * by};
}

void fill(QPainter& painter, const QRegion& area, const QColor& color) {
    for (const auto& rect : area)
        painter.fillRect(rect, color);
}

} // namespace

QRect OverlayPainter::pixels(const ScreenRect& rect) const {
    const auto pixel = [this](double length) { return static_cast<int>(std::lround(length * m_scale)); };
    return {QPoint(pixel(rect.x), pixel(m_size.height() - rect.maxY())),
            QPoint(pixel(rect.maxX()) - 1, pixel(m_size.height() - rect.y) - 1)};
}

QRegion OverlayPainter::pixels(const QRegion& points) const {
    QRegion found;
    for (const auto& rect : points)
        found += QRectF(QPointF(rect.topLeft()) * m_scale, QSizeF(rect.size()) * m_scale).toAlignedRect();
    return found;
}

QRect OverlayPainter::toolkitRect(const ScreenRect& rect) const {
    return QRectF(rect.x, m_size.height() - rect.maxY(), rect.width, rect.height).toAlignedRect();
}

void OverlayPainter::paint(QPainter& painter, const OverlayDrawing& drawing, Ground ground,
                           const OverlayText& text, const QRegion& points) const {
    painter.save();
    painter.scale(1 / m_scale, 1 / m_scale);
    paintGround(painter, drawing, ground, pixels(points));
    painter.restore();
    for (const auto& badge : drawing.badges)
        if (points.intersects(toolkitRect(badge.frame)))
            paintBadge(painter, badge, text);
}

void OverlayPainter::paintBackground(QPainter& painter, const QImage& background, const QRegion& area) const {
    const auto display = pixels(ScreenRect{0, 0, m_size.width(), m_size.height()}).size();
    const double x = static_cast<double>(background.width()) / display.width();
    const double y = static_cast<double>(background.height()) / display.height();
    for (const auto& rect : area)
        painter.drawImage(QRectF(rect), background,
                          QRectF(rect.x() * x, rect.y() * y, rect.width() * x, rect.height() * y));
}

void OverlayPainter::paintGround(QPainter& painter, const OverlayDrawing& drawing, Ground ground,
                                 const QRegion& area) const {
    QRegion stroke;
    if (drawing.stroke) {
        constexpr double reach = OverlayDrawing::strokeWidth / 2;
        stroke = QRegion(pixels(grown(*drawing.stroke, reach))) - pixels(grown(*drawing.stroke, -reach));
    }
    const QRegion hole = drawing.hole ? QRegion(pixels(*drawing.hole)) : QRegion();
    const QRegion dimmed = area - hole - stroke;
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    if (const auto& background = drawing.background) {
        paintBackground(painter, *background, area);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    } else if (ground == Ground::opaque) {
        fill(painter, area, Qt::black);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    } else {
        fill(painter, area & hole, Qt::transparent);
    }
    fill(painter, dimmed, colorOf(OverlayDrawing::dimming));
    fill(painter, area & stroke, Qt::white);
}

void OverlayPainter::paintBadge(QPainter& painter, const OverlayBadge& badge, const OverlayText& text) const {
    const QRect frame = pixels(badge.frame);
    const auto points = [this](QPointF place) { return place / m_scale; };
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colorOf(badge.fill));
    painter.drawRoundedRect(QRectF(points(frame.topLeft()), QSizeF(frame.size()) / m_scale),
                            badge.cornerRadius, badge.cornerRadius);
    // With the frame: where that was moved by a part of a pixel, the text keeps its distance.
    const double textHeight = text.size(badge.text, badge.font).height();
    const QPointF fromCorner(badge.textOrigin.x() - badge.frame.x,
                             badge.frame.maxY() - badge.textOrigin.y() - textHeight);
    text.draw(painter, points(frame.topLeft()) + fromCorner, badge.text, badge.font);
    painter.restore();
}

} // namespace kestrova
