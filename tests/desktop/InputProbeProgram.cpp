#include "tests/desktop/InputProbeProgram.h"

#include "tests/desktop/Waiting.h"

#include <QFile>

#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrova::test {

using namespace Qt::StringLiterals;

InputProbeProgram::InputProbeProgram(DesktopSession& session) {
    const QString pipe = session.path(u"probe"_s);
    if (::mkfifo(QFile::encodeName(pipe).constData(), 0600) != 0)
        throw std::runtime_error("no pipe for the probe");
    m_pipe = ::open(QFile::encodeName(pipe).constData(), O_RDWR | O_CLOEXEC);
    m_process = &session.start({.program = QStringLiteral(INPUT_PROBE), .arguments = {pipe}});
    if (!says(u"ready"_s))
        throw std::runtime_error("the probe did not start: " + log().toStdString());
}

InputProbeProgram::~InputProbeProgram() {
    ::close(m_pipe);
}

void InputProbeProgram::send(const QString& command) {
    const QByteArray line = command.toUtf8() + '\n';
    if (::write(m_pipe, line.constData(), static_cast<std::size_t>(line.size())) != line.size())
        throw std::runtime_error("the probe's pipe is full");
}

QString InputProbeProgram::ask(const QString& command, const QString& answer) {
    const qsizetype before = allLines().size();
    send(command);
    QString found;
    const bool answered = eventually([&] {
        for (const QString& line : allLines().mid(before)) {
            if (line.startsWith(answer))
                found = line;
            if (!found.isEmpty())
                return true;
        }
        return false;
    });
    if (!answered)
        throw std::runtime_error("no answer to " + command.toStdString() + ": " + log().toStdString());
    return found;
}

QStringList InputProbeProgram::allLines() const {
    auto lines = QString::fromUtf8(m_process->standardOutput()).split(u'\n');
    // What follows the last newline is not a line yet.
    lines.removeLast();
    return lines;
}

QStringList InputProbeProgram::lines() const {
    return allLines().mid(m_forgotten);
}

bool InputProbeProgram::says(const QString& line) const {
    return eventually([&] { return lines().contains(line); });
}

void InputProbeProgram::forget() {
    m_forgotten = allLines().size();
}

QString InputProbeProgram::log() const {
    return QString::fromUtf8(m_process->standardError());
}

} // namespace kestrova::test
