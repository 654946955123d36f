#include "tests/desktop/Mouse.h"
#include "tests/desktop/PasteDestination.h"
#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/TypingTarget.h"

#include <QJsonArray>

#include <xcb/xproto.h>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

class ShelfShortcutTest : public ShelfTest {
protected:
    /// One press opens the shelf, the next one closes it and the target has the keyboard again.
    void expectToggles(const TypingTarget& target) {
        for (int round = 0; round < 2; ++round) {
            pressShortcut();
            ASSERT_TRUE(shelf.waitForKeyboard());
            pressShortcut();
            ASSERT_TRUE(shelf.waitUntilGone());
            ASSERT_TRUE(eventually([&] { return windows.hasKeyboard(target.window(0)); }));
        }
        EXPECT_EQ(keys.keysDown(), std::vector<xcb_keycode_t>());
        // Nothing of the shortcut's letter came through.
        EXPECT_EQ(target.typed(), "");
    }
    void setLayout(const QStringList& arguments) {
        ASSERT_EQ(session.run(u"setxkbmap"_s, arguments).exitStatus, 0);
    }
};

TEST_F(ShelfShortcutTest, ItTogglesTheShelfWhileAnotherProgramHasTheFocus) {
    startWith({});
    const TypingTarget target(session, {u"target"_s});
    expectToggles(target);
}

TEST_F(ShelfShortcutTest, LocksDoNotMatterToIt) {
    startWith({});
    const TypingTarget target(session, {u"target"_s});
    for (const auto& [caps, num] : {std::pair(true, false), std::pair(false, true), std::pair(true, true)}) {
        SCOPED_TRACE(std::string(caps ? "Caps Lock " : "") + (num ? "Num Lock" : ""));
        keys.lock(keyAt::capsLock, caps);
        keys.lock(keyAt::numLock, num);
        expectToggles(target);
    }
}

TEST_F(ShelfShortcutTest, AnotherLayoutLeavesItWhereItIs) {
    startWith({});
    const TypingTarget target(session, {u"target"_s});
    setLayout({u"-layout"_s, u"us"_s, u"-variant"_s, u"dvorak"_s});
    expectToggles(target);
    setLayout({u"-layout"_s, u"us"_s});
    expectToggles(target);
}

TEST_F(ShelfShortcutTest, ASecondGroupWithoutLatinLettersLeavesItWhereItIs) {
    startWith({});
    const TypingTarget target(session, {u"target"_s});
    setLayout({u"-layout"_s, u"us,ru"_s});
    keys.lockGroup(1);
    expectToggles(target);
    keys.lockGroup(0);
    expectToggles(target);
}

TEST_F(ShelfShortcutTest, ALayoutOfAnotherScriptLeavesItWhereItIs) {
    startWith({});
    const TypingTarget target(session, {u"target"_s});
    for (const QString& layout : {u"ru"_s, u"kr"_s, u"gr"_s}) {
        SCOPED_TRACE(layout.toStdString());
        setLayout({u"-layout"_s, layout});
        expectToggles(target);
    }
}

TEST_F(ShelfShortcutTest, ALetterTypedBesideItIsNoShortcut) {
    startWith({});
    const TypingTarget target(session, {u"target"_s});
    keys.chord({keyAt::super, keyAt::v});
    keys.chord({keyAt::shift, keyAt::v});
    keys.chord({keyAt::super, keyAt::shift, keyAt::alt, keyAt::v});
    keys.type("v");
    ASSERT_TRUE(eventually([&] { return target.typed() == "v"; }));
    EXPECT_FALSE(shelf.isUp());
}

TEST_F(ShelfShortcutTest, ItOpensTheShelfWhileAnotherProgramHoldsTheKeyboard) {
    startWith({});
    TypingTarget target(session, {u"target"_s});
    target.holdKeyboard();
    pressShortcut();
    EXPECT_TRUE(eventually([this] { return shelf.isUp(); }));
    // Once only.
    EXPECT_TRUE(throughout(std::chrono::milliseconds(300), [this] { return shelf.isUp(); }));
    target.letKeyboardGo();
    EXPECT_TRUE(shelf.waitForKeyboard());
}

TEST_F(ShelfShortcutTest, ItClosesTheShelfWhileAnotherProgramHoldsTheKeyboard) {
    startWith({});
    TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(shelf.open());
    target.holdKeyboard();
    pressShortcut();
    EXPECT_TRUE(shelf.waitUntilGone());
}

TEST_F(ShelfShortcutTest, ItOpensTheShelfWhileAnEditorsMenuIsOpen) {
    startWith({});
    const auto editor = PasteDestination::start(session, PasteDestination::Kind::Mousepad);
    keys.chord({keyAt::alt, keyAt::f});
    ASSERT_TRUE(eventually([this] { return windows.isKeyboardHeld(); }));
    pressShortcut();
    EXPECT_TRUE(eventually([this] { return shelf.isUp(); }));
}

TEST_F(ShelfShortcutTest, ItOpensTheShelfWhileTheProgramsOwnMenuIsOpen) {
    session.start({.program = u"trayer"_s, .arguments = {u"--edge"_s, u"bottom"_s}});
    startWith({});
    const TypingTarget target(session, {u"target"_s});
    const auto icon = [this]() -> QRect {
        // The tray holds it in a window of its own.
        const auto own = windows.ofProcess(program.process().pid());
        return own.empty() ? QRect() : windows.frame(own.front());
    };
    ASSERT_TRUE(eventually([&] { return icon().isValid(); }));
    Mouse(session.display()).click(icon().center());
    const auto isMenuOpen = [this] { return windows.ofProcess(program.process().pid()).size() == 2; };
    ASSERT_TRUE(eventually(isMenuOpen));
    pressShortcut();
    EXPECT_TRUE(eventually([this] { return shelf.isUp(); }));
}

TEST_F(ShelfShortcutTest, OneThatAnotherProgramHoldsIsToldAndStaysStored) {
    XConnection other(session.display());
    const XReply<xcb_generic_error_t> error(xcb_request_check(
        other.get(), xcb_grab_key_checked(other.get(), 1, other.root(), XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT,
                                          keyAt::v, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    ASSERT_EQ(error, nullptr);
    startWith({});
    const QJsonArray refused = program.status()[u"refusedShortcuts"].toArray();
    ASSERT_EQ(refused.size(), 1);
    EXPECT_TRUE(refused[0].toString().contains(u"togglePanel"_s)) << refused[0].toString().toStdString();
    EXPECT_EQ(program.process().standardError().count("Error registering hotkey"), 1)
        << program.process().standardError().toStdString();
    EXPECT_TRUE(program.defaults().contains(u"KeyboardShortcuts_togglePanel"_s));
    pressShortcut();
    EXPECT_TRUE(throughout(std::chrono::milliseconds(300), [this] { return !shelf.isUp(); }));
}

TEST_F(ShelfShortcutTest, NoneIsRefusedOnAnOrdinaryDesktop) {
    startWith({});
    EXPECT_EQ(program.status()[u"refusedShortcuts"].toArray().size(), 0);
    EXPECT_FALSE(program.process().standardError().contains("Error registering hotkey"));
}

TEST_F(ShelfShortcutTest, HeldDownItTogglesOnce) {
    startWith({});
    const TypingTarget target(session, {u"target"_s});
    ASSERT_EQ(session.run(u"xset"_s, {u"r"_s, u"rate"_s, u"200"_s, u"50"_s}).exitStatus, 0);
    keys.press(keyAt::super);
    keys.press(keyAt::shift);
    keys.press(keyAt::v);
    ASSERT_TRUE(eventually([this] { return shelf.isUp(); }));
    // Some forty repetitions.
    EXPECT_TRUE(throughout(std::chrono::milliseconds(1000), [this] { return shelf.isUp(); }));
    keys.release(keyAt::v);
    keys.release(keyAt::shift);
    keys.release(keyAt::super);
    EXPECT_TRUE(shelf.waitForKeyboard());
    // None of the repetitions was typed.
    keys.type("x");
    EXPECT_EQ(shelf.searchText(), "x");
    pressShortcut();
    EXPECT_TRUE(shelf.waitUntilGone());
}

TEST_F(ShelfShortcutTest, AModifierLetGoBeforeTheLetterDoesNotToggleAgain) {
    startWith({});
    const TypingTarget target(session, {u"target"_s});
    keys.press(keyAt::super);
    keys.press(keyAt::shift);
    keys.press(keyAt::v);
    ASSERT_TRUE(eventually([this] { return shelf.isUp(); }));
    keys.release(keyAt::super);
    keys.release(keyAt::shift);
    keys.press(keyAt::shift);
    keys.press(keyAt::super);
    keys.release(keyAt::v);
    keys.release(keyAt::super);
    keys.release(keyAt::shift);
    EXPECT_TRUE(throughout(std::chrono::milliseconds(300), [this] { return shelf.isUp(); }));
    pressShortcut();
    EXPECT_TRUE(shelf.waitUntilGone());
}

} // namespace
} // namespace kestrova::test
