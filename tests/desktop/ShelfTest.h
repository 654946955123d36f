#pragma once

#include "tests/desktop/DesktopSession.h"
#include "tests/desktop/DesktopWindows.h"
#include "tests/desktop/KestrovaProgram.h"
#include "tests/desktop/KeyPresser.h"
#include "tests/desktop/Printing.h"
#include "tests/desktop/Shelf.h"
#include "tests/desktop/Waiting.h"

#include <gtest/gtest.h>

namespace kestrova::test {

/// A test with a desktop, a person at its keyboard and, not yet started, the program on it.
class ShelfTest : public ::testing::Test {
protected:
    explicit ShelfTest(DesktopSession::Accessibility accessibility = DesktopSession::Accessibility::Off)
        : session(DesktopSession::Bus::Own, accessibility) {}

    void closeAfterPaste() { program.editDefault(QStringLiteral("shelfStayOpenAfterPaste"), false); }
    /// Starts the program with these texts in its history; the last one is the newest.
    void startWith(const QStringList& texts) {
        ASSERT_TRUE(program.start());
        for (const QString& text : texts)
            ASSERT_EQ(program.command({QStringLiteral("add"), text}).exitStatus, 0);
    }
    /// From now on windows are blended with what lies behind them.
    void startCompositor() {
        compositor = &session.start({.program = QStringLiteral("picom"),
                                     .arguments = {QStringLiteral("--backend"), QStringLiteral("xrender"),
                                                   QStringLiteral("--config"), QStringLiteral("/dev/null")}});
        const XConnection x(session.display());
        ASSERT_TRUE(eventually([&x] {
            const XReply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
                x.get(), xcb_get_selection_owner(x.get(), x.atom("_NET_WM_CM_S0")), nullptr));
            return owner && owner->owner != XCB_NONE;
        }));
    }
    void pressShortcut() { keys.chord({keyAt::super, keyAt::shift, keyAt::v}); }
    void pressCommandDigit(int digit) { keys.chord({keyAt::control, keyAt::digit(digit)}); }

    DesktopSession session;
    /// Once it was started.
    Process* compositor = nullptr;
    KestrovaProgram program{session};
    KeyPresser keys{session.display()};
    DesktopWindows windows{session.display()};
    Shelf shelf{session.display(), program, keys};
};

} // namespace kestrova::test
