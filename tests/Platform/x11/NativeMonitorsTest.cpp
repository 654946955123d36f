#include "Platform/x11/NativeMonitors.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

TEST(NativeMonitorsTest, AScreenIsTheMonitorAtItsCorner) {
    const std::vector<NativeMonitor> monitors{{"eDP-1"_ba, {0, 0, 1920, 1080}},
                                              {"DP-2"_ba, {1920, 0, 2560, 1440}}};
    EXPECT_EQ(monitorOfScreen(monitors, "DP-2", {1920, 0}), &monitors[1]);
    EXPECT_EQ(monitorOfScreen(monitors, "some other name", {1920, 0}), &monitors[1]);
}

TEST(NativeMonitorsTest, OfMonitorsThatMirrorEachOtherTheNameDecides) {
    const std::vector<NativeMonitor> monitors{{"eDP-1"_ba, {0, 0, 1920, 1080}},
                                              {"HDMI-1"_ba, {0, 0, 1280, 720}}};
    EXPECT_EQ(monitorOfScreen(monitors, "HDMI-1", {0, 0}), &monitors[1]);
    EXPECT_EQ(monitorOfScreen(monitors, "eDP-1", {0, 0}), &monitors[0]);
}

TEST(NativeMonitorsTest, AMonitorThatHasMovedIsNotTheScreenAsItWas) {
    const std::vector<NativeMonitor> monitors{{"eDP-1"_ba, {0, 0, 1920, 1080}}};
    EXPECT_EQ(monitorOfScreen(monitors, "eDP-1", {100, 0}), nullptr);
    EXPECT_EQ(monitorOfScreen({}, "eDP-1", {0, 0}), nullptr);
}

} // namespace
} // namespace kestrova
