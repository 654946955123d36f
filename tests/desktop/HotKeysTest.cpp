#include "tests/desktop/InputProbeProgram.h"
#include "tests/desktop/KeyReceiver.h"
#include "tests/desktop/Keys.h"
#include "tests/desktop/Printing.h"
#include "tests/desktop/TestKeyboard.h"
#include "tests/desktop/Waiting.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr std::uint16_t kLock = XCB_MOD_MASK_LOCK;
constexpr std::uint16_t kNumLock = XCB_MOD_MASK_2;
constexpr std::uint16_t kSuperShift = XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT;

/// Super+Shift+V is registered as number 7.
class HotKeysTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(probe.ask(u"install"_s, u"installed"_s), u"installed 1"_s);
        probe.ask(u"deliver 1"_s, u"delivers"_s);
        ASSERT_EQ(registerSuperShiftV(), u"status 0"_s);
        probe.forget();
    }

    QString registerSuperShiftV() { return probe.ask(u"register 9 300 7"_s, u"status"_s); }
    void typeChord() { keyboard.chord({Key::super, Key::shift, Key::v}); }
    /// What the probe says of one press and no more. All that was pressed before has been told of by then.
    void expectOnePress() {
        keyboard.finish();
        EXPECT_TRUE(probe.says(u"released 7"_s)) << probe.lines().join(u' ').toStdString();
        EXPECT_EQ(probe.lines(), (QStringList{u"pressed 7"_s, u"released 7"_s}));
        probe.forget();
    }
    /// Types the chord, of which the program, other than who holds the keyboard, says nothing.
    void expectNoPress(KeyReceiver& holder) {
        const auto seen = std::ranges::count(holder.presses(), Key::v);
        typeChord();
        EXPECT_TRUE(eventually([&] { return std::ranges::count(holder.presses(), Key::v) == seen + 1; }));
        // Keys are looked at between registrations, and told of before what is asked after the second.
        EXPECT_EQ(registerSuperShiftV(), u"status -9878"_s);
        EXPECT_EQ(registerSuperShiftV(), u"status -9878"_s);
        probe.ask(u"layout 9"_s, u"layout"_s);
        EXPECT_FALSE(probe.lines().contains(u"pressed 7"_s));
        probe.forget();
    }

    DesktopSession session;
    InputProbeProgram probe{session};
    TestKeyboard keyboard{session.display()};
};

TEST_F(HotKeysTest, APressAndItsReleaseAreToldOfOnce) {
    typeChord();
    expectOnePress();
    typeChord();
    expectOnePress();
}

TEST_F(HotKeysTest, OtherModifiersAreOtherCombinations) {
    keyboard.chord({Key::super, Key::v});
    keyboard.chord({Key::shift, Key::v});
    keyboard.chord({Key::super, Key::shift, Key::alt, Key::v});
    typeChord();
    expectOnePress();
}

TEST_F(HotKeysTest, LocksDoNotMatter) {
    keyboard.tap(Key::capsLock);
    typeChord();
    expectOnePress();
    keyboard.tap(Key::numLock);
    typeChord();
    expectOnePress();
    EXPECT_EQ(keyboard.modifiers(), kLock | kNumLock);
    keyboard.tap(Key::capsLock);
    typeChord();
    expectOnePress();
}

TEST_F(HotKeysTest, ACombinationOfAnotherProgramIsRefusedAndNothingStays) {
    probe.ask(u"unregister 7"_s, u"unregistered"_s);
    KeyReceiver other(session.display());
    ASSERT_TRUE(other.grabKey(Key::v, kSuperShift | kLock));
    EXPECT_EQ(registerSuperShiftV(), u"status -9878"_s);
    EXPECT_TRUE(other.canGrabKey(Key::v, kSuperShift));
    EXPECT_TRUE(other.canGrabKey(Key::v, kSuperShift | kNumLock));
    EXPECT_TRUE(other.canGrabKey(Key::v, kSuperShift | kNumLock | kLock));
}

TEST_F(HotKeysTest, ACombinationIsHadOnce) {
    EXPECT_EQ(probe.ask(u"register 9 300 8"_s, u"status"_s), u"status -9878"_s);
    probe.forget();
    typeChord();
    expectOnePress();
}

TEST_F(HotKeysTest, AnUnregisteredCombinationIsFreeAndTellsNothing) {
    ASSERT_EQ(probe.ask(u"register 11 300 8"_s, u"status"_s), u"status 0"_s);
    probe.ask(u"unregister 7"_s, u"unregistered"_s);
    probe.forget();
    KeyReceiver other(session.display());
    EXPECT_TRUE(other.canGrabKey(Key::v, kSuperShift));
    typeChord();
    keyboard.chord({Key::super, Key::shift, Key::b});
    EXPECT_TRUE(probe.says(u"released 8"_s));
    EXPECT_EQ(probe.lines(), (QStringList{u"pressed 8"_s, u"released 8"_s}));
}

TEST_F(HotKeysTest, KeysAndModifiersThatDoNotExistAreRefused) {
    EXPECT_EQ(probe.ask(u"register 200 300 8"_s, u"status"_s), u"status -9868"_s);
    EXPECT_EQ(probe.ask(u"register 9 20300 8"_s, u"status"_s), u"status -9868"_s);
}

TEST_F(HotKeysTest, NothingIsToldWhileDeliveryIsOff) {
    ASSERT_EQ(probe.ask(u"register 11 300 8"_s, u"status"_s), u"status 0"_s);
    probe.ask(u"deliver 0"_s, u"delivers"_s);
    probe.forget();
    KeyReceiver other(session.display());
    typeChord();
    keyboard.tap(Key::a);
    // The chord has been dealt with when what followed it has arrived.
    ASSERT_TRUE(eventually([&] { return !other.presses().empty() && other.presses().back() == Key::a; }));
    probe.ask(u"deliver 1"_s, u"delivers"_s);
    keyboard.chord({Key::super, Key::shift, Key::b});
    EXPECT_TRUE(probe.says(u"released 8"_s));
    EXPECT_EQ(probe.lines(), (QStringList{u"delivers"_s, u"pressed 8"_s, u"released 8"_s}));
}

TEST_F(HotKeysTest, AHeldCombinationIsPressedOnce) {
    session.run(u"xset"_s, {u"r"_s, u"rate"_s, u"50"_s, u"100"_s});
    KeyReceiver other(session.display());
    for (const auto key : {Key::super, Key::shift, Key::v})
        keyboard.press(key);
    // Each repeat is grabbed again.
    EXPECT_TRUE(eventually([&] { return other.grabsSeen() > 10; }));
    for (const auto key : {Key::v, Key::shift, Key::super})
        keyboard.release(key);
    expectOnePress();
}

TEST_F(HotKeysTest, TheReleaseIsThatOfTheKeyAlsoWhenItsModifiersGoFirst) {
    session.run(u"xset"_s, {u"r"_s, u"rate"_s, u"50"_s, u"100"_s});
    KeyReceiver other(session.display());
    for (const auto key : {Key::super, Key::shift, Key::v})
        keyboard.press(key);
    keyboard.release(Key::super);
    keyboard.release(Key::shift);
    // The repeats are the other window's now.
    EXPECT_TRUE(eventually([&] { return std::ranges::count(other.presses(), Key::v) > 10; }));
    EXPECT_EQ(probe.lines(), QStringList{u"pressed 7"_s});
    keyboard.press(Key::super);
    keyboard.press(Key::shift);
    const int grabs = other.grabsSeen();
    EXPECT_TRUE(eventually([&] { return other.grabsSeen() > grabs + 10; }));
    EXPECT_EQ(probe.lines(), QStringList{u"pressed 7"_s});
    for (const auto key : {Key::v, Key::shift, Key::super})
        keyboard.release(key);
    expectOnePress();
}

TEST_F(HotKeysTest, APressArrivesWhileAnotherProgramHoldsTheKeyboard) {
    KeyReceiver menu(session.display());
    ASSERT_TRUE(menu.grabKeyboard());
    for (int i = 0; i < 20; ++i) {
        for (const auto key : {Key::super, Key::shift, Key::v})
            keyboard.press(key);
        EXPECT_TRUE(probe.says(u"pressed 7"_s));
        for (const auto key : {Key::v, Key::shift, Key::super})
            keyboard.release(key);
        expectOnePress();
    }
    // The menu got its keys as well: they were looked at, not taken.
    EXPECT_TRUE(eventually([&] { return std::ranges::count(menu.presses(), Key::v) == 20; }));
}

TEST_F(HotKeysTest, AScreenLockerIsNoMenu) {
    KeyReceiver locker(session.display());
    ASSERT_TRUE(locker.grabKeyboard());
    locker.cover(locker.screen());
    expectNoPress(locker);
    locker.cover({0, 0, 200, 200});
    typeChord();
    expectOnePress();
}

TEST_F(HotKeysTest, AWindowOfItsOwnOverEverythingIsNoScreenLocker) {
    KeyReceiver menu(session.display());
    ASSERT_TRUE(menu.grabKeyboard());
    probe.ask(u"cover"_s, u"covers"_s);
    probe.forget();
    typeChord();
    expectOnePress();
    menu.cover(menu.screen());
    expectNoPress(menu);
}

TEST_F(HotKeysTest, AScreenLockerWithAWindowOnEachMonitorIsNoMenu) {
    // The screen is larger than both together.
    session.run(u"xrandr"_s, {u"--setmonitor"_s, u"L"_s, u"640/169x600/158+0+0"_s, u"screen"_s});
    session.run(u"xrandr"_s, {u"--setmonitor"_s, u"R"_s, u"500/132x400/105+640+100"_s, u"none"_s});
    KeyReceiver left(session.display());
    KeyReceiver right(session.display());
    ASSERT_TRUE(left.grabKeyboard());
    left.cover({0, 0, 640, 600});
    typeChord();
    expectOnePress();
    right.cover({640, 100, 500, 400});
    expectNoPress(left);
    right.cover({640, 100, 500, 399});
    typeChord();
    expectOnePress();
}

TEST_F(HotKeysTest, TwoWindowsOverTheSameHalfHideNothingOfTheOther) {
    KeyReceiver menu(session.display());
    KeyReceiver other(session.display());
    ASSERT_TRUE(menu.grabKeyboard());
    QRect half = menu.screen();
    half.setWidth(half.width() / 2);
    menu.cover(half);
    other.cover(half);
    typeChord();
    expectOnePress();
    other.cover(half.translated(half.width(), 0));
    expectNoPress(menu);
}

TEST_F(HotKeysTest, WhatTheWindowManagerPutsUpIsNoScreenLocker) {
    KeyReceiver frames(session.display());
    KeyReceiver menu(session.display());
    ASSERT_TRUE(menu.grabKeyboard());
    frames.cover(frames.screen());
    expectNoPress(menu);
    frames.actAsWindowManager();
    typeChord();
    expectOnePress();
}

TEST_F(HotKeysTest, LocksDoNotMatterWhileAnotherProgramHoldsTheKeyboard) {
    KeyReceiver menu(session.display());
    ASSERT_TRUE(menu.grabKeyboard());
    keyboard.tap(Key::capsLock);
    keyboard.tap(Key::numLock);
    for (const auto key : {Key::super, Key::shift, Key::v})
        keyboard.press(key);
    EXPECT_TRUE(probe.says(u"pressed 7"_s));
    for (const auto key : {Key::v, Key::shift, Key::super})
        keyboard.release(key);
    expectOnePress();
}

TEST_F(HotKeysTest, WhatIsTypedRightAfterTheChordReachesTheFocus) {
    KeyReceiver focus(session.display());
    constexpr int kTimes = 200;
    for (int i = 0; i < kTimes; ++i) {
        typeChord();
        keyboard.tap(Key::a);
        keyboard.tap(Key::b);
    }
    EXPECT_TRUE(eventually([&] { return std::ranges::count(focus.presses(), Key::b) == kTimes; }));
    EXPECT_EQ(std::ranges::count(focus.presses(), Key::a), kTimes);
    EXPECT_EQ(std::ranges::count(focus.presses(), Key::v), 0);
    EXPECT_TRUE(eventually([&] { return probe.count(u"released 7"_s) == kTimes; }));
    EXPECT_EQ(probe.count(u"pressed 7"_s), kTimes);
}

TEST_F(HotKeysTest, ABusyProgramDoesNotHoldTheKeyboard) {
    KeyReceiver focus(session.display());
    probe.ask(u"busy 3000"_s, u"busy"_s);
    typeChord();
    keyboard.tap(Key::a);
    EXPECT_TRUE(eventually([&] { return std::ranges::count(focus.presses(), Key::a) == 1; }, 2s));
    EXPECT_FALSE(probe.lines().contains(u"free"_s));
    EXPECT_TRUE(probe.says(u"released 7"_s));
}

TEST_F(HotKeysTest, AModifierThatMovesIsFollowed) {
    session.run(u"xmodmap"_s, {u"-e"_s, u"clear mod4"_s, u"-e"_s, u"add mod3 = Super_L"_s});
    KeyReceiver other(session.display());
    EXPECT_TRUE(eventually([&] { return !other.canGrabKey(Key::v, XCB_MOD_MASK_3 | XCB_MOD_MASK_SHIFT); }));
    EXPECT_TRUE(other.canGrabKey(Key::v, kSuperShift));
    typeChord();
    expectOnePress();
}

TEST_F(HotKeysTest, AMenuOfItsOwnOffersItsKeys) {
    const QString window = probe.ask(u"show"_s, u"window"_s).mid(7);
    giveKeyboardTo(session, window);
    probe.ask(u"deliver-raw 1"_s, u"delivers raw"_s);
    probe.ask(u"swallow 125"_s, u"swallows"_s);
    probe.forget();
    keyboard.tap(Key::a);
    EXPECT_TRUE(probe.says(u"text a"_s));
    probe.ask(u"menu"_s, u"opened"_s);
    probe.forget();
    keyboard.chord({Key::control, Key::a});
    keyboard.tap(Key::down);
    EXPECT_TRUE(probe.says(u"rawup 125 a00000"_s)) << probe.lines().join(u' ').toStdString();
    EXPECT_EQ(probe.lines(), (QStringList{u"rawdown 0 40000"_s, u"rawup 0 40000"_s, u"rawdown 125 a00000"_s,
                                          u"rawup 125 a00000"_s}));
    // Down was swallowed, so that nothing is chosen yet.
    keyboard.tap(36);
    ASSERT_TRUE(probe.says(u"rawdown 36 0"_s));
    probe.ask(u"close-menu"_s, u"closed"_s);
    EXPECT_FALSE(probe.lines().contains(u"menu chose first"_s));
}

} // namespace
} // namespace kestrova::test
