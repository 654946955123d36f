#include "Kestrova/capture/widgets/CrosshairCursor.h"

#include <QImage>

#include <gtest/gtest.h>

#include <cmath>

namespace kestrova {
namespace {

class CrosshairCursorTest : public testing::TestWithParam<double> {
protected:
    int pixel(double points) const { return static_cast<int>(std::lround(points * GetParam())); }
    QImage picture() const { return CrosshairCursor::picture(GetParam()).toImage(); }
};

TEST_P(CrosshairCursorTest, HasTwentyFourPointsAndItsHotSpotInTheMiddle) {
    EXPECT_EQ(picture().size(), QSize(pixel(24), pixel(24)));
    CrosshairCursor crosshair;
    const auto& cursor = crosshair.forScale(GetParam());
    EXPECT_EQ(cursor.hotSpot(), QPoint(pixel(12), pixel(12)));
    EXPECT_EQ(cursor.pixmap().size(), picture().size());
    EXPECT_EQ(&crosshair.forScale(GetParam()), &cursor) << "it is drawn once";
}

TEST_P(CrosshairCursorTest, TheGapAroundTheHotSpotIsClear) {
    const auto image = picture();
    EXPECT_EQ(qAlpha(image.pixel(pixel(12), pixel(12))), 0);
    EXPECT_EQ(qAlpha(image.pixel(pixel(12) - 1, pixel(12))), 0);
    EXPECT_EQ(qAlpha(image.pixel(pixel(6), pixel(6))), 0);
}

TEST_P(CrosshairCursorTest, EachArmIsASharpWhiteLineWithinBlack) {
    const auto image = picture();
    const int middle = pixel(12);
    const auto isWhite = [&](QPoint place) { return image.pixel(place) == qRgba(255, 255, 255, 255); };
    const auto isBlack = [&](QPoint place) {
        const QColor color = image.pixelColor(place);
        return color.lightness() == 0 && std::abs(color.alphaF() - 0.85) < 0.01;
    };
    const int width = pixel(1);
    // One point wide, around the middle: where that is an odd number of pixels, on the pixel of the hot spot.
    const int first = middle - width / 2;
    for (const int along : {pixel(6), pixel(18)}) {
        for (int across = first; across < first + width; ++across) {
            EXPECT_TRUE(isWhite({along, across}));
            EXPECT_TRUE(isWhite({across, along}));
        }
        for (const int across : {first - 1, first + width}) {
            EXPECT_TRUE(isBlack({along, across}));
            EXPECT_TRUE(isBlack({across, along}));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(WholeScales, CrosshairCursorTest, testing::Values(1.0, 2.0, 3.0));

} // namespace
} // namespace kestrova
