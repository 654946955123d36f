#include "bench/SamplePictures.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>

#include <random>
#include <stdexcept>

namespace kestrova::bench {
namespace {

using Random = std::minstd_rand;

int below(int limit, Random& random) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
}

/// Lines of dark strokes on white, as a page of small print looks to a compressor.
void paintPage(QPainter& painter, QRect page, Random& random) {
    painter.fillRect(page, Qt::white);
    painter.fillRect(QRect(page.topLeft(), QSize(page.width(), 28)), QColor(60, 64, 72));
    for (int y = page.top() + 44; y < page.bottom() - 16; y += 18)
        for (int x = page.left() + 16; x < page.right() - 16; x += 2 + below(7, random))
            painter.fillRect(x, y + below(5, random), 1 + below(2, random), 4 + below(8, random),
                             QColor(32, 32, 40));
}

/// A smooth ground with the grain of a sensor.
void paintPhotograph(QImage& image, QRect frame, Random& random) {
    for (int y = frame.top(); y < frame.bottom(); ++y)
        for (int x = frame.left(); x < frame.right(); ++x) {
            const int grain = below(24, random);
            image.setPixel(x, y, qRgb((x / 5 + grain) % 256, (y / 4 + below(24, random)) % 256, 90 + grain));
        }
}

/// Three pages side by side and a photograph over the last of them.
QByteArray picture(QSize size, unsigned seed) {
    Random random(seed);
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    const int width = size.width();
    const int height = size.height();
    QLinearGradient ground(0, 0, width, height);
    ground.setColorAt(0, QColor(30, 60, 120));
    ground.setColorAt(1, QColor(180, 120, 90));
    painter.fillRect(image.rect(), ground);
    for (int i = 0; i < 3; ++i)
        paintPage(painter,
                  QRect(width / 48 + i * width * 7 / 32 + below(60, random), height / 18 + below(200, random),
                        width * 7 / 24, height * 31 / 54),
                  random);
    painter.end();
    paintPhotograph(image,
                    QRect(width * 15 / 32 + below(100, random), height * 19 / 54 + below(60, random),
                          width * 43 / 96, height * 5 / 9)
                        .intersected(image.rect()),
                    random);

    QByteArray bytes;
    QBuffer buffer(&bytes);
    // Little compression: it is the size that counts, and there are many to make.
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG", 80))
        throw std::runtime_error("a sample picture cannot be encoded");
    return bytes;
}

} // namespace

std::vector<QByteArray> samplePictures(int count, QSize size) {
    std::vector<QByteArray> pictures;
    for (int i = 0; i < count; ++i)
        pictures.push_back(picture(size, static_cast<unsigned>(i) + 1));
    return pictures;
}

} // namespace kestrova::bench
