#include "Platform/x11/XInputRaw.h"

#include "Platform/x11/XcbReply.h"

#include <xcb/xinput.h>

namespace kestrova {

namespace {

// Before 2.1 raw events went to a grabbing client alone.
bool passesByGrabs(xcb_connection_t* connection) {
    const XcbReply<xcb_input_xi_query_version_reply_t> version{
        xcb_input_xi_query_version_reply(connection, xcb_input_xi_query_version(connection, 2, 1), nullptr)};
    return version &&
           (version->major_version > 2 || (version->major_version == 2 && version->minor_version >= 1));
}

} // namespace

XInputRaw::XInputRaw(xcb_connection_t* connection, Version version) : m_connection(connection) {
    const auto* const extension = xcb_get_extension_data(connection, &xcb_input_id);
    if (extension && extension->present && (version == Version::AskedByToolkit || passesByGrabs(connection)))
        m_opcode = extension->major_opcode;
}

void XInputRaw::select(xcb_window_t root, std::uint32_t events) const {
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } const request{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, events};
    xcb_input_xi_select_events(m_connection, root, 1, &request.head);
}

std::uint16_t XInputRaw::kind(const xcb_generic_event_t& event) const {
    if (!isAvailable() || (event.response_type & 0x7f) != XCB_GE_GENERIC)
        return 0;
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    return generic.extension == m_opcode ? generic.event_type : std::uint16_t{0};
}

} // namespace kestrova
