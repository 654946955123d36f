#pragma once

#include "Platform/HotKeys.h"
#include "Platform/x11/HotKeyPresses.h"
#include "Platform/x11/KeyModifiers.h"
#include "Platform/x11/XInputRaw.h"
#include "Platform/x11/XcbReply.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace kestrova {

/// Hot keys on a connection of their own. A key that is grabbed freezes the keyboard for a moment, and is let
/// go before anything else happens, so that what is typed right after it goes where it should. One thread at
/// a time; it waits for the X server alone.
class HotKeyGrabs {
public:
    using Tell = std::function<void(HotKeyEvent::Kind, HotKeyIdentifier)>;

    /// `tell` is called from within `dispatchEvents` and must not wait.
    explicit HotKeyGrabs(Tell tell);

    /// False if this server cannot tell what hot keys need, or is gone.
    bool isUsable() const;
    int descriptor() const { return xcb_get_file_descriptor(m_connection.get()); }

    /// 0, or one of the statuses of `HotKeys`, and then nothing stays grabbed.
    int add(HotKeyReference reference, std::uint32_t keyCode, std::uint32_t carbonModifiers,
            HotKeyIdentifier identifier);
    void remove(HotKeyReference reference);
    /// Handles all that has arrived.
    void dispatchEvents();

private:
    struct HotKey {
        std::uint32_t keyCode = 0;
        std::uint32_t carbonModifiers = 0;
        HotKeyIdentifier identifier;
        xcb_keycode_t x11Key = 0;
        /// Absent while the key is out of reach: the keyboard has changed under it.
        std::optional<std::uint16_t> state;
    };

    int grab(xcb_keycode_t key, std::uint16_t state) const;
    void ungrab(xcb_keycode_t key, std::uint16_t state) const;
    void ungrab(const HotKey& hotKey) const;
    std::vector<std::uint16_t> statesWithLocks(std::uint16_t state) const;
    std::uint16_t withoutLocks(std::uint16_t state) const;
    const HotKey* find(xcb_keycode_t key, std::uint16_t state) const;

    void dispatch(const xcb_generic_event_t& event);
    void onGrabbedPress(const xcb_key_press_event_t& press);
    void onRawPress(xcb_keycode_t key, xcb_timestamp_t time);
    void onRawRelease(xcb_keycode_t key);
    void tellPressed(const HotKey& hotKey);
    XcbReply<xcb_generic_event_t> nextEvent();
    void readArrived();
    void adoptKeyboard();

    const Tell m_tell;
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
    /// Read from the server, not yet handled.
    std::deque<XcbReply<xcb_generic_event_t>> m_arrived;
};

} // namespace kestrova
