#include "Platform/x11/DoubtfulPresses.h"

#include <algorithm>
#include <utility>

namespace kestrova {

DoubtfulPresses::DoubtfulPresses(xcb_connection_t* connection,
                                 std::function<void(const ButtonPress&)> onNotSeen)
    : m_connection(connection), m_onNotSeen(std::move(onNotSeen)), m_window(xcb_generate_id(connection)) {
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    xcb_create_window(connection, 0, m_window, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
}

DoubtfulPresses::~DoubtfulPresses() {
    xcb_destroy_window(m_connection, m_window);
    xcb_flush(m_connection);
}

void DoubtfulPresses::add(const ButtonPress& press) {
    m_presses.push_back({.press = press, .mark = ++m_lastMark});
    // The server sends it back behind all that it has sent before.
    xcb_client_message_event_t mark{};
    mark.response_type = XCB_CLIENT_MESSAGE;
    mark.format = 32;
    mark.window = m_window;
    mark.type = XCB_ATOM_INTEGER;
    mark.data.data32[0] = m_lastMark;
    xcb_send_event(m_connection, 0, m_window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&mark));
    xcb_flush(m_connection);
}

void DoubtfulPresses::noteOwn(const ButtonPress& press) {
    std::erase_if(m_presses, [&](const Doubtful& doubtful) { return doubtful.press == press; });
}

bool DoubtfulPresses::take(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) != XCB_CLIENT_MESSAGE)
        return false;
    const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
    if (message.window != m_window)
        return false;
    const auto found = std::ranges::find(m_presses, message.data.data32[0], &Doubtful::mark);
    if (found == m_presses.end())
        return true;
    const auto press = found->press;
    m_presses.erase(found);
    m_onNotSeen(press);
    return true;
}

} // namespace kestrova
