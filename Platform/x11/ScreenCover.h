#pragma once

#include "Platform/x11/OwnWindows.h"

#include <xcb/xcb.h>

namespace kestrova {

/// Whether every monitor lies behind windows that no window manager handles, as behind a screen locker, be it
/// one window or one a monitor. What the window manager itself puts up does not count, nor do windows of
/// `own`. True if the server does not tell. Waits for the X server.
bool isScreenCovered(xcb_connection_t* connection, xcb_window_t root, const OwnWindows& own);

} // namespace kestrova
