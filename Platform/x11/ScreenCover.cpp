#include "Platform/x11/ScreenCover.h"

#include "Platform/x11/Atoms.h"
#include "Platform/x11/RootRect.h"
#include "Platform/x11/XcbReply.h"

#include <QRegion>

#include <xcb/randr.h>

#include <cstring>
#include <optional>
#include <span>
#include <vector>

namespace kestrova {

namespace {

std::optional<QRect> frameOf(xcb_connection_t* connection, xcb_get_geometry_cookie_t cookie) {
    const XcbReply<xcb_get_geometry_reply_t> geometry{xcb_get_geometry_reply(connection, cookie, nullptr)};
    if (!geometry)
        return {};
    const int borders = 2 * geometry->border_width;
    return QRect{geometry->x, geometry->y, geometry->width + borders, geometry->height + borders};
}

/// Empty where the server knows no monitors.
QRegion monitorRegion(xcb_connection_t* connection, xcb_window_t root) {
    const auto* const extension = xcb_get_extension_data(connection, &xcb_randr_id);
    if (!extension || !extension->present)
        return {};
    // The server answers nothing of the newer versions to clients that have not told that they know them.
    const auto version =
        xcb_randr_query_version(connection, XCB_RANDR_MAJOR_VERSION, XCB_RANDR_MINOR_VERSION);
    const auto cookie = xcb_randr_get_monitors(connection, root, 1);
    const XcbReply<xcb_randr_query_version_reply_t> versionReply{
        xcb_randr_query_version_reply(connection, version, nullptr)};
    const XcbReply<xcb_randr_get_monitors_reply_t> monitors{
        xcb_randr_get_monitors_reply(connection, cookie, nullptr)};
    if (!monitors)
        return {};
    QRegion region;
    for (auto monitor = xcb_randr_get_monitors_monitors_iterator(monitors.get()); monitor.rem > 0;
         xcb_randr_monitor_info_next(&monitor))
        region += QRect{monitor.data->x, monitor.data->y, monitor.data->width, monitor.data->height};
    return region;
}

/// XCB_NONE where none says that it is there.
xcb_window_t windowOfWindowManager(xcb_connection_t* connection, xcb_window_t root) {
    const auto property = atomNamed(connection, "_NET_SUPPORTING_WM_CHECK");
    const XcbReply<xcb_get_property_reply_t> reply{xcb_get_property_reply(
        connection, xcb_get_property(connection, 0, root, property, XCB_ATOM_WINDOW, 0, 1), nullptr)};
    xcb_window_t window = XCB_NONE;
    if (reply && reply->format == 32 && reply->value_len == 1)
        std::memcpy(&window, xcb_get_property_value(reply.get()), sizeof window);
    return window;
}

bool isOfSameClient(xcb_connection_t* connection, xcb_window_t window, xcb_window_t other) {
    const auto mask = xcb_get_setup(connection)->resource_id_mask;
    return (window & ~mask) == (other & ~mask);
}

bool isShownUnmanaged(const xcb_get_window_attributes_reply_t& attributes) {
    return attributes.override_redirect != 0 && attributes.map_state == XCB_MAP_STATE_VIEWABLE &&
           attributes._class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
}

/// What lies behind windows that are neither the window manager's nor handled by it nor `own`.
QRegion unmanagedRegion(xcb_connection_t* connection, std::span<const xcb_window_t> windows,
                        xcb_window_t windowManager, const OwnWindows& own) {
    struct Question {
        xcb_get_window_attributes_cookie_t attributes;
        xcb_get_geometry_cookie_t geometry;
    };
    std::vector<Question> questions;
    for (const auto window : windows) {
        if (own.contains(window))
            continue;
        if (windowManager == XCB_NONE || !isOfSameClient(connection, window, windowManager))
            questions.push_back(
                {xcb_get_window_attributes(connection, window), xcb_get_geometry(connection, window)});
    }
    QRegion region;
    for (const auto& question : questions) {
        const XcbReply<xcb_get_window_attributes_reply_t> attributes{
            xcb_get_window_attributes_reply(connection, question.attributes, nullptr)};
        const auto frame = frameOf(connection, question.geometry);
        if (attributes && frame && isShownUnmanaged(*attributes))
            region += *frame;
    }
    return region;
}

} // namespace

bool isScreenCovered(xcb_connection_t* connection, xcb_window_t root, const OwnWindows& own) {
    const XcbReply<xcb_query_tree_reply_t> tree{
        xcb_query_tree_reply(connection, xcb_query_tree(connection, root), nullptr)};
    const auto screen = rootRect(connection, root);
    if (!tree || screen.isEmpty())
        return true;
    const std::span windows{xcb_query_tree_children(tree.get()),
                            static_cast<std::size_t>(xcb_query_tree_children_length(tree.get()))};
    // What of a monitor lies beyond the screen shows nothing.
    auto visible = monitorRegion(connection, root) & screen;
    if (visible.isEmpty())
        visible = screen;
    return (visible - unmanagedRegion(connection, windows, windowOfWindowManager(connection, root), own))
        .isEmpty();
}

} // namespace kestrova
