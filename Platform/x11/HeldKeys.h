#pragma once

#include "Platform/x11/XcbReply.h"

#include <xcb/xcb.h>

#include <bitset>
#include <cstddef>

namespace kestrova {

/// A bit for each X key code.
using KeySet = std::bitset<256>;

/// The keys that are down as the server tells it, eight to a byte.
inline KeySet heldKeys(const xcb_query_keymap_reply_t& reply) {
    KeySet held;
    for (std::size_t key = 0; key < held.size(); ++key)
        held.set(key, (reply.keys[key / 8] >> (key % 8) & 1) != 0);
    return held;
}

/// None if the server is gone.
inline KeySet heldKeys(xcb_connection_t* connection, xcb_query_keymap_cookie_t question) {
    const XcbReply<xcb_query_keymap_reply_t> reply{xcb_query_keymap_reply(connection, question, nullptr)};
    return reply ? heldKeys(*reply) : KeySet{};
}

} // namespace kestrova
