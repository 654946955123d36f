#include "Kestrova/shelf/widgets/CardPlates.h"

#include <QPainter>
#include <QPainterPath>

namespace kestrova {

void CardPlates::prepare(QSize region, double devicePixelRatio, const ShelfTheme& theme) {
    if (region == m_region && devicePixelRatio == m_ratio && theme == m_theme)
        return;
    m_region = region;
    m_ratio = devicePixelRatio;
    m_theme = theme;
    const QRectF frame({}, region);
    QPainterPath shape;
    shape.addRoundedRect(frame, radius, radius);
    m_plate = drawn([&](QPainter& painter) { painter.fillPath(shape, theme.primary(0.08)); });
    m_ground = drawn([&](QPainter& painter) {
        painter.fillPath(shape, theme.primary(0.08));
        painter.fillPath(shape, theme.primary(0.04));
    });
    m_outline = drawn([&](QPainter& painter) { strokeWithin(painter, frame, radius, theme.hairline, 0.5); });
}

template<typename Draw>
QPixmap CardPlates::drawn(Draw draw) const {
    QPixmap pixmap((QSizeF(m_region) * m_ratio).toSize());
    pixmap.setDevicePixelRatio(m_ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    draw(painter);
    return pixmap;
}

void strokeWithin(QPainter& painter, const QRectF& frame, double radius, const QColor& color, double width) {
    const double half = width / 2;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, width));
    painter.drawRoundedRect(frame.adjusted(half, half, -half, -half), radius - half, radius - half);
}

} // namespace kestrova
