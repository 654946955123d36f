#include "Platform/x11/SceneComposition.h"

#include <gtest/gtest.h>

#include <vector>

namespace kestrova {
namespace {

QImage plain(QSize size, const QColor& color, QImage::Format format = QImage::Format_RGB32) {
    QImage image(size, format);
    image.fill(color);
    return image;
}

TEST(SceneCompositionTest, TheAreaIsPaintedAnewAndNothingBesides) {
    auto picture = plain({10, 10}, Qt::green);
    paintScene(picture, {100, 50}, QRect(102, 53, 4, 4), plain({4, 4}, Qt::black), {102, 53}, {});
    EXPECT_EQ(picture.pixelColor(2, 3), QColor(Qt::black));
    EXPECT_EQ(picture.pixelColor(5, 6), QColor(Qt::black));
    EXPECT_EQ(picture.pixelColor(1, 3), QColor(Qt::green));
    EXPECT_EQ(picture.pixelColor(6, 6), QColor(Qt::green));
}

TEST(SceneCompositionTest, AHigherLayerHidesALowerOne) {
    auto picture = plain({10, 10}, Qt::green);
    const std::vector<SceneLayer> layers{{{0, 0}, plain({6, 6}, Qt::red), {}, 1},
                                         {{4, 4}, plain({6, 6}, Qt::blue), {}, 1}};
    paintScene(picture, {}, QRect(0, 0, 10, 10), plain({10, 10}, Qt::black), {}, layers);
    EXPECT_EQ(picture.pixelColor(3, 3), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(5, 5), QColor(Qt::blue));
    EXPECT_EQ(picture.pixelColor(9, 1), QColor(Qt::black));
}

TEST(SceneCompositionTest, ALayerShowsNothingOutsideItsShape) {
    auto picture = plain({10, 10}, Qt::green);
    const std::vector<SceneLayer> layers{{{100, 100}, plain({10, 10}, Qt::red), QRegion(102, 102, 3, 3), 1}};
    paintScene(picture, {100, 100}, QRect(100, 100, 10, 10), plain({10, 10}, Qt::black), {100, 100}, layers);
    EXPECT_EQ(picture.pixelColor(2, 2), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(5, 5), QColor(Qt::black));
}

TEST(SceneCompositionTest, TransparencyAndOpacityAreMixed) {
    auto picture = plain({10, 10}, Qt::green);
    const auto half = plain({10, 10}, QColor(255, 0, 0, 128), QImage::Format_ARGB32_Premultiplied);
    const std::vector<SceneLayer> layers{{{0, 0}, half, {}, 0.5}};
    paintScene(picture, {}, QRect(0, 0, 10, 10), plain({10, 10}, Qt::black), {}, layers);
    EXPECT_NEAR(picture.pixelColor(5, 5).red(), 64, 1);
}

TEST(SceneCompositionTest, ThePaintedPartIsWhatFollowsEachOtherRowByRow) {
    auto picture = plain({20, 30}, Qt::transparent, QImage::Format_ARGB32_Premultiplied);
    EXPECT_TRUE(paintedPart(picture).isEmpty());
    picture.setPixelColor(3, 4, QColor(255, 0, 0, 1));
    picture.setPixelColor(8, 5, Qt::red);
    picture.setPixelColor(10, 29, Qt::red);
    EXPECT_EQ(paintedPart(picture), QRegion(3, 4, 6, 2) + QRegion(10, 29, 1, 1));
}

TEST(SceneCompositionTest, TheCommonestColourIsLookedForWithinTheRegionAlone) {
    auto picture = plain({10, 10}, Qt::green);
    picture.setPixelColor(1, 1, Qt::red);
    picture.setPixelColor(2, 1, Qt::red);
    EXPECT_EQ(commonestColor(picture, QRegion(1, 1, 3, 1)), QColor(Qt::red).rgb());
    EXPECT_EQ(commonestColor(picture, QRegion(0, 0, 10, 10)), QColor(Qt::green).rgb());
    EXPECT_FALSE(commonestColor(picture, QRegion(10, 0, 5, 5)));
}

TEST(SceneCompositionTest, WhatIsOutsideAShapeBecomesTransparent) {
    const auto cut = cutToShape(plain({10, 10}, Qt::red), QRegion(2, 2, 4, 4));
    EXPECT_EQ(cut.pixelColor(2, 2), QColor(Qt::red));
    EXPECT_EQ(cut.pixelColor(6, 2).alpha(), 0);
}

TEST(SceneCompositionTest, APictureOfTheRightSizeStaysItself) {
    const auto picture = plain({10, 10}, Qt::red);
    EXPECT_EQ(fitted(picture, {}, {10, 10}).constBits(), picture.constBits());
}

TEST(SceneCompositionTest, ASmallerPictureIsFilledUpAndALargerOneCutOff) {
    const auto picture = plain({10, 10}, Qt::red);
    const auto larger = fitted(picture, {3, 2}, {14, 12});
    EXPECT_EQ(larger.size(), QSize(14, 12));
    EXPECT_EQ(larger.pixelColor(3, 2), QColor(Qt::red));
    EXPECT_EQ(larger.pixelColor(2, 2).alpha(), 0);
    EXPECT_EQ(larger.pixelColor(13, 5).alpha(), 0);
    const auto smaller = fitted(picture, {}, {4, 5});
    EXPECT_EQ(smaller.size(), QSize(4, 5));
    EXPECT_EQ(smaller.format(), QImage::Format_RGB32);
}

} // namespace
} // namespace kestrova
