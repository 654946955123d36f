#include "tests/desktop/Pictures.h"

#include <QBuffer>
#include <QImage>

#include <random>

namespace kestrova::test {

namespace {

QByteArray encoded(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

} // namespace

QByteArray pngPicture(QSize pixels, unsigned seed) {
    QImage image(pixels, QImage::Format_RGB32);
    for (int y = 0; y < pixels.height(); ++y) {
        for (int x = 0; x < pixels.width(); ++x)
            image.setPixel(x, y, qRgb(static_cast<int>((x * 7 + seed) % 256), (y * 5) % 256, (x + y) % 256));
    }
    return encoded(image);
}

QByteArray noisyPng(QSize pixels, unsigned seed) {
    std::mt19937 random(seed);
    QImage image(pixels, QImage::Format_RGB32);
    for (int y = 0; y < pixels.height(); ++y) {
        for (int x = 0; x < pixels.width(); ++x)
            image.setPixel(x, y, 0xff000000U | static_cast<unsigned>(random()));
    }
    return encoded(image);
}

} // namespace kestrova::test
