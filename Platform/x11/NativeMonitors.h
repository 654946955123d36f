#pragma once

#include <QByteArray>
#include <QRect>

#include <xcb/xcb.h>

#include <vector>

namespace kestrova {

/// A display as the X server has it.
struct NativeMonitor {
    QByteArray name;
    /// In pixels of the desktop.
    QRect pixels;

    bool operator==(const NativeMonitor&) const = default;
};

/// The displays that show something; empty where the server does not tell. Waits for the X server.
std::vector<NativeMonitor> nativeMonitors(xcb_connection_t* connection, xcb_window_t root);

/// The monitor that the toolkit shows as a screen of that name and corner: the same corner, where displays
/// mirror each other the same name too. Null if there is none.
const NativeMonitor* monitorOfScreen(const std::vector<NativeMonitor>& monitors, QByteArrayView name,
                                     QPoint corner);

} // namespace kestrova
