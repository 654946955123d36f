#pragma once

#include <QByteArray>
#include <QImage>

namespace kestrova {

/// The picture as a PNG of 8 bits a channel, lossless for whatever has no more than that: without an alpha
/// channel where every pixel is opaque, and with the pixels alone, not what else the image carries. The same
/// picture gives the same bytes. Empty for a null picture, or if there is no memory for it. Callable from
/// every thread; it uses all processors while it works.
QByteArray pngData(const QImage& image);

} // namespace kestrova
