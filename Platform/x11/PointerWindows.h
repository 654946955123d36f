#pragma once

#include <xcb/xcb.h>

#include <vector>

namespace kestrova {

/// The windows under the pointer from the outside in, without the root.
std::vector<xcb_window_t> windowsUnderPointer(xcb_connection_t* connection);
/// The window around `window` that is directly on the root, which may be itself; XCB_NONE if it has gone.
xcb_window_t outermostWindow(xcb_connection_t* connection, xcb_window_t window);

} // namespace kestrova
