#include "tests/desktop/InputProbeProgram.h"
#include "tests/desktop/KeyReceiver.h"
#include "tests/desktop/Keys.h"
#include "tests/desktop/Mouse.h"
#include "tests/desktop/Printing.h"
#include "tests/desktop/TestKeyboard.h"
#include "tests/desktop/TypingTarget.h"
#include "tests/desktop/Waiting.h"

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using testing::ElementsAre;

/// As long as the program waits for somebody to take the keyboard.
constexpr auto kLongestWait = 250ms;

/// A window of the program has the keyboard and is about to hide; two windows of another program are there,
/// and the pointer is over the one that had the keyboard longer ago. Super+Shift+V is number 7.
class KeyboardHandoverTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(probe.ask(u"install"_s, u"installed"_s), u"installed 1"_s);
        probe.ask(u"deliver 1"_s, u"delivers"_s);
        ASSERT_EQ(probe.ask(u"register 9 300 7"_s, u"status"_s), u"status 0"_s);
        // While nobody has the keyboard, keys go to the window under the pointer.
        Mouse(session.display()).moveTo(windows.frame(target.window(kBystander)).center());
        comeUp();
    }
    // One that is stopped would not end.
    ~KeyboardHandoverTest() override { session.signal(u"openbox"_s, SIGCONT); }

    void comeUp() {
        giveKeyboardTo(session, probe.ask(u"show"_s, u"window"_s).mid(7));
        probe.ask(u"set "_s, u"set"_s);
        probe.forget();
    }
    void hide() { probe.ask(u"hide"_s, u"hidden"_s); }
    /// From now on nobody gives the keyboard to anybody.
    void stopWindowManager() { ASSERT_TRUE(session.signal(u"openbox"_s, SIGSTOP)); }
    void letWindowManagerGoOn() { ASSERT_TRUE(session.signal(u"openbox"_s, SIGCONT)); }
    /// What stands in the program's window.
    QByteArray ownText() const {
        const auto lines = probe.lines().filter(u"text "_s);
        return lines.isEmpty() ? QByteArray() : lines.last().mid(5).toLatin1();
    }
    void takeFocus(int window) {
        xcb_set_input_focus(x.get(), XCB_INPUT_FOCUS_PARENT, target.window(window), XCB_CURRENT_TIME);
        const XReply<xcb_get_input_focus_reply_t> done(
            xcb_get_input_focus_reply(x.get(), xcb_get_input_focus(x.get()), nullptr));
    }

    static constexpr int kBystander = 0;
    static constexpr int kTarget = 1;

    DesktopSession session;
    XConnection x{session.display()};
    InputProbeProgram probe{session};
    TestKeyboard keyboard{session.display()};
    TypingTarget target{session, {u"bystander"_s, u"target"_s}};
    DesktopWindows windows{session.display()};
};

TEST_F(KeyboardHandoverTest, WhatIsTypedWhileTheWindowHidesIsTheWindowsOrTheNextOnes) {
    QByteArray sent;
    QByteArray kept;
    for (int round = 0; round < 20; ++round) {
        comeUp();
        probe.send(u"hide"_s);
        do {
            keyboard.tap(Key::a);
            keyboard.tap(Key::b);
            keyboard.finish();
            sent += "ab";
        } while (probe.count(u"hidden"_s) == 0);
        ASSERT_TRUE(eventually([&] { return windows.hasKeyboard(target.window(kTarget)); })) << round;
        // Behind whatever is still on its way to the window.
        ASSERT_TRUE(eventually([&] {
            return target.typed(kTarget).size() + kept.size() + ownText().size() == sent.size();
        })) << round
            << ": of " << sent.size() << " letters " << target.typed(kTarget).size()
            << " came to the next window, " << ownText().size() << " stayed";
        kept += ownText();
    }
    EXPECT_EQ(target.typed(kBystander), QByteArray());
}

TEST_F(KeyboardHandoverTest, WhatIsTypedWhileNobodyHasTheKeyboardGoesToTheNextWhoTakesIt) {
    for (int round = 0; round < 20; ++round) {
        comeUp();
        const QByteArray astray = target.typed(kBystander);
        stopWindowManager();
        const auto start = Clock::now();
        hide();
        keyboard.tap(Key::a);
        keyboard.tap(Key::b);
        keyboard.finish();
        takeFocus(kTarget);
        const bool isInTime = Clock::now() - start < kLongestWait;
        letWindowManagerGoOn();
        ASSERT_TRUE(eventually([&] { return target.typed().size() == 2 * (round + 1); })) << round;
        if (!isInTime)
            continue;
        EXPECT_TRUE(target.typed(kTarget).endsWith("ab"));
        EXPECT_EQ(target.typed(kBystander), astray);
        EXPECT_TRUE(eventually([&] { return !windows.isKeyboardHeld(); }));
        return;
    }
    FAIL() << "this machine is too slow to look at what lasts a quarter of a second";
}

TEST_F(KeyboardHandoverTest, WhereNobodyTakesItTheKeyboardIsFreeAfterAWhile) {
    stopWindowManager();
    const auto start = Clock::now();
    hide();
    keyboard.tap(Key::a);
    keyboard.finish();
    EXPECT_TRUE(eventually([&] { return target.typed(kBystander) == "a"; }));
    EXPECT_GE(Clock::now() - start, kLongestWait);
    EXPECT_TRUE(eventually([&] { return !windows.isKeyboardHeld(); }));
}

TEST_F(KeyboardHandoverTest, ABusyProgramHoldsNothingUp) {
    probe.send(u"hide"_s);
    probe.send(u"busy 3000"_s);
    ASSERT_TRUE(eventually([&] { return windows.hasKeyboard(target.window(kTarget)); }));
    keyboard.tap(Key::a);
    keyboard.finish();
    EXPECT_TRUE(eventually([&] { return target.typed(kTarget) == "a"; }, 2s));
    EXPECT_EQ(probe.count(u"free"_s), 0);
}

TEST_F(KeyboardHandoverTest, AWindowWithoutTheKeyboardHoldsNothingUp) {
    KeyReceiver other{session.display()};
    hide();
    keyboard.tap(Key::a);
    EXPECT_TRUE(eventually([&] { return !other.presses().empty(); }));
    EXPECT_THAT(other.presses(), ElementsAre(Key::a));
    EXPECT_EQ(other.grabsSeen(), 0);
}

TEST_F(KeyboardHandoverTest, AMenuKeepsTheKeyboard) {
    target.holdKeyboard();
    hide();
    keyboard.tap(Key::a);
    EXPECT_TRUE(eventually([&] { return target.typed() == "a"; }));
    EXPECT_TRUE(windows.isKeyboardHeld());
    target.letKeyboardGo();
}

TEST_F(KeyboardHandoverTest, ATapKeepsItsKeys) {
    ASSERT_EQ(probe.ask(u"tap"_s, u"taps"_s), u"taps 1"_s);
    stopWindowManager();
    hide();
    keyboard.tap(Key::a);
    EXPECT_TRUE(probe.says(u"tapped 0"_s));
    EXPECT_TRUE(windows.isKeyboardHeld());
    probe.ask(u"stop-monitoring"_s, u"stopped"_s);
    EXPECT_TRUE(eventually([&] { return !windows.isKeyboardHeld(); }));
    EXPECT_EQ(target.typed(), QByteArray());
}

TEST_F(KeyboardHandoverTest, ATapThatBeginsMeanwhileHasTheKeyboard) {
    stopWindowManager();
    probe.send(u"hide"_s);
    ASSERT_EQ(probe.ask(u"tap"_s, u"taps"_s), u"taps 1"_s);
    keyboard.tap(Key::a);
    EXPECT_TRUE(probe.says(u"tapped 0"_s));
    keyboard.tap(Key::b);
    EXPECT_TRUE(probe.says(u"tapped 11"_s));
    EXPECT_EQ(target.typed(), QByteArray());
}

TEST_F(KeyboardHandoverTest, AHotKeyThatIsPressedMeanwhileIsToldOfOnce) {
    stopWindowManager();
    hide();
    for (int press = 0; press < 2; ++press)
        keyboard.chord({Key::super, Key::shift, Key::v});
    keyboard.tap(Key::a);
    keyboard.finish();
    EXPECT_TRUE(eventually([&] { return target.typed(kBystander) == "a"; }));
    EXPECT_TRUE(eventually([&] { return probe.count(u"released 7"_s) == 2; }));
    EXPECT_EQ(probe.lines().filter(u" 7"_s),
              (QStringList{u"pressed 7"_s, u"released 7"_s, u"pressed 7"_s, u"released 7"_s}));
}

TEST_F(KeyboardHandoverTest, AHotKeyThatIsHeldMeanwhileIsToldOfOnce) {
    for (const auto key : {Key::super, Key::shift, Key::v})
        keyboard.press(key);
    probe.send(u"hide"_s);
    EXPECT_TRUE(probe.says(u"hidden"_s));
    for (const auto key : {Key::v, Key::shift, Key::super})
        keyboard.release(key);
    EXPECT_TRUE(probe.says(u"released 7"_s));
    keyboard.chord({Key::super, Key::shift, Key::v});
    EXPECT_TRUE(eventually([&] { return probe.count(u"released 7"_s) == 2; }));
    EXPECT_EQ(probe.count(u"pressed 7"_s), 2);
    EXPECT_TRUE(eventually([&] { return !windows.isKeyboardHeld(); }));
}

TEST_F(KeyboardHandoverTest, AProgramThatDiesMeanwhileLeavesTheKeyboardFree) {
    stopWindowManager();
    hide();
    ASSERT_EQ(::kill(static_cast<pid_t>(probe.pid()), SIGKILL), 0);
    EXPECT_TRUE(eventually([&] { return !windows.isKeyboardHeld(); }));
    keyboard.tap(Key::a);
    EXPECT_TRUE(eventually([&] { return target.typed(kBystander) == "a"; }));
}

} // namespace
} // namespace kestrova::test
