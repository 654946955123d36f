#include "Platform/x11/ScreenGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <utility>

namespace kestrova {
namespace {

NativeDisplay display(std::uint32_t identifier, QPoint origin, QSize pixels, double scale = 1) {
    return {.identifier = identifier,
            .origin = origin,
            .pixels = pixels,
            .available = QRectF(QPointF(), QSizeF(pixels) / scale),
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

TEST(ScreenGeometryTest, APixelsCornerIsMeasuredByTheScaleOfOneDisplayAlsoBeyondIt) {
    const auto geometry = mixedPair();
    EXPECT_EQ(geometry.cornerOfPixel(1, {100, 80}), QPointF(100, 1000));
    EXPECT_EQ(geometry.cornerOfPixel(2, {1920 + 101, 80}), QPointF(1920 + 50.5, 1040));
    EXPECT_EQ(geometry.cornerOfPixel(1, {1919, 80}), QPointF(1919, 1000)) << "another display is beyond it";
    EXPECT_EQ(geometry.cornerOfPixel(1, {1920 + 101, 80}), QPointF(1920 + 101, 1000));
}

TEST(ScreenGeometryTest, AnOutermostPixelStandsForTheEdgeOfTheDesktop) {
    const auto geometry = mixedPair();
    EXPECT_EQ(geometry.cornerOfPixel(1, {0, 0}), QPointF(0, 1080));
    EXPECT_EQ(geometry.cornerOfPixel(1, {100, 1079}), QPointF(100, 0));
    EXPECT_EQ(geometry.cornerOfPixel(2, {1920 + 2559, 1439}), QPointF(1920 + 1280, 360));
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
            const auto pixels = displays[i].pixels;
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
            const auto size = displays[i].pixels / displays[i].scale;
            EXPECT_EQ(geometry.windowPlace(screens[i].frame),
                      (WindowPlace{displays[i].identifier, QRect(displays[i].origin, size)}));
        }
    }
}

/// Displays of any size at the scales that people choose, with points that are not whole.
std::vector<NativeDisplay> fractionalLayout(std::mt19937& random) {
    const auto number = [&random](int least, int most) {
        return std::uniform_int_distribution(least, most)(random);
    };
    std::vector<NativeDisplay> displays;
    QPoint next(number(-3000, 3000), number(-3000, 3000));
    const int count = number(1, 4);
    for (int i = 0; i < count; ++i) {
        const QSize pixels(number(300, 4000), number(300, 4000));
        displays.push_back(display(static_cast<std::uint32_t>(i), next, pixels, number(4, 13) / 4.0));
        next += QPoint(pixels.width(), number(-100, 100));
    }
    return displays;
}

TEST(ScreenGeometryTest, AtAnyScaleTheFrameOfADisplayDividesItsPixelsExactly) {
    std::mt19937 random(22);
    for (int layout = 0; layout < 500; ++layout) {
        const auto displays = fractionalLayout(random);
        const auto screens = ScreenGeometry(displays).screens();
        for (std::size_t i = 0; i < displays.size(); ++i) {
            const auto& [pixels, scale] = std::pair(displays[i].pixels, displays[i].scale);
            EXPECT_EQ(std::trunc(scale * screens[i].frame.width), pixels.width());
            EXPECT_EQ(std::trunc(scale * screens[i].frame.height), pixels.height());
            EXPECT_EQ(std::round(scale * screens[i].frame.width), pixels.width());
        }
    }
}

TEST(ScreenGeometryTest, AtAnyScaleAWindowsFrameDividesItsPixelsExactly) {
    std::mt19937 random(23);
    const auto number = [&random](int least, int most) {
        return std::uniform_int_distribution(least, most)(random);
    };
    for (int layout = 0; layout < 500; ++layout) {
        const auto displays = fractionalLayout(random);
        const ScreenGeometry geometry(displays);
        const auto& display = displays.front();
        const QRect pixels(display.origin + QPoint(number(0, 299), number(0, 299)),
                           QSize(number(1, 3000), number(1, 3000)));
        const auto shown = geometry.screenOfPixels(pixels)->identifier;
        const auto& mostly = *std::ranges::find(displays, shown, &NativeDisplay::identifier);
        const auto frame = geometry.windowFrame(pixels);
        EXPECT_EQ(QSize(int(frame.width() * mostly.scale), int(frame.height() * mostly.scale)),
                  pixels.size());
        const auto corner =
            (frame.topLeft() - (mostly.origin - display.origin)) * mostly.scale + mostly.origin;
        EXPECT_NEAR(corner.x(), pixels.x(), 1e-6);
        EXPECT_NEAR(corner.y(), pixels.y(), 1e-6);
    }
}

TEST(ScreenGeometryTest, AWindowsFrameIsToldFromThePrimaryDisplaysUpperLeftCorner) {
    const auto pair =
        ScreenGeometry{{display(1, {0, 0}, {1920, 1080}), display(2, {1920, 200}, {2560, 1440}, 2)}, 1};
    EXPECT_EQ(pair.windowFrame({1940, 220, 100, 60}), QRectF(10, 10, 50, 30));
    EXPECT_EQ(pair.windowFrame({10, 20, 100, 60}), QRectF(-1910, -180, 100, 60));
}

TEST(ScreenGeometryTest, AWindowAcrossDisplaysIsDividedByTheScaleOfTheOneThatHasMostOfIt) {
    EXPECT_EQ(mixedPair().windowFrame({1700, 100, 300, 60}), QRectF(1700, 100, 300, 60));
    EXPECT_EQ(mixedPair().windowFrame({1900, 100, 300, 60}), QRectF(1910, 50, 150, 30));
}

TEST(ScreenGeometryTest, AWindowOnNoDisplayIsDividedByTheScaleOfTheNearestOne) {
    EXPECT_EQ(mixedPair().windowFrame({100, 2000, 300, 60}), QRectF(100, 2000, 300, 60));
    EXPECT_EQ(mixedPair().windowFrame({2000, 3000, 300, 60}), QRectF(1960, 1500, 150, 30));
}

TEST(ScreenGeometryTest, AWindowsSizeIsTheOneOfItsFrameAtTheScaleOfAnyDisplay) {
    const QRect mostlyScaled(1900, 100, 300, 60);
    EXPECT_TRUE(mixedPair().isSizeOfWindow(mostlyScaled, {300, 60}));
    EXPECT_TRUE(mixedPair().isSizeOfWindow(mostlyScaled, {150, 30}));
    EXPECT_FALSE(mixedPair().isSizeOfWindow(mostlyScaled, {600, 120}));
    EXPECT_FALSE(mixedPair().isSizeOfWindow(mostlyScaled, {300, 61}));
}

TEST(ScreenGeometryTest, APictureBeginsAtTheNearestPixelOfItsCorner) {
    const auto pair = mixedPair();
    EXPECT_EQ(pair.pixelsOfPicture(2, {}, {2560, 1440}), QRect(1920, 0, 2560, 1440));
    EXPECT_EQ(pair.pixelsOfPicture(2, QRectF(10.3, 20.2, 5, 5), {10, 10}), QRect(1941, 40, 10, 10));
    EXPECT_FALSE(pair.pixelsOfPicture(3, {}, {10, 10}));
}

TEST(ScreenGeometryTest, APictureWhoseCornerAndSizeWereBothRoundedUpStaysOnTheDisplay) {
    const ScreenGeometry one{{display(1, {0, 0}, {1000, 500}, 1.25)}};
    EXPECT_EQ(one.pixelsOfPicture(1, QRectF(799.5, 399.5, 0.5, 0.5), {1, 1}), QRect(999, 499, 1, 1));
}

} // namespace
} // namespace kestrova
