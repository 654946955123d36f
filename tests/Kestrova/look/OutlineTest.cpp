#include "Kestrova/look/Outline.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

TEST(OutlineTest, AContinuousRectangleHasTheRectanglesSidesAndPassesThroughTheArcsMiddle) {
    const auto path = continuousRectangle({10, 20, 100, 80}, 10);
    EXPECT_EQ(path.boundingRect(), QRectF(10, 20, 100, 80));
    EXPECT_TRUE(path.contains(QPointF(60, 21)));
    EXPECT_FALSE(path.contains(QPointF(11, 21)));
    // An arc of that radius is 10 - 10 / sqrt(2), about 2.93, from both sides.
    EXPECT_FALSE(path.contains(QPointF(12.5, 22.5)));
    EXPECT_TRUE(path.contains(QPointF(13.4, 23.4)));
}

TEST(OutlineTest, ThePixelsWithinFollowTheScale) {
    QPainterPath path;
    path.addRect(1, 1, 2, 3);
    EXPECT_EQ(pixelsWithin(path, {10, 10}), QRegion(1, 1, 2, 3));
    EXPECT_EQ(pixelsWithin(path, {10, 10}, 2), QRegion(2, 2, 4, 6));
}

} // namespace
} // namespace kestrova
