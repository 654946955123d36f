#include "Platform/x11/RootRect.h"

#include "Platform/x11/XcbReply.h"

namespace kestrova {

QRect rootRect(xcb_connection_t* connection, xcb_window_t root) {
    const XcbReply<xcb_get_geometry_reply_t> geometry{
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, root), nullptr)};
    return geometry ? QRect(0, 0, geometry->width, geometry->height) : QRect();
}

} // namespace kestrova
