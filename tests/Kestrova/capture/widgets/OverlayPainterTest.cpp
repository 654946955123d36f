#include "Kestrova/capture/widgets/OverlayPainter.h"

#include "Kestrova/look/Contrast.h"

#include <QImage>
#include <QPainter>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <cmath>

namespace kestrova {
namespace {

using Ground = OverlayPainter::Ground;

constexpr ScreenRect bounds{0, 0, 320, 200};

class OverlayPainterTest : public testing::TestWithParam<double> {
protected:
    double scale() const { return GetParam(); }
    int pixel(double points) const { return static_cast<int>(std::lround(points * scale())); }

    QImage blank() const {
        QImage image(pixel(bounds.width), pixel(bounds.height), QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale());
        image.fill(Qt::transparent);
        return image;
    }
    void paint(QImage& image, const OverlayDrawing& drawing, const QRegion& region,
               Ground ground = Ground::transparent) const {
        QPainter onImage(&image);
        onImage.setClipRegion(region);
        painter.paint(onImage, drawing, ground, text, region);
    }
    QImage painted(const OverlayDrawing& drawing, Ground ground = Ground::transparent) const {
        auto image = blank();
        paint(image, drawing, painter.toolkitRect(bounds), ground);
        return image;
    }
    OverlayBadge badge(ScreenRect frame, const QString& words,
                       OverlayFill fill = {OverlayFill::Color::black, 0.7}) const {
        return {.frame = frame,
                .cornerRadius = 4,
                .fill = fill,
                .text = words,
                .font = OverlayFont::medium11,
                .textOrigin = {frame.x + 6, frame.y + 3}};
    }

    OverlayPainter painter{QSizeF(bounds.width, bounds.height), GetParam()};
    OverlayText text;
};

/// A rectangle whose edges lie between pixels at every scale of the tests; y upwards.
constexpr ScreenRect selection{40, 20, 120, 100};
constexpr ScreenRect strokeOf(const ScreenRect& rect) {
    return {rect.x - 0.5, rect.y - 0.5, rect.width + 1, rect.height + 1};
}

TEST_P(OverlayPainterTest, WithoutAHoleEveryPixelIsDimmed) {
    const auto image = painted({});
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            ASSERT_EQ(image.pixel(x, y), qRgba(0, 0, 0, 89)) << x << ',' << y;
}

TEST_P(OverlayPainterTest, TheHoleIsClearToThePixelAndTheRestIsDimmed) {
    OverlayDrawing drawing;
    drawing.hole = selection;
    const auto image = painted(drawing);
    const QRect hole(QPoint(pixel(40), pixel(80)), QPoint(pixel(160) - 1, pixel(180) - 1));
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            ASSERT_EQ(qAlpha(image.pixel(x, y)), hole.contains(x, y) ? 0 : 89) << x << ',' << y;
}

TEST_P(OverlayPainterTest, TheStrokeRunsAroundTheSelectionAndLeavesItsPixelsAlone) {
    OverlayDrawing drawing;
    drawing.hole = selection;
    drawing.stroke = strokeOf(selection);
    const auto image = painted(drawing);
    const int left = pixel(40);
    const int right = pixel(160);
    const int top = pixel(80);
    const int bottom = pixel(180);
    const auto white = qRgba(255, 255, 255, 255);
    for (int y = top - 1; y <= bottom; ++y) {
        EXPECT_EQ(image.pixel(left - 1, y), white);
        EXPECT_EQ(image.pixel(right, y), white);
    }
    for (int x = left; x < right; ++x) {
        EXPECT_EQ(image.pixel(x, top - 1), white);
        EXPECT_EQ(image.pixel(x, bottom), white);
        EXPECT_EQ(qAlpha(image.pixel(x, top)), 0);
        EXPECT_EQ(qAlpha(image.pixel(x, bottom - 1)), 0);
    }
    const int width = static_cast<int>(std::lround(scale()));
    EXPECT_EQ(image.pixel(left - 1 - width, top), qRgba(0, 0, 0, 89)) << "it is one point wide";
}

TEST_P(OverlayPainterTest, AHoleOutsideTheDisplayLeavesItDimmed) {
    OverlayDrawing drawing;
    drawing.hole = ScreenRect{500, 20, 100, 100};
    drawing.stroke = strokeOf(*drawing.hole);
    EXPECT_EQ(painted(drawing), painted({}));
}

TEST_P(OverlayPainterTest, AHoleThatReachesBeyondTheDisplayIsClearUpToItsEdge) {
    OverlayDrawing drawing;
    drawing.hole = ScreenRect{200, 100, 500, 500};
    const auto image = painted(drawing);
    EXPECT_EQ(qAlpha(image.pixel(image.width() - 1, 0)), 0);
    EXPECT_EQ(qAlpha(image.pixel(pixel(200), pixel(100) - 1)), 0);
    EXPECT_EQ(qAlpha(image.pixel(pixel(200) - 1, 0)), 89);
    EXPECT_EQ(qAlpha(image.pixel(image.width() - 1, pixel(100))), 89);
}

TEST_P(OverlayPainterTest, TheFrozenPictureShowsThroughTheHoleAndDimmedAroundIt) {
    QImage frozen(pixel(bounds.width), pixel(bounds.height), QImage::Format_RGB32);
    for (int y = 0; y < frozen.height(); ++y)
        for (int x = 0; x < frozen.width(); ++x)
            frozen.setPixel(x, y, qRgb(x % 256, y % 256, 200));
    OverlayDrawing drawing;
    drawing.background = frozen;
    drawing.hole = selection;
    const auto image = painted(drawing);
    for (const QPoint place : {QPoint(pixel(40), pixel(80)), QPoint(pixel(160) - 1, pixel(180) - 1),
                               QPoint(pixel(100), pixel(120))})
        EXPECT_EQ(image.pixel(place), frozen.pixel(place)) << "not a pixel moved, none scaled";
    for (const QPoint place :
         {QPoint(0, 0), QPoint(pixel(40) - 1, pixel(100)), QPoint(frozen.width() - 1, frozen.height() - 1)}) {
        EXPECT_EQ(qAlpha(image.pixel(place)), 255);
        EXPECT_NEAR(qRed(image.pixel(place)), qRed(frozen.pixel(place)) * 0.65, 1.5);
        EXPECT_NEAR(qBlue(image.pixel(place)), 130, 1.5);
    }
}

TEST_P(OverlayPainterTest, APictureOfAnotherSizeOrScaleStillFillsTheDisplay) {
    QImage frozen(64, 40, QImage::Format_RGB32);
    frozen.setDevicePixelRatio(2);
    frozen.fill(Qt::red);
    OverlayDrawing drawing;
    drawing.background = frozen;
    const auto image = painted(drawing);
    for (const QPoint place :
         {QPoint(0, 0), QPoint(image.width() - 1, image.height() - 1), image.rect().center()}) {
        EXPECT_NEAR(qRed(image.pixel(place)), 166, 1);
        EXPECT_EQ(qAlpha(image.pixel(place)), 255);
    }
}

TEST_P(OverlayPainterTest, WithoutAPictureAnOpaqueGroundIsBlack) {
    EXPECT_EQ(painted({}, Ground::opaque).pixel(5, 5), qRgba(0, 0, 0, 255));
}

TEST_P(OverlayPainterTest, ABadgeLiesWhereItIsToldWithItsText) {
    OverlayDrawing drawing;
    drawing.badges.push_back(badge({80, 40, 80, 20}, u"320 × 180"_qs));
    const auto image = painted(drawing);
    const auto ground = image.pixel(pixel(82), pixel(150));
    EXPECT_NEAR(qAlpha(ground), 255 * (1 - 0.3 * 0.65), 2) << "black at 0.7 over the dimming";
    EXPECT_EQ(image.pixel(pixel(80) - 1, pixel(150)), qRgba(0, 0, 0, 89));
    EXPECT_EQ(image.pixel(pixel(160), pixel(150)), qRgba(0, 0, 0, 89));
    EXPECT_EQ(image.pixel(pixel(120), pixel(140) - 1), qRgba(0, 0, 0, 89)) << "above";
    EXPECT_EQ(image.pixel(pixel(120), pixel(160)), qRgba(0, 0, 0, 89)) << "below";
    EXPECT_LT(qAlpha(image.pixel(pixel(80), pixel(140))), 150) << "the corner is round";
    QRect words;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qRed(image.pixel(x, y)) > 200)
                words |= QRect(x, y, 1, 1);
    ASSERT_FALSE(words.isEmpty());
    EXPECT_GE(words.left(), pixel(86));
    EXPECT_LE(words.left(), pixel(89));
    EXPECT_GT(words.top(), pixel(140));
    EXPECT_LT(words.bottom(), pixel(157) + 1) << "its lower left corner is the told one";
}

TEST_P(OverlayPainterTest, WordsOnEveryBadgeHaveContrastOverEveryDesktop) {
    using Color = OverlayFill::Color;
    const OverlayFill fills[]{
        {Color::black, 0.6}, {Color::black, 0.7}, {Color::black, 0.75}, {Color::systemBlue, 0.85}};
    for (const auto& fill : fills)
        for (const QColor desktop : {QColor(Qt::white), QColor(Qt::black), QColor(Qt::yellow)}) {
            OverlayDrawing drawing;
            drawing.badges.push_back(badge({80, 40, 80, 20}, {}, fill));
            QImage picture(blank().size(), QImage::Format_RGB32);
            picture.fill(desktop);
            auto overlay = painted(drawing);
            overlay.setDevicePixelRatio(1);
            QPainter(&picture).drawImage(0, 0, overlay);
            EXPECT_GE(contrast(Qt::white, picture.pixelColor(pixel(120), pixel(150))), 4.5)
                << fill.alpha << ' ' << qPrintable(desktop.name());
        }
}

/// Any state that a drag or a hover can lead to.
OverlayDrawing randomDrawing(QRandomGenerator& random, const OverlayBadge& badge, const QImage& frozen) {
    const auto length = [&random](double most) { return std::round(random.bounded(most) * 4) / 4; };
    OverlayDrawing drawing;
    if (random.bounded(8) == 0)
        drawing.background = frozen;
    if (random.bounded(4) > 0) {
        drawing.hole = ScreenRect{length(380) - 40, length(240) - 30, 0.25 + length(200), 0.25 + length(150)};
        if (random.bounded(2) == 0)
            drawing.stroke = strokeOf(*drawing.hole);
    }
    for (int count = random.bounded(3); count > 0; --count) {
        auto moved = badge;
        moved.frame.x = length(340) - 30;
        moved.frame.y = length(220) - 10;
        moved.textOrigin = {moved.frame.x + 6, moved.frame.y + 3};
        drawing.badges.push_back(moved);
    }
    return drawing;
}

TEST_P(OverlayPainterTest, PaintingOnlyWhatChangedGivesThePictureThatPaintingAllGives) {
    QRandomGenerator random(7);
    QImage frozen(pixel(bounds.width), pixel(bounds.height), QImage::Format_RGB32);
    frozen.fill(QColor(200, 100, 50));
    const auto words = badge({0, 0, 70, 20}, u"12 × 34"_qs);
    OverlayDrawing before;
    auto shown = painted(before);
    for (int step = 0; step < 60; ++step) {
        const auto after = randomDrawing(random, words, frozen);
        QRegion changed;
        for (const auto& rect : changedRects(before, after, bounds))
            changed += painter.toolkitRect(rect);
        if (!changed.isEmpty()) {
            // As the backing store of a window does.
            QPainter clearing(&shown);
            clearing.setCompositionMode(QPainter::CompositionMode_Source);
            for (const auto& rect : changed)
                clearing.fillRect(rect, Qt::transparent);
            clearing.end();
            paint(shown, after, changed);
        }
        ASSERT_EQ(shown, painted(after)) << "step " << step;
        before = after;
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, OverlayPainterTest, testing::Values(1.0, 1.25, 2.0));

} // namespace
} // namespace kestrova
