#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QRegion>

#include <optional>
#include <span>

namespace kestrova {

/// A window's part in what the screen shows.
struct SceneLayer {
    /// Of `pixels`, on the desktop.
    QPoint corner;
    QImage pixels;
    /// In pixels of the desktop; absent if it is a mere rectangle.
    std::optional<QRegion> shape;
    /// From 0 to 1, on top of its own transparency.
    double opacity = 1;
};

/// Paints `area` of the desktop anew into `picture`, whose upper left corner is at `corner` of the desktop:
/// `background`, which fills the area, then the layers, lowest first. Nothing outside `area` changes.
void paintScene(QImage& picture, QPoint corner, const QRegion& area, const QImage& background,
                QPoint backgroundCorner, std::span<const SceneLayer> layers);

/// Where the picture is not fully transparent, in its own pixels, from the first such pixel of a row to its
/// last.
QRegion paintedPart(const QImage& picture);

/// What most pixels of `region` have, in the picture's own pixels; absent if none of them is in the picture.
std::optional<QRgb> commonestColor(const QImage& picture, const QRegion& region);

/// The picture with all outside `shape`, in its own pixels, transparent.
QImage cutToShape(const QImage& picture, const QRegion& shape);

/// `picture` in a picture of `size`, its upper left corner at `corner` there: transparent where it does not
/// reach, cut off where it reaches beyond. The picture itself if it is of that size already.
QImage fitted(const QImage& picture, QPoint corner, QSize size);

} // namespace kestrova
