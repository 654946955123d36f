#pragma once

#include "tests/desktop/DesktopSession.h"

#include <QStringList>

namespace kestrova::test {

/// The program with the adapters for keys and mouse, started in a session and spoken to over a pipe.
class InputProbeProgram {
public:
    /// Returns when the program is ready; throws std::runtime_error if it is not at the deadline.
    explicit InputProbeProgram(DesktopSession& session);
    InputProbeProgram(const InputProbeProgram&) = delete;
    InputProbeProgram& operator=(const InputProbeProgram&) = delete;
    ~InputProbeProgram();

    qint64 pid() const { return m_process->pid(); }
    /// Sends a command without waiting.
    void send(const QString& command);
    /// Sends a command and answers the first line that comes after it and begins with `answer`. Throws
    /// std::runtime_error if there is none at the deadline.
    QString ask(const QString& command, const QString& answer);

    /// All that it has said so far and was not forgotten.
    QStringList lines() const;
    int count(const QString& line) const { return static_cast<int>(lines().count(line)); }
    /// Whether it says the line, now or before the deadline.
    bool says(const QString& line) const;
    /// Starts anew with what `lines` answers.
    void forget();
    /// The lines of its log.
    QString log() const;

private:
    QStringList allLines() const;

    Process* m_process = nullptr;
    int m_pipe = -1;
    qsizetype m_forgotten = 0;
};

} // namespace kestrova::test
