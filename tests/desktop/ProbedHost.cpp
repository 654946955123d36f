#include "tests/desktop/ProbedHost.h"

#include "tests/desktop/Waiting.h"

#include <QFile>
#include <QUuid>

#include <stdexcept>
#include <sys/stat.h>

namespace kestrova::test {

namespace {
using namespace Qt::StringLiterals;
} // namespace

ProbedHost::ProbedHost(DesktopSession& session, const QStringList& wrapper)
    : m_pipe(session.path(u"host-"_s + QUuid::createUuid().toString(QUuid::Id128))) {
    if (::mkfifo(m_pipe.toLocal8Bit().constData(), 0600) != 0)
        throw std::runtime_error("no pipe for commands");
    const auto command = wrapper + QStringList{QStringLiteral(HOST_PROBE_BINARY), m_pipe};
    m_process = &session.start({.program = command.first(), .arguments = command.mid(1)});
    if (nextLine() != u"ready")
        throw std::runtime_error("the host did not start");
}

QString ProbedHost::nextLine() {
    const bool isThere = eventually(
        [this] { return m_process->standardOutput().count('\n') > m_linesRead || !m_process->isRunning(); });
    const auto lines = m_process->standardOutput().split('\n');
    if (!isThere || lines.size() <= m_linesRead + 1)
        throw std::runtime_error("the host did not answer: " + m_process->standardError().toStdString());
    return QString::fromUtf8(lines[m_linesRead++]);
}

void ProbedHost::tell(const QString& command) {
    QFile pipe(m_pipe);
    const auto line = command.toUtf8() + '\n';
    if (!pipe.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || pipe.write(line) != line.size())
        throw std::runtime_error("the host takes no commands");
}

QString ProbedHost::ask(const QString& command) {
    tell(command);
    return nextLine();
}

bool ProbedHost::isTrusted() {
    return ask(u"trusted"_s) == u"1";
}

bool ProbedHost::waitUntilTrusted() {
    return eventually([this] { return isTrusted(); });
}

ProbedHost::Insertion ProbedHost::insert(const QString& window, const QString& text) {
    const auto words =
        ask(u"insert %1 %2"_s.arg(window, QString::fromLatin1(text.toUtf8().toHex()))).split(u' ');
    return {.isDone = words.value(0) == u"1",
            .milliseconds = words.value(1).toLongLong(),
            .longestPause = words.value(2).toLongLong()};
}

QString ProbedHost::activeWindow() {
    return ask(u"active"_s);
}

void ProbedHost::comeToFront() {
    const auto before = activeWindow();
    tell(u"front"_s);
    if (!eventually([&] { return activeWindow() != before && activeWindow() != u"0"; }))
        throw std::runtime_error("the host's window did not come to the front");
}

bool ProbedHost::activate(const QString& window) {
    tell(u"activate "_s + window);
    return eventually([&] { return activeWindow() == window; });
}

bool ProbedHost::isTerminated(const QString& window) {
    return ask(u"terminated "_s + window) == u"1";
}

} // namespace kestrova::test
