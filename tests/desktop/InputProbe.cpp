#include "Platform/x11/QtMainQueue.h"
#include "Platform/x11/QtMenuTracking.h"
#include "Platform/x11/X11EventMonitors.h"
#include "Platform/x11/X11HotKeys.h"
#include "Platform/x11/X11KeyPoster.h"
#include "Platform/x11/X11KeyboardLayout.h"
#include "Platform/x11/X11Keymap.h"
#include "Platform/x11/X11WindowManagement.h"
#include "Platform/x11/X11Windows.h"
#include "tests/support/Ports.h"

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QScreen>
#include <QSocketNotifier>

#include <array>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <map>
#include <memory>
#include <unistd.h>
#include <vector>

// A program that has nothing but the adapters for keys and mouse. It takes commands, a line each, from the
// pipe that its argument names, and tells on its standard output what the adapters tell.

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

void say(const QString& line) {
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

/// Knows which processes live, and no more.
class ProcessList final : public FakeWorkspace {
public:
    bool isTerminated(const RunningApplication& application) const override {
        return processStartTime(application.processIdentifier) != application.processStartTime;
    }
};

class InputProbe {
public:
    explicit InputProbe(const char* pipe) : m_pipe(::open(pipe, O_RDWR | O_NONBLOCK | O_CLOEXEC)) {
        m_menu.addAction(u"First"_s, [] { say(u"menu chose first"_s); });
        m_menu.addAction(u"Second"_s);
        m_window.setWindowTitle(u"Input probe"_s);
        m_window.setDragEnabled(true);
        QObject::connect(&m_window, &QLineEdit::textChanged,
                         [](const QString& text) { say(u"text "_s + text); });
        m_menuTracking.onDidBegin = [] { say(u"menu begins"_s); };
        m_menuTracking.onDidEnd = [] { say(u"menu ends"_s); };
        QObject::connect(&m_notifier, &QSocketNotifier::activated, [this] { readCommands(); });
        say(u"ready"_s);
    }

private:
    void readCommands() {
        std::array<char, 4096> bytes{};
        const auto count = ::read(m_pipe, bytes.data(), bytes.size());
        if (count > 0)
            m_input.append(bytes.data(), count);
        for (qsizetype end = 0; (end = m_input.indexOf('\n')) >= 0;) {
            const auto words = QString::fromUtf8(m_input.left(end)).split(u' ');
            m_input.remove(0, end + 1);
            if (const auto command = m_commands.find(words.first()); command != m_commands.end())
                (this->*command->second)(words.mid(1));
            else
                say(u"unknown "_s + words.first());
        }
    }

    void install(const QStringList&) {
        const bool installed = m_hotKeys.installHandler([this](const HotKeyEvent& event) {
            switch (event.kind) {
            case HotKeyEvent::Kind::hotKeyPressed:
                say(u"pressed %1"_s.arg(event.identifier.number));
                return 0;
            case HotKeyEvent::Kind::hotKeyReleased:
                say(u"released %1"_s.arg(event.identifier.number));
                return 0;
            default:
                say(u"%1 %2 %3"_s.arg(event.kind == HotKeyEvent::Kind::rawKeyDown ? u"rawdown"_s : u"rawup"_s)
                        .arg(event.keyCode)
                        .arg(event.modifierFlags, 0, 16));
                return static_cast<int>(event.keyCode) == m_swallowed ? 0 : HotKeys::eventNotHandled;
            }
        });
        say(u"installed %1"_s.arg(installed));
    }
    void registerKey(const QStringList& words) {
        const auto number = words[2].toUInt();
        const auto registration =
            m_hotKeys.registerHotKey(words[0].toUInt(), words[1].toUInt(nullptr, 16), {.number = number});
        if (registration.reference)
            m_references[number] = *registration.reference;
        say(u"status %1"_s.arg(registration.status));
    }
    void unregisterKey(const QStringList& words) {
        m_hotKeys.unregisterHotKey(m_references.at(words[0].toUInt()));
        say(u"unregistered"_s);
    }
    void deliver(const QStringList& words) {
        m_hotKeys.deliverHotKeys(words[0] == u"1");
        say(u"delivers"_s);
    }
    void deliverRaw(const QStringList& words) {
        m_hotKeys.deliverRawKeys(words[0] == u"1");
        say(u"delivers raw"_s);
    }
    void swallow(const QStringList& words) {
        m_swallowed = words[0].toInt();
        say(u"swallows"_s);
    }
    void beBusy(const QStringList& words) {
        say(u"busy"_s);
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds{words[0].toInt()};
        while (std::chrono::steady_clock::now() < end) {
        }
        say(u"free"_s);
    }
    void writeText(const QStringList& words) {
        QGuiApplication::clipboard()->setText(words.join(u' '));
        say(u"wrote"_s);
    }
    void paste(const QStringList& words) {
        std::optional<RunningApplication> target;
        if (!words.isEmpty()) {
            target.emplace();
            target->window = words[0].toUInt();
            target->processIdentifier = words[1].toLongLong();
            target->processStartTime =
                words.size() > 2 ? words[2].toULongLong() : processStartTime(target->processIdentifier);
        }
        m_poster.postPaste(target);
        say(u"posted"_s);
    }
    void layoutText(const QStringList& words) {
        say(u"layout "_s + m_layout.text(static_cast<std::uint16_t>(words[0].toUInt())).value_or(u"none"_s));
    }
    void showWindow(const QStringList&) {
        m_window.show();
        m_window.activateWindow();
        say(u"window %1"_s.arg(m_window.winId()));
    }
    void hideWindow(const QStringList&) {
        m_windowManagement.handOverKeyboard(m_window.winId());
        m_window.hide();
        say(u"hidden"_s);
    }
    void tellPlace(const QStringList&) {
        const auto place = m_window.mapToGlobal(QPoint(5, 5));
        say(u"at %1 %2"_s.arg(place.x()).arg(place.y()));
    }
    void coverScreen(const QStringList&) {
        m_cover.setWindowFlags(Qt::X11BypassWindowManagerHint | Qt::FramelessWindowHint);
        m_cover.setGeometry(m_cover.screen()->geometry());
        m_cover.show();
        QGuiApplication::sync();
        say(u"covers"_s);
    }
    void setText(const QStringList& words) {
        m_window.setText(words.join(u' '));
        say(u"set"_s);
    }
    void openMenu(const QStringList&) {
        m_menu.popup(m_window.mapToGlobal(QPoint(0, m_window.height())));
        say(u"opened"_s);
    }
    void closeMenu(const QStringList&) {
        m_menu.close();
        say(u"closed"_s);
    }
    void monitorMouse(const QStringList& words) {
        m_monitors.push_back(
            m_eventMonitors.addGlobalMonitor(words[0].toUInt(), [] { say(u"click elsewhere"_s); }));
        say(u"monitors mouse %1"_s.arg(m_monitors.back() != nullptr));
    }
    void monitorKeys(const QStringList&) {
        m_monitors.push_back(m_eventMonitors.addLocalMonitor(
            EventMask::keyDown | EventMask::flagsChanged, [this](const LocalEvent& event) {
                const auto& key = event.key;
                const auto where = event.window == m_window.winId() ? u"window"_s : u"elsewhere"_s;
                if (event.kind == EventMask::flagsChanged)
                    say(u"flags %1 %2"_s.arg(key.modifierFlags, 0, 16).arg(where));
                else
                    say(u"key %1 %2 %3 %4 %5"_s.arg(key.keyCode)
                            .arg(key.modifierFlags, 0, 16)
                            .arg(key.charactersIgnoringModifiers.trimmed())
                            .arg(key.isRepeat ? u"again"_s : u"once"_s)
                            .arg(where));
                return key.keyCode == m_swallowed && event.kind == EventMask::keyDown;
            }));
        say(u"monitors keys"_s);
    }
    void tapKeys(const QStringList&) {
        m_monitors.push_back(
            m_eventMonitors.tapKeyDowns([](std::uint16_t keyCode) { say(u"tapped %1"_s.arg(keyCode)); }));
        say(u"taps %1"_s.arg(m_monitors.back() != nullptr));
    }
    void watchKeys(const QStringList&) {
        m_monitors.push_back(m_eventMonitors.addGlobalKeyDownMonitor(
            [](std::uint16_t keyCode) { say(u"seen %1"_s.arg(keyCode)); }));
        say(u"watches %1"_s.arg(m_monitors.back() != nullptr));
    }
    void stopMonitoring(const QStringList&) {
        m_monitors.clear();
        say(u"stopped"_s);
    }

    using Command = void (InputProbe::*)(const QStringList&);
    const std::map<QString, Command> m_commands{{u"install"_s, &InputProbe::install},
                                                {u"register"_s, &InputProbe::registerKey},
                                                {u"unregister"_s, &InputProbe::unregisterKey},
                                                {u"deliver"_s, &InputProbe::deliver},
                                                {u"deliver-raw"_s, &InputProbe::deliverRaw},
                                                {u"swallow"_s, &InputProbe::swallow},
                                                {u"busy"_s, &InputProbe::beBusy},
                                                {u"write"_s, &InputProbe::writeText},
                                                {u"paste"_s, &InputProbe::paste},
                                                {u"layout"_s, &InputProbe::layoutText},
                                                {u"show"_s, &InputProbe::showWindow},
                                                {u"hide"_s, &InputProbe::hideWindow},
                                                {u"where"_s, &InputProbe::tellPlace},
                                                {u"cover"_s, &InputProbe::coverScreen},
                                                {u"set"_s, &InputProbe::setText},
                                                {u"menu"_s, &InputProbe::openMenu},
                                                {u"close-menu"_s, &InputProbe::closeMenu},
                                                {u"monitor-mouse"_s, &InputProbe::monitorMouse},
                                                {u"monitor-keys"_s, &InputProbe::monitorKeys},
                                                {u"tap"_s, &InputProbe::tapKeys},
                                                {u"watch"_s, &InputProbe::watchKeys},
                                                {u"stop-monitoring"_s, &InputProbe::stopMonitoring}};

    const int m_pipe;
    QSocketNotifier m_notifier{m_pipe, QSocketNotifier::Read};
    QByteArray m_input;
    QtMainQueue m_queue;
    X11Keymap m_keymap;
    X11KeyboardLayout m_layout{m_keymap};
    X11HotKeys m_hotKeys{m_queue, m_keymap};
    ProcessList m_processes;
    X11KeyPoster m_poster{m_queue, m_processes, m_keymap, [] {
                              auto* const clipboard = QGuiApplication::clipboard();
                              clipboard->setText(clipboard->text(), QClipboard::Selection);
                              return true;
                          }};
    X11EventMonitors m_eventMonitors{m_keymap, m_hotKeys};
    X11WindowManagement m_windowManagement{m_hotKeys};
    QtMenuTracking m_menuTracking;
    QLineEdit m_window;
    QMenu m_menu;
    QWidget m_cover;
    std::map<unsigned, HotKeyReference> m_references;
    std::vector<std::unique_ptr<EventMonitor>> m_monitors;
    int m_swallowed = -1;
};

} // namespace
} // namespace kestrova

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "xcb");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (argc != 2)
        return 2;
    const kestrova::InputProbe probe{argv[1]};
    return QApplication::exec();
}
