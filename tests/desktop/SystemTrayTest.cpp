#include "tests/desktop/DesktopSession.h"
#include "tests/desktop/ProbedHost.h"
#include "tests/desktop/Waiting.h"

#include <gtest/gtest.h>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

class SystemTrayTest : public ::testing::Test {
protected:
    void setNotifiers(const QString& state) { watcher.ask(u"notifiers "_s + state); }
    void await() { host.ask(u"tray"_s); }
    bool hasAppeared() { return host.ask(u"appeared"_s) == u"1"; }
    bool appears() {
        return eventually([&] { return hasAppeared(); });
    }

    DesktopSession session;
    ProbedHost watcher{session};
    ProbedHost host{session};
};

TEST_F(SystemTrayTest, AHostThatIsThereIsFound) {
    setNotifiers(u"1"_s);
    await();
    EXPECT_TRUE(appears());
}

TEST_F(SystemTrayTest, AHostThatComesLaterIsToldOf) {
    setNotifiers(u"0"_s);
    await();
    EXPECT_FALSE(hasAppeared());
    setNotifiers(u"1"_s);
    EXPECT_TRUE(appears());
}

TEST_F(SystemTrayTest, AWatcherThatComesLaterIsToldOf) {
    await();
    EXPECT_FALSE(hasAppeared());
    setNotifiers(u"1"_s);
    EXPECT_TRUE(appears());
}

TEST_F(SystemTrayTest, AWatcherThatIsNotReadyIsAskedAgain) {
    setNotifiers(u"starting"_s);
    await();
    EXPECT_FALSE(hasAppeared());
    // Nobody tells of this one.
    setNotifiers(u"1"_s);
    EXPECT_TRUE(appears());
}

} // namespace
} // namespace kestrova::test
