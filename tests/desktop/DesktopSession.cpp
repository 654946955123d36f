#include "tests/desktop/DesktopSession.h"

#include "tests/desktop/SessionSweep.h"
#include "tests/desktop/Waiting.h"
#include "tests/desktop/XConnection.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <csignal>
#include <stdexcept>

namespace kestrova::test {

namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

constexpr auto kMarkerName = "KESTROVA_TEST_SESSION"_L1;

/// The first line that `process` has put out.
QByteArray firstLine(Process& process, const char* what) {
    const bool answered =
        eventually([&process] { return process.standardOutput().contains('\n') || !process.isRunning(); });
    const QByteArray output = process.standardOutput();
    if (!answered || !output.contains('\n'))
        throw std::runtime_error(std::string(what) +
                                 " did not start: " + process.standardError().toStdString());
    return output.left(output.indexOf('\n'));
}

/// Empty if it has ended.
QString commandOf(pid_t pid) {
    QFile name(u"/proc/%1/comm"_s.arg(pid));
    return name.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(name.readAll().trimmed()) : QString();
}

} // namespace

// The template is short because a socket's path may have 107 bytes at most.
DesktopSession::DesktopSession(Bus bus, Accessibility accessibility, QSize size, int depth)
    : m_folder(QDir::tempPath() + u"/kt-XXXXXX"_s) {
    if (!m_folder.isValid())
        throw std::runtime_error("no temporary folder: " + m_folder.errorString().toStdString());
    makeFolders();
    setAccessibility(accessibility);
    startDisplay(size, depth);
    if (bus == Bus::Own)
        startBus();
    if (accessibility == Accessibility::On)
        startAccessibilityBus();
    startWindowManager();
}

DesktopSession::~DesktopSession() {
    while (!m_processes.empty())
        m_processes.pop_back();
    endProcessesMarked(marker());
}

QByteArray DesktopSession::marker() const {
    return (kMarkerName + u'=' + m_folder.path()).toLocal8Bit();
}

QStringList DesktopSession::commandsRunning() const {
    QStringList names;
    for (const pid_t pid : processesMarked(marker())) {
        if (const QString name = commandOf(pid); !name.isEmpty())
            names.append(name);
    }
    names.sort();
    return names;
}

bool DesktopSession::signal(const QString& command, int number) const {
    constexpr qsizetype kLettersKept = 15;
    auto pids = processesMarked(marker());
    std::erase_if(pids, [&](pid_t pid) { return commandOf(pid) != command.left(kLettersKept); });
    return pids.size() == 1 && ::kill(pids.front(), number) == 0;
}

void DesktopSession::makeFolders() {
    struct Folder {
        const char* variable;
        const char* name;
    };
    constexpr Folder kFolders[]{{"HOME", "home"},
                                {"XDG_DATA_HOME", "data"},
                                {"XDG_CONFIG_HOME", "config"},
                                {"XDG_CACHE_HOME", "cache"},
                                {"XDG_RUNTIME_DIR", "run"},
                                {"TMPDIR", "tmp"}};
    m_environment.insert(kMarkerName, m_folder.path());
    for (const Folder& folder : kFolders) {
        const QString folderPath = path(QString::fromLatin1(folder.name));
        QDir().mkpath(folderPath);
        QFile::setPermissions(folderPath, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        m_environment.insert(QString::fromLatin1(folder.variable), folderPath);
    }
    m_environment.insert(u"PATH"_s, u"/usr/local/bin:/usr/bin:/bin"_s);
    m_environment.insert(u"LANG"_s, u"C.UTF-8"_s);
    m_environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    // Toolkits would start settings services that no test here looks at.
    m_environment.insert(u"GSETTINGS_BACKEND"_s, u"memory"_s);
    m_environment.insert(u"GIO_USE_VFS"_s, u"local"_s);
}

void DesktopSession::setAccessibility(Accessibility accessibility) {
    // Toolkits would start an accessibility bus; most tests do not look at it.
    if (accessibility == Accessibility::Off)
        m_environment.insert(u"NO_AT_BRIDGE"_s, u"1"_s);
    else
        m_environment.insert(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);
}

void DesktopSession::startAccessibilityBus() {
    const ProcessResult asked =
        run(u"dbus-send"_s, {u"--session"_s, u"--print-reply"_s, u"--dest=org.a11y.Bus"_s, u"/org/a11y/bus"_s,
                             u"org.a11y.Bus.GetAddress"_s});
    if (asked.exitStatus != 0)
        throw std::runtime_error("no accessibility bus: " + asked.standardError.toStdString());
}

void DesktopSession::startDisplay(QSize size, int depth) {
    const auto screen = u"%1x%2x%3"_s.arg(size.width()).arg(size.height()).arg(depth);
    Process& server = start({.program = u"Xvfb"_s,
                             .arguments = {u"-displayfd"_s, u"1"_s, u"-noreset"_s, u"-screen"_s, u"0"_s,
                                           screen, u"-nolisten"_s, u"tcp"_s, u"-dpi"_s, u"96"_s}});
    m_environment.insert(u"DISPLAY"_s, u':' + QString::fromLatin1(firstLine(server, "Xvfb")));
}

void DesktopSession::startBus() {
    // The bus lives as long as its command, and that as long as its standard input: it ends with the test in
    // any case.
    Process& bus =
        start({.program = u"dbus-run-session"_s,
               .arguments = {u"--"_s, u"sh"_s, u"-c"_s, u"echo \"$DBUS_SESSION_BUS_ADDRESS\"; exec cat"_s},
               .inputStaysOpen = true,
               .diesWithTest = false});
    m_environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s,
                         QString::fromLocal8Bit(firstLine(bus, "dbus-run-session")));
}

void DesktopSession::startWindowManager() {
    start({.program = u"openbox"_s, .arguments = {u"--sm-disable"_s}});
    XConnection x(display());
    if (!eventually([&x] { return x.hasWindowManager() && x.hasListOfClients(); }))
        throw std::runtime_error("openbox did not start");
}

QString DesktopSession::writeFile(const QString& name, const QByteArray& bytes) const {
    const QString filePath = path(name);
    QDir().mkpath(QFileInfo(filePath).path());
    QFile file(filePath);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("cannot write " + filePath.toStdString());
    return filePath;
}

QByteArray DesktopSession::display() const {
    return m_environment.value(u"DISPLAY"_s).toLatin1();
}

QString DesktopSession::busAddress() const {
    return m_environment.value(u"DBUS_SESSION_BUS_ADDRESS"_s);
}

QString DesktopSession::nextOutputBase() {
    QDir().mkpath(path(u"output"_s));
    return path(u"output/%1"_s.arg(++m_processCount));
}

Process& DesktopSession::start(const ProcessSpec& spec) {
    m_processes.push_back(std::make_unique<Process>(spec, m_environment, nextOutputBase()));
    return *m_processes.back();
}

ProcessResult DesktopSession::run(const ProcessSpec& spec, std::chrono::milliseconds deadline) {
    Process process(spec, m_environment, nextOutputBase());
    if (!process.waitForEnd(deadline))
        throw std::runtime_error(spec.program.toStdString() + " " + spec.arguments.join(u' ').toStdString() +
                                 " did not end");
    return process.result();
}

ProcessResult DesktopSession::run(const QString& program, const QStringList& arguments) {
    return run({.program = program, .arguments = arguments}, kGenerously);
}

} // namespace kestrova::test
