#pragma once

#include "Platform/HotKeys.h"
#include "Platform/x11/HotKeyPresses.h"
#include "Platform/x11/KeyModifiers.h"
#include "Platform/x11/KeyboardHandover.h"
#include "Platform/x11/KeyboardTap.h"
#include "Platform/x11/OwnWindows.h"
#include "Platform/x11/XInputRaw.h"
#include "Platform/x11/XcbReply.h"

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace kestrova {

/// Hot keys, and keys that are looked at one by one, on a connection of their own. A key that is grabbed
/// freezes the keyboard for a moment, and is let go before anything else happens, so that what is typed right
/// after it goes where it should. One thread at a time; it waits for the X server alone.
class HotKeyGrabs {
public:
    /// Who looks at all keys: one who keeps them from everybody else, or one who does not.
    enum class Onlooker { tap, monitor };

    /// Called from within `dispatchEvents`; none may wait.
    struct Listener {
        std::function<void(HotKeyEvent::Kind, HotKeyIdentifier)> hotKey;
        /// A press of a key that is no hot key, by its virtual key code.
        std::function<void(Onlooker, std::uint16_t keyCode)> keyDown;
    };

    /// Windows of `own` are this program's.
    HotKeyGrabs(Listener listener, OwnWindows own);

    /// False if this server cannot tell what hot keys need, or is gone.
    bool isUsable() const;
    int descriptor() const { return xcb_get_file_descriptor(m_connection.get()); }

    /// 0, or one of the statuses of `HotKeys`, and then nothing stays grabbed.
    int add(HotKeyReference reference, std::uint32_t keyCode, std::uint32_t carbonModifiers,
            HotKeyIdentifier identifier);
    void remove(HotKeyReference reference);
    /// Tells of presses from now on. False, and then nothing is told, if the server does not allow it.
    bool startTelling(Onlooker onlooker);
    void stopTelling(Onlooker onlooker);
    /// What is typed from now on waits until another window than this one has the keyboard; see
    /// `KeyboardHandover`. Nothing happens while the keyboard is tapped.
    void handOverKeyboard(xcb_window_t window);
    /// Handles all that has arrived.
    void dispatchEvents();
    /// When to call `dispatchEvents` again though nothing has arrived; absent if it need not be.
    std::optional<std::chrono::milliseconds> untilNextDispatch() const;

private:
    struct HotKey {
        std::uint32_t keyCode = 0;
        std::uint32_t carbonModifiers = 0;
        HotKeyIdentifier identifier;
        xcb_keycode_t x11Key = 0;
        /// Absent while the key is out of reach: the keyboard has changed under it.
        std::optional<std::uint16_t> state;
    };

    std::uint32_t neededRawEvents() const;
    void selectRawEvents(std::uint32_t events);
    int grab(xcb_keycode_t key, std::uint16_t state) const;
    void ungrab(xcb_keycode_t key, std::uint16_t state) const;
    void ungrab(const HotKey& hotKey) const;
    std::vector<std::uint16_t> statesWithLocks(std::uint16_t state) const;
    std::uint16_t withoutLocks(std::uint16_t state) const;
    const HotKey* find(xcb_keycode_t key, std::uint16_t state) const;

    void dispatch(const xcb_generic_event_t& event);
    void onGrabbedPress(const xcb_key_press_event_t& press);
    bool isModifier(xcb_keycode_t key) const { return m_modifiers.maskOfKey[key] != 0; }
    void onRawPress(xcb_keycode_t key, xcb_timestamp_t time);
    void onRelease(xcb_keycode_t key);
    void tellPressed(const HotKey& hotKey);
    void tellKeyDown(Onlooker onlooker, xcb_keycode_t key) const;
    XcbReply<xcb_generic_event_t> nextEvent();
    void readArrived();
    void adoptKeyboard();

    const Listener m_listener;
    const OwnWindows m_own;
    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> m_connection;
    std::optional<XInputRaw> m_raw;
    xcb_window_t m_root = XCB_NONE;
    /// 0 without the extension.
    std::uint8_t m_keyboardEvent = 0;
    ModifierMap m_modifiers;
    /// The modifiers that are on, as of the last event that was handled.
    std::uint16_t m_state = 0;
    bool m_keyboardChanged = false;
    std::map<std::uint64_t, HotKey> m_hotKeys;
    HotKeyPresses m_presses;
    std::optional<KeyboardTap> m_tap;
    std::optional<KeyboardHandover> m_handover;
    bool m_isTapped = false;
    bool m_isMonitored = false;
    /// Those that the server sends now.
    std::uint32_t m_rawEvents = 0;
    /// Read from the server, not yet handled.
    std::deque<XcbReply<xcb_generic_event_t>> m_arrived;
};

} // namespace kestrova
