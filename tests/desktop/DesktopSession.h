#pragma once

#include "tests/desktop/Process.h"

#include <QSize>
#include <QTemporaryDir>

#include <memory>
#include <vector>

namespace kestrova::test {

/// A desktop of its own: folders, a virtual display, a window manager and, if wanted, a session bus. Nothing
/// of the caller's session reaches the programs in it, and several may run side by side. All that was started
/// in it is ended and awaited by its destructor. Throws std::runtime_error if a part of it cannot be started.
class DesktopSession {
public:
    enum class Bus { Own, None };
    /// Whether toolkits offer their elements to other programs; that wants a bus.
    enum class Accessibility { Off, On };

    /// The display has that many pixels, of that many bits.
    explicit DesktopSession(Bus bus = Bus::Own, Accessibility accessibility = Accessibility::Off,
                            QSize size = {1280, 800}, int depth = 24);
    DesktopSession(const DesktopSession&) = delete;
    DesktopSession& operator=(const DesktopSession&) = delete;
    ~DesktopSession();

    /// Path below the session's folder; there is nothing there yet unless a test puts it there.
    QString path(const QString& name) const { return m_folder.filePath(name); }
    /// Puts `bytes` into the file `name` below the session's folder, making folders as needed; answers its
    /// path.
    QString writeFile(const QString& name, const QByteArray& bytes) const;

    /// What programs started from now on find.
    QProcessEnvironment& environment() { return m_environment; }
    QByteArray display() const;
    /// Empty if there is none.
    QString busAddress() const;

    /// The process is the session's and lives at most as long.
    Process& start(const ProcessSpec& spec);
    /// Runs a program to its end. Throws std::runtime_error if it has not ended at the deadline.
    ProcessResult run(const ProcessSpec& spec, std::chrono::milliseconds deadline);
    ProcessResult run(const QString& program, const QStringList& arguments);
    /// The names of the programs that run in the session now, however they were started, in alphabetical
    /// order.
    QStringList commandsRunning() const;
    /// Sends the signal to the one program of that name, of which fifteen letters count, however it was
    /// started. False if there is not one.
    bool signal(const QString& command, int number) const;

private:
    QByteArray marker() const;
    void makeFolders();
    void setAccessibility(Accessibility accessibility);
    void startAccessibilityBus();
    void startDisplay(QSize size, int depth);
    void startBus();
    void startWindowManager();
    QString nextOutputBase();

    QTemporaryDir m_folder;
    QProcessEnvironment m_environment;
    int m_processCount = 0;
    std::vector<std::unique_ptr<Process>> m_processes;
};

} // namespace kestrova::test
