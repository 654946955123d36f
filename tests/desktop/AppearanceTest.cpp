#include "tests/desktop/ProbedHost.h"
#include "tests/desktop/ShelfTest.h"

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

class AppearanceTest : public ::testing::Test {
protected:
    void offer(const QString& state) { ASSERT_EQ(portal.ask(u"portal "_s + state), u"offers"); }
    bool becomes(const QString& scheme) {
        return eventually([&] { return host.ask(u"appearance"_s) == scheme; });
    }
    bool stays(const QString& scheme) {
        return throughout(std::chrono::milliseconds(300),
                          [&] { return host.ask(u"appearance"_s) == scheme; });
    }

    DesktopSession session;
    ProbedHost portal{session};
    ProbedHost host{session};
};

TEST_F(AppearanceTest, WhatThePortalSaysIsKnown) {
    offer(u"1"_s);
    EXPECT_TRUE(becomes(u"dark"_s));
}

TEST_F(AppearanceTest, AChangeIsToldOf) {
    offer(u"2"_s);
    ASSERT_TRUE(becomes(u"light"_s));
    offer(u"1"_s);
    EXPECT_TRUE(becomes(u"dark"_s));
    offer(u"0"_s);
    EXPECT_TRUE(becomes(u"none"_s));
}

TEST_F(AppearanceTest, ANumberThatMeansNothingIsNoPreference) {
    offer(u"1"_s);
    ASSERT_TRUE(becomes(u"dark"_s));
    offer(u"7"_s);
    EXPECT_TRUE(becomes(u"none"_s));
}

TEST_F(AppearanceTest, APortalThatComesLaterIsAsked) {
    ASSERT_TRUE(stays(u"none"_s));
    offer(u"1"_s);
    EXPECT_TRUE(becomes(u"dark"_s));
}

TEST_F(AppearanceTest, WhatAPortalSaidOutlivesIt) {
    offer(u"1"_s);
    ASSERT_TRUE(becomes(u"dark"_s));
    portal.ask(u"no-portal"_s);
    EXPECT_TRUE(stays(u"dark"_s));
    // The next one is believed.
    offer(u"2"_s);
    EXPECT_TRUE(becomes(u"light"_s));
}

TEST_F(AppearanceTest, APortalWithoutTheSettingSaysNothing) {
    offer(u"unknown"_s);
    EXPECT_TRUE(stays(u"none"_s));
}

class AppearanceWithoutBusTest : public ::testing::Test {
protected:
    DesktopSession session{DesktopSession::Bus::None};
    ProbedHost host{session};
};

TEST_F(AppearanceWithoutBusTest, NothingIsKnown) {
    EXPECT_TRUE(
        throughout(std::chrono::milliseconds(300), [&] { return host.ask(u"appearance"_s) == u"none"; }));
}

class ShelfAppearanceTest : public ShelfTest {
protected:
    /// The ground of the shelf, where nothing lies on it.
    bool groundIs(bool dark) {
        return eventually([&] {
            const QRect frame = shelf.frame();
            const QColor ground = windows.colorAt({frame.center().x(), frame.top() + 6});
            return ground.isValid() && (ground.lightness() < 128) == dark;
        });
    }

    ProbedHost portal{session};
};

TEST_F(ShelfAppearanceTest, TheOpenShelfFollowsTheDesktop) {
    portal.ask(u"portal 1"_s);
    startWith({u"one"_s});
    ASSERT_TRUE(shelf.open());
    EXPECT_TRUE(groundIs(true));
    for (const bool dark : {false, true, false}) {
        portal.ask(dark ? u"portal 1"_s : u"portal 2"_s);
        EXPECT_TRUE(groundIs(dark)) << dark;
    }
    EXPECT_TRUE(shelf.hasKeyboard());
}

TEST_F(ShelfAppearanceTest, APreferenceOfOnesOwnHolds) {
    portal.ask(u"portal 1"_s);
    program.editDefault(u"themePreference"_s, u"light"_s);
    startWith({u"one"_s});
    ASSERT_TRUE(shelf.open());
    EXPECT_TRUE(groundIs(false));
    program.editDefault(u"themePreference"_s, u"system"_s);
    EXPECT_TRUE(groundIs(true));
}

TEST_F(ShelfAppearanceTest, ASilentPortalHoldsNothingUp) {
    portal.ask(u"portal silent"_s);
    startWith({u"one"_s});
    EXPECT_TRUE(shelf.open());
    shelf.search("one");
    EXPECT_EQ(shelf.searchText(), "one");
}

} // namespace
} // namespace kestrova::test
