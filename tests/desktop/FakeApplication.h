#pragma once

#include "tests/desktop/DesktopSession.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace kestrova::test {

/// An application that is installed for the session's person and chosen for some content types. Started, it
/// notes what it was started with and ends.
class FakeApplication {
public:
    /// Before the program under test is started. `name` is its identifier too.
    FakeApplication(DesktopSession& session, const QString& name, const QStringList& contentTypes);

    struct Start {
        QStringList arguments;
        /// DESKTOP_STARTUP_ID.
        QString token;
        /// QT_QPA_PLATFORM; empty if there was none.
        QString displayPlugin;
        /// The signals that it was started deaf to, as the kernel writes them.
        QString blockedSignals;
        /// Whether it leads a session of its own.
        bool standsApart = false;
    };
    /// Waits for it to be started and to have noted everything; absent if it was not started at the deadline.
    std::optional<Start> waitForStart() const;
    bool wasStarted() const;

private:
    QString m_notes;
};

} // namespace kestrova::test
