#include "Platform/x11/SceneComposition.h"

#include <QPainter>

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace kestrova {

namespace {

QImage transparent(QSize size) {
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    return picture;
}

} // namespace

void paintScene(QImage& picture, QPoint corner, const QRegion& area, const QImage& background,
                QPoint backgroundCorner, std::span<const SceneLayer> layers) {
    QPainter painter(&picture);
    painter.translate(-corner);
    painter.setClipRegion(area);
    painter.drawImage(backgroundCorner, background);
    for (const auto& layer : layers) {
        painter.setClipRegion(layer.shape ? area & *layer.shape : area);
        painter.setOpacity(layer.opacity);
        painter.drawImage(layer.corner, layer.pixels);
    }
}

QRegion paintedPart(const QImage& picture) {
    QRegion painted;
    // Rows that follow each other make one rectangle.
    QRect rows;
    const auto isPainted = [](QRgb pixel) { return qAlpha(pixel) != 0; };
    for (int y = 0; y < picture.height(); ++y) {
        const std::span row{reinterpret_cast<const QRgb*>(picture.constScanLine(y)),
                            static_cast<std::size_t>(picture.width())};
        const auto first = std::ranges::find_if(row, isPainted);
        if (first == row.end()) {
            painted += std::exchange(rows, {});
            continue;
        }
        const auto last = std::find_if(row.rbegin(), row.rend(), isPainted);
        const auto left = static_cast<int>(first - row.begin());
        rows |= QRect(left, y, static_cast<int>(last.base() - first), 1);
    }
    return painted + rows;
}

std::optional<QRgb> commonestColor(const QImage& picture, const QRegion& region) {
    std::unordered_map<QRgb, qsizetype> counts;
    for (const auto& rect : region& picture.rect()) {
        for (int y = rect.top(); y <= rect.bottom(); ++y) {
            const auto* const row = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
            // Neighbours are mostly alike.
            for (int x = rect.left(); x <= rect.right();) {
                const int begin = x;
                while (x <= rect.right() && row[x] == row[begin])
                    ++x;
                counts[row[begin]] += x - begin;
            }
        }
    }
    const auto most = std::ranges::max_element(counts, {}, [](const auto& each) { return each.second; });
    return most == counts.end() ? std::nullopt : std::optional(most->first);
}

QImage cutToShape(const QImage& picture, const QRegion& shape) {
    auto cut = transparent(picture.size());
    QPainter painter(&cut);
    painter.setClipRegion(shape);
    painter.drawImage(QPoint(), picture);
    return cut;
}

QImage fitted(const QImage& picture, QPoint corner, QSize size) {
    if (corner.isNull() && picture.size() == size)
        return picture;
    if (QRect(corner, picture.size()).contains(QRect(QPoint(), size)))
        return picture.copy(QRect(-corner, size));
    auto whole = transparent(size);
    QPainter painter(&whole);
    painter.drawImage(corner, picture);
    return whole;
}

} // namespace kestrova
