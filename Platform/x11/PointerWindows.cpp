#include "Platform/x11/PointerWindows.h"

#include "Platform/x11/XcbReply.h"

namespace kestrova {

std::vector<xcb_window_t> windowsUnderPointer(xcb_connection_t* connection) {
    std::vector<xcb_window_t> windows;
    const auto* const setup = xcb_get_setup(connection);
    if (!setup || setup->roots_len == 0)
        return windows;
    for (auto window = xcb_setup_roots_iterator(setup).data->root;;) {
        const XcbReply<xcb_query_pointer_reply_t> pointer{
            xcb_query_pointer_reply(connection, xcb_query_pointer(connection, window), nullptr)};
        if (!pointer || pointer->child == XCB_NONE)
            return windows;
        window = pointer->child;
        windows.push_back(window);
    }
}

xcb_window_t outermostWindow(xcb_connection_t* connection, xcb_window_t window) {
    for (;;) {
        const XcbReply<xcb_query_tree_reply_t> tree{
            xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr)};
        if (!tree || tree->parent == tree->root || tree->parent == XCB_NONE)
            return tree ? window : xcb_window_t{XCB_NONE};
        window = tree->parent;
    }
}

} // namespace kestrova
