#include "Kestrova/capture/DisplayCoordinates.h"

#include "tests/Kestrova/capture/ScreenRectPrinting.h"
#include "tests/support/FakeScreens.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace kestrova {

namespace {

Screen display(std::uint32_t identifier, const ScreenRect& frame, double scale = 1) {
    return {.identifier = identifier, .frame = frame, .visibleFrame = frame, .scale = scale};
}

class DisplayCoordinatesTest : public testing::Test {
protected:
    DisplayCoordinatesTest() { screens.all.clear(); }

    FakeScreens screens;
};

TEST_F(DisplayCoordinatesTest, ThePrimaryDisplayIsTheFirstOneExactlyAtTheOrigin) {
    screens.all = {display(1, {-1920, 0, 1920, 1080}), display(2, {0, 0, 1280, 800}),
                   display(3, {0, 0, 640, 480})};
    screens.main = screens.all.front();
    EXPECT_EQ(primaryDisplay(screens)->identifier, 2u);
}

TEST_F(DisplayCoordinatesTest, WithNoDisplayAtTheOriginTheMainScreenIsThePrimaryOne) {
    screens.all = {display(1, {1, 0, 1920, 1080}), display(2, {0, 0.5, 1280, 800})};
    screens.main = screens.all.back();
    EXPECT_EQ(primaryDisplay(screens)->identifier, 2u);
}

TEST_F(DisplayCoordinatesTest, WithoutAMainScreenEitherTheFirstOneIsThePrimaryOne) {
    screens.all = {display(1, {1, 0, 1920, 1080}), display(2, {0, 1, 1280, 800})};
    EXPECT_EQ(primaryDisplay(screens)->identifier, 1u);
}

TEST_F(DisplayCoordinatesTest, WithNoScreenThereIsNoPrimaryDisplayAndItsHeightCountsAsNone) {
    EXPECT_EQ(primaryDisplay(screens), std::nullopt);
    EXPECT_EQ(appKitToGlobal({10, 20}, screens), QPointF(10, -20));
    EXPECT_EQ(globalToAppKit({10, 20, 30, 40}, screens), (ScreenRect{10, -60, 30, 40}));
}

TEST_F(DisplayCoordinatesTest, BothDirectionsTurnOverAtThePrimaryDisplaysUpperEdge) {
    screens.all = {display(1, {1280, -200, 1920, 1080}), display(2, {0, 0, 1280, 800})};
    EXPECT_EQ(appKitToGlobal({1300, 850}, screens), QPointF(1300, -50));
    EXPECT_EQ(globalToAppKit({1300, -50, 400, 300}, screens), (ScreenRect{1300, 550, 400, 300}));
}

TEST_F(DisplayCoordinatesTest, ACornerThatIsTurnedOverAndBackIsWhereItWas) {
    screens.all = {display(2, {0, 0, 1280, 800})};
    const ScreenRect rect{-30, 120, 50, 70};
    const auto corner = appKitToGlobal({rect.x, rect.maxY()}, screens);
    EXPECT_EQ(globalToAppKit(QRectF(corner, QSizeF(rect.width, rect.height)), screens), rect);
}

TEST(ScreenRectTest, WhatHasNoAreaIsEmpty) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const ScreenRect& rect : {ScreenRect{}, ScreenRect{5, 5, 0, 10}, ScreenRect{5, 5, 10, 0},
                                   ScreenRect{5, 5, -1, 10}, ScreenRect{5, 5, nan, 10}}) {
        EXPECT_TRUE(isEmpty(rect));
        EXPECT_EQ(intersection(rect, {-100, -100, 300, 300}), std::nullopt);
        EXPECT_EQ(intersection({-100, -100, 300, 300}, rect), std::nullopt);
    }
    EXPECT_FALSE(isEmpty({5, 5, 0.1, 0.1}));
}

TEST(ScreenRectTest, TheIntersectionIsWhatBothCover) {
    EXPECT_EQ(intersection({0, 0, 10, 10}, {4, -3, 20, 8}), (ScreenRect{4, 0, 6, 5}));
    EXPECT_EQ(intersection({4, -3, 20, 8}, {0, 0, 10, 10}), (ScreenRect{4, 0, 6, 5}));
}

TEST(ScreenRectTest, RectanglesThatOnlyTouchDoNotMeet) {
    EXPECT_EQ(intersection({0, 0, 10, 10}, {10, 0, 10, 10}), std::nullopt);
    EXPECT_EQ(intersection({0, 0, 10, 10}, {0, 10, 10, 10}), std::nullopt);
    EXPECT_EQ(intersection({0, 0, 10, 10}, {50, 50, 10, 10}), std::nullopt);
}

TEST(ScreenRectTest, ARectangleWithinTheOtherKeepsItsSizeToTheBit) {
    // Its right edge less its left one is not quite its width.
    const ScreenRect within{100.1, 200.7, 0.4, 1.2};
    ASSERT_NE(within.maxX() - within.x, within.width);
    EXPECT_EQ(intersection(within, {0, 0, 1920, 1080}), within);
    EXPECT_EQ(intersection({0, 0, 1920, 1080}, within), within);
}

TEST_F(DisplayCoordinatesTest, TheFirstScreenThatARectangleTouchesCounts) {
    screens.all = {display(1, {0, 0, 1000, 1000}), display(2, {1000, 0, 1000, 1000})};
    EXPECT_EQ(firstScreenTouching({999, 10, 500, 10}, screens)->identifier, 1u);
    EXPECT_EQ(firstScreenTouching({1000, 10, 500, 10}, screens)->identifier, 2u);
    EXPECT_EQ(firstScreenTouching({2000, 10, 500, 10}, screens), std::nullopt);
    EXPECT_EQ(firstScreenTouching({500, 10, 0, 10}, screens), std::nullopt);
}

} // namespace
} // namespace kestrova
