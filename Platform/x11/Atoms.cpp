#include "Platform/x11/Atoms.h"

#include "Platform/x11/XcbReply.h"

namespace kestrova {

xcb_intern_atom_cookie_t askForAtom(xcb_connection_t* connection, QByteArrayView name) {
    return xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
}

xcb_atom_t atomOf(xcb_connection_t* connection, xcb_intern_atom_cookie_t cookie) {
    const XcbReply<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(connection, cookie, nullptr)};
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_atom_t atomNamed(xcb_connection_t* connection, QByteArrayView name) {
    return atomOf(connection, askForAtom(connection, name));
}

} // namespace kestrova
