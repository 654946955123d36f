#pragma once

#include "tests/desktop/DesktopSession.h"

#include <QString>
#include <QStringList>

namespace kestrova::test {

/// The host's adapters, at work in a process of their own on a session's desktop.
class ProbedHost {
public:
    /// Returns once the adapters are there. Throws std::runtime_error if they do not come. `wrapper` is a
    /// command that runs the one that follows it.
    explicit ProbedHost(DesktopSession& session, const QStringList& wrapper = {});

    struct Insertion {
        bool isDone = false;
        qint64 milliseconds = 0;
        /// The longest time for which the main thread did not turn.
        qint64 longestPause = 0;
    };

    /// Whether an accessibility bus is known at the deadline.
    bool waitUntilTrusted();
    bool isTrusted();
    Insertion insert(const QString& window, const QString& text);
    /// Waits until a window of the host's own is in front.
    void comeToFront();
    /// Waits until the window is in front; false if it is not at the deadline.
    bool activate(const QString& window);
    /// Whether the application that was activated by that window has ended.
    bool isTerminated(const QString& window);
    /// The window in front.
    QString activeWindow();
    /// Sends one command and answers what the host puts out for it.
    QString ask(const QString& command);
    void tell(const QString& command);

    Process& process() { return *m_process; }

private:
    QString nextLine();

    QString m_pipe;
    Process* m_process;
    qsizetype m_linesRead = 0;
};

} // namespace kestrova::test
