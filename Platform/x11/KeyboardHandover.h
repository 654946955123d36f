#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <optional>

namespace kestrova {

/// The keyboard on its way from a window that is about to be hidden to whoever gets it next. In between the
/// focus is nowhere, or at the window under the pointer; so the keyboard stands still, and the server keeps
/// what is typed for the window that comes to have the focus. It lives on the connection of the hot keys: the
/// grab of a hot key that is still held would be another client's otherwise. One thread at a time; it waits
/// for the X server alone.
class KeyboardHandover {
public:
    using Clock = std::chrono::steady_clock;

    /// Where nobody takes the focus for so long, nobody will.
    static constexpr std::chrono::milliseconds longestWait{250};

    /// `connection` outlives the object.
    KeyboardHandover(xcb_connection_t* connection, xcb_window_t root);

    /// Has the keyboard stand still if `window` has the focus and no other client has the keyboard. The
    /// caller has made sure that this one has it for nothing else.
    void begin(xcb_window_t window);
    bool isUnderWay() const { return m_giver != XCB_NONE; }
    /// Ends it if another window has the focus by now, or the wait has been too long.
    void goOn();
    /// Ends it, whoever has the focus.
    void end();
    /// When to call `goOn` again; absent while none is under way.
    std::optional<std::chrono::milliseconds> untilNextLook() const;

private:
    xcb_window_t focus() const;
    /// Whether the focus is at a window of an application, other than the one that gives it away. Window
    /// managers put it on a window of their own before they give it to somebody.
    bool hasArrived() const;

    xcb_connection_t* const m_connection;
    const xcb_window_t m_root;
    const xcb_atom_t m_stateAtom;
    xcb_window_t m_giver = XCB_NONE;
    Clock::time_point m_deadline;
};

} // namespace kestrova
