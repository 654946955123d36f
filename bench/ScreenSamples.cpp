#include "bench/ScreenSamples.h"

#include "bench/SampleTexts.h"

#include <QBuffer>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <random>
#include <stdexcept>

namespace kestrova::bench {
namespace {

void paintWindow(QPainter& painter, QRect frame, QColor ground, QColor ink, int number) {
    constexpr int titleBar = 32;
    constexpr int margin = 16;
    painter.fillRect(frame, ground);
    painter.fillRect(QRect(frame.topLeft(), QSize(frame.width(), titleBar)), QColor(60, 64, 72));
    QFont font;
    font.setPixelSize(14);
    painter.setFont(font);
    painter.setPen(ink);
    QString text;
    // Enough for the largest display; the window cuts it off.
    for (int i = 0; i < 100; ++i)
        text += sampleText(number + i) + QLatin1Char('\n');
    painter.setClipRect(frame);
    painter.drawText(frame.adjusted(margin, titleBar + margin, -margin, 0), Qt::TextWordWrap, text);
    painter.setClipping(false);
}

QImage plainDesktop(QSize size) {
    QImage picture(size, QImage::Format_RGB32);
    const int width = size.width();
    const int height = size.height();
    QPainter painter(&picture);
    QLinearGradient ground(0, 0, width, height);
    ground.setColorAt(0, QColor(30, 60, 120));
    ground.setColorAt(1, QColor(180, 120, 90));
    painter.fillRect(picture.rect(), ground);
    paintWindow(painter, QRect(width / 20, height / 12, width * 2 / 5, height * 2 / 3), QColor(252, 252, 252),
                QColor(30, 30, 34), 100);
    paintWindow(painter, QRect(width / 2, height / 8, width * 2 / 5, height / 2), QColor(30, 32, 38),
                QColor(210, 214, 220), 300);
    paintWindow(painter, QRect(width * 2 / 5, height * 2 / 5, width * 2 / 5, height / 2),
                QColor(246, 246, 240), QColor(30, 30, 34), 500);
    painter.fillRect(0, height - 48, width, 48, QColor(40, 44, 52));
    return picture;
}

QImage photograph(QSize size) {
    QImage picture(size, QImage::Format_RGB32);
    std::minstd_rand random(5);
    const auto withGrain = [&random](double light) {
        constexpr int grain = 7;
        return std::clamp(static_cast<int>(light) + static_cast<int>(random() % grain), 0, 255);
    };
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(picture.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const double across = static_cast<double>(x) / size.width();
            const double down = static_cast<double>(y) / size.height();
            const double light =
                110 + 70 * std::sin(across * 9 + down * 3) + 40 * std::cos(down * 17 - across * 5);
            line[x] = qRgb(withGrain(light), withGrain(light * 0.8 + 30), withGrain(200 - light * 0.6));
        }
    }
    return picture;
}

QImage pageOfText(QSize size) {
    QImage picture(size, QImage::Format_RGB32);
    QPainter painter(&picture);
    paintWindow(painter, picture.rect(), QColor(252, 252, 252), QColor(30, 30, 34), 700);
    return picture;
}

} // namespace

std::vector<ScreenSample> screenSamples(QSize size) {
    return {{.name = "plain desktop", .picture = plainDesktop(size)},
            {.name = "photograph", .picture = photograph(size)},
            {.name = "page of text", .picture = pageOfText(size)}};
}

QByteArray toolkitPng(const QImage& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly) || !picture.save(&buffer, "PNG"))
        throw std::runtime_error("a sample picture cannot be encoded");
    return bytes;
}

} // namespace kestrova::bench
