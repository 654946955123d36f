#pragma once

#include <QByteArray>
#include <QSize>

namespace kestrova::test {

/// A picture that no other seed gives, as the bytes of a PNG file.
QByteArray pngPicture(QSize pixels, unsigned seed);
/// Noise, which no compression makes smaller, as the bytes of a PNG file.
QByteArray noisyPng(QSize pixels, unsigned seed);

} // namespace kestrova::test
