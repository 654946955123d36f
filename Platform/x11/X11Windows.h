#pragma once

#include "Platform/x11/DesktopEntries.h"

#include <QByteArrayView>
#include <QString>

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>

namespace kestrova {

/// What a window tells about the application that shows it.
struct WindowFacts {
    /// 0 where the window does not tell.
    std::int64_t processIdentifier = 0;
    WindowClass windowClass;

    bool operator==(const WindowFacts&) const = default;
};

/// Questions about windows, answered by the X server alone. On the thread that owns the connection.
class X11Windows {
public:
    /// `connection` outlives the object.
    explicit X11Windows(xcb_connection_t* connection);

    /// The window in front as the window manager tells it; XCB_NONE if there is none.
    xcb_window_t activeWindow() const;
    /// Absent if the window has gone.
    std::optional<WindowFacts> facts(xcb_window_t window) const;

private:
    xcb_connection_t* m_connection;
    xcb_window_t m_root = XCB_NONE;
    xcb_atom_t m_activeWindowAtom = XCB_NONE;
    xcb_atom_t m_processAtom = XCB_NONE;
};

/// In clock ticks since boot; 0 if there is no such process.
std::uint64_t processStartTime(std::int64_t processIdentifier);
/// The start time in the text of a /proc/PID/stat; 0 if it is not there.
std::uint64_t startTimeInProcessStatus(QByteArrayView status);
/// Base name of the program that the process runs; empty if it cannot be told.
QString executableName(std::int64_t processIdentifier);
/// The two halves of a WM_CLASS value.
WindowClass windowClassFromProperty(QByteArrayView value);

} // namespace kestrova
