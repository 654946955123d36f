#include "tests/desktop/Mouse.h"
#include "tests/desktop/PasteDestination.h"
#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/TypingTarget.h"

#include <csignal>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

class ShelfFocusTest : public ShelfTest {
protected:
    void SetUp() override { startWith({u"one"_s, u"two"_s}); }

    /// Moves the window to where the shelf does not cover it; answers a place on it.
    QPoint placeBesideTheShelf(xcb_window_t window) {
        session.run(u"xdotool"_s, {u"windowmove"_s, u"--sync"_s, QString::number(window), u"10"_s, u"560"_s});
        return windows.frame(window).topLeft() + QPoint(20, 20);
    }

    /// A place of the bare desktop.
    static constexpr QPoint kOutside{1270, 790};

    Mouse mouse{session.display()};
};

TEST_F(ShelfFocusTest, EscapeGivesTheKeyboardBackToTheWindowItCameFrom) {
    TypingTarget target(session, {u"first"_s, u"second"_s});
    for (const int window : {0, 1}) {
        ASSERT_TRUE(windows.activate(target.window(window)));
        pressShortcut();
        ASSERT_TRUE(shelf.waitForKeyboard());
        keys.tap(keyAt::escape);
        EXPECT_TRUE(eventually([&] { return windows.hasKeyboard(target.window(window)); }));
        EXPECT_TRUE(shelf.waitUntilGone());
    }
    // The press of Escape was the shelf's; its release may be anybody's.
    for (const TypingTarget::Key& key : target.keys())
        EXPECT_FALSE(key.isPress && key.key == keyAt::escape);
}

TEST_F(ShelfFocusTest, AClickOutsideHidesTheShelf) {
    const TypingTarget target(session, {u"target"_s});
    for (const Mouse::Button button : {Mouse::Button::Left, Mouse::Button::Right}) {
        ASSERT_TRUE(shelf.open());
        mouse.click(kOutside, button);
        EXPECT_TRUE(shelf.waitUntilGone());
        keys.tap(keyAt::escape);
    }
}

TEST_F(ShelfFocusTest, AClickIntoAnotherWindowHidesTheShelfAndGivesThatWindowTheKeyboard) {
    const TypingTarget target(session, {u"target"_s});
    const QPoint onTarget = placeBesideTheShelf(target.window(0));
    ASSERT_TRUE(shelf.open());
    ASSERT_FALSE(shelf.frame().contains(onTarget));
    mouse.click(onTarget);
    EXPECT_TRUE(shelf.waitUntilGone());
    EXPECT_TRUE(eventually([&] { return windows.hasKeyboard(target.window(0)); }));
}

TEST_F(ShelfFocusTest, AClickInsideDoesNotHideTheShelf) {
    const TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(shelf.open());
    // Where neither a row nor a button is, and on the search field.
    for (const QPoint place : {shelf.frame().center(), shelf.frame().topLeft() + QPoint(480, 30)}) {
        mouse.click(place);
        EXPECT_TRUE(throughout(std::chrono::milliseconds(300), [this] { return shelf.isUp(); }));
    }
    EXPECT_TRUE(shelf.hasKeyboard());
}

TEST_F(ShelfFocusTest, TheWheelAndTheMiddleButtonOutsideDoNotHideTheShelf) {
    const TypingTarget target(session, {u"target"_s});
    const QPoint overTarget = placeBesideTheShelf(target.window(0));
    ASSERT_TRUE(shelf.open());
    ASSERT_FALSE(shelf.frame().contains(overTarget));
    for (const Mouse::Button button : {Mouse::Button::WheelUp, Mouse::Button::WheelDown})
        mouse.click(overTarget, button);
    // The desktop's own menu would come up on the root.
    EXPECT_TRUE(throughout(std::chrono::milliseconds(300), [this] { return shelf.isUp(); }));
    EXPECT_TRUE(shelf.hasKeyboard());
    // And the clicks of the other buttons are seen from there.
    mouse.click(overTarget, Mouse::Button::Middle);
    EXPECT_TRUE(throughout(std::chrono::milliseconds(300), [this] { return shelf.isUp(); }));
    mouse.click(overTarget, Mouse::Button::Left);
    EXPECT_TRUE(shelf.waitUntilGone());
}

TEST_F(ShelfFocusTest, ShowAndHideMayBeRepeated) {
    const TypingTarget target(session, {u"target"_s});
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(shelf.open());
        ASSERT_TRUE(shelf.open());
        ASSERT_EQ(program.command({u"hide"_s}).exitStatus, 0);
        ASSERT_EQ(program.command({u"hide"_s}).exitStatus, 0);
        ASSERT_TRUE(shelf.waitUntilGone());
        ASSERT_TRUE(eventually([&] { return windows.hasKeyboard(target.window(0)); }));
    }
}

TEST_F(ShelfFocusTest, AskedForAgainBehindAnotherWindowItGetsTheKeyboardAndGivesItBack) {
    const TypingTarget target(session, {u"first"_s, u"second"_s});
    ASSERT_TRUE(shelf.open());
    ASSERT_TRUE(windows.activate(target.window(0)));
    ASSERT_TRUE(shelf.isUp());
    EXPECT_TRUE(shelf.open());
    keys.tap(keyAt::escape);
    EXPECT_TRUE(eventually([&] { return windows.hasKeyboard(target.window(0)); }));
}

TEST_F(ShelfFocusTest, TheProgramEndsThoughTheShelfIsUp) {
    ASSERT_TRUE(shelf.open());
    EXPECT_TRUE(program.quit());
    ASSERT_TRUE(program.start());
    ASSERT_TRUE(shelf.open());
    program.process().signal(SIGTERM);
    EXPECT_TRUE(program.process().waitForEnd(kGenerously));
}

TEST_F(ShelfFocusTest, TheShelfIsInNoListOfWindows) {
    ASSERT_TRUE(shelf.open());
    const QString states =
        QString::fromLatin1(session
                                .run(u"xprop"_s, {u"-id"_s, QString::number(*shelf.window()),
                                                  u"_NET_WM_STATE"_s, u"_NET_WM_DESKTOP"_s})
                                .standardOutput);
    for (const QString& wanted : {u"_NET_WM_STATE_SKIP_TASKBAR"_s, u"_NET_WM_STATE_SKIP_PAGER"_s,
                                  u"_NET_WM_STATE_ABOVE"_s, u"4294967295"_s})
        EXPECT_TRUE(states.contains(wanted)) << states.toStdString();
}

} // namespace
} // namespace kestrova::test
