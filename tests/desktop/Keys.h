#pragma once

#include "tests/desktop/DesktopSession.h"

namespace kestrova::test {

/// Waits for a visible window whose class matches `windowClass`, makes it active and answers its number.
/// Throws std::runtime_error if there is none at the deadline.
QString activateWindowOfClass(DesktopSession& session, const QString& windowClass);
/// As above, for a window whose title matches `title`.
QString activateWindowTitled(DesktopSession& session, const QString& title);

/// Makes a window active, tried again until it has the keyboard itself. Throws std::runtime_error if it has
/// not at the deadline.
void giveKeyboardTo(DesktopSession& session, const QString& window);

/// Presses and releases the chords, such as "ctrl+a", one after the other; the active window gets them.
void pressKeys(DesktopSession& session, const QStringList& chords);

} // namespace kestrova::test
