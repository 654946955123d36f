#include "tests/desktop/DesktopSession.h"
#include "tests/desktop/Keys.h"
#include "tests/desktop/Pictures.h"
#include "tests/desktop/ProbedHost.h"
#include "tests/desktop/Waiting.h"
#include "tests/desktop/XConnection.h"

#include <QDir>
#include <QFile>

#include <csignal>
#include <gtest/gtest.h>
#include <unistd.h>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

/// A window of this process that the window manager handles.
class ManagedWindow {
public:
    ManagedWindow(DesktopSession& session, const QByteArray& title) : m_x(session.display()) {
        const auto process = static_cast<std::uint32_t>(::getpid());
        xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, m_x.window(), m_x.atom("_NET_WM_PID"),
                            XCB_ATOM_CARDINAL, 32, 1, &process);
        xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, m_x.window(), XCB_ATOM_WM_NAME, XCB_ATOM_STRING,
                            8, static_cast<std::uint32_t>(title.size()), title.constData());
        const auto isViewable = [this] {
            const XReply<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
                m_x.get(), xcb_get_window_attributes(m_x.get(), m_x.window()), nullptr));
            return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
        };
        // A window manager that is only just starting may miss the first request.
        EXPECT_TRUE(eventually([&] {
            xcb_map_window(m_x.get(), m_x.window());
            return eventually(isViewable, std::chrono::milliseconds{500});
        }));
        m_number = activateWindowTitled(session, u"^%1$"_s.arg(QString::fromLatin1(title)));
    }

    QString number() const { return m_number; }
    void destroy() {
        xcb_destroy_window(m_x.get(), m_x.window());
        awaitServer();
    }
    void withdraw() {
        xcb_unmap_window(m_x.get(), m_x.window());
        awaitServer();
    }
    bool hasFocus() const {
        const XReply<xcb_get_input_focus_reply_t> reply(
            xcb_get_input_focus_reply(m_x.get(), xcb_get_input_focus(m_x.get()), nullptr));
        return reply && reply->focus == m_x.window();
    }

private:
    /// Whoever asks afterwards finds it done.
    void awaitServer() const {
        const XReply<xcb_get_input_focus_reply_t> done(
            xcb_get_input_focus_reply(m_x.get(), xcb_get_input_focus(m_x.get()), nullptr));
    }

    XConnection m_x;
    QString m_number;
};

class WorkspaceTest : public ::testing::Test {
protected:
    DesktopSession session;
    ProbedHost host{session};
};

TEST_F(WorkspaceTest, TheRememberedWindowComesToTheFrontAndTheHostsOwnAfterIt) {
    session.start({.program = u"xterm"_s, .arguments = {u"-T"_s, u"first"_s}});
    const auto first = activateWindowTitled(session, u"^first$"_s);
    session.start({.program = u"xterm"_s, .arguments = {u"-T"_s, u"second"_s}});
    const auto second = activateWindowTitled(session, u"^second$"_s);
    EXPECT_TRUE(host.activate(first));
    EXPECT_TRUE(host.activate(second));
    host.comeToFront();
    EXPECT_NE(host.activeWindow(), second);
    EXPECT_TRUE(host.activate(first));
}

TEST_F(WorkspaceTest, InPlaceOfAWindowThatHasGoneComesTheNewestOfItsProcess) {
    ManagedWindow first(session, "first");
    const ManagedWindow second(session, "second");
    const ManagedWindow third(session, "third");
    ASSERT_TRUE(host.activate(first.number()));
    host.comeToFront();
    first.destroy();
    host.tell(u"again "_s + first.number());
    EXPECT_TRUE(eventually([&] { return host.activeWindow() == third.number(); }));
}

TEST_F(WorkspaceTest, AWithdrawnWindowIsLeftInPeace) {
    ManagedWindow first(session, "first");
    const ManagedWindow second(session, "second");
    ASSERT_TRUE(host.activate(first.number()));
    host.comeToFront();
    first.withdraw();
    const auto isListed = [&] {
        return session.run(u"xprop"_s, {u"-root"_s, u"_NET_CLIENT_LIST"_s})
            .standardOutput.contains("0x" + QByteArray::number(first.number().toUInt(), 16));
    };
    ASSERT_TRUE(eventually([&] { return !isListed(); }));
    host.tell(u"again "_s + first.number());
    EXPECT_TRUE(eventually([&] { return host.activeWindow() == second.number(); }));
    EXPECT_FALSE(isListed());
}

TEST_F(WorkspaceTest, AWindowManagerThatHasCrashedIsNotAsked) {
    ManagedWindow window(session, "window");
    ASSERT_TRUE(host.activate(window.number()));
    host.comeToFront();
    ASSERT_FALSE(window.hasFocus());
    session.run(u"openbox"_s, {u"--exit"_s});
    const XConnection root(session.display());
    ASSERT_TRUE(eventually([&] { return !root.hasWindowManager(); }));
    // What one that crashes leaves behind.
    const auto leave = [&](const char* property, xcb_atom_t type, std::uint32_t value) {
        xcb_change_property(root.get(), XCB_PROP_MODE_REPLACE, root.root(), root.atom(property), type, 32, 1,
                            &value);
    };
    leave("_NET_SUPPORTED", XCB_ATOM_ATOM, root.atom("_NET_ACTIVE_WINDOW"));
    leave("_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, root.window() + 1000);
    leave("_NET_CLIENT_LIST", XCB_ATOM_WINDOW, window.number().toUInt());
    ASSERT_FALSE(root.hasWindowManager());
    host.tell(u"again "_s + window.number());
    EXPECT_TRUE(eventually([&] { return window.hasFocus(); }));
}

TEST_F(WorkspaceTest, AnotherWindowInFrontIsToldOfOnceAndItsOwnIsNot) {
    const ManagedWindow first(session, "first");
    const ManagedWindow second(session, "second");
    ASSERT_TRUE(host.activate(first.number()));
    host.ask(u"observe"_s);
    const auto isTold = [&](const QString& times) {
        return eventually([&] { return host.ask(u"activations"_s) == times; });
    };
    EXPECT_TRUE(host.activate(second.number()));
    EXPECT_TRUE(isTold(u"1"_s));
    host.comeToFront();
    EXPECT_EQ(host.ask(u"activations"_s), u"1"_s);
    EXPECT_TRUE(host.activate(first.number()));
    EXPECT_TRUE(isTold(u"2"_s));
    host.tell(u"ignore"_s);
    EXPECT_TRUE(host.activate(second.number()));
    host.ask(u"observe"_s);
    EXPECT_TRUE(host.activate(first.number()));
    EXPECT_TRUE(isTold(u"3"_s));
}

TEST_F(WorkspaceTest, AMinimisedWindowComesToTheFront) {
    session.start({.program = u"xterm"_s});
    const auto window = activateWindowOfClass(session, u"XTerm"_s);
    session.run(u"xdotool"_s, {u"windowminimize"_s, window});
    ASSERT_TRUE(eventually([&] { return host.activeWindow() != window; }));
    EXPECT_TRUE(host.activate(window));
}

TEST_F(WorkspaceTest, AnApplicationHasTerminatedOnceItsProcessHasGone) {
    Process& terminal = session.start({.program = u"xterm"_s});
    const auto window = activateWindowOfClass(session, u"XTerm"_s);
    ASSERT_TRUE(host.activate(window));
    EXPECT_FALSE(host.isTerminated(window));
    terminal.signal(SIGKILL);
    EXPECT_TRUE(eventually([&] { return host.isTerminated(window); }));
}

/// An application that two languages have names for, on a desktop whose icon theme has next to nothing.
class DescribedApplicationsTest : public ::testing::Test {
protected:
    void SetUp() override {
        session.writeFile(u"data/applications/org.example.Notes.desktop"_s,
                          "[Desktop Entry]\nType=Application\nName=Notes\nName[ko]=메모장\nExec=true\n"
                          "Icon=notes\nStartupWMClass=Notepad\nNoDisplay=true\n");
        session.writeFile(u"data/icons/hicolor/index.theme"_s,
                          "[Icon Theme]\nName=Hicolor\nDirectories=16\n[16]\nSize=16\n");
        for (const auto& name : {u"notes"_s, u"application-pdf"_s, u"image-x-generic"_s, u"folder"_s})
            session.writeFile(u"data/icons/hicolor/16/%1.png"_s.arg(name), pngPicture({16, 16}, 1));
        session.environment().insert(u"XDG_DATA_DIRS"_s, session.path(u"none"_s));
    }

    DesktopSession session;
};

TEST_F(DescribedApplicationsTest, AnApplicationHasItsEntrysNameAndIcon) {
    ProbedHost host(session);
    EXPECT_EQ(host.ask(u"describe org.example.Notes"_s), u"Notes 1"_s);
    EXPECT_EQ(host.ask(u"describe Notepad"_s), u"Notes 1"_s);
    EXPECT_EQ(host.ask(u"describe Other"_s), u"none"_s);
}

TEST_F(DescribedApplicationsTest, TheNameIsInThePersonsLanguage) {
    session.environment().insert(u"LANGUAGE"_s, u"ko"_s);
    ProbedHost host(session);
    EXPECT_EQ(host.ask(u"describe org.example.Notes"_s), u"메모장 1"_s);
}

TEST_F(DescribedApplicationsTest, AFileHasTheIconOfItsTypeOrElseOfItsKind) {
    // What types there are is the system's to say.
    ASSERT_TRUE(QDir().mkpath(session.path(u"none"_s)));
    ASSERT_TRUE(QFile::link(u"/usr/share/mime"_s, session.path(u"none/mime"_s)));
    ProbedHost host(session);
    EXPECT_EQ(host.ask(u"icon /nowhere/a b.pdf"_s), u"application-pdf"_s);
    EXPECT_EQ(host.ask(u"icon /nowhere/a.tga"_s), u"image-x-generic"_s);
    EXPECT_EQ(host.ask(u"icon "_s + session.path(u"home"_s)), u"folder"_s);
}

} // namespace
} // namespace kestrova::test
