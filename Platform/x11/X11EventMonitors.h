#pragma once

#include "Platform/EventMonitors.h"
#include "Platform/x11/DoubtfulPresses.h"
#include "Platform/x11/HeldModifiers.h"
#include "Platform/x11/KeyRepeats.h"
#include "Platform/x11/MonitorList.h"
#include "Platform/x11/OwnWindows.h"
#include "Platform/x11/XInputRaw.h"

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>

class QInputEvent;
class QKeyEvent;
class QWindow;

namespace kestrova {

class X11HotKeys;
class X11Keymap;

/// The mouse by raw events on the toolkit's own connection, which come before the toolkit's own events of the
/// same press; keys of the own windows by the toolkit's event filters, those of all windows where the hot
/// keys see them. Main thread only.
class X11EventMonitors final : public EventMonitors {
public:
    /// `keymap` and `hotKeys` outlive the object.
    X11EventMonitors(X11Keymap& keymap, X11HotKeys& hotKeys);
    ~X11EventMonitors() override;

    std::unique_ptr<EventMonitor> addGlobalMonitor(std::uint32_t mask, GlobalHandler handler) override;
    std::unique_ptr<EventMonitor> addLocalMonitor(std::uint32_t mask, LocalHandler handler) override;
    std::unique_ptr<EventMonitor> tapKeyDowns(KeyDownHandler handler) override;
    std::unique_ptr<EventMonitor> addGlobalKeyDownMonitor(KeyDownHandler handler) override;

private:
    static constexpr std::size_t keyCount = 256;

    class MouseFilter final : public QAbstractNativeEventFilter {
    public:
        explicit MouseFilter(X11EventMonitors& monitors) : m_monitors(monitors) {}
        bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

    private:
        X11EventMonitors& m_monitors;
    };
    /// Sees keys before input methods and drags do. Tells of the keys whose events have lost their time on
    /// the way whether they repeat, and when the keyboard has come back.
    class ArrivalFilter final : public QAbstractNativeEventFilter {
    public:
        explicit ArrivalFilter(X11EventMonitors& monitors) : m_monitors(monitors) {}
        bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
        /// Of the press that an input method hands on next. When it does, repeats may have arrived already.
        bool takeRepeat(std::uint8_t x11Key);

    private:
        X11EventMonitors& m_monitors;
        KeyRepeats m_repeats;
        std::bitset<keyCount> m_repeating;
        /// Whose press has arrived and was not yet handed on.
        std::bitset<keyCount> m_isNew;
    };
    /// On the application, where it puts the key filter on each window that gets a key. It looks itself only
    /// at what an input method sends straight to a control, past the window, and for the end of a drag.
    class WindowFilter final : public QObject {
    public:
        explicit WindowFilter(X11EventMonitors& monitors) : m_monitors(monitors) {}
        bool eventFilter(QObject* receiver, QEvent* event) override;

    private:
        X11EventMonitors& m_monitors;
    };
    /// On windows and not on the application: the toolkit's accessibility bridge takes keys there, asks
    /// assistive programs about them and sends them on later. A key that is looked at before that would
    /// overtake those typed before it.
    class KeyFilter final : public QObject {
    public:
        explicit KeyFilter(X11EventMonitors& monitors) : m_monitors(monitors) {}
        bool eventFilter(QObject* receiver, QEvent* event) override;

    private:
        X11EventMonitors& m_monitors;
    };

    void onRawButtonPress(const ButtonPress& press);
    void onPressNotSeen(const ButtonPress& press) const;
    bool isPointerOverOwnWindow() const;
    /// Called once for each key, before a control gets it; answers whether none is to get it.
    bool takeKey(const QWindow& window, QKeyEvent& key);
    bool onKey(const QWindow& window, const QKeyEvent& key);
    bool isRepeat(const QKeyEvent& press);
    /// Answers whether a monitor has swallowed it.
    bool tellOfPress(const QWindow& window, std::uint16_t virtualKey, const QKeyEvent& key,
                     bool repeats) const;
    bool onModifierKey(std::uint64_t window, std::uint16_t virtualKey, const QKeyEvent& key);
    void onFocusOut(const QWindow& window);
    void onInput(const QInputEvent& event);
    void tellWhatIsHeld();
    bool tell(const LocalEvent& event) const;

    X11Keymap& m_keymap;
    X11HotKeys& m_hotKeys;
    xcb_connection_t* const m_connection;
    const OwnWindows m_own;
    std::optional<XInputRaw> m_raw;
    std::optional<DoubtfulPresses> m_presses;
    HeldModifiers m_held;
    /// When a modifier was let go, which no window of ours has been told: during a drag, keys are the drag's.
    std::optional<quint64> m_unheardRelease;
    KeyRepeats m_repeats;
    /// Whose press a monitor has swallowed.
    std::bitset<keyCount> m_swallowed;
    MouseFilter m_mouseFilter{*this};
    ArrivalFilter m_arrivalFilter{*this};
    KeyFilter m_keyFilter{*this};
    WindowFilter m_windowFilter{*this};
    MonitorList<GlobalHandler> m_global;
    MonitorList<LocalHandler> m_local;
};

} // namespace kestrova
