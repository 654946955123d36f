#include "Kestrova/capture/widgets/ThumbnailTile.h"

#include "Kestrova/look/Outline.h"

#include <QPainter>

#include <vector>

namespace kestrova {
namespace {

constexpr double cornerRadius = 10;

QColor plate() {
    return QColor::fromRgbF(0.12F, 0.12F, 0.14F);
}
constexpr double strokeWidth = 1;
constexpr float strokeOpacity = 0.15F;

constexpr float shadowOpacity = 0.35F;
// Three passes of such boxes come close to a bell curve as wide as the shadow's radius of 12.
constexpr int boxPasses = 3;
constexpr int boxRadius = ThumbnailShadow::reach / boxPasses;

QSize fitting(QSize picture, QSize pixels) {
    return picture.scaled(pixels, Qt::KeepAspectRatio).expandedTo({1, 1});
}

/// Of `count` values that lie `stride` apart. Beyond them there is nothing.
void blurLine(float* values, int count, int stride, std::vector<float>& before) {
    before.resize(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        before[static_cast<std::size_t>(i)] = values[i * stride];
    const auto at = [&](int i) { return i >= 0 && i < count ? before[static_cast<std::size_t>(i)] : 0.0F; };
    float sum = 0;
    for (int i = 0; i < boxRadius; ++i)
        sum += at(i);
    for (int i = 0; i < count; ++i) {
        sum += at(i + boxRadius) - at(i - boxRadius - 1);
        values[i * stride] = sum / (2 * boxRadius + 1);
    }
}

} // namespace

QPainterPath ThumbnailTile::outline() {
    return continuousRectangle(QRectF({}, size), cornerRadius);
}

QImage ThumbnailTile::draw(const QImage& picture, double scale) {
    const QSize pixels = (QSizeF(size) * scale).toSize();
    QImage square(pixels, QImage::Format_ARGB32_Premultiplied);
    square.fill(plate());
    if (!picture.isNull()) {
        auto fitted =
            picture.scaled(fitting(picture.size(), pixels), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        fitted.setDevicePixelRatio(1);
        QPainter painter(&square);
        painter.drawImage((pixels.width() - fitted.width()) / 2, (pixels.height() - fitted.height()) / 2,
                          fitted);
    }
    QImage tile(pixels, QImage::Format_ARGB32_Premultiplied);
    tile.fill(Qt::transparent);
    {
        QPainter painter(&tile);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(scale, scale);
        QBrush texture(square);
        texture.setTransform(QTransform::fromScale(1 / scale, 1 / scale));
        painter.fillPath(outline(), texture);
        constexpr double inset = strokeWidth / 2;
        painter.strokePath(continuousRectangle(QRectF({}, size).adjusted(inset, inset, -inset, -inset),
                                               cornerRadius - inset),
                           QPen(QColor::fromRgbF(1, 1, 1, strokeOpacity), strokeWidth));
    }
    tile.setDevicePixelRatio(scale);
    return tile;
}

QImage ThumbnailShadow::draw() {
    QImage shape(ThumbnailTile::size.grownBy({reach, reach, reach, reach}),
                 QImage::Format_ARGB32_Premultiplied);
    shape.fill(Qt::transparent);
    {
        QPainter painter(&shape);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(reach, reach);
        painter.fillPath(ThumbnailTile::outline(), QColor::fromRgbF(0, 0, 0, shadowOpacity));
    }
    const int width = shape.width();
    const int height = shape.height();
    std::vector<float> alpha(static_cast<std::size_t>(width * height));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            alpha[static_cast<std::size_t>(y * width + x)] = static_cast<float>(qAlpha(shape.pixel(x, y)));
    std::vector<float> line;
    for (int pass = 0; pass < boxPasses; ++pass) {
        for (int y = 0; y < height; ++y)
            blurLine(&alpha[static_cast<std::size_t>(y * width)], width, 1, line);
        for (int x = 0; x < width; ++x)
            blurLine(&alpha[static_cast<std::size_t>(x)], height, width, line);
    }
    for (int y = 0; y < height; ++y) {
        auto* const pixels = reinterpret_cast<QRgb*>(shape.scanLine(y));
        for (int x = 0; x < width; ++x)
            pixels[x] = qRgba(0, 0, 0, qRound(alpha[static_cast<std::size_t>(y * width + x)]));
    }
    return shape;
}

} // namespace kestrova
