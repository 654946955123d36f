#include "tests/desktop/DesktopSession.h"
#include "tests/desktop/Keys.h"
#include "tests/desktop/Printing.h"
#include "tests/desktop/ProbedHost.h"
#include "tests/desktop/Waiting.h"
#include "tests/desktop/XConnection.h"

#include <QFile>

#include <csignal>
#include <gtest/gtest.h>

namespace kestrova::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

// 한글 and an emoji: three and four bytes, one and two UTF-16 units.
const QString manyBytes = u"한글 😀 끝"_s;

QString contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Texts go into programs while the host's own window has the keyboard, as when they are chosen in the shelf.
class AccessibilityTest : public ::testing::Test {
protected:
    AccessibilityTest() { EXPECT_TRUE(host.waitUntilTrusted()); }

    /// Waits until the editor's text is in its file and its window has the keyboard, and then takes that
    /// away.
    QString startQtEditor(const QString& kind, const QString& text, int anchor, int caret) {
        m_editor = &session.start(
            {.program = QStringLiteral(QT_EDITOR_BINARY),
             .arguments = {kind, file, text, QString::number(anchor), QString::number(caret)}});
        const auto window = activateWindowTitled(session, u"^Qt editor$"_s);
        EXPECT_TRUE(eventually([&] { return contents(file) == text; }));
        return window;
    }

    /// Tries until the program has told of its focus, which comes some time after its window.
    bool insertEventually(const QString& window, const QString& text) {
        return eventually([&] { return host.insert(window, text).isDone; });
    }

    bool fileBecomes(const QString& text) {
        const bool becomes = eventually([&] { return contents(file) == text; });
        EXPECT_EQ(contents(file), text);
        return becomes;
    }

    /// What mousepad has is in the file once it was told to save.
    bool savedTextBecomes(const QString& window, const QString& text) {
        host.activate(window);
        EXPECT_TRUE(eventually([&] {
            pressKeys(session, {u"ctrl+s"_s});
            return eventually([&] { return contents(file) == text; }, 2s);
        }));
        return fileBecomes(text);
    }

    QString startMousepad(const QString& text) {
        m_editor = &session.start(
            {.program = u"mousepad"_s, .arguments = {session.writeFile(u"text"_s, text.toUtf8())}});
        return activateWindowOfClass(session, u"Mousepad"_s);
    }

    /// Selects all of a text, which a window that has just come does when it has begun to take keys.
    void selectAll() {
        const XConnection x(session.display());
        EXPECT_TRUE(eventually([&] {
            pressKeys(session, {u"ctrl+a"_s});
            return eventually([&] { return isPrimarySelectionOwned(x); }, 1s);
        }));
    }

    static bool isPrimarySelectionOwned(const XConnection& x) {
        const XReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
            x.get(), xcb_get_selection_owner(x.get(), XCB_ATOM_PRIMARY), nullptr));
        return reply && reply->owner != XCB_WINDOW_NONE;
    }

    DesktopSession session{DesktopSession::Bus::Own, DesktopSession::Accessibility::On};
    ProbedHost host{session};
    const QString file = session.path(u"text"_s);
    Process* m_editor = nullptr;
};

TEST_F(AccessibilityTest, AQtEditorTakesATextInPlaceOfItsSelection) {
    const auto window = startQtEditor(u"plain"_s, u"한글 one 😀 two"_s, 3, 6);
    host.comeToFront();
    EXPECT_TRUE(insertEventually(window, manyBytes));
    fileBecomes(u"한글 "_s + manyBytes + u" 😀 two"_s);
}

TEST_F(AccessibilityTest, AQtEditorTakesATextAtItsCaretAndTheCaretFollows) {
    const auto window = startQtEditor(u"plain"_s, u"ab"_s, 1, 1);
    host.comeToFront();
    EXPECT_TRUE(insertEventually(window, manyBytes));
    EXPECT_TRUE(host.insert(window, u"\nsecond"_s).isDone);
    fileBecomes(u"a"_s + manyBytes + u"\nsecondb"_s);
}

TEST_F(AccessibilityTest, ALineTakesATextInPlaceOfItsSelection) {
    const auto window = startQtEditor(u"line"_s, u"one two three"_s, 4, 7);
    host.comeToFront();
    EXPECT_TRUE(insertEventually(window, manyBytes));
    EXPECT_TRUE(host.insert(window, u"!"_s).isDone);
    fileBecomes(u"one "_s + manyBytes + u"! three"_s);
}

TEST_F(AccessibilityTest, ALineThatTakesOnlyPartOfATextIsLeftAsItWas) {
    const auto window = startQtEditor(u"short"_s, u"abcdefgh"_s, 2, 4);
    host.comeToFront();
    EXPECT_TRUE(insertEventually(window, u"x"_s));
    fileBecomes(u"abxefgh"_s);
    EXPECT_FALSE(host.insert(window, u"0123456789"_s).isDone);
    EXPECT_EQ(contents(file), u"abxefgh"_s);
}

TEST_F(AccessibilityTest, APasswordIsNotWrittenTo) {
    const auto window = startQtEditor(u"password"_s, u"secret"_s, 0, 0);
    host.comeToFront();
    // Other editors take a text well within this time.
    EXPECT_TRUE(throughout(3s, [&] { return !host.insert(window, u"text"_s).isDone; }));
    EXPECT_EQ(contents(file), u"secret"_s);
}

TEST_F(AccessibilityTest, AGtkEditorTakesATextInPlaceOfItsSelectionAndTheCaretFollows) {
    const auto window = startMousepad(u"한글 one two\n"_s);
    selectAll();
    pressKeys(session, {u"ctrl+Home"_s, u"Right"_s, u"Right"_s, u"Right"_s, u"shift+Right"_s,
                        u"shift+Right"_s, u"shift+Right"_s});
    host.comeToFront();
    EXPECT_TRUE(insertEventually(window, manyBytes));
    EXPECT_TRUE(host.insert(window, u"!"_s).isDone);
    savedTextBecomes(window, u"한글 "_s + manyBytes + u"! two\n"_s);
}

TEST_F(AccessibilityTest, AGtkEditorTakesATextAtItsCaret) {
    const auto window = startMousepad(u"ab\n"_s);
    selectAll();
    pressKeys(session, {u"ctrl+Home"_s, u"Right"_s});
    host.comeToFront();
    EXPECT_TRUE(insertEventually(window, manyBytes + u'\n' + manyBytes));
    savedTextBecomes(window, u"a"_s + manyBytes + u'\n' + manyBytes + u"b\n"_s);
}

TEST_F(AccessibilityTest, AnEditorThatHadTheFocusBeforeTheHostListenedIsFoundWhileItIsInFront) {
    const auto window = startMousepad(u"\n"_s);
    ProbedHost later(session);
    ASSERT_TRUE(later.waitUntilTrusted());
    EXPECT_TRUE(eventually([&] { return later.insert(window, u"text"_s).isDone; }));
    savedTextBecomes(window, u"text\n"_s);
}

TEST_F(AccessibilityTest, ATerminalDoesNotTakeATextThisWay) {
    session.start({.program = u"xterm"_s});
    const auto window = activateWindowOfClass(session, u"XTerm"_s);
    host.comeToFront();
    const auto insertion = host.insert(window, u"text"_s);
    EXPECT_FALSE(insertion.isDone);
    EXPECT_LE(insertion.milliseconds, 500);
}

TEST_F(AccessibilityTest, AStoppedApplicationHoldsNobodyUp) {
    const auto window = startQtEditor(u"plain"_s, u"text"_s, 0, 0);
    host.comeToFront();
    ASSERT_TRUE(insertEventually(window, u"1"_s));
    m_editor->signal(SIGSTOP);
    const auto insertion = host.insert(window, u"2"_s);
    m_editor->signal(SIGCONT);
    EXPECT_FALSE(insertion.isDone);
    EXPECT_LE(insertion.milliseconds, 500);
    EXPECT_LE(insertion.longestPause, 100);
    EXPECT_TRUE(insertEventually(window, u"3"_s));
    fileBecomes(u"13text"_s);
}

TEST_F(AccessibilityTest, ARequestUnderWayEndsWithTheHost) {
    const auto window = startQtEditor(u"plain"_s, u"text"_s, 0, 0);
    ASSERT_TRUE(insertEventually(window, u"1"_s));
    m_editor->signal(SIGSTOP);
    host.tell(u"insert %1 32"_s.arg(window));
    host.tell(u"quit"_s);
    EXPECT_TRUE(host.process().waitForEnd(kGenerously));
    m_editor->signal(SIGCONT);
    EXPECT_EQ(host.process().result().exitStatus, 0);
}

TEST(AccessibilityServiceTest, OneThatIsNotReadyIsAskedOnceMore) {
    DesktopSession session;
    ProbedHost service(session);
    service.ask(u"refuse-accessibility"_s);
    ProbedHost host(session);
    EXPECT_FALSE(host.isTrusted());
    EXPECT_TRUE(host.waitUntilTrusted());
}

TEST(AccessibilityAbsenceTest, WithoutABusNoApplicationTakesAText) {
    DesktopSession session(DesktopSession::Bus::None);
    ProbedHost host(session);
    // The editor would start a bus of its own.
    session.environment().insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"disabled:"_s);
    session.start({.program = u"mousepad"_s});
    const auto window = activateWindowOfClass(session, u"Mousepad"_s);
    EXPECT_FALSE(host.isTrusted());
    EXPECT_FALSE(host.insert(window, u"text"_s).isDone);
}

} // namespace
} // namespace kestrova::test
