#pragma once

#include "Platform/x11/XInputRaw.h"

#include <xcb/xcb.h>

#include <array>
#include <vector>

namespace kestrova {

/// Presses keys as if a person had. On the thread that owns the connection.
class KeyInjection {
public:
    /// `connection` outlives the object.
    explicit KeyInjection(xcb_connection_t* connection);

    bool isAvailable() const { return m_isAvailable; }
    /// Whether a client, be it of this program, keeps the keyboard to itself.
    bool isKeyboardHeld() const;
    /// Presses the keys in order and releases them. Modifiers that are held are up meanwhile; those that are
    /// still held afterwards are down again. The caller holds the server.
    void pressChord(const std::vector<xcb_keycode_t>& chord) const;

private:
    using Counts = std::array<int, 256>;

    std::vector<xcb_keycode_t> heldModifiers() const;
    void fake(std::uint8_t type, xcb_keycode_t key) const;
    void finishRequests() const;
    void countReleases(Counts& counts) const;

    xcb_connection_t* m_connection;
    XInputRaw m_raw;
    xcb_window_t m_root = XCB_NONE;
    bool m_isAvailable = false;
};

} // namespace kestrova
