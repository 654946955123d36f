#include "Kestrova/StatusItemPulse.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using StatusItemPulse::opacity;

TEST(StatusItemPulseTest, GoesDownIn120AndBackIn280Milliseconds) {
    EXPECT_DOUBLE_EQ(opacity(0ms), 1);
    EXPECT_DOUBLE_EQ(opacity(120ms), 0.4);
    EXPECT_DOUBLE_EQ(opacity(400ms), 1);
    EXPECT_DOUBLE_EQ(opacity(10s), 1);
    for (auto at = 1ms; at <= 120ms; ++at)
        EXPECT_LT(opacity(at), opacity(at - 1ms)) << at.count();
    for (auto at = 121ms; at <= 400ms; ++at)
        EXPECT_GT(opacity(at), opacity(at - 1ms)) << at.count();
}

TEST(StatusItemPulseTest, SlowsDownOnTheWayOutAndSpeedsUpOnTheWayBack) {
    // Of the halves of each way, the first of the one and the second of the other cover more.
    EXPECT_GT(1 - opacity(60ms), opacity(60ms) - 0.4);
    EXPECT_LT(opacity(260ms) - 0.4, 1 - opacity(260ms));
    // The two curves are each other's mirror.
    EXPECT_NEAR((1 - opacity(60ms)) / 0.6, 0.6847, 0.001);
    EXPECT_NEAR((opacity(260ms) - 0.4) / 0.6, 1 - 0.6847, 0.001);
}

} // namespace
} // namespace kestrova
