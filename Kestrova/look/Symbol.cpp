#include "Kestrova/look/Symbol.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <cmath>

namespace kestrova {

QString Symbol::path() const {
    return QStringLiteral(":/symbols/%1.svg").arg(m_name);
}

bool Symbol::exists() const {
    return QFile::exists(path());
}

QPixmap Symbol::pixmap(double edge, double devicePixelRatio, const QColor& color) const {
    const int pixels = static_cast<int>(std::lround(edge * devicePixelRatio));
    const auto key = QStringLiteral("symbol %1 %2 %3 %4")
                         .arg(m_name)
                         .arg(pixels)
                         .arg(devicePixelRatio)
                         .arg(color.rgba(), 0, 16);
    QPixmap drawn;
    if (pixels <= 0 || QPixmapCache::find(key, &drawn))
        return drawn;
    QSvgRenderer renderer(path());
    if (!renderer.isValid())
        return {};
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        renderer.render(&painter);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), color);
    }
    image.setDevicePixelRatio(devicePixelRatio);
    drawn = QPixmap::fromImage(std::move(image));
    QPixmapCache::insert(key, drawn);
    return drawn;
}

void Symbol::paint(QPainter& painter, const QRectF& frame, double edge, const QColor& color) const {
    const double ratio = painter.device()->devicePixelRatio();
    const auto drawn = pixmap(edge, ratio, color);
    if (drawn.isNull())
        return;
    const auto onPixel = [ratio](double point) { return std::round(point * ratio) / ratio; };
    painter.drawPixmap(
        QPointF(onPixel(frame.center().x() - edge / 2), onPixel(frame.center().y() - edge / 2)), drawn);
}

} // namespace kestrova
