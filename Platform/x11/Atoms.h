#pragma once

#include <QByteArrayView>

#include <xcb/xcb.h>

namespace kestrova {

/// Asks for a name's number. Several may be asked for before the first is waited for.
xcb_intern_atom_cookie_t askForAtom(xcb_connection_t* connection, QByteArrayView name);
/// The number that was asked for; XCB_ATOM_NONE if the connection has broken.
xcb_atom_t atomOf(xcb_connection_t* connection, xcb_intern_atom_cookie_t cookie);
/// Both in one round trip.
xcb_atom_t atomNamed(xcb_connection_t* connection, QByteArrayView name);

} // namespace kestrova
