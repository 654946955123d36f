#include "tests/desktop/TypingTarget.h"
#include "tests/desktop/ClipboardReader.h"
#include "tests/desktop/DesktopTest.h"
#include "tests/desktop/KeyPresser.h"
#include "tests/desktop/PasteDestination.h"

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

/// That the tests' own programs and people do what the tests of the shelf take for granted.
class TypingTargetTest : public DesktopTest {
protected:
    KeyPresser keys{session.display()};
    DesktopWindows windows{session.display()};
};

TEST_F(TypingTargetTest, EveryKeyOfABurstIsToldOnceAndInOrder) {
    const TypingTarget target(session, {u"target"_s});
    QByteArray sent;
    for (int round = 0; round < 40; ++round)
        sent += "abcdefghijklmnopqrstuvwxyz0123456789";
    keys.type(sent);
    EXPECT_TRUE(eventually([&] { return target.typed() == sent; })) << target.typed().toStdString();
    EXPECT_EQ(keys.keysDown(), std::vector<xcb_keycode_t>());
}

TEST_F(TypingTargetTest, AHeldKeyIsRepeated) {
    const TypingTarget target(session, {u"target"_s});
    ASSERT_EQ(session.run(u"xset"_s, {u"r"_s, u"rate"_s, u"200"_s, u"50"_s}).exitStatus, 0);
    keys.press(keyAt::a);
    EXPECT_TRUE(eventually([&] { return target.typed().size() >= 20; }));
    keys.release(keyAt::a);
}

TEST_F(TypingTargetTest, TheWindowThatHasTheKeyboardPastes) {
    const TypingTarget target(session, {u"first"_s, u"second"_s});
    copyText("for the second 둘");
    keys.chord({keyAt::control, keyAt::v});
    EXPECT_TRUE(eventually([&] { return target.pasted(1) == QStringList{u"for the second 둘"_s}; }));
    ASSERT_TRUE(windows.activate(target.window(0)));
    copyText("for the first");
    keys.chord({keyAt::control, keyAt::v});
    EXPECT_TRUE(eventually([&] { return target.pasted(0) == QStringList{u"for the first"_s}; }));
    EXPECT_EQ(target.pasted(1).size(), 1);
}

TEST_F(TypingTargetTest, AHeldKeyboardGetsTheKeysOfOthers) {
    TypingTarget holder(session, {u"holder"_s});
    const TypingTarget other(session, {u"other"_s});
    ASSERT_FALSE(windows.isKeyboardHeld());
    holder.holdKeyboard();
    ASSERT_TRUE(windows.isKeyboardHeld());
    keys.type("abc");
    EXPECT_TRUE(eventually([&] { return holder.typed() == "abc"; }));
    holder.letKeyboardGo();
    keys.type("xyz");
    EXPECT_TRUE(eventually([&] { return other.typed() == "xyz"; }));
    EXPECT_EQ(holder.typed(), "abc");
}

TEST_F(TypingTargetTest, TheThiefTakesTheFocusUntilItIsToldNotTo) {
    TypingTarget thief(session, {u"thief"_s});
    const TypingTarget first(session, {u"first"_s});
    const TypingTarget second(session, {u"second"_s});
    thief.stealFocusFrom(first.window(0));
    windows.requestActivation(first.window(0));
    EXPECT_TRUE(eventually([&] { return thief.hasStolen() && windows.hasKeyboard(thief.window(0)); }));
    EXPECT_TRUE(windows.activate(second.window(0)));
    thief.stealFocusFrom(XCB_WINDOW_NONE);
    EXPECT_TRUE(windows.activate(first.window(0)));
}

TEST_F(TypingTargetTest, AWindowThatRefusesTheKeyboardDoesNotGetIt) {
    const TypingTarget first(session, {u"first"_s});
    const TypingTarget second(session, {u"second"_s});
    windows.refuseKeyboard(first.window(0));
    windows.requestActivation(first.window(0));
    // What the window manager does with a request that it got later shows that it is done with this one.
    ASSERT_TRUE(windows.activate(second.window(0)));
    windows.requestActivation(first.window(0));
    EXPECT_TRUE(
        throughout(std::chrono::milliseconds(200), [&] { return !windows.hasKeyboard(first.window(0)); }));
}

TEST_F(TypingTargetTest, LocksAndGroupsAreSetAndTold) {
    keys.lock(keyAt::capsLock, true);
    EXPECT_EQ(keys.modifiers(), XCB_MOD_MASK_LOCK);
    keys.lock(keyAt::capsLock, true);
    EXPECT_EQ(keys.modifiers(), XCB_MOD_MASK_LOCK);
    keys.lock(keyAt::capsLock, false);
    EXPECT_EQ(keys.modifiers(), 0);
    EXPECT_THROW(keys.lockGroup(1), std::runtime_error);
    ASSERT_EQ(session.run(u"setxkbmap"_s, {u"-layout"_s, u"us,ru"_s}).exitStatus, 0);
    EXPECT_NO_THROW(keys.lockGroup(1));
    keys.press(keyAt::shift);
    EXPECT_EQ(keys.keysDown(), std::vector<xcb_keycode_t>{keyAt::shift});
    EXPECT_EQ(keys.modifiers(), XCB_MOD_MASK_SHIFT);
}

class PasteDestinationTest : public TypingTargetTest,
                             public ::testing::WithParamInterface<PasteDestination::Kind> {};

TEST_P(PasteDestinationTest, WhatIsTypedStandsInIt) {
    const auto destination = PasteDestination::start(session, GetParam());
    EXPECT_FALSE(destination->hasText());
    EXPECT_TRUE(destination->hasKeyboard());
    keys.type("Typed text 1");
    EXPECT_TRUE(destination->waitForAnyText());
    EXPECT_TRUE(destination->waitForText(u"Typed text 1"_s)) << destination->text().toStdString();
}

INSTANTIATE_TEST_SUITE_P(Programs, PasteDestinationTest,
                         ::testing::Values(PasteDestination::Kind::Mousepad, PasteDestination::Kind::QtEditor,
                                           PasteDestination::Kind::Xterm, PasteDestination::Kind::Lxterminal,
                                           PasteDestination::Kind::XfceTerminal,
                                           PasteDestination::Kind::Chromium),
                         ::testing::PrintToStringParamName());

} // namespace
} // namespace kestrova::test
