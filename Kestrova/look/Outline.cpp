#include "Kestrova/look/Outline.h"

#include <QBitmap>
#include <QPainter>

#include <algorithm>

namespace kestrova {

QPainterPath continuousRectangle(const QRectF& rect, double cornerRadius) {
    constexpr double reachPerRadius = 1.528;
    constexpr double pull = 0.822;
    const double reach = std::min({cornerRadius * reachPerRadius, rect.width() / 2, rect.height() / 2});
    const double rest = reach * (1 - pull);
    QPainterPath path(QPointF(rect.left(), rect.top() + reach));
    path.cubicTo(rect.left(), rect.top() + rest, rect.left() + rest, rect.top(), rect.left() + reach,
                 rect.top());
    path.lineTo(rect.right() - reach, rect.top());
    path.cubicTo(rect.right() - rest, rect.top(), rect.right(), rect.top() + rest, rect.right(),
                 rect.top() + reach);
    path.lineTo(rect.right(), rect.bottom() - reach);
    path.cubicTo(rect.right(), rect.bottom() - rest, rect.right() - rest, rect.bottom(), rect.right() - reach,
                 rect.bottom());
    path.lineTo(rect.left() + reach, rect.bottom());
    path.cubicTo(rect.left() + rest, rect.bottom(), rect.left(), rect.bottom() - rest, rect.left(),
                 rect.bottom() - reach);
    path.closeSubpath();
    return path;
}

QRegion pixelsWithin(const QPainterPath& path, QSize size, double scale) {
    QBitmap pixels((QSizeF(size) * scale).toSize());
    pixels.clear();
    QPainter painter(&pixels);
    painter.scale(scale, scale);
    painter.fillPath(path, Qt::color1);
    painter.end();
    return pixels;
}

} // namespace kestrova
