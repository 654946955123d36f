#pragma once

#include <xcb/xcb.h>

namespace kestrova {

/// The toolkit's own connection; null where it does not run on X11, or does not run at all.
xcb_connection_t* toolkitConnection();

/// The screen of that connection on which the toolkit shows its windows.
const xcb_screen_t& screenOf(xcb_connection_t* toolkit);

} // namespace kestrova
