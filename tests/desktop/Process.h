#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <chrono>

namespace kestrova::test {

/// What a process that has ended left behind.
struct ProcessResult {
    /// As a shell tells it: 128 and the signal's number for one that a signal ended.
    int exitStatus = 0;
    QByteArray standardOutput;
    QByteArray standardError;
};

/// A program to start and how.
struct ProcessSpec {
    QString program;
    QStringList arguments = {};
    QByteArray standardInput = {};
    /// Keep the standard input open after `standardInput`, until `closeStandardInput`.
    bool inputStaysOpen = false;
    /// Let the kernel end the process when the test dies. Off for one that ends with its standard input.
    bool diesWithTest = true;
    /// Take root's right to ignore file permissions away, so that a test of permissions holds for root too.
    bool obeysFilePermissions = false;
};

/// A started process with a process group of its own and its output in files. Ended and awaited by its
/// destructor, together with what it started in its group. Throws std::runtime_error if it cannot be started.
class Process {
public:
    /// `outputBase`: the path of the two output files, without their extensions.
    Process(const ProcessSpec& spec, const QProcessEnvironment& environment, const QString& outputBase);
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process();

    qint64 pid() const { return m_pid; }
    bool isRunning();
    /// False if it still runs at the deadline.
    bool waitForEnd(std::chrono::milliseconds deadline);
    /// Only once it has ended.
    ProcessResult result() const;

    QByteArray standardOutput() const;
    QByteArray standardError() const;

    void closeStandardInput() { m_process.closeWriteChannel(); }
    /// To this process alone.
    void signal(int number);
    /// Ends the whole group, kindly first, and waits for this process.
    void end();

private:
    QProcess m_process;
    QString m_outputBase;
    qint64 m_pid = 0;
};

} // namespace kestrova::test
