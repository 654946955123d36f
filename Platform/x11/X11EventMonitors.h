#pragma once

#include "Platform/EventMonitors.h"
#include "Platform/x11/HeldModifiers.h"
#include "Platform/x11/KeyRepeats.h"
#include "Platform/x11/MonitorList.h"
#include "Platform/x11/OwnWindows.h"
#include "Platform/x11/XInputRaw.h"

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <bitset>
#include <cstdint>
#include <optional>

class QKeyEvent;
class QWindow;

namespace kestrova {

class X11Keymap;

/// The mouse by raw events on the toolkit's own connection, which come before the toolkit's own events of the
/// same press; keys by the toolkit's event filters. Main thread only.
class X11EventMonitors final : public EventMonitors {
public:
    /// `keymap` outlives the object.
    explicit X11EventMonitors(X11Keymap& keymap);
    ~X11EventMonitors() override;

    std::unique_ptr<EventMonitor> addGlobalMonitor(std::uint32_t mask, GlobalHandler handler) override;
    std::unique_ptr<EventMonitor> addLocalMonitor(std::uint32_t mask, LocalHandler handler) override;

private:
    class MouseFilter final : public QAbstractNativeEventFilter {
    public:
        explicit MouseFilter(X11EventMonitors& monitors) : m_monitors(monitors) {}
        bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

    private:
        X11EventMonitors& m_monitors;
    };
    /// Tells of the keys whose events have lost their time on the way whether they repeat, and when the
    /// keyboard has come back.
    class ArrivalFilter final : public QAbstractNativeEventFilter {
    public:
        explicit ArrivalFilter(X11EventMonitors& monitors) : m_monitors(monitors) {}
        bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
        bool isRepeating(std::uint8_t x11Key) const { return m_repeating.test(x11Key); }

    private:
        X11EventMonitors& m_monitors;
        KeyRepeats m_repeats;
        std::bitset<256> m_repeating;
    };
    /// On the application, where it puts the key filter on each window that gets a key. It looks itself only
    /// at what an input method sends straight to a control, past the window.
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

    void onRawButtonPress(std::uint32_t button) const;
    bool isPointerOverOwnWindow() const;
    /// Called once for each key, before a control gets it; answers whether none is to get it.
    bool takeKey(const QWindow& window, QKeyEvent& key);
    bool onKey(const QWindow& window, const QKeyEvent& key);
    bool isRepeat(const QKeyEvent& press);
    bool onModifierKey(std::uint64_t window, std::uint16_t virtualKey, const QKeyEvent& key);
    void onFocusOut(const QWindow& window);
    void onFocusIn();
    bool tell(const LocalEvent& event) const;

    X11Keymap& m_keymap;
    xcb_connection_t* const m_connection;
    const OwnWindows m_own;
    std::optional<XInputRaw> m_raw;
    HeldModifiers m_held;
    KeyRepeats m_repeats;
    MouseFilter m_mouseFilter{*this};
    ArrivalFilter m_arrivalFilter{*this};
    KeyFilter m_keyFilter{*this};
    WindowFilter m_windowFilter{*this};
    MonitorList<GlobalHandler> m_global;
    MonitorList<LocalHandler> m_local;
};

} // namespace kestrova
