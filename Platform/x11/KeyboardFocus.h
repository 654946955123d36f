#pragma once

#include "Platform/RunningApplication.h"
#include "Platform/x11/OwnWindows.h"
#include "Platform/x11/X11Windows.h"

#include <xcb/xcb.h>

#include <optional>
#include <vector>

namespace kestrova {

/// Where keys go.
struct FocusedWindow {
    /// The window in focus and all that it lies in, from the inside out, without the root.
    std::vector<xcb_window_t> windows;
    /// Of the innermost that has one.
    WindowClass windowClass;
    bool isOwn = false;

    bool operator==(const FocusedWindow&) const = default;
};

/// Questions about the keyboard's focus, answered by the X server alone. On the thread that owns the
/// connection.
class KeyboardFocus {
public:
    /// `connection` outlives the object; windows of `own` are this program's.
    KeyboardFocus(xcb_connection_t* connection, OwnWindows own);

    /// Absent if no window has it.
    std::optional<FocusedWindow> focusedWindow() const;
    /// The window of the application that keys are meant for, as in `X11Windows`; XCB_NONE if it has none.
    xcb_window_t windowOf(const RunningApplication& application) const;

private:
    xcb_window_t innermostFocus() const;

    xcb_connection_t* m_connection;
    const OwnWindows m_own;
    X11Windows m_facts;
    xcb_window_t m_root = XCB_NONE;
};

} // namespace kestrova
