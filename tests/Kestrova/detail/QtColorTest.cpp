#include "Kestrova/detail/QtColor.h"

#include <gtest/gtest.h>

#include <limits>

namespace kestrova {
namespace {

TEST(QtColorTest, ChannelsBecomeBytes) {
    EXPECT_EQ(qColor({1, 0.5, 0, 1}).rgba(), qRgba(255, 128, 0, 255));
    EXPECT_EQ(qColor({0, 0, 1, 0.25}).rgba(), qRgba(0, 0, 255, 64));
    for (int byte = 0; byte <= 255; ++byte)
        EXPECT_EQ(qColor({byte / 255.0, 0, 0, 1}).red(), byte);
}

TEST(QtColorTest, ChannelsOutsideTheirRangeAreDrawnIn) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(qColor({2, -1, infinity, 50}).rgba(), qRgba(255, 0, 255, 255));
    EXPECT_EQ(qColor({-infinity, 1e300, 0, -0.5}).rgba(), qRgba(0, 255, 0, 0));
}

TEST(QtColorTest, WhatIsNotANumberIsNothing) {
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    const auto color = qColor({notANumber, 1, notANumber, notANumber});
    EXPECT_TRUE(color.isValid());
    EXPECT_EQ(color.rgba(), qRgba(0, 255, 0, 0));
}

} // namespace
} // namespace kestrova
