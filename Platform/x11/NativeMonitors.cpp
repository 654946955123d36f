#include "Platform/x11/NativeMonitors.h"

#include "Platform/x11/XcbReply.h"

#include <xcb/randr.h>

#include <algorithm>

namespace kestrova {

std::vector<NativeMonitor> nativeMonitors(xcb_connection_t* connection, xcb_window_t root) {
    const auto* const extension = xcb_get_extension_data(connection, &xcb_randr_id);
    if (!extension || !extension->present)
        return {};
    const auto cookie = xcb_randr_get_monitors(connection, root, 1);
    const XcbReply<xcb_randr_get_monitors_reply_t> reply{
        xcb_randr_get_monitors_reply(connection, cookie, nullptr)};
    if (!reply)
        return {};
    std::vector<NativeMonitor> monitors;
    std::vector<xcb_get_atom_name_cookie_t> names;
    for (auto monitor = xcb_randr_get_monitors_monitors_iterator(reply.get()); monitor.rem > 0;
         xcb_randr_monitor_info_next(&monitor)) {
        const auto& info = *monitor.data;
        monitors.push_back({.name = {}, .pixels = {info.x, info.y, info.width, info.height}});
        names.push_back(xcb_get_atom_name(connection, info.name));
    }
    for (std::size_t i = 0; i < monitors.size(); ++i) {
        const XcbReply<xcb_get_atom_name_reply_t> name{
            xcb_get_atom_name_reply(connection, names[i], nullptr)};
        if (name)
            monitors[i].name =
                QByteArray(xcb_get_atom_name_name(name.get()), xcb_get_atom_name_name_length(name.get()));
    }
    return monitors;
}

const NativeMonitor* monitorOfScreen(const std::vector<NativeMonitor>& monitors, QByteArrayView name,
                                     QPoint corner) {
    const auto rank = [&](const NativeMonitor& monitor) {
        return (monitor.pixels.topLeft() == corner ? 2 : 0) + (monitor.name == name ? 1 : 0);
    };
    const auto best = std::ranges::max_element(monitors, {}, rank);
    return best != monitors.end() && best->pixels.topLeft() == corner ? &*best : nullptr;
}

} // namespace kestrova
