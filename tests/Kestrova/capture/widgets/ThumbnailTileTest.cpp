#include "Kestrova/capture/widgets/ThumbnailTile.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kestrova {
namespace {

QImage filled(QSize size, const QColor& color) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

bool isPlate(const QColor& color) {
    return color.alpha() == 255 && color.lightness() < 50;
}

/// How many pixels in a line through the middle show the picture, which is green.
QSize shownSize(const QImage& tile) {
    const auto isShown = [&](int x, int y) {
        const auto color = tile.pixelColor(x, y);
        return color.green() > 200 && color.red() < 160;
    };
    QSize shown(0, 0);
    for (int x = 0; x < tile.width(); ++x)
        shown.rwidth() += isShown(x, tile.height() / 2) ? 1 : 0;
    for (int y = 0; y < tile.height(); ++y)
        shown.rheight() += isShown(tile.width() / 2, y) ? 1 : 0;
    return shown;
}

struct Picture {
    QSize size;
    QSize shown;
};
class ThumbnailTilePictureTest : public testing::TestWithParam<Picture> {};

TEST_P(ThumbnailTilePictureTest, AllOfItIsShownAsLargeAsItFits) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        const auto tile = ThumbnailTile::draw(filled(GetParam().size, Qt::green), scale);
        EXPECT_EQ(tile.size(), QSize(qRound(240 * scale), qRound(180 * scale)));
        EXPECT_EQ(tile.devicePixelRatio(), scale);
        const auto shown = shownSize(tile);
        EXPECT_LE(std::abs(shown.width() - GetParam().shown.width() * scale), 1) << scale;
        EXPECT_LE(std::abs(shown.height() - GetParam().shown.height() * scale), 1) << scale;
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, ThumbnailTilePictureTest,
                         testing::Values(Picture{{1920, 1080}, {240, 135}}, Picture{{640, 480}, {240, 180}},
                                         Picture{{24, 18}, {240, 180}}, Picture{{300, 1200}, {45, 180}},
                                         Picture{{5, 5}, {180, 180}}));

TEST(ThumbnailTileTest, APictureThatIsMuchLongerThanTheTileIsALineAtLeast) {
    const auto tile = ThumbnailTile::draw(filled({100'000, 3}, Qt::green), 1);
    EXPECT_EQ(shownSize(tile).height(), 1);
    for (int x = 5; x < 235; ++x)
        EXPECT_EQ(tile.pixelColor(x, 89), QColor(Qt::green)) << x;
}

TEST(ThumbnailTileTest, WhatThePictureLeavesFreeIsTheDarkPlate) {
    const auto tile = ThumbnailTile::draw(filled({300, 1200}, Qt::green), 1);
    EXPECT_TRUE(isPlate(tile.pixelColor(40, 90)));
    EXPECT_TRUE(isPlate(tile.pixelColor(200, 90)));
    EXPECT_TRUE(isPlate(ThumbnailTile::draw({}, 1).pixelColor(120, 90)));
}

TEST(ThumbnailTileTest, WhereAPictureIsTransparentThePlateIsSeen) {
    QImage clear(240, 180, QImage::Format_ARGB32_Premultiplied);
    clear.fill(Qt::transparent);
    EXPECT_TRUE(isPlate(ThumbnailTile::draw(clear, 1).pixelColor(120, 90)));
}

TEST(ThumbnailTileTest, TheCornersAreRoundAndAFaintLineRunsWithinTheEdge) {
    const auto tile = ThumbnailTile::draw(filled({240, 180}, Qt::black), 1);
    for (const QPoint corner : {QPoint(0, 0), QPoint(239, 0), QPoint(0, 179), QPoint(239, 179)})
        EXPECT_EQ(tile.pixelColor(corner).alpha(), 0);
    EXPECT_EQ(tile.pixelColor(120, 0).alpha(), 255);
    // 15 % of white.
    for (const QPoint edge : {QPoint(120, 0), QPoint(0, 90), QPoint(239, 90), QPoint(120, 179)})
        EXPECT_NEAR(tile.pixelColor(edge).red(), 38, 2) << edge.x() << ' ' << edge.y();
    EXPECT_EQ(tile.pixelColor(120, 1).red(), 0);
}

TEST(ThumbnailShadowTest, FadesToNothingWithinItsReach) {
    const auto shadow = ThumbnailShadow::draw();
    ASSERT_EQ(shadow.size(), QSize(240 + 2 * ThumbnailShadow::reach, 180 + 2 * ThumbnailShadow::reach));
    const auto alpha = [&](int x, int y) { return qAlpha(shadow.pixel(x, y)); };
    const int middle = shadow.width() / 2;
    EXPECT_NEAR(alpha(middle, shadow.height() / 2), 89, 1) << "35 %";
    EXPECT_NEAR(alpha(middle, ThumbnailShadow::reach), 45, 5) << "half of it at the edge";
    int before = 0;
    for (int y = 0; y < ThumbnailShadow::reach; ++y) {
        EXPECT_GE(alpha(middle, y), before);
        before = alpha(middle, y);
    }
    for (int x = 0; x < shadow.width(); ++x)
        EXPECT_LE(alpha(x, 0), 1);
    EXPECT_EQ(alpha(3, shadow.height() / 2), alpha(shadow.width() - 4, shadow.height() / 2));
}

} // namespace
} // namespace kestrova
