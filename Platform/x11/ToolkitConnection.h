#pragma once

#include <xcb/xcb.h>

namespace kestrova {

/// The toolkit's own connection; null where it does not run on X11, or does not run at all.
xcb_connection_t* toolkitConnection();

} // namespace kestrova
