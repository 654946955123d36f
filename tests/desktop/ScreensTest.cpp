#include "tests/desktop/DesktopSession.h"
#include "tests/desktop/Printing.h"
#include "tests/desktop/ProbedHost.h"
#include "tests/desktop/Waiting.h"

#include <gtest/gtest.h>
#include <memory>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

/// Two displays of 640 by 800 and 640 by 600 pixels, the right one at twice the scale.
class ScreensTest : public ::testing::Test {
protected:
    ScreensTest() {
        setMonitor({u"L"_s, u"640/169x800/211+0+0"_s, u"screen"_s});
        setMonitor({u"R"_s, u"640/169x600/158+640+100"_s, u"none"_s});
        session.environment().insert(u"QT_SCREEN_SCALE_FACTORS"_s, u"L=1;R=2"_s);
    }

    void setMonitor(const QStringList& monitor) {
        session.run(u"xrandr"_s, QStringList{u"--setmonitor"_s} + monitor);
    }

    QString mouseAt(const QString& x, const QString& y) {
        session.run(u"xdotool"_s, {u"mousemove"_s, u"--sync"_s, x, y});
        return host->ask(u"mouse"_s);
    }

    DesktopSession session;
    std::unique_ptr<ProbedHost> host;
};

TEST_F(ScreensTest, DisplaysAreToldInGlobalPoints) {
    host = std::make_unique<ProbedHost>(session);
    EXPECT_EQ(host->ask(u"screens"_s), u"0 0 640 800 1 | 640 400 320 300 2 main 0"_s);
}

TEST_F(ScreensTest, TheMouseIsWithinItsDisplayOnTheOutermostPixelsToo) {
    host = std::make_unique<ProbedHost>(session);
    EXPECT_EQ(mouseAt(u"1"_s, u"0"_s), u"1.5 799.5"_s);
    EXPECT_EQ(mouseAt(u"639"_s, u"799"_s), u"639.5 0.5"_s);
    EXPECT_EQ(mouseAt(u"640"_s, u"100"_s), u"640.5 699.5"_s);
    EXPECT_EQ(mouseAt(u"1279"_s, u"699"_s), u"959.5 400.5"_s);
}

TEST_F(ScreensTest, AWindowIsPutWhereItsGlobalPointsAre) {
    host = std::make_unique<ProbedHost>(session);
    const auto window = host->ask(u"place 700 450 100 200"_s);
    const auto isThere = [&] {
        const auto shape = session.run(u"xdotool"_s, {u"getwindowgeometry"_s, u"--shell"_s, window});
        return shape.standardOutput.contains("X=760\nY=200\nWIDTH=200\nHEIGHT=400\n");
    };
    EXPECT_TRUE(eventually(isThere));
}

} // namespace
} // namespace kestrova::test
