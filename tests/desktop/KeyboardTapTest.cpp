#include "tests/desktop/InputProbeProgram.h"
#include "tests/desktop/KeyReceiver.h"
#include "tests/desktop/Keys.h"
#include "tests/desktop/Printing.h"
#include "tests/desktop/TestKeyboard.h"
#include "tests/desktop/Waiting.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr std::uint8_t kEscape = 9;

/// Another program has the keyboard. Super+Shift+V is registered as number 7.
class KeyboardTapTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(probe.ask(u"install"_s, u"installed"_s), u"installed 1"_s);
        probe.ask(u"deliver 1"_s, u"delivers"_s);
        ASSERT_EQ(probe.ask(u"register 9 300 7"_s, u"status"_s), u"status 0"_s);
        probe.forget();
    }

    void startTap() {
        keyboard.finish();
        ASSERT_EQ(probe.ask(u"tap"_s, u"taps"_s), u"taps 1"_s);
        probe.forget();
    }
    void startWatch() {
        ASSERT_EQ(probe.ask(u"watch"_s, u"watches"_s), u"watches 1"_s);
        probe.forget();
    }
    void stop() {
        keyboard.finish();
        probe.ask(u"stop-monitoring"_s, u"stopped"_s);
        probe.forget();
    }
    /// Returns when the tap has dealt with all that the server has told by now.
    void awaitTap() {
        // What was told is dealt with on the same connection before what is asked there next.
        for (int i = 0; i < 2; ++i)
            EXPECT_EQ(probe.ask(u"register 9 300 8"_s, u"status"_s), u"status -9878"_s);
        probe.forget();
    }
    /// A key that the server takes for a held one's repeat.
    void repeat(std::uint8_t key) { keyboard.press(key); }
    /// What has come to it when the key that is pressed now has.
    static std::vector<std::uint8_t> pressesBefore(TestKeyboard& keyboard, std::uint8_t key,
                                                   KeyReceiver& receiver) {
        keyboard.tap(key);
        EXPECT_TRUE(eventually([&] {
            return !receiver.presses().empty() && receiver.presses().back() == key;
        })) << testing::PrintToString(receiver.presses());
        auto presses = receiver.presses();
        if (!presses.empty())
            presses.pop_back();
        return presses;
    }

    DesktopSession session;
    InputProbeProgram probe{session};
    TestKeyboard keyboard{session.display()};
    KeyReceiver other{session.display()};
};

TEST_F(KeyboardTapTest, KeysAreToldOfAndReachNobodyAndAfterItTheyDoAgain) {
    startTap();
    keyboard.tap(Key::a);
    keyboard.tap(kEscape);
    keyboard.tap(Key::b);
    EXPECT_TRUE(probe.says(u"tapped 11"_s));
    EXPECT_EQ(probe.lines(), (QStringList{u"tapped 0"_s, u"tapped 53"_s, u"tapped 11"_s}));
    stop();
    EXPECT_THAT(pressesBefore(keyboard, Key::v, other), IsEmpty());
    EXPECT_THAT(pressesBefore(keyboard, Key::a, other), ElementsAre(Key::v));
    EXPECT_THAT(probe.lines(), IsEmpty());
}

TEST_F(KeyboardTapTest, KeysThatAreOnlyWatchedReachTheFocus) {
    startWatch();
    keyboard.tap(Key::a);
    keyboard.tap(kEscape);
    EXPECT_TRUE(probe.says(u"seen 53"_s));
    EXPECT_EQ(probe.lines(), (QStringList{u"seen 0"_s, u"seen 53"_s}));
    EXPECT_THAT(pressesBefore(keyboard, Key::v, other), ElementsAre(Key::a, kEscape));
    stop();
    EXPECT_THAT(pressesBefore(keyboard, Key::b, other), ElementsAre(Key::a, kEscape, Key::v));
    EXPECT_THAT(probe.lines(), IsEmpty());
}

TEST_F(KeyboardTapTest, AHotKeyWorksAndIsNoKeyForTheTap) {
    keyboard.press(Key::super);
    startTap();
    keyboard.chord({Key::shift, Key::v});
    EXPECT_TRUE(probe.says(u"released 7"_s));
    keyboard.release(Key::super);
    keyboard.tap(Key::v);
    EXPECT_TRUE(probe.says(u"tapped 9"_s));
    EXPECT_EQ(probe.lines(), (QStringList{u"tapped 56"_s, u"pressed 7"_s, u"released 7"_s, u"tapped 9"_s}));
    stop();
    EXPECT_THAT(pressesBefore(keyboard, Key::a, other), ElementsAre(Key::super));
    EXPECT_EQ(other.modifiersAtPressOf(Key::a), 0);
}

TEST_F(KeyboardTapTest, AHotKeyIsNoKeyForAWatchEither) {
    startWatch();
    keyboard.chord({Key::super, Key::shift, Key::v});
    keyboard.tap(Key::a);
    EXPECT_TRUE(probe.says(u"seen 0"_s));
    EXPECT_EQ(probe.count(u"pressed 7"_s), 1);
    EXPECT_EQ(probe.count(u"seen 9"_s), 0);
}

TEST_F(KeyboardTapTest, TheHotKeyThatStartsItMayStillBeHeld) {
    for (const auto key : {Key::super, Key::shift, Key::v})
        keyboard.press(key);
    ASSERT_TRUE(probe.says(u"pressed 7"_s));
    startTap();
    repeat(Key::v);
    repeat(Key::v);
    for (const auto key : {Key::super, Key::shift, Key::v})
        keyboard.release(key);
    EXPECT_TRUE(probe.says(u"released 7"_s));
    keyboard.tap(Key::v);
    EXPECT_TRUE(probe.says(u"tapped 9"_s));
    EXPECT_EQ(probe.lines(), (QStringList{u"released 7"_s, u"tapped 9"_s}));
    stop();
    EXPECT_THAT(pressesBefore(keyboard, Key::a, other), Not(Contains(Key::v)));
}

TEST_F(KeyboardTapTest, AKeyThatWasHeldBeforeItIsToldOfWhenItIsPressedAnew) {
    keyboard.press(kEscape);
    repeat(kEscape);
    ASSERT_TRUE(eventually([&] { return other.presses().size() == 2; }));
    startTap();
    repeat(kEscape);
    keyboard.tap(Key::a);
    repeat(kEscape);
    keyboard.release(kEscape);
    keyboard.tap(kEscape);
    EXPECT_TRUE(probe.says(u"tapped 53"_s));
    EXPECT_EQ(probe.lines(), (QStringList{u"tapped 0"_s, u"tapped 53"_s}));
}

TEST_F(KeyboardTapTest, AKeyThatItHasTakenReachesNobodyUntilItIsLetGo) {
    startTap();
    keyboard.press(kEscape);
    ASSERT_TRUE(probe.says(u"tapped 53"_s));
    stop();
    repeat(kEscape);
    repeat(kEscape);
    EXPECT_FALSE(other.grabKeyboard());
    keyboard.release(kEscape);
    EXPECT_TRUE(eventually([&] { return other.grabKeyboard(); }));
    other.releaseKeyboard();
    EXPECT_THAT(pressesBefore(keyboard, Key::a, other), IsEmpty());
    keyboard.tap(kEscape);
    keyboard.tap(Key::b);
    EXPECT_THAT(pressesBefore(keyboard, Key::v, other), ElementsAre(Key::a, kEscape, Key::b));
    EXPECT_THAT(probe.lines(), IsEmpty());
}

TEST_F(KeyboardTapTest, WhatIsTypedWhileAKeyThatItHasTakenIsStillHeldReachesTheFocus) {
    startTap();
    keyboard.press(kEscape);
    ASSERT_TRUE(probe.says(u"tapped 53"_s));
    stop();
    repeat(kEscape);
    // As fast typists do: each key goes down before the one before it is up.
    keyboard.press(Key::a);
    keyboard.release(kEscape);
    keyboard.press(Key::b);
    keyboard.release(Key::a);
    keyboard.release(Key::b);
    keyboard.tap(kEscape);
    EXPECT_THAT(pressesBefore(keyboard, Key::v, other), ElementsAre(Key::a, Key::b, kEscape));
    EXPECT_THAT(probe.lines(), IsEmpty());
}

TEST_F(KeyboardTapTest, AModifierBehindItLetsNoRepeatOfATakenKeyThrough) {
    startTap();
    keyboard.press(kEscape);
    ASSERT_TRUE(probe.says(u"tapped 53"_s));
    stop();
    keyboard.press(Key::shift);
    repeat(kEscape);
    EXPECT_THAT(pressesBefore(keyboard, Key::a, other), IsEmpty());
    EXPECT_EQ(other.modifiersAtPressOf(Key::a), XCB_MOD_MASK_SHIFT);
    keyboard.release(Key::shift);
    keyboard.release(kEscape);
    EXPECT_THAT(pressesBefore(keyboard, Key::b, other), ElementsAre(Key::a));
    EXPECT_EQ(other.modifiersAtPressOf(Key::b), 0);
}

TEST_F(KeyboardTapTest, AHotKeyWorksWhileAKeyThatItHasTakenIsStillHeldAndAfterwards) {
    startTap();
    keyboard.press(kEscape);
    ASSERT_TRUE(probe.says(u"tapped 53"_s));
    stop();
    keyboard.chord({Key::super, Key::shift, Key::v});
    EXPECT_TRUE(probe.says(u"released 7"_s));
    keyboard.release(kEscape);
    keyboard.chord({Key::super, Key::shift, Key::v});
    EXPECT_TRUE(eventually([&] { return probe.count(u"released 7"_s) == 2; }));
    EXPECT_EQ(probe.count(u"pressed 7"_s), 2);
    EXPECT_THAT(pressesBefore(keyboard, Key::a, other), Not(Contains(Key::v)));
}

TEST_F(KeyboardTapTest, AKeyThatIsLetGoBehindItIsAHotKeysAfterwards) {
    startTap();
    keyboard.press(Key::v);
    ASSERT_TRUE(probe.says(u"tapped 9"_s));
    stop();
    keyboard.press(Key::a);
    keyboard.release(Key::v);
    keyboard.release(Key::a);
    ASSERT_THAT(pressesBefore(keyboard, Key::b, other), ElementsAre(Key::a));
    keyboard.chord({Key::super, Key::shift, Key::v});
    EXPECT_TRUE(probe.says(u"released 7"_s));
    EXPECT_EQ(probe.lines(), (QStringList{u"pressed 7"_s, u"released 7"_s}));
}

TEST_F(KeyboardTapTest, AKeyThatWasTypedBehindItIsAHotKeysAfterwards) {
    startTap();
    keyboard.press(kEscape);
    ASSERT_TRUE(probe.says(u"tapped 53"_s));
    stop();
    keyboard.tap(Key::v);
    keyboard.release(kEscape);
    ASSERT_THAT(pressesBefore(keyboard, Key::a, other), ElementsAre(Key::v));
    keyboard.chord({Key::super, Key::shift, Key::v});
    EXPECT_TRUE(probe.says(u"released 7"_s));
    EXPECT_EQ(probe.lines(), (QStringList{u"pressed 7"_s, u"released 7"_s}));
}

TEST_F(KeyboardTapTest, ATapThatFollowsWhileThatKeyIsHeldIsATapAllTheSame) {
    startTap();
    keyboard.press(kEscape);
    ASSERT_TRUE(probe.says(u"tapped 53"_s));
    stop();
    startTap();
    repeat(kEscape);
    keyboard.tap(Key::a);
    keyboard.release(kEscape);
    keyboard.tap(Key::b);
    EXPECT_TRUE(probe.says(u"tapped 11"_s));
    EXPECT_EQ(probe.lines(), (QStringList{u"tapped 0"_s, u"tapped 11"_s}));
    stop();
    EXPECT_THAT(pressesBefore(keyboard, Key::a, other), IsEmpty());
}

TEST_F(KeyboardTapTest, AModifierThatIsHeldAtItsEndIsTheNextOnes) {
    startTap();
    keyboard.press(Key::shift);
    ASSERT_TRUE(probe.says(u"tapped 56"_s));
    stop();
    EXPECT_THAT(pressesBefore(keyboard, Key::a, other), IsEmpty());
    EXPECT_EQ(other.modifiersAtPressOf(Key::a), XCB_MOD_MASK_SHIFT);
    keyboard.release(Key::shift);
}

TEST_F(KeyboardTapTest, AModifierThatIsLetGoDuringItIsNotStuckAfterIt) {
    keyboard.press(Key::shift);
    startTap();
    keyboard.release(Key::shift);
    keyboard.tap(Key::b);
    ASSERT_TRUE(probe.says(u"tapped 11"_s));
    stop();
    EXPECT_THAT(pressesBefore(keyboard, Key::a, other), ElementsAre(Key::shift));
    EXPECT_EQ(other.modifiersAtPressOf(Key::a), 0);
}

TEST_F(KeyboardTapTest, EachRepeatOfAHeldKeyIsToldOf) {
    session.run(u"xset"_s, {u"r"_s, u"rate"_s, u"50"_s, u"100"_s});
    startTap();
    keyboard.press(Key::b);
    EXPECT_TRUE(eventually([&] { return probe.count(u"tapped 11"_s) > 3; }));
    keyboard.release(Key::b);
    EXPECT_THAT(probe.lines(), Each(u"tapped 11"_s));
}

TEST_F(KeyboardTapTest, WindowsOfTheProgramItselfGetNoKeysEither) {
    const QString window = probe.ask(u"show"_s, u"window"_s).mid(7);
    giveKeyboardTo(session, window);
    startTap();
    keyboard.tap(Key::a);
    EXPECT_TRUE(probe.says(u"tapped 0"_s));
    stop();
    keyboard.tap(Key::b);
    EXPECT_TRUE(probe.says(u"text b"_s)) << probe.lines().join(u'|').toStdString();
}

TEST_F(KeyboardTapTest, WhileAnotherProgramHoldsTheKeyboardItsKeysAreToldOfAndReachIt) {
    ASSERT_TRUE(other.grabKeyboard());
    startTap();
    keyboard.tap(Key::a);
    keyboard.chord({Key::super, Key::shift, Key::v});
    EXPECT_TRUE(probe.says(u"released 7"_s));
    EXPECT_EQ(probe.count(u"tapped 0"_s), 1);
    EXPECT_EQ(probe.count(u"pressed 7"_s), 1);
    EXPECT_EQ(probe.count(u"tapped 9"_s), 0);
    EXPECT_THAT(pressesBefore(keyboard, Key::b, other), ElementsAre(Key::a, Key::super, Key::shift, Key::v));
}

TEST_F(KeyboardTapTest, WhenAMenuIsClosedWithAKeyTheNextOneIsTheTaps) {
    ASSERT_TRUE(other.grabKeyboard());
    startTap();
    keyboard.press(kEscape);
    ASSERT_TRUE(eventually([&] { return !other.presses().empty(); }));
    other.releaseKeyboard();
    keyboard.release(kEscape);
    ASSERT_TRUE(probe.says(u"tapped 53"_s));
    awaitTap();
    keyboard.tap(Key::a);
    EXPECT_TRUE(probe.says(u"tapped 0"_s));
    stop();
    EXPECT_THAT(pressesBefore(keyboard, Key::b, other), ElementsAre(kEscape));
}

TEST_F(KeyboardTapTest, WhenAMenuIsClosedWithTheMouseTheNextKeyIsTheTaps) {
    ASSERT_TRUE(other.grabKeyboard());
    startTap();
    other.releaseKeyboard();
    // Elsewhere the window manager would move the focus.
    keyboard.click(1, 950, 550);
    awaitTap();
    keyboard.tap(Key::a);
    EXPECT_TRUE(probe.says(u"tapped 0"_s));
    stop();
    EXPECT_THAT(pressesBefore(keyboard, Key::b, other), IsEmpty());
}

TEST_F(KeyboardTapTest, WhenAMenuClosesByItselfTheNextKeyIsTheTaps) {
    KeyReceiver menu{session.display()};
    other.takeFocus();
    ASSERT_TRUE(menu.grabKeyboard());
    startTap();
    menu.releaseKeyboard();
    awaitTap();
    keyboard.tap(Key::a);
    EXPECT_TRUE(probe.says(u"tapped 0"_s));
    stop();
    EXPECT_THAT(pressesBefore(keyboard, Key::b, other), IsEmpty());
    EXPECT_THAT(menu.presses(), IsEmpty());
}

TEST_F(KeyboardTapTest, AMenuThatOpensAWindowGivesTheKeyboardToTheTapAllTheSame) {
    KeyReceiver menu{session.display()};
    other.takeFocus();
    ASSERT_TRUE(menu.grabKeyboard());
    startTap();
    KeyReceiver opened{session.display()};
    awaitTap();
    menu.releaseKeyboard();
    awaitTap();
    keyboard.tap(Key::a);
    EXPECT_TRUE(probe.says(u"tapped 0"_s));
    stop();
    EXPECT_THAT(pressesBefore(keyboard, Key::b, opened), IsEmpty());
    EXPECT_THAT(other.presses(), IsEmpty());
}

TEST_F(KeyboardTapTest, TheHotKeyOfAnotherProgramIsWaitedFor) {
    // A desktop that runs the program by a key of its own keeps the keyboard until that key is let go.
    ASSERT_TRUE(other.grabKey(Key::b, XCB_MOD_MASK_4));
    keyboard.press(Key::super);
    keyboard.press(Key::b);
    ASSERT_TRUE(eventually([&] { return !other.presses().empty() && other.presses().back() == Key::b; }));
    startTap();
    keyboard.release(Key::b);
    keyboard.release(Key::super);
    keyboard.finish();
    awaitTap();
    keyboard.tap(Key::a);
    EXPECT_TRUE(probe.says(u"tapped 0"_s));
    stop();
    EXPECT_THAT(pressesBefore(keyboard, Key::v, other), Not(Contains(Key::a)));
}

TEST_F(KeyboardTapTest, WhatIsTypedRightBehindTheTapReachesTheFocus) {
    for (int i = 0; i < 20; ++i) {
        startTap();
        keyboard.tap(kEscape);
        ASSERT_TRUE(probe.says(u"tapped 53"_s));
        stop();
        keyboard.tap(Key::a);
    }
    EXPECT_TRUE(eventually([&] { return other.presses().size() == 20; })) << other.presses().size();
    EXPECT_THAT(other.presses(), Each(Key::a));
}

} // namespace
} // namespace kestrova::test
