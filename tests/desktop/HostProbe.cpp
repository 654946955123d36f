/// A program that does what a test asks of the host's adapters: `host_probe FIFO`. Each line of the FIFO is a
/// command, each line put out an answer:
///   trusted             -> 1 or 0
///   insert WINDOW HEX   -> 1 or 0, milliseconds, the longest time that the main thread did not turn
///   front               -> nothing; a window of this program takes the keyboard
///   activate WINDOW     -> nothing
///   again WINDOW        -> nothing; activates the application as it was when it was last activated by that
///                          window
///   terminated WINDOW   -> 1 or 0 for the application that had the window when it was last activated
///   active              -> the window in front
///   describe NAME       -> the name of the installed application and whether it has an icon (1 or 0), or
///                          none
///   icon PATH           -> the name of the icon of such files, or none
///   screens             -> x y width height scale of each, in global points
///   tray                -> awaits; from now on a tray is waited for
///   appeared            -> 1 or 0, for whether it is there
///   appearance          -> dark, light or none; from the first time on the desktop's looks are followed
///   portal STATE        -> offers; as the desktop's service, see BusServices
///   no-portal           -> gone; likewise
///   notifiers STATE     -> watches; as the desktop's service, see BusServices
///   files               -> manages; likewise
///   shown               -> what the file manager was asked to show last, see BusServices
///   application NAME    -> is; as an application that the bus starts, see BusServices
///   opened              -> what that was asked to open last, see BusServices
///   targets KIND WORDS  -> the ways to share that: text, link, file or picture; joined by blanks, mail by
///                          "mail(NAME)"
///   hand TARGET KIND WORDS -> handed
///   refuse-accessibility -> refuses; likewise
///   mouse               -> x y
///   place X Y W H       -> nothing; the program's window is put there, in global points
///   content-...         -> see ContentCommands
#include "Platform/x11/AtspiAccessibility.h"
#include "Platform/x11/DesktopEntries.h"
#include "Platform/x11/FrontmostApplication.h"
#include "Platform/x11/PortalAppearance.h"
#include "Platform/x11/QtMainQueue.h"
#include "Platform/x11/SessionBus.h"
#include "Platform/x11/ToolkitConnection.h"
#include "Platform/x11/X11Screens.h"
#include "Platform/x11/X11SystemTray.h"
#include "Platform/x11/X11Workspace.h"
#include "Platform/x11/XdgSharing.h"
#include "tests/desktop/BusServices.h"
#include "tests/desktop/ContentCommands.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QRasterWindow>
#include <QScreen>
#include <QSocketNotifier>
#include <QTimer>

#include <cstdio>
#include <fcntl.h>
#include <map>
#include <memory>
#include <optional>
#include <unistd.h>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

const QString ownIdentifier = u"org.example.HostProbe"_s;

void answer(const QString& line) {
    std::puts(qPrintable(line));
    std::fflush(stdout);
}

class HostProbe {
public:
    HostProbe() {
        const auto beat = std::chrono::milliseconds(1);
        m_heart.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_heart, &QTimer::timeout, &m_heart,
                         [this] { m_longestGap = std::max(m_longestGap, m_sinceBeat.restart()); });
        m_window.setTitle(u"Host probe"_s);
        m_sinceBeat.start();
        m_heart.start(beat);
    }

    void obey(const QStringList& words) {
        const auto command = words.value(0);
        const auto window = words.value(1).toUInt(nullptr, 0);
        if (command == "trusted"_L1)
            answer(QString::number(m_accessibility.isTrusted()));
        else if (command == "insert"_L1)
            insert(application(window), QString::fromUtf8(QByteArray::fromHex(words.value(2).toLatin1())));
        else if (command == "front"_L1)
            front();
        else if (command == "activate"_L1)
            m_workspace.activate(m_activated[window] = application(window));
        else if (command == "again"_L1)
            m_workspace.activate(m_activated[window]);
        else if (command == "terminated"_L1)
            answer(QString::number(m_workspace.isTerminated(m_activated[window])));
        else if (command == "active"_L1)
            answer(QString::number(m_windows.activeWindow()));
        else if (command == "observe"_L1)
            observeActivations();
        else if (command == "ignore"_L1)
            m_observer.reset();
        else if (command == "activations"_L1)
            answer(QString::number(m_activations));
        else if (command == "describe"_L1)
            describe(words.value(1));
        else if (command == "icon"_L1)
            m_workspace.fileIcon(words.mid(1).join(u' '),
                                 [](const QIcon& icon) { answer(icon.isNull() ? u"none"_s : icon.name()); });
        else if (command == "screens"_L1)
            screens();
        else if (command == "tray"_L1)
            awaitTray();
        else if (command == "appeared"_L1)
            answer(QString::number(m_trayAppeared));
        else if (command == "appearance"_L1)
            appearance();
        else if (command == "portal"_L1)
            offerSettings(words.value(1));
        else if (command == "no-portal"_L1)
            withdrawSettings();
        else if (command == "notifiers"_L1)
            watchNotifiers(words.value(1));
        else if (command == "files"_L1)
            manageFiles();
        else if (command == "shown"_L1)
            answer(services().shownFiles());
        else if (command == "application"_L1)
            beApplication(words.value(1));
        else if (command == "opened"_L1)
            answer(services().openedFiles());
        else if (command == "targets"_L1)
            targets(contentOf(words.mid(1)));
        else if (command == "hand"_L1)
            hand(words.value(1), contentOf(words.mid(2)));
        else if (command == "refuse-accessibility"_L1)
            refuseAccessibility();
        else if (command == "mouse"_L1)
            answer(u"%1 %2"_s.arg(m_screens.mouseLocation().x()).arg(m_screens.mouseLocation().y()));
        else if (command == "place"_L1)
            place({words.value(1).toDouble(), words.value(2).toDouble(), words.value(3).toDouble(),
                   words.value(4).toDouble()});
        else if (!m_content.obey(words))
            answer(u"unknown command"_s);
    }

private:
    RunningApplication application(std::uint32_t window) {
        return applicationOfWindow(m_windows, window, m_entries, ownIdentifier)
            .value_or(RunningApplication{});
    }

    QCoro::Task<> insert(RunningApplication into, QString text) {
        QElapsedTimer timer;
        timer.start();
        m_longestGap = 0;
        m_sinceBeat.start();
        const bool isDone = co_await m_accessibility.setSelectedText(into, text);
        answer(u"%1 %2 %3"_s.arg(isDone)
                   .arg(timer.elapsed())
                   .arg(std::max(m_longestGap, m_sinceBeat.elapsed())));
    }

    BusServices& services() {
        if (!m_services)
            m_services.emplace();
        return *m_services;
    }

    void awaitTray() {
        m_tray.onDidAppear = [this] { m_trayAppeared = true; };
        m_tray.await();
        answer(u"awaits"_s);
    }

    void watchNotifiers(const QString& state) {
        services().watchNotifiers(state);
        answer(u"watches"_s);
    }

    void appearance() {
        if (!m_appearance)
            m_appearance.emplace(m_mainQueue);
        const auto scheme = m_appearance->colorScheme();
        answer(!scheme ? u"none"_s : *scheme == Appearance::ColorScheme::dark ? u"dark"_s : u"light"_s);
    }

    void offerSettings(const QString& state) {
        services().offerSettings(state);
        answer(u"offers"_s);
    }

    void withdrawSettings() {
        services().withdrawSettings();
        answer(u"gone"_s);
    }

    void manageFiles() {
        services().manageFiles();
        answer(u"manages"_s);
    }

    void beApplication(const QString& name) {
        services().beApplication(name);
        answer(u"is"_s);
    }

    static SharedContent contentOf(const QStringList& words) {
        SharedContent content;
        const auto kind = words.value(0);
        const auto what = words.mid(1).join(u' ');
        if (kind == "text"_L1)
            content.text = what;
        else if (kind == "link"_L1)
            content.link = QUrl(what);
        else if (kind == "file"_L1)
            content.file = QUrl::fromLocalFile(what);
        else if (kind == "picture"_L1)
            content.picture = [what]() -> std::optional<QByteArray> { return what.toUtf8(); };
        else
            content.picture = []() -> std::optional<QByteArray> { return {}; };
        return content;
    }

    void targets(const SharedContent& content) {
        QStringList all;
        for (const auto& target : m_sharing.targets(content))
            all.append(target.means == ShareTarget::Means::mail ? u"mail(%1)"_s.arg(target.name)
                                                                : target.identifier);
        answer(all.join(u' '));
    }

    void hand(const QString& identifier, const SharedContent& content) {
        const auto means =
            identifier == "mail"_L1 ? ShareTarget::Means::mail : ShareTarget::Means::application;
        m_sharing.share(content, {.identifier = identifier, .name = {}, .icon = {}, .means = means});
        answer(u"handed"_s);
    }

    void refuseAccessibility() {
        services().refuseAccessibilityOnce();
        answer(u"refuses"_s);
    }

    void front() {
        m_window.show();
        m_workspace.activateOwnWindow(m_window.winId());
    }

    void observeActivations() {
        m_observer = m_workspace.observeActivations([this] { ++m_activations; });
        answer(u"observes"_s);
    }

    void describe(const QString& identifier) const {
        const auto application = m_workspace.describe(identifier);
        answer(application ? u"%1 %2"_s.arg(application->name).arg(!application->icon.isNull()) : u"none"_s);
    }

    void screens() const {
        QStringList all;
        for (const auto& screen : m_screens.screens())
            all.append(u"%1 %2 %3 %4 %5"_s.arg(screen.frame.x)
                           .arg(screen.frame.y)
                           .arg(screen.frame.width)
                           .arg(screen.frame.height)
                           .arg(screen.scale));
        const auto main = m_screens.mainScreen();
        answer(all.join(u" | ") + u" main %1"_s.arg(main ? main->frame.x : -1));
    }

    void place(const ScreenRect& rect) {
        const auto where = X11Screens::geometry().windowPlace(rect);
        m_window.setFlag(Qt::BypassWindowManagerHint);
        m_window.setScreen(X11Screens::toolkitScreen(where->screen));
        m_window.setGeometry(where->geometry);
        m_window.show();
        answer(u"%1"_s.arg(m_window.winId()));
    }

    QtMainQueue m_mainQueue;
    DesktopEntries m_entries;
    X11Workspace m_workspace{m_mainQueue, m_entries, ownIdentifier};
    std::unique_ptr<ActivationObserver> m_observer;
    int m_activations = 0;
    X11Screens m_screens;
    ContentCommands m_content{m_mainQueue, m_entries, ownIdentifier, answer};
    X11SystemTray m_tray{m_mainQueue};
    bool m_trayAppeared = false;
    std::optional<PortalAppearance> m_appearance;
    // Where there is no bus, nothing may look for one.
    std::optional<BusServices> m_services;
    XdgSharing m_sharing{m_mainQueue, ownIdentifier, qEnvironmentVariable("XDG_CACHE_HOME") + u"/shared"_s};
    AtspiAccessibility m_accessibility{m_mainQueue};
    X11Windows m_windows{toolkitConnection()};
    std::map<std::uint32_t, RunningApplication> m_activated;
    QRasterWindow m_window;
    QTimer m_heart;
    QElapsedTimer m_sinceBeat;
    qint64 m_longestGap = 0;
};

} // namespace
} // namespace kestrova::test

int main(int argc, char** argv) {
    using namespace Qt::StringLiterals;

    // As the program does.
    kestrova::keepSessionBusFromBeingStarted();
    const QGuiApplication application(argc, argv);
    kestrova::test::HostProbe probe;
    // Open for writing too, so that the end of one writer is not the end of the pipe.
    const int commands = ::open(argc > 1 ? argv[1] : "", O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (commands < 0)
        qFatal("usage: host_probe FIFO");
    QByteArray received;
    QSocketNotifier notifier(commands, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [&] {
        QByteArray part(65536, Qt::Uninitialized);
        const auto size = ::read(commands, part.data(), static_cast<std::size_t>(part.size()));
        if (size <= 0)
            return;
        received.append(part.first(size));
        for (auto end = received.indexOf('\n'); end >= 0; end = received.indexOf('\n')) {
            const auto line = QString::fromUtf8(received.first(end));
            received.remove(0, end + 1);
            if (line == "quit"_L1)
                return QGuiApplication::quit();
            probe.obey(line.split(u' '));
        }
    });
    kestrova::test::answer(u"ready"_s);
    return QGuiApplication::exec();
}
