#include "tests/desktop/InputProbeProgram.h"
#include "tests/desktop/KeyReceiver.h"
#include "tests/desktop/Keys.h"
#include "tests/desktop/Printing.h"
#include "tests/desktop/TestKeyboard.h"
#include "tests/desktop/Waiting.h"

#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <unistd.h>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

constexpr std::uint8_t kReturn = 36;
const QString kNote = u"home/note.txt"_s;
const std::vector<std::uint8_t> kSave{Key::control, 39};

class KeyPosterTest : public ::testing::Test {
protected:
    /// The window as the target of a paste. It is this process that shows it.
    static QString pasteTo(const KeyReceiver& receiver) {
        return u"paste %1 %2"_s.arg(receiver.window()).arg(::getpid());
    }
    void paste(const QString& command = u"paste"_s) { probe.ask(command, u"posted"_s); }
    bool isLogged(const QString& reason) {
        return eventually([&] { return probe.log().contains(u"Paste dropped: "_s + reason); });
    }
    static bool gets(KeyReceiver& receiver, const std::vector<std::uint8_t>& keys) {
        return eventually([&] { return receiver.presses() == keys; });
    }
    QByteArray contents(const QString& name) const {
        QFile file(session.path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Whether the program in front, which writes what it has to `file` at `saveKeys`, has `text`.
    bool has(const QString& file, const std::vector<std::uint8_t>& saveKeys, const QByteArray& text) {
        // The keys may come before what is pasted, and before a new window listens.
        return eventually([&] {
            keyboard.chord(saveKeys);
            return eventually([&] { return contents(file).trimmed() == text; },
                              std::chrono::milliseconds{300});
        });
    }
    bool pastesInto(const QString& file, const std::vector<std::uint8_t>& saveKeys, const QByteArray& text) {
        probe.ask(u"write "_s + QString::fromUtf8(text), u"wrote"_s);
        paste();
        return has(file, saveKeys, text);
    }
    /// Starts the editor on a file and waits until it listens.
    void startEditor() {
        session.start({.program = u"mousepad"_s, .arguments = {session.writeFile(kNote, "b")}});
        activateWindowOfClass(session, u"Mousepad"_s);
        // All of it is replaced, which a new window may miss once or twice.
        ASSERT_TRUE(eventually([&] {
            keyboard.chord({Key::control, Key::a});
            keyboard.tap(Key::a);
            keyboard.chord(kSave);
            return eventually([&] { return contents(kNote).trimmed().toLower() == "a"; },
                              std::chrono::milliseconds{300});
        }));
        keyboard.chord({Key::control, Key::a});
    }
    /// Starts the terminal on a program that writes what is typed to a file, and waits until both listen.
    void startTerminal(const QString& program, const QStringList& arguments, const QString& windowClass) {
        session.start({.program = program,
                       .arguments = arguments + QStringList{u"sh"_s, u"-c"_s,
                                                            u"echo > '%1'; exec cat > '%1'"_s.arg(
                                                                session.path(u"typed"_s))}});
        activateWindowOfClass(session, windowClass);
        ASSERT_TRUE(eventually([&] { return QFile::exists(session.path(u"typed"_s)); }));
    }

    DesktopSession session;
    InputProbeProgram probe{session};
    TestKeyboard keyboard{session.display()};
};

TEST_F(KeyPosterTest, AnOrdinaryProgramGetsControlAndV) {
    KeyReceiver receiver(session.display());
    paste(pasteTo(receiver));
    EXPECT_TRUE(gets(receiver, {Key::control, Key::v}));
    EXPECT_EQ(receiver.modifiersAtPressOf(Key::v), XCB_MOD_MASK_CONTROL);
    EXPECT_EQ(keyboard.modifiers(), 0);
}

TEST_F(KeyPosterTest, HeldModifiersDoNotCountAndAreHeldAgainAfterwards) {
    KeyReceiver receiver(session.display());
    keyboard.press(Key::super);
    keyboard.press(Key::shift);
    keyboard.press(Key::v);
    keyboard.finish();
    for (int i = 0; i < 3; ++i) {
        paste(pasteTo(receiver));
        EXPECT_EQ(receiver.modifiersAtPressOf(Key::v), XCB_MOD_MASK_CONTROL);
        EXPECT_EQ(keyboard.modifiers(), XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT);
    }
    keyboard.release(Key::shift);
    keyboard.release(Key::super);
    EXPECT_EQ(keyboard.modifiers(), 0);
    paste(pasteTo(receiver));
    EXPECT_EQ(std::ranges::count(receiver.presses(), Key::v), 5);
    EXPECT_EQ(keyboard.modifiers(), 0);
}

TEST_F(KeyPosterTest, AHeldControlKeyDoesNotStandInTheWay) {
    KeyReceiver receiver(session.display());
    keyboard.press(Key::control);
    keyboard.press(Key::alt);
    keyboard.finish();
    paste(pasteTo(receiver));
    EXPECT_EQ(receiver.modifiersAtPressOf(Key::v), XCB_MOD_MASK_CONTROL);
    EXPECT_EQ(keyboard.modifiers(), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1);
    keyboard.release(Key::control);
    keyboard.release(Key::alt);
    EXPECT_EQ(keyboard.modifiers(), 0);
}

TEST_F(KeyPosterTest, AWindowBehindAnotherGetsNothingAndNorDoesTheOneInFront) {
    KeyReceiver behind(session.display());
    KeyReceiver front(session.display());
    paste(pasteTo(behind));
    EXPECT_TRUE(isLogged(u"its application is not in front"_s));
    EXPECT_TRUE(front.presses().empty());
    EXPECT_TRUE(behind.presses().empty());
}

TEST_F(KeyPosterTest, AWindowThatIsOnItsWayToTheFrontIsWaitedFor) {
    KeyReceiver target(session.display());
    KeyReceiver front(session.display());
    // The wait is short; on a loaded machine the focus may come too late once or twice.
    const bool pasted = eventually([&] {
        front.takeFocus();
        paste(pasteTo(target));
        target.takeFocus();
        return eventually([&] { return !target.presses().empty(); }, std::chrono::milliseconds{500});
    });
    EXPECT_TRUE(pasted);
    EXPECT_TRUE(gets(target, {Key::control, Key::v}));
    EXPECT_TRUE(front.presses().empty());
}

TEST_F(KeyPosterTest, WithoutATargetWhatIsInItsWayIsWaitedForToo) {
    KeyReceiver front(session.display());
    // The wait is short; on a loaded machine the menu may close too late once or twice.
    const bool pasted = eventually([&] {
        EXPECT_TRUE(front.grabKeyboard());
        paste();
        EXPECT_TRUE(front.presses().empty());
        front.releaseKeyboard();
        return eventually([&] { return !front.presses().empty(); }, std::chrono::milliseconds{500});
    });
    EXPECT_TRUE(pasted);
    EXPECT_TRUE(gets(front, {Key::control, Key::v}));
}

TEST_F(KeyPosterTest, ATargetWhoseWindowIsNoLongerListedIsItsNewestWindow) {
    KeyReceiver withdrawn(session.display());
    const auto target = pasteTo(withdrawn);
    withdrawn.emptyList();
    KeyReceiver newest(session.display());
    paste(target);
    EXPECT_TRUE(gets(newest, {Key::control, Key::v}));
}

TEST_F(KeyPosterTest, WhenTheTargetHasEndedWhateverIsInFrontGetsIt) {
    KeyReceiver front(session.display());
    paste(u"paste 1 %1 1"_s.arg(::getpid()));
    EXPECT_TRUE(gets(front, {Key::control, Key::v}));
}

TEST_F(KeyPosterTest, AKeyboardThatIsHeldGetsNothing) {
    KeyReceiver menu(session.display());
    ASSERT_TRUE(menu.grabKeyboard());
    paste();
    EXPECT_TRUE(isLogged(u"another window holds the keyboard"_s));
    EXPECT_TRUE(menu.presses().empty());
}

TEST_F(KeyPosterTest, WhatIsSelectedStaysSoWhileATerminalsKeyboardIsHeld) {
    const XConnection selection(session.display());
    const auto owner = [&] {
        const XReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
            selection.get(), xcb_get_selection_owner(selection.get(), XCB_ATOM_PRIMARY), nullptr));
        return reply ? reply->owner : xcb_window_t{XCB_NONE};
    };
    xcb_set_selection_owner(selection.get(), selection.window(), XCB_ATOM_PRIMARY, XCB_CURRENT_TIME);
    ASSERT_EQ(owner(), selection.window());
    probe.ask(u"write text"_s, u"wrote"_s);
    KeyReceiver terminal(session.display());
    terminal.setClass("xterm", "XTerm");
    ASSERT_TRUE(terminal.grabKeyboard());
    paste();
    EXPECT_TRUE(isLogged(u"another window holds the keyboard"_s));
    EXPECT_EQ(owner(), selection.window());
    terminal.releaseKeyboard();
    paste();
    constexpr std::uint8_t insert = 118;
    EXPECT_TRUE(gets(terminal, {Key::shift, insert}));
    EXPECT_NE(owner(), selection.window());
}

TEST_F(KeyPosterTest, AWindowOfItsOwnGetsNothingNotEvenAsTheTarget) {
    const QString window = probe.ask(u"show"_s, u"window"_s).mid(7);
    giveKeyboardTo(session, window);
    probe.ask(u"write never"_s, u"wrote"_s);
    const auto droppings = [this] {
        return probe.log().count(u"Paste dropped: the focus is in a window of this program"_s);
    };
    paste();
    ASSERT_TRUE(eventually([&] { return droppings() == 1; }));
    paste(u"paste %1 %2"_s.arg(window).arg(probe.pid()));
    ASSERT_TRUE(eventually([&] { return droppings() == 2; })) << probe.log().toStdString();
    keyboard.tap(Key::a);
    EXPECT_TRUE(probe.says(u"text a"_s));
}

TEST_F(KeyPosterTest, TheKeyIsTheOneThatGivesVInTheCurrentLayout) {
    session.run(u"setxkbmap"_s, {u"us"_s, u"-variant"_s, u"dvorak"_s});
    probe.ask(u"layout 9"_s, u"layout k"_s);
    KeyReceiver receiver(session.display());
    paste();
    constexpr std::uint8_t periodPosition = 60;
    EXPECT_TRUE(gets(receiver, {Key::control, periodPosition}));
}

TEST_F(KeyPosterTest, WithoutLatinLettersTheKeyIsThatOfTheFirstLayoutThatHasThem) {
    session.run(u"setxkbmap"_s, {u"-layout"_s, u"ru,us"_s, u"-variant"_s, u",dvorak"_s});
    probe.ask(u"layout 9"_s, u"layout k"_s);
    KeyReceiver receiver(session.display());
    paste();
    constexpr std::uint8_t periodPosition = 60;
    EXPECT_TRUE(gets(receiver, {Key::control, periodPosition}));
}

TEST_F(KeyPosterTest, WithNoLatinLayoutAtAllTheKeyIsThePositionOfV) {
    session.run(u"setxkbmap"_s, {u"ru"_s});
    probe.ask(u"layout 9"_s, u"layout м"_s);
    KeyReceiver receiver(session.display());
    paste();
    EXPECT_TRUE(gets(receiver, {Key::control, Key::v}));
}

TEST_F(KeyPosterTest, AnEditorTakesIt) {
    startEditor();
    EXPECT_TRUE(pastesInto(kNote, kSave, "안녕 editor"));
}

TEST_F(KeyPosterTest, AnEditorTakesItWithCapsLock) {
    keyboard.tap(Key::capsLock);
    startEditor();
    EXPECT_TRUE(pastesInto(kNote, kSave, "caps"));
}

TEST_F(KeyPosterTest, AnOldTerminalTakesIt) {
    startTerminal(u"xterm"_s, {u"-e"_s}, u"XTerm"_s);
    EXPECT_TRUE(pastesInto(u"typed"_s, {kReturn}, "old terminal"));
}

TEST_F(KeyPosterTest, AnOldTerminalTakesItWithLocksAndHeldModifiers) {
    startTerminal(u"xterm"_s, {u"-e"_s}, u"XTerm"_s);
    keyboard.tap(Key::capsLock);
    keyboard.tap(Key::numLock);
    keyboard.press(Key::super);
    probe.ask(u"write locked"_s, u"wrote"_s);
    paste();
    keyboard.release(Key::super);
    EXPECT_TRUE(has(u"typed"_s, {kReturn}, "locked"));
}

TEST_F(KeyPosterTest, ANewTerminalTakesIt) {
    startTerminal(u"xfce4-terminal"_s, {u"--disable-server"_s, u"-x"_s}, u"Xfce4-terminal"_s);
    EXPECT_TRUE(pastesInto(u"typed"_s, {kReturn}, "new terminal"));
}

} // namespace
} // namespace kestrova::test
