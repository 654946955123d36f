#pragma once

#include <QByteArray>
#include <QImage>

namespace kestrova {

/// The picture as a PNG, lossless: without an alpha channel where every pixel is opaque. Empty for a null
/// picture, or if there is no memory for it. Callable from every thread.
QByteArray pngData(const QImage& image);

} // namespace kestrova
