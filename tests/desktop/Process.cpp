#include "tests/desktop/Process.h"

#include "tests/desktop/Waiting.h"

#include <QFile>

#include <csignal>
#include <linux/capability.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestrova::test {

namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Runs in the child between fork and exec: system calls only.
void prepareChild(bool diesWithTest, bool obeysFilePermissions) {
    ::setsid();
    if (diesWithTest)
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (obeysFilePermissions) {
        // Fails for everyone but root, who alone has these rights to lose.
        ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
        ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
    }
}

} // namespace

Process::Process(const ProcessSpec& spec, const QProcessEnvironment& environment, const QString& outputBase)
    : m_outputBase(outputBase) {
    // What a program leaves in the background becomes a child of the test, which can then wait for its end
    // too.
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    m_process.setProgram(spec.program);
    m_process.setArguments(spec.arguments);
    m_process.setProcessEnvironment(environment);
    m_process.setStandardOutputFile(outputBase + ".out"_L1);
    m_process.setStandardErrorFile(outputBase + ".err"_L1);
    m_process.setChildProcessModifier(
        [dies = spec.diesWithTest, obeys = spec.obeysFilePermissions] { prepareChild(dies, obeys); });
    m_process.start();
    if (!m_process.waitForStarted())
        throw std::runtime_error("cannot start " + spec.program.toStdString() + ": " +
                                 m_process.errorString().toStdString());
    m_pid = m_process.processId();
    if (!spec.standardInput.isEmpty()) {
        m_process.write(spec.standardInput);
        m_process.waitForBytesWritten();
    }
    if (!spec.inputStaysOpen)
        m_process.closeWriteChannel();
}

Process::~Process() {
    end();
}

bool Process::isRunning() {
    return m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(0);
}

bool Process::waitForEnd(std::chrono::milliseconds deadline) {
    return m_process.state() == QProcess::NotRunning ||
           m_process.waitForFinished(static_cast<int>(deadline.count()));
}

ProcessResult Process::result() const {
    const bool crashed = m_process.exitStatus() == QProcess::CrashExit;
    return {crashed ? 128 + m_process.exitCode() : m_process.exitCode(), standardOutput(), standardError()};
}

QByteArray Process::standardOutput() const {
    return contents(m_outputBase + ".out"_L1);
}

QByteArray Process::standardError() const {
    return contents(m_outputBase + ".err"_L1);
}

void Process::signal(int number) {
    if (isRunning())
        ::kill(static_cast<pid_t>(m_pid), number);
}

void Process::end() {
    // The group may outlive its leader, as when a program hands over to a background process.
    const auto group = static_cast<pid_t>(m_pid);
    const auto groupIsGone = [this, group] {
        if (isRunning())
            return false;
        while (::waitpid(-group, nullptr, WNOHANG) > 0)
            ;
        return ::kill(-group, 0) != 0;
    };
    if (groupIsGone())
        return;
    ::kill(-group, SIGTERM);
    if (eventually(groupIsGone, 3s))
        return;
    ::kill(-group, SIGKILL);
    eventually(groupIsGone);
}

} // namespace kestrova::test
