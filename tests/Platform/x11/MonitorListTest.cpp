#include "Platform/x11/MonitorList.h"

#include <gmock/gmock.h>

#include <string>

namespace kestrova {
namespace {

using Handler = std::function<bool()>;

TEST(MonitorListTest, TheMonitorAddedLastIsAskedFirst) {
    MonitorList<Handler> monitors([](bool) {});
    std::string asked;
    const auto first = monitors.add(1, [&] { return asked += "first ", true; });
    const auto last = monitors.add(1, [&] { return asked += "last ", false; });
    EXPECT_TRUE(monitors.any(1, [](const Handler& handler) { return handler(); }));
    EXPECT_EQ(asked, "last first ");
}

TEST(MonitorListTest, OneThatSwallowsKeepsItFromTheOthers) {
    MonitorList<Handler> monitors([](bool) {});
    bool isAsked = false;
    const auto first = monitors.add(1, [&] { return isAsked = true; });
    const auto last = monitors.add(1, [] { return true; });
    EXPECT_TRUE(monitors.any(1, [](const Handler& handler) { return handler(); }));
    EXPECT_FALSE(isAsked);
}

} // namespace
} // namespace kestrova
