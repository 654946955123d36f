#include "Platform/x11/ScreenGeometry.h"

#include <gtest/gtest.h>

#include <random>

namespace kestrova {
namespace {

NativeDisplay display(std::uint32_t identifier, QPoint origin, QSize pixels, double scale = 1) {
    const auto size = (QSizeF(pixels) / scale).toSize();
    return {.identifier = identifier,
            .origin = origin,
            .size = size,
            .available = QRect(QPoint(), size),
            .scale = scale};
}

/// A display of 1920 by 1080 pixels, and right of it one of 2560 by 1440 at twice the scale.
ScreenGeometry mixedPair() {
    return ScreenGeometry{{display(1, {0, 0}, {1920, 1080}), display(2, {1920, 0}, {2560, 1440}, 2)}};
}

TEST(ScreenGeometryTest, ThePrimaryDisplayStandsAtTheOriginWithYUpwards) {
    const auto screens =
        ScreenGeometry{{display(1, {0, 0}, {1920, 1080}), display(2, {1920, 200}, {1280, 1024})}, 1}
            .screens();
    EXPECT_EQ(screens[1].frame, (ScreenRect{0, 0, 1280, 1024}));
    EXPECT_EQ(screens[0].frame, (ScreenRect{-1920, 1024 + 200 - 1080, 1920, 1080}));
}

TEST(ScreenGeometryTest, ADisplayKeepsItsPixelCornerAndItsSizeIsDividedByItsScale) {
    const auto screens = mixedPair().screens();
    EXPECT_EQ(screens[1].frame, (ScreenRect{1920, 1080 - 720, 1280, 720}));
    EXPECT_EQ(screens[1].scale, 2);
}

TEST(ScreenGeometryTest, ThePanelAtTheTopIsMissingFromTheVisibleFramesTop) {
    auto panel = display(1, {0, 0}, {1000, 800});
    panel.available = {0, 30, 1000, 770};
    const auto screen = ScreenGeometry{{panel}}.screens().front();
    EXPECT_EQ(screen.visibleFrame, (ScreenRect{0, 0, 1000, 770}));
}

TEST(ScreenGeometryTest, AWindowsPlaceIsTurnedOverAndBack) {
    const ScreenRect place{.x = 480, .y = 310, .width = 960, .height = 540};
    const auto geometry = mixedPair();
    EXPECT_EQ(geometry.rectOfToolkit(geometry.windowPlace(place)->geometry), place);
    EXPECT_EQ(geometry.rectOfToolkit({1920, 100, 960, 540}), (ScreenRect{1920, 1080 - 640, 960, 540}));
}

TEST(ScreenGeometryTest, WithoutDisplaysThereIsNothing) {
    const ScreenGeometry none{{}};
    EXPECT_TRUE(none.screens().empty());
    EXPECT_FALSE(none.primaryScreen());
    EXPECT_FALSE(none.windowPlace({0, 0, 10, 10}));
    EXPECT_EQ(none.rectOfToolkit({1, 2, 3, 4}), (ScreenRect{1, 2, 3, 4}));
    EXPECT_FALSE(none.screenOfPixels({0, 0, 10, 10}));
    EXPECT_EQ(none.pointOfToolkit({3, 4}), QPointF());
}

TEST(ScreenGeometryTest, TheOutermostPixelsLieWithinTheirDisplay) {
    const auto pair = mixedPair();
    EXPECT_EQ(pair.pointOfPixel({0, 0}), QPointF(0.5, 1079.5));
    EXPECT_EQ(pair.pointOfPixel({1919, 1079}), QPointF(1919.5, 0.5));
    EXPECT_EQ(pair.pointOfPixel({1920, 0}), QPointF(1920.25, 1079.75));
    EXPECT_EQ(pair.pointOfPixel({4479, 1439}), QPointF(3199.75, 360.25));
}

TEST(ScreenGeometryTest, APositionThatTheToolkitRoundsBeyondTheEdgeLiesWithinTheDisplay) {
    const auto frame = mixedPair().screens()[1].frame;
    EXPECT_TRUE(frame.contains(mixedPair().pointOfToolkit({1920 + 1280, 720})));
    EXPECT_TRUE(frame.contains(mixedPair().pointOfToolkit({1920 + 1280, 0})));
}

TEST(ScreenGeometryTest, AWindowLiesOnTheDisplayThatHasMostOfIt) {
    EXPECT_EQ(mixedPair().windowPlace({1800, 800, 400, 100}), (WindowPlace{2, {1800, 180, 400, 100}}));
    EXPECT_EQ(mixedPair().windowPlace({1600, 800, 400, 100}), (WindowPlace{1, {1600, 180, 400, 100}}));
    EXPECT_EQ(mixedPair().windowPlace({5000, 800, 10, 10})->screen, 2U);
}

TEST(ScreenGeometryTest, AWindowOfTheHostIsOnTheDisplayThatHasMostOfItsPixels) {
    EXPECT_EQ(mixedPair().screenOfPixels({1900, 0, 100, 100})->identifier, 2U);
    EXPECT_EQ(mixedPair().screenOfPixels({1800, 0, 200, 100})->identifier, 1U);
}

/// Displays side by side or on top of each other, of any size and scale, one of them primary.
ScreenGeometry randomLayout(std::mt19937& random, std::vector<NativeDisplay>& displays) {
    const auto number = [&random](int least, int most) {
        return std::uniform_int_distribution(least, most)(random);
    };
    QPoint next(number(-3000, 3000), number(-3000, 3000));
    const bool isRow = number(0, 1) == 1;
    const int count = number(1, 4);
    for (int i = 0; i < count; ++i) {
        const int scale = number(1, 3);
        const QSize pixels = QSize(number(200, 1500), number(200, 1500)) * scale;
        displays.push_back(display(static_cast<std::uint32_t>(i), next, pixels, scale));
        next +=
            isRow ? QPoint(pixels.width(), number(-100, 100)) : QPoint(number(-100, 100), pixels.height());
    }
    return ScreenGeometry(displays, static_cast<std::size_t>(number(0, count - 1)));
}

TEST(ScreenGeometryTest, InAnyLayoutEachPixelGoesToAPointOfItsDisplayAndBack) {
    std::mt19937 random(20);
    for (int layout = 0; layout < 300; ++layout) {
        std::vector<NativeDisplay> displays;
        const auto geometry = randomLayout(random, displays);
        const auto screens = geometry.screens();
        EXPECT_EQ(geometry.primaryScreen()->frame.x, 0);
        EXPECT_EQ(geometry.primaryScreen()->frame.y, 0);
        for (std::size_t i = 0; i < displays.size(); ++i) {
            const auto pixels = displays[i].size * displays[i].scale;
            for (const QPoint corner :
                 {QPoint(0, 0), QPoint(pixels.width() - 1, 0), QPoint(0, pixels.height() - 1),
                  QPoint(pixels.width() - 1, pixels.height() - 1),
                  QPoint(pixels.width() / 3, pixels.height() / 2)}) {
                const auto pixel = displays[i].origin + corner;
                const auto point = geometry.pointOfPixel(pixel);
                EXPECT_TRUE(screens[i].frame.contains(point));
                EXPECT_EQ(geometry.pixelOfPoint(point), pixel);
            }
        }
    }
}

TEST(ScreenGeometryTest, InAnyLayoutAWindowThatFillsADisplayIsPutOntoIt) {
    std::mt19937 random(21);
    for (int layout = 0; layout < 300; ++layout) {
        std::vector<NativeDisplay> displays;
        const auto geometry = randomLayout(random, displays);
        const auto screens = geometry.screens();
        for (std::size_t i = 0; i < displays.size(); ++i) {
            EXPECT_EQ(geometry.windowPlace(screens[i].frame),
                      (WindowPlace{displays[i].identifier, QRect(displays[i].origin, displays[i].size)}));
        }
    }
}

} // namespace
} // namespace kestrova
