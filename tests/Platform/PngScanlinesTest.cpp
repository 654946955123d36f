#include "Platform/PngScanlines.h"

#include <QColor>

#include <gmock/gmock.h>

#include <vector>

namespace kestrova {
namespace {

using testing::ElementsAre;

/// A picture of one pixel that stays where the test can change it.
class PixelElsewhere {
public:
    explicit PixelElsewhere(QImage::Format format, QRgb pixel = qRgb(1, 2, 3))
        : m_pixel(pixel), m_format(format) {}

    QImage image() { return {reinterpret_cast<uchar*>(&m_pixel), 1, 1, m_format}; }
    void change(QRgb pixel) { m_pixel = pixel; }

private:
    QRgb m_pixel;
    const QImage::Format m_format;
};

std::vector<int> onlyRow(const PngScanlines& lines) {
    std::vector<std::uint8_t> row(lines.bytesPerRow());
    lines.write(0, 1, row.data());
    return {row.begin(), row.end()};
}

class OpaquePicture : public testing::TestWithParam<QImage::Format> {};

TEST_P(OpaquePicture, IsReadWhereItLies) {
    PixelElsewhere pixel(GetParam());
    const PngScanlines lines(pixel.image());
    EXPECT_FALSE(lines.hasAlpha());
    pixel.change(qRgb(4, 5, 6));
    EXPECT_THAT(onlyRow(lines), ElementsAre(0, 4, 5, 6));
}

INSTANTIATE_TEST_SUITE_P(PngScanlinesTest, OpaquePicture,
                         testing::Values(QImage::Format_RGB32, QImage::Format_ARGB32,
                                         QImage::Format_ARGB32_Premultiplied));

TEST(PngScanlinesTest, WhatIsTransparentKeepsItsAlpha) {
    PixelElsewhere pixel(QImage::Format_ARGB32, qRgba(1, 2, 3, 4));
    const PngScanlines lines(pixel.image());
    EXPECT_TRUE(lines.hasAlpha());
    EXPECT_THAT(onlyRow(lines), ElementsAre(0, 1, 2, 3, 4));
}

TEST(PngScanlinesTest, AnOpaquePictureOfAnotherFormatHasNoAlphaEither) {
    QImage image(1, 1, QImage::Format_RGBA8888);
    image.setPixelColor(0, 0, QColor(7, 8, 9));
    const PngScanlines lines(image);
    EXPECT_FALSE(lines.hasAlpha());
    EXPECT_THAT(onlyRow(lines), ElementsAre(0, 7, 8, 9));
}

TEST(PngScanlinesTest, AGradientIsWrittenAsDifferences) {
    QImage image(4, 2, QImage::Format_RGB32);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 4; ++x)
            image.setPixel(x, y, qRgb(10 + (x + y > 2 ? 1 : 0), 20, 30));
    const PngScanlines lines(image);
    std::vector<std::uint8_t> rows(2 * lines.bytesPerRow());
    EXPECT_EQ(lines.write(0, 2, rows.data()), 0);
    const std::vector<int> second(rows.begin() + static_cast<std::ptrdiff_t>(lines.bytesPerRow()),
                                  rows.end());
    EXPECT_THAT(second, ElementsAre(2, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0));
}

TEST(PngScanlinesTest, AnEdgeKeepsTheRowAsItIs) {
    QImage image(4, 1, QImage::Format_RGB32);
    for (int x = 0; x < 4; ++x)
        image.setPixel(x, 0, qRgb(x > 1 ? 8 : 0, 20, 30));
    EXPECT_THAT(onlyRow(PngScanlines(image)), ElementsAre(0, 0, 20, 30, 0, 20, 30, 8, 20, 30, 8, 20, 30));
}

TEST(PngScanlinesTest, GrainIsCountedByRows) {
    QImage image(40, 6, QImage::Format_RGB32);
    image.fill(qRgb(90, 90, 90));
    for (int y = 2; y < 5; ++y)
        for (int x = 0; x < 40; ++x)
            image.setPixel(x, y, qRgb(90 + x * x * (y + 3) % 5, 90 + x * x % 7, 90 + x % 3));
    const PngScanlines lines(image);
    std::vector<std::uint8_t> rows(6 * lines.bytesPerRow());
    EXPECT_EQ(lines.write(0, 6, rows.data()), 3);
}

} // namespace
} // namespace kestrova
