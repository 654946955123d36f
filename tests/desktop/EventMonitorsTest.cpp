#include "tests/desktop/InputProbeProgram.h"
#include "tests/desktop/KeyReceiver.h"
#include "tests/desktop/Keys.h"
#include "tests/desktop/Mouse.h"
#include "tests/desktop/Printing.h"
#include "tests/desktop/TestKeyboard.h"
#include "tests/desktop/Waiting.h"

#include <QPoint>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

constexpr std::uint8_t kLeft = 1;
constexpr std::uint8_t kMiddle = 2;
constexpr std::uint8_t kRight = 3;
constexpr std::uint8_t kWheelUp = 4;
// Left and right.
constexpr auto kMonitorBoth = "monitor-mouse 10"_L1;

namespace Position {
constexpr std::uint8_t digit1 = 10;
constexpr std::uint8_t keypad7 = 79;
constexpr std::uint8_t e = 26;
constexpr std::uint8_t k = 45;
constexpr std::uint8_t c = 54;
constexpr std::uint8_t z = 52;
constexpr std::uint8_t f5 = 71;
constexpr std::uint8_t up = 111;
constexpr std::uint8_t rightShift = 62;
constexpr std::uint8_t end = 115;
} // namespace Position

/// The probe's window is a text field in focus.
class EventMonitorsTest : public ::testing::Test {
protected:
    void SetUp() override {
        window = probe.ask(u"show"_s, u"window"_s).mid(7);
        giveKeyboardTo(session, window);
        keyboard.tap(Key::a);
        ASSERT_TRUE(probe.says(u"text a"_s));
        probe.ask(u"set "_s, u"set"_s);
        probe.forget();
    }

    /// A point of the probe's window.
    QPoint ownPoint() {
        const auto words = probe.ask(u"where"_s, u"at"_s).split(u' ');
        return {words[1].toInt(), words[2].toInt()};
    }
    void click(std::uint8_t button, QPoint point) {
        keyboard.click(button, static_cast<std::int16_t>(point.x()), static_cast<std::int16_t>(point.y()));
    }
    /// The probe comes to see the click when the mouse is at `next` already.
    void clickAndMoveOnUnseen(std::uint8_t button, QPoint place, QPoint next) {
        ASSERT_EQ(::kill(static_cast<pid_t>(probe.pid()), SIGSTOP), 0);
        keyboard.clickAndMoveOn(button, place, next);
        ASSERT_EQ(::kill(static_cast<pid_t>(probe.pid()), SIGCONT), 0);
    }
    void monitorKeys() {
        probe.ask(u"monitor-keys"_s, u"monitors keys"_s);
        probe.forget();
    }
    /// What has been said when F5, pressed last, has been told of.
    QStringList linesBeforeF5() {
        keyboard.tap(Position::f5);
        const auto isF5 = [](const QString& line) { return line.startsWith(u"key 96"); };
        EXPECT_TRUE(eventually([&] { return std::ranges::any_of(probe.lines(), isF5); }));
        auto lines = probe.lines();
        lines.erase(std::ranges::find_if(lines, isF5), lines.end());
        probe.forget();
        return lines;
    }

    DesktopSession session;
    InputProbeProgram probe{session};
    TestKeyboard keyboard{session.display()};
    QString window;
};

TEST_F(EventMonitorsTest, PressesElsewhereAreToldOf) {
    probe.ask(kMonitorBoth, u"monitors mouse 1"_s);
    probe.forget();
    KeyReceiver other(session.display());
    keyboard.click(kLeft, 1000, 550);
    keyboard.click(kRight, 1000, 550);
    // The bare desktop.
    keyboard.click(kLeft, 5, 790);
    EXPECT_TRUE(eventually([&] { return probe.count(u"click elsewhere"_s) == 3; }));
    EXPECT_EQ(probe.lines().size(), 3);
}

TEST_F(EventMonitorsTest, OtherButtonsAndOwnWindowsAreNot) {
    probe.ask(kMonitorBoth, u"monitors mouse 1"_s);
    probe.forget();
    const auto inside = ownPoint();
    probe.forget();
    // A key that follows a press is dealt with after it.
    click(kLeft, inside);
    keyboard.tap(Key::a);
    EXPECT_TRUE(probe.says(u"text a"_s));
    // The middle of the frame's title: the button at its left opens a menu, which would keep the keys.
    click(kLeft, inside + QPoint(80, -20));
    keyboard.tap(Key::b);
    EXPECT_TRUE(probe.says(u"text ab"_s));
    EXPECT_EQ(probe.count(u"click elsewhere"_s), 0);
    keyboard.click(kMiddle, 5, 790);
    keyboard.click(kWheelUp, 5, 790);
    keyboard.click(kRight, 5, 790);
    EXPECT_TRUE(probe.says(u"click elsewhere"_s));
    EXPECT_EQ(probe.count(u"click elsewhere"_s), 1);
}

TEST_F(EventMonitorsTest, APressOnAnOwnWindowIsNotToldOfThoughThePointerHasLeftBeforeItIsSeen) {
    probe.ask(kMonitorBoth, u"monitors mouse 1"_s);
    const auto inside = ownPoint();
    probe.forget();
    clickAndMoveOnUnseen(kLeft, inside, {5, 790});
    keyboard.click(kRight, 5, 790);
    EXPECT_TRUE(probe.says(u"click elsewhere"_s));
    EXPECT_EQ(probe.count(u"click elsewhere"_s), 1);
}

TEST_F(EventMonitorsTest, APressOnAnOwnWindowThatAnotherProgramKeepsBackIsNotToldOf) {
    probe.ask(kMonitorBoth, u"monitors mouse 1"_s);
    const auto inside = ownPoint();
    probe.forget();
    XConnection keeper(session.display());
    const XReply<xcb_generic_error_t> refusal(xcb_request_check(
        keeper.get(), xcb_grab_button_checked(keeper.get(), 0, keeper.root(), XCB_EVENT_MASK_BUTTON_PRESS,
                                              XCB_GRAB_MODE_SYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE,
                                              kLeft, XCB_MOD_MASK_ANY)));
    ASSERT_EQ(refusal, nullptr);
    keyboard.clickAndMoveOn(kLeft, inside, inside);
    // A key that follows the press is dealt with after it.
    keyboard.tap(Key::a);
    EXPECT_TRUE(probe.says(u"text a"_s));
    xcb_allow_events(keeper.get(), XCB_ALLOW_REPLAY_POINTER, XCB_CURRENT_TIME);
    xcb_ungrab_button(keeper.get(), kLeft, keeper.root(), XCB_MOD_MASK_ANY);
    xcb_flush(keeper.get());
    keyboard.click(kRight, 5, 790);
    EXPECT_TRUE(probe.says(u"click elsewhere"_s));
    EXPECT_EQ(probe.count(u"click elsewhere"_s), 1);
}

TEST_F(EventMonitorsTest, OnlyTheButtonsAskedForAreToldOf) {
    probe.ask(u"monitor-mouse 8"_s, u"monitors mouse 1"_s);
    probe.forget();
    keyboard.click(kLeft, 5, 790);
    keyboard.click(kRight, 5, 790);
    EXPECT_TRUE(probe.says(u"click elsewhere"_s));
    EXPECT_EQ(probe.lines().size(), 1);
}

TEST_F(EventMonitorsTest, APressThatClosesAnOwnMenuIsNotToldOf) {
    probe.ask(kMonitorBoth, u"monitors mouse 1"_s);
    probe.ask(u"menu"_s, u"opened"_s);
    EXPECT_TRUE(probe.lines().contains(u"menu begins"_s));
    probe.forget();
    keyboard.click(kLeft, 5, 790);
    EXPECT_TRUE(probe.says(u"menu ends"_s));
    EXPECT_EQ(probe.lines(), QStringList{u"menu ends"_s});
    keyboard.click(kLeft, 5, 790);
    EXPECT_TRUE(probe.says(u"click elsewhere"_s));
}

TEST_F(EventMonitorsTest, PressesAreToldOfWhileAnotherProgramHoldsTheMouse) {
    probe.ask(kMonitorBoth, u"monitors mouse 1"_s);
    XConnection other(session.display());
    const XReply<xcb_grab_pointer_reply_t> grab(xcb_grab_pointer_reply(
        other.get(),
        xcb_grab_pointer(other.get(), 0, other.root(), XCB_EVENT_MASK_BUTTON_PRESS, XCB_GRAB_MODE_ASYNC,
                         XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME),
        nullptr));
    ASSERT_EQ(grab->status, XCB_GRAB_STATUS_SUCCESS);
    keyboard.click(kLeft, 5, 790);
    EXPECT_TRUE(probe.says(u"click elsewhere"_s));
}

TEST_F(EventMonitorsTest, AfterTheMonitorHasGoneNothingIsToldOf) {
    probe.ask(kMonitorBoth, u"monitors mouse 1"_s);
    probe.ask(u"stop-monitoring"_s, u"stopped"_s);
    keyboard.click(kLeft, 5, 790);
    probe.ask(kMonitorBoth, u"monitors mouse 1"_s);
    keyboard.click(kLeft, 5, 790);
    EXPECT_TRUE(probe.says(u"click elsewhere"_s));
    EXPECT_EQ(probe.count(u"click elsewhere"_s), 1);
}

TEST_F(EventMonitorsTest, KeysComeWithTheirPositionFlagsAndText) {
    monitorKeys();
    keyboard.tap(Key::a);
    keyboard.chord({Key::shift, Key::b});
    keyboard.tap(Position::up);
    keyboard.tap(Position::keypad7);
    EXPECT_EQ(linesBeforeF5(),
              (QStringList{u"key 0 0 a once window"_s, u"text a"_s, u"flags 20000 window"_s,
                           u"key 11 20000 b once window"_s, u"text aB"_s, u"flags 0 window"_s,
                           u"key 126 a00000  once window"_s, u"key 89 200000  once window"_s}));
}

TEST_F(EventMonitorsTest, NumLockHasNoFlagAndGivesTheKeypadItsDigits) {
    monitorKeys();
    keyboard.tap(Key::numLock);
    keyboard.tap(Position::keypad7);
    EXPECT_EQ(linesBeforeF5(), (QStringList{u"flags 0 window"_s, u"flags 0 window"_s,
                                            u"key 89 200000 7 once window"_s, u"text 7"_s}));
}

TEST_F(EventMonitorsTest, CapsLockHasAFlagWhileItIsOn) {
    monitorKeys();
    keyboard.tap(Key::capsLock);
    keyboard.tap(Position::up);
    keyboard.tap(Key::capsLock);
    keyboard.tap(Position::up);
    EXPECT_EQ(linesBeforeF5(),
              (QStringList{u"flags 10000 window"_s, u"flags 10000 window"_s, u"key 126 a10000  once window"_s,
                           u"flags 10000 window"_s, u"flags 0 window"_s, u"key 126 a00000  once window"_s}));
}

TEST_F(EventMonitorsTest, ControlAndSuperAreCommandAndWithShiftAndADigitControl) {
    monitorKeys();
    probe.ask(u"swallow 18"_s, u"swallows"_s);
    probe.forget();
    keyboard.chord({Key::control, Position::digit1});
    keyboard.chord({Key::super, Position::digit1});
    keyboard.chord({Key::control, Key::shift, Position::digit1});
    EXPECT_EQ(linesBeforeF5(),
              (QStringList{u"flags 100000 window"_s, u"key 18 100000 1 once window"_s, u"flags 0 window"_s,
                           u"flags 100000 window"_s, u"key 18 100000 1 once window"_s, u"flags 0 window"_s,
                           u"flags 100000 window"_s, u"flags 40000 window"_s, u"key 18 40000 1 once window"_s,
                           u"flags 100000 window"_s, u"flags 0 window"_s}));
}

TEST_F(EventMonitorsTest, OfTwoShiftKeysTheOtherIsStillHeld) {
    monitorKeys();
    keyboard.press(Key::shift);
    keyboard.press(Position::rightShift);
    keyboard.release(Key::shift);
    keyboard.release(Position::rightShift);
    EXPECT_EQ(linesBeforeF5(), (QStringList{u"flags 20000 window"_s, u"flags 20000 window"_s,
                                            u"flags 20000 window"_s, u"flags 0 window"_s}));
}

TEST_F(EventMonitorsTest, ASwallowedKeyReachesNobody) {
    monitorKeys();
    probe.ask(u"swallow 0"_s, u"swallows"_s);
    probe.forget();
    keyboard.tap(Key::a);
    keyboard.tap(Key::b);
    EXPECT_EQ(linesBeforeF5(),
              (QStringList{u"key 0 0 a once window"_s, u"key 11 0 b once window"_s, u"text b"_s}));
}

TEST_F(EventMonitorsTest, AHeldKeyComesAgainAndSaysSo) {
    session.run(u"xset"_s, {u"r"_s, u"rate"_s, u"50"_s, u"100"_s});
    monitorKeys();
    keyboard.press(Key::b);
    EXPECT_TRUE(eventually([&] { return probe.count(u"key 11 0 b again window"_s) > 3; }));
    keyboard.release(Key::b);
    EXPECT_EQ(probe.count(u"key 11 0 b once window"_s), 1);
}

TEST_F(EventMonitorsTest, ASwallowedKeyReachesNobodyUntilItIsReleasedThoughNoMonitorSwallowsItAnyMore) {
    session.run(u"xset"_s, {u"r"_s, u"rate"_s, u"50"_s, u"100"_s});
    monitorKeys();
    probe.ask(u"swallow 11"_s, u"swallows"_s);
    keyboard.press(Key::b);
    EXPECT_TRUE(probe.says(u"key 11 0 b again window"_s));
    probe.ask(u"swallow 99"_s, u"swallows"_s);
    probe.forget();
    EXPECT_TRUE(eventually([&] { return probe.count(u"key 11 0 b again window"_s) > 3; }));
    keyboard.release(Key::b);
    keyboard.tap(Key::a);
    EXPECT_TRUE(probe.says(u"text a"_s)) << probe.lines().join(u'|').toStdString();
    keyboard.tap(Key::b);
    EXPECT_TRUE(probe.says(u"text ab"_s));
}

TEST_F(EventMonitorsTest, AModifierThatIsReleasedDuringADragIsHeldNoLongerAfterIt) {
    monitorKeys();
    probe.ask(u"set words"_s, u"set"_s);
    keyboard.chord({Key::control, Key::a});
    probe.forget();
    keyboard.press(Key::control);
    EXPECT_TRUE(probe.says(u"flags 100000 window"_s));
    Mouse mouse(session.display());
    const QPoint text = ownPoint() + QPoint(10, 10);
    mouse.pull(text, {5, 790});
    keyboard.release(Key::control);
    mouse.release();
    EXPECT_TRUE(eventually([&] {
        mouse.moveTo(text);
        mouse.moveTo(text + QPoint(1, 0));
        return probe.count(u"flags 0 elsewhere"_s) > 0;
    }));
}

TEST_F(EventMonitorsTest, TheTextFieldsOwnKeysAreNotToldOf) {
    monitorKeys();
    probe.ask(u"swallow 8"_s, u"swallows"_s);
    probe.forget();
    keyboard.chord({Key::control, Position::k});
    keyboard.chord({Key::control, Key::a});
    keyboard.chord({Key::control, Position::c});
    keyboard.chord({Key::control, Position::z});
    // Now there is something to undo and, after that, something selected.
    keyboard.tap(Key::b);
    keyboard.chord({Key::control, Key::a});
    keyboard.chord({Key::control, Position::c});
    keyboard.chord({Key::super, Position::c});
    keyboard.chord({Key::control, Position::z});
    auto lines = linesBeforeF5();
    lines.removeIf([](const QString& line) { return line.startsWith(u"flags"); });
    EXPECT_EQ(lines, (QStringList{u"key 40 100000 k once window"_s, u"key 8 100000 c once window"_s,
                                  u"key 6 100000 z once window"_s, u"key 11 0 b once window"_s, u"text b"_s,
                                  u"key 8 100000 c once window"_s, u"text "_s}));
}

TEST_F(EventMonitorsTest, LeavingTheWindowLetsGoOfTheModifiers) {
    monitorKeys();
    keyboard.press(Key::control);
    EXPECT_TRUE(probe.says(u"flags 100000 window"_s));
    probe.forget();
    KeyReceiver other(session.display());
    EXPECT_TRUE(probe.says(u"flags 0 window"_s));
    keyboard.release(Key::control);
}

TEST_F(EventMonitorsTest, KeysOfAnOpenMenuAreNotTheWindows) {
    monitorKeys();
    probe.ask(u"menu"_s, u"opened"_s);
    probe.forget();
    keyboard.tap(Key::down);
    EXPECT_TRUE(probe.says(u"key 125 a00000  once elsewhere"_s)) << probe.lines().join(u'|').toStdString();
}

TEST_F(EventMonitorsTest, TheTextIsThatOfTheCurrentLayout) {
    session.run(u"setxkbmap"_s, {u"ru"_s});
    probe.ask(u"layout 9"_s, u"layout м"_s);
    monitorKeys();
    keyboard.tap(Key::v);
    EXPECT_TRUE(probe.says(u"key 9 0 м once window"_s)) << probe.lines().join(u'|').toStdString();
}

} // namespace
} // namespace kestrova::test
