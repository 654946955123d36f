#pragma once

#include <QColor>
#include <QImage>
#include <QPainterPath>
#include <QSize>

namespace kestrova {

/// The shape of a preview. What is drawn may be drawn on any thread.
namespace ThumbnailTile {

inline constexpr QSize size(240, 180);

QPainterPath outline();

/// All of the picture, as large as it fits, on a dark plate; null leaves the plate empty. With `scale` pixels
/// to a point.
QImage draw(const QImage& picture, double scale);

} // namespace ThumbnailTile

/// The shadow below a preview.
namespace ThumbnailShadow {

/// How far it reaches beyond the tile on every side before it is moved by `offset`.
inline constexpr int reach = 33;
inline constexpr int offset = 6;

/// Around the middle of the picture lies what the tile covers. It has one pixel to a point: there is nothing
/// sharp in it.
QImage draw();

} // namespace ThumbnailShadow

} // namespace kestrova
