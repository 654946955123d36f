#pragma once

#include "Platform/x11/DesktopEntries.h"

#include <QByteArrayView>
#include <QRect>
#include <QString>

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace kestrova {

struct RunningApplication;

/// What a window tells about the application that shows it.
struct WindowFacts {
    /// 0 where the window does not tell.
    std::int64_t processIdentifier = 0;
    WindowClass windowClass;

    bool operator==(const WindowFacts&) const = default;
};

/// Questions about windows, answered by the X server alone, and requests to bring one to the front. On the
/// thread that owns the connection.
class X11Windows {
public:
    /// `connection` outlives the object.
    explicit X11Windows(xcb_connection_t* connection);

    /// The window in front as the window manager tells it; XCB_NONE if there is none.
    xcb_window_t activeWindow() const;
    /// Absent if the window has gone.
    std::optional<WindowFacts> facts(xcb_window_t window) const;
    /// The application's window: the remembered one if it is still there, the application's and shown by the
    /// window manager; else the newest of its process that is shown; XCB_NONE if there is none. Where no
    /// window manager lists what it shows, the remembered one need not be listed.
    xcb_window_t windowOf(const RunningApplication& application) const;
    /// As the window manager shows it; empty if there is none.
    QString title(xcb_window_t window) const;
    /// Without its decoration, in pixels of the whole desktop, y downwards; absent if the window has gone.
    std::optional<QRect> rectangle(xcb_window_t window) const;

    /// Asks the window manager to bring the window to the front and to give it the keyboard, minimised ones
    /// too. Does it itself where none is there that says it can, be it that one has crashed. Waits for the X
    /// server but not for the window to come; a window that has gone is left out.
    void bringToFront(xcb_window_t window) const;

private:
    /// Absent if the window has no such property.
    std::optional<std::vector<std::uint32_t>> numbers(xcb_window_t window, xcb_atom_t property,
                                                      xcb_atom_t type) const;
    /// Whether a window manager is there now and brings windows to the front.
    bool isActivationSupported() const;

    xcb_connection_t* m_connection;
    xcb_window_t m_root = XCB_NONE;
    xcb_atom_t m_activeWindowAtom = XCB_NONE;
    xcb_atom_t m_processAtom = XCB_NONE;
    xcb_atom_t m_clientListAtom = XCB_NONE;
    xcb_atom_t m_supportedAtom = XCB_NONE;
    xcb_atom_t m_checkAtom = XCB_NONE;
    xcb_atom_t m_nameAtom = XCB_NONE;
    xcb_atom_t m_utf8Atom = XCB_NONE;
};

/// In clock ticks since boot; 0 if there is no such process, or only its exit status is left of it.
std::uint64_t processStartTime(std::int64_t processIdentifier);
/// The start time in the text of a /proc/PID/stat; 0 if it is not there, or the process has ended and waits
/// for its parent to notice.
std::uint64_t startTimeInProcessStatus(QByteArrayView status);
/// Base name of the program that the process runs; empty if it cannot be told.
QString executableName(std::int64_t processIdentifier);
/// The two halves of a WM_CLASS value.
WindowClass windowClassFromProperty(QByteArrayView value);

} // namespace kestrova
