#include "Kestrova/capture/ScreenshotCapture.h"

#include "tests/Kestrova/capture/ScreenRectPrinting.h"
#include "tests/support/FakeScreens.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>

namespace kestrova {

namespace {

using namespace ScreenshotCapture;

constexpr std::array allScales{1.0, 1.25, 1.5, 1.75, 2.0, 3.0};
constexpr std::array wholeScales{1.0, 2.0, 3.0};

// A rounding error, not a pixel.
constexpr double hair = 1e-9;

/// The error that `act` throws, if it throws one.
template<class Act>
std::optional<CaptureError::Case> captureErrorOf(Act act) {
    try {
        act();
    } catch (const CaptureError& error) {
        return error.error();
    }
    return std::nullopt;
}

TEST(CropPlanTest, TheOriginIsTheDisplaysUpperLeftCorner) {
    const auto plan = cropPlan({-900, 300, 200, 100}, {-1000, 200, 1000, 800}, 2);
    ASSERT_TRUE(plan);
    EXPECT_EQ(plan->sourceRect, QRectF(100, 600, 200, 100));
    EXPECT_EQ(plan->pixels, QSize(400, 200));
}

TEST(CropPlanTest, WhatLiesOutsideTheDisplayIsCutOff) {
    const auto plan = cropPlan({-50, 750, 200, 100}, {0, 0, 1000, 800}, 1);
    ASSERT_TRUE(plan);
    EXPECT_EQ(plan->sourceRect, QRectF(0, 0, 150, 50));
    EXPECT_EQ(plan->pixels, QSize(150, 50));
}

TEST(CropPlanTest, AnEmptyRectangleGivesNothing) {
    EXPECT_EQ(cropPlan({10, 10, 0, 5}, {0, 0, 100, 100}, 1), std::nullopt);
    EXPECT_EQ(cropPlan({10, 10, 5, 0}, {0, 0, 100, 100}, 1), std::nullopt);
    EXPECT_EQ(cropPlan({10, 10, 5, 5}, {0, 0, 100, 0}, 1), std::nullopt);
    EXPECT_EQ(cropPlan({10, 10, 5, 5}, {}, 1), std::nullopt);
}

TEST(CropPlanTest, RectanglesThatDoNotMeetGiveNothing) {
    EXPECT_EQ(cropPlan({200, 10, 5, 5}, {0, 0, 100, 100}, 1), std::nullopt);
    EXPECT_EQ(cropPlan({100, 10, 5, 5}, {0, 0, 100, 100}, 1), std::nullopt);
}

TEST(CropPlanTest, AScaleThatIsNotAboveZeroGivesNothing) {
    for (const double scale :
         {0.0, -1.0, -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(cropPlan({10, 10, 5, 5}, {0, 0, 100, 100}, scale), std::nullopt);
}

TEST(CropPlanTest, APointAtScaleTwoIsTwoByTwoPixels) {
    EXPECT_EQ(cropPlan({7, 9, 1, 1}, {0, 0, 100, 100}, 2)->pixels, QSize(2, 2));
}

struct RoundingRow {
    double scale;
    double length;
    int pixels;
};

class CropPlanRounding : public testing::TestWithParam<RoundingRow> {};

TEST_P(CropPlanRounding, HalvesGoAwayFromZeroAndNothingFallsBelowOne) {
    const auto& row = GetParam();
    const auto plan = cropPlan({3.3, 4.7, row.length, row.length}, {0, 0, 100, 100}, row.scale);
    ASSERT_TRUE(plan);
    EXPECT_EQ(plan->pixels, QSize(row.pixels, row.pixels));
}

INSTANTIATE_TEST_SUITE_P(CropPlanTest, CropPlanRounding,
                         testing::Values(RoundingRow{1.25, 2, 3}, RoundingRow{1.25, 6, 8},
                                         RoundingRow{1.5, 1, 2}, RoundingRow{1.5, 3, 5},
                                         RoundingRow{1.5, 5, 8}, RoundingRow{1.75, 2, 4},
                                         RoundingRow{1.25, 0.4, 1}, RoundingRow{1.25, 1.2, 2},
                                         RoundingRow{1.25, 2.8, 4}, RoundingRow{1, 2.4999, 2},
                                         RoundingRow{1, 0.1, 1}, RoundingRow{2, 0.2, 1},
                                         RoundingRow{3, 5.5, 17}));

/// Displays and rectangles as chance will have them, the same at every run.
class RandomRects {
public:
    double pick(const auto& from) {
        return from[std::uniform_int_distribution<std::size_t>(0, from.size() - 1)(m_engine)];
    }
    double whole(int from, int to) { return std::uniform_int_distribution(from, to)(m_engine); }
    double any(double from, double to) { return std::uniform_real_distribution(from, to)(m_engine); }

    /// Whole pixels wide and high.
    ScreenRect display(double scale) {
        return {whole(-3000, 3000), whole(-3000, 3000), whole(300, 4000) / scale, whole(300, 4000) / scale};
    }
    /// Within, across an edge, around or beside it.
    ScreenRect rectAround(const ScreenRect& display) {
        const double margin = 200;
        return {any(display.x - margin, display.maxX() + margin),
                any(display.y - margin, display.maxY() + margin), any(0.1, display.width + 2 * margin),
                any(0.1, display.height + 2 * margin)};
    }

private:
    std::mt19937 m_engine{20'240'229};
};

TEST(CropPlanTest, EveryPlanLiesOnItsDisplayAndIsAsLargeAsWhatBothCover) {
    RandomRects random;
    int plans = 0;
    for (int round = 0; round < 5000; ++round) {
        const double scale = random.pick(allScales);
        const auto display = random.display(scale);
        const auto rect = random.rectAround(display);
        const double width = std::min(rect.maxX(), display.maxX()) - std::max(rect.x, display.x);
        const double height = std::min(rect.maxY(), display.maxY()) - std::max(rect.y, display.y);
        SCOPED_TRACE(testing::PrintToString(rect) + " on " + testing::PrintToString(display));

        const auto plan = cropPlan(rect, display, scale);
        ASSERT_EQ(plan.has_value(), width > 0 && height > 0);
        if (!plan)
            continue;
        ++plans;
        const auto& source = plan->sourceRect;
        EXPECT_GE(source.left(), 0);
        EXPECT_GE(source.top(), -hair);
        EXPECT_LE(source.right(), display.width + hair);
        EXPECT_LE(source.bottom(), display.height + hair);
        EXPECT_NEAR(source.width(), width, hair);
        EXPECT_NEAR(source.height(), height, hair);
        EXPECT_NEAR(source.left(), std::max(rect.x, display.x) - display.x, hair);
        EXPECT_NEAR(source.bottom(), display.maxY() - std::max(rect.y, display.y), hair);
        EXPECT_LE(std::abs(plan->pixels.width() - std::max(1.0, scale * width)), 0.5 + hair);
        EXPECT_LE(std::abs(plan->pixels.height() - std::max(1.0, scale * height)), 0.5 + hair);
    }
    EXPECT_GT(plans, 1000);
    EXPECT_LT(plans, 4900);
}

TEST(CropPlanTest, AtWholeScalesNeighboursCoverTheirDisplayWithoutGapOrOverlap) {
    RandomRects random;
    for (int round = 0; round < 2000; ++round) {
        const double scale = random.pick(wholeScales);
        const ScreenRect display{random.whole(-3000, 3000), random.whole(-3000, 3000),
                                 random.whole(100, 3000), random.whole(100, 3000)};
        const double left = random.whole(1, int(display.width) - 1);
        const double lower = random.whole(1, int(display.height) - 1);
        SCOPED_TRACE(testing::PrintToString(display));

        const auto all = cropPlan(display, display, scale);
        const auto lowerLeft = cropPlan({display.x, display.y, left, lower}, display, scale);
        const auto lowerRight =
            cropPlan({display.x + left, display.y, display.width - left, lower}, display, scale);
        const auto upperLeft =
            cropPlan({display.x, display.y + lower, left, display.height - lower}, display, scale);
        ASSERT_TRUE(all && lowerLeft && lowerRight && upperLeft);
        EXPECT_EQ(lowerLeft->sourceRect.right(), lowerRight->sourceRect.left());
        EXPECT_EQ(upperLeft->sourceRect.bottom(), lowerLeft->sourceRect.top());
        EXPECT_EQ(lowerLeft->pixels.width() + lowerRight->pixels.width(), all->pixels.width());
        EXPECT_EQ(lowerLeft->pixels.height() + upperLeft->pixels.height(), all->pixels.height());
        EXPECT_EQ(all->sourceRect, QRectF(0, 0, display.width, display.height));
    }
}

// --- What was frozen ---------------------------------------------------------------------------------------

/// Every pixel tells where it is.
QImage chart(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            line[x] = qRgb(x % 256, y % 256, x / 256 * 16 + y / 256);
    }
    return image;
}

QPoint placeOf(QRgb pixel) {
    return {qRed(pixel) + qBlue(pixel) / 16 * 256, qGreen(pixel) + qBlue(pixel) % 16 * 256};
}

class CropFrozenTest : public testing::Test {
protected:
    void setScreen(const ScreenRect& frame, double scale) {
        screens.all = {{.identifier = 1, .frame = frame, .visibleFrame = frame, .scale = scale}};
    }

    FakeScreens screens;
};

TEST_F(CropFrozenTest, ThePartIsCutFromTheUpperLeftCornerDownwards) {
    setScreen({100, -50, 400, 300}, 2);
    const auto cut = cropFrozen(chart({800, 600}), {110, 200, 50, 40}, screens);
    EXPECT_EQ(cut.size(), QSize(100, 80));
    EXPECT_EQ(placeOf(cut.pixel(0, 0)), QPoint(20, 20));
    EXPECT_EQ(placeOf(cut.pixel(99, 79)), QPoint(119, 99));
}

TEST_F(CropFrozenTest, WhatLiesOutsideTheScreenIsCutOff) {
    setScreen({0, 0, 400, 300}, 1);
    const auto cut = cropFrozen(chart({400, 300}), {-10, 250, 30, 100}, screens);
    EXPECT_EQ(cut.size(), QSize(20, 50));
    EXPECT_EQ(placeOf(cut.pixel(0, 0)), QPoint(0, 0));
}

TEST_F(CropFrozenTest, PlaceAndSizeAreRoundedEachByItself) {
    setScreen({0, 0, 400, 300}, 1.5);
    // From 1.5 to 6 pixels across: rounded edges would be 4 pixels apart.
    const auto cut = cropFrozen(chart({600, 450}), {1, 300 - 3 - 5, 3, 5}, screens);
    EXPECT_EQ(placeOf(cut.pixel(0, 0)), QPoint(2, 5));
    EXPECT_EQ(cut.size(), QSize(5, 8));
}

TEST_F(CropFrozenTest, APictureThatIsSmallerThanItsScreenCutsThePartShort) {
    setScreen({0, 0, 400, 300}, 2);
    const auto cut = cropFrozen(chart({799, 599}), {390, 0, 10, 10}, screens);
    EXPECT_EQ(cut.size(), QSize(19, 19));
    EXPECT_EQ(placeOf(cut.pixel(0, 0)), QPoint(780, 580));
}

TEST_F(CropFrozenTest, APartOutsideThePictureIsEmpty) {
    setScreen({0, 0, 400, 300}, 1);
    const auto image = chart({100, 100});
    EXPECT_EQ(captureErrorOf([&] {
                  cropFrozen(image, {200, 250, 50, 50}, screens);
              }),
              CaptureError::Case::emptyRect);
    EXPECT_EQ(captureErrorOf([&] {
                  cropFrozen(QImage(), {0, 0, 50, 50}, screens);
              }),
              CaptureError::Case::emptyRect);
}

TEST_F(CropFrozenTest, APartThatRoundsToNothingIsEmpty) {
    setScreen({0, 0, 400, 300}, 1);
    EXPECT_EQ(captureErrorOf([&] {
                  cropFrozen(chart({400, 300}), {10, 10, 0.4, 5}, screens);
              }),
              CaptureError::Case::emptyRect);
}

TEST_F(CropFrozenTest, ARectangleOutsideEveryScreenFallsBackToTheMainScreenAndIsEmpty) {
    setScreen({0, 0, 400, 300}, 1);
    screens.main = screens.all.front();
    EXPECT_EQ(captureErrorOf([&] {
                  cropFrozen(chart({400, 300}), {900, 10, 20, 20}, screens);
              }),
              CaptureError::Case::emptyRect);
}

TEST_F(CropFrozenTest, WithoutAScreenThereIsNoDisplay) {
    screens.all.clear();
    EXPECT_EQ(captureErrorOf([&] {
                  cropFrozen(chart({400, 300}), {0, 0, 20, 20}, screens);
              }),
              CaptureError::Case::noDisplay);
}

TEST_F(CropFrozenTest, TheFirstScreenThatARectangleTouchesGivesTheScale) {
    screens.all = {{.identifier = 1, .frame = {0, 0, 400, 300}, .visibleFrame = {}, .scale = 2},
                   {.identifier = 2, .frame = {400, 0, 400, 300}, .visibleFrame = {}, .scale = 1}};
    EXPECT_EQ(cropFrozen(chart({800, 600}), {390, 10, 20, 20}, screens).size(), QSize(20, 40));
    EXPECT_EQ(cropFrozen(chart({400, 300}), {400, 10, 20, 20}, screens).size(), QSize(20, 20));
}

TEST_F(CropFrozenTest, AScreenThatARectangleTouchesComesBeforeTheMainOne) {
    screens.all = {{.identifier = 1, .frame = {0, 0, 400, 300}, .visibleFrame = {}, .scale = 2},
                   {.identifier = 2, .frame = {400, 0, 400, 300}, .visibleFrame = {}, .scale = 1}};
    screens.main = screens.all.back();
    EXPECT_EQ(cropFrozen(chart({800, 600}), {390, 10, 10, 10}, screens).size(), QSize(20, 20));
    screens.main = screens.all.front();
    EXPECT_EQ(cropFrozen(chart({400, 300}), {400, 10, 10, 10}, screens).size(), QSize(10, 10));
}

TEST_F(CropFrozenTest, AtWholeScalesItCutsWhatThePlanWouldTake) {
    RandomRects random;
    for (int round = 0; round < 300; ++round) {
        const double scale = random.pick(wholeScales);
        const ScreenRect frame{random.whole(-500, 500), random.whole(-500, 500), random.whole(50, 150),
                               random.whole(50, 150)};
        setScreen(frame, scale);
        const ScreenRect rect{frame.x + random.whole(-20, int(frame.width) - 1),
                              frame.y + random.whole(-20, int(frame.height) - 1), random.whole(25, 180),
                              random.whole(25, 180)};
        SCOPED_TRACE(testing::PrintToString(rect) + " on " + testing::PrintToString(frame));

        const auto plan = cropPlan(rect, frame, scale);
        ASSERT_TRUE(plan);
        const auto cut =
            cropFrozen(chart({int(scale * frame.width), int(scale * frame.height)}), rect, screens);
        EXPECT_EQ(cut.size(), plan->pixels);
        EXPECT_EQ(placeOf(cut.pixel(0, 0)), (plan->sourceRect.topLeft() * scale).toPoint());
    }
}

// --- The scale of a window ---------------------------------------------------------------------------------

class WindowScaleTest : public testing::Test {
protected:
    WindowScaleTest() {
        screens.all = {{.identifier = 1, .frame = {0, 0, 1000, 800}, .visibleFrame = {}, .scale = 1},
                       // Above the primary one.
                       {.identifier = 2, .frame = {0, 800, 1000, 600}, .visibleFrame = {}, .scale = 2}};
        screens.main = Screen{.identifier = 3, .frame = {}, .visibleFrame = {}, .scale = 1.5};
    }

    double scaleAt(const QRectF& frame) const {
        ShareableWindow window;
        window.frame = frame;
        return windowScale(window, screens);
    }

    FakeScreens screens;
};

TEST_F(WindowScaleTest, ItIsThatOfTheScreenUnderTheWindow) {
    EXPECT_EQ(scaleAt({10, 10, 100, 100}), 1);
    EXPECT_EQ(scaleAt({10, -300, 100, 100}), 2);
}

TEST_F(WindowScaleTest, TheFirstScreenThatTheWindowTouchesCounts) {
    EXPECT_EQ(scaleAt({10, -99, 100, 100}), 1);
    EXPECT_EQ(scaleAt({10, -100, 100, 100}), 2);
}

TEST_F(WindowScaleTest, AWindowOnNoScreenHasTheMainScreensScale) {
    EXPECT_EQ(scaleAt({5000, 10, 100, 100}), 1.5);
}

TEST_F(WindowScaleTest, WithoutAMainScreenAWindowOnNoScreenHasTwo) {
    screens.main.reset();
    EXPECT_EQ(scaleAt({5000, 10, 100, 100}), 2);
}

TEST_F(WindowScaleTest, WithoutAScreenItIsTwo) {
    screens.all.clear();
    screens.main.reset();
    EXPECT_EQ(scaleAt({10, 10, 100, 100}), 2);
}

} // namespace
} // namespace kestrova
