#include "Platform/x11/X11KeyPoster.h"

#include "Platform/Workspace.h"
#include "Platform/x11/ToolkitConnection.h"
#include "Platform/x11/X11Keymap.h"

#include <QLoggingCategory>

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <utility>

namespace kestrova {

namespace {

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(lcKeyPoster, "kestrova.keyposter")

constexpr MainQueue::Duration betweenAttempts = 10ms;
constexpr MainQueue::Duration longestWait = 150ms;
constexpr const char* keyboardIsHeld = "another window holds the keyboard";

/// No other client's request is carried out while it lives.
class ServerHold {
public:
    explicit ServerHold(xcb_connection_t* connection) : m_connection(connection) {
        xcb_grab_server(connection);
    }
    ServerHold(const ServerHold&) = delete;
    ServerHold& operator=(const ServerHold&) = delete;
    ~ServerHold() {
        xcb_ungrab_server(m_connection);
        xcb_flush(m_connection);
    }

private:
    xcb_connection_t* m_connection;
};

} // namespace

X11KeyPoster::Parts::Parts(xcb_connection_t* connection)
    : focus(connection, OwnWindows{toolkitConnection()}), injection(connection) {}

X11KeyPoster::X11KeyPoster(MainQueue& queue, const Workspace& workspace, X11Keymap& keymap,
                           std::function<bool()> ownPrimarySelection)
    : m_queue(queue),
      m_workspace(workspace),
      m_keymap(keymap),
      m_ownPrimarySelection(std::move(ownPrimarySelection)),
      m_connection(xcb_connect(nullptr, nullptr), &xcb_disconnect) {
    if (xcb_connection_has_error(m_connection.get()) == 0)
        m_parts.emplace(m_connection.get());
    if (!m_parts || !m_parts->injection.isAvailable())
        qCWarning(lcKeyPoster, "[KeyPoster] This X server takes no keys: nothing can be typed");
}

void X11KeyPoster::postPaste(const std::optional<RunningApplication>& target) {
    // One clipboard: what waited would paste what this one is about to.
    if (m_nextAttempt)
        qCInfo(lcKeyPoster, "[KeyPoster] Paste dropped: another one follows");
    m_nextAttempt = {};
    attempt(target, 0ms);
}

void X11KeyPoster::attempt(const std::optional<RunningApplication>& target, MainQueue::Duration waited) {
    const bool isThere = target && !m_workspace.isTerminated(*target);
    const auto obstacle = send(isThere ? &*target : nullptr);
    if (!obstacle)
        return;
    if (waited >= longestWait) {
        qCInfo(lcKeyPoster, "[KeyPoster] Paste dropped: %s", obstacle);
        return;
    }
    m_nextAttempt = m_queue.afterUnlessCancelled(betweenAttempts, [this, target, waited] {
        m_nextAttempt = {};
        attempt(target, waited + betweenAttempts);
    });
}

X11KeyPoster::Obstacle X11KeyPoster::send(const RunningApplication* target) {
    if (!m_parts || !m_parts->injection.isAvailable() || xcb_connection_has_error(m_connection.get()) != 0)
        return "the X server takes no keys";
    const auto focused = m_parts->focus.focusedWindow();
    if (const auto obstacle = obstacleAt(focused, target))
        return obstacle;
    const auto chord = pasteChordOf(focused->windowClass);
    // What asks other connections comes before the server is held: their answers would not come.
    const auto keys = keysOf(chord);
    if (chord == PasteChord::ShiftInsert) {
        // Nothing selected elsewhere is lost for keys that cannot be sent.
        if (m_parts->injection.isKeyboardHeld())
            return keyboardIsHeld;
        if (!m_ownPrimarySelection())
            return "the primary selection is another program's";
    }

    const ServerHold hold{m_connection.get()};
    if (m_parts->focus.focusedWindow() != focused)
        return "the focus is moving";
    if (m_parts->injection.isKeyboardHeld())
        return keyboardIsHeld;
    m_parts->injection.pressChord(keys);
    return nullptr;
}

X11KeyPoster::Obstacle X11KeyPoster::obstacleAt(const std::optional<FocusedWindow>& focused,
                                                const RunningApplication* target) const {
    if (!focused)
        return "no window has the focus";
    if (focused->isOwn)
        return "the focus is in a window of this program";
    if (!target)
        return nullptr;
    const auto window = m_parts->focus.windowOf(*target);
    return std::ranges::find(focused->windows, window) == focused->windows.end()
               ? "its application is not in front"
               : nullptr;
}

std::vector<xcb_keycode_t> X11KeyPoster::keysOf(PasteChord chord) {
    const auto layout = m_keymap.currentLayout();
    const auto key = [&](xcb_keysym_t keysym, xcb_keycode_t usual) {
        return m_keymap.keyGiving(keysym, layout).value_or(usual);
    };
    // By position where no layout gives the symbol: programs look at the position then, too.
    const auto control = key(XKB_KEY_Control_L, 37);
    const auto shift = key(XKB_KEY_Shift_L, 50);
    if (chord == PasteChord::ShiftInsert)
        return {shift, key(XKB_KEY_Insert, 118)};
    const auto v = key(XKB_KEY_v, 55);
    return chord == PasteChord::ControlShiftV ? std::vector{control, shift, v} : std::vector{control, v};
}

} // namespace kestrova
