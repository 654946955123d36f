#pragma once

#include <QRect>

#include <xcb/xcb.h>

namespace kestrova {

/// The whole desktop in its pixels as it is now: displays come and go while a connection lives, which itself
/// remembers what there was at its beginning. Empty if the server does not tell. Waits for the X server.
QRect rootRect(xcb_connection_t* connection, xcb_window_t root);

} // namespace kestrova
