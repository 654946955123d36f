#include "bench/CopySource.h"

#include <array>
#include <poll.h>
#include <stdexcept>
#include <utility>

namespace kestrova::bench {

using test::XReply;

CopySource::CopySource(const QByteArray& display)
    : m_first(display),
      m_second(display),
      m_clipboard(m_first.atom("CLIPBOARD")),
      m_targets(m_first.atom("TARGETS")),
      m_utf8(m_first.atom("UTF8_STRING")) {}

void CopySource::prepare(const QByteArray& text) {
    m_text = text;
    m_owner = m_owner == &m_first ? &m_second : &m_first;
    m_now = m_owner->serverTime();
}

void CopySource::take() {
    xcb_set_selection_owner(m_owner->get(), m_owner->window(), m_clipboard, m_now);
    xcb_flush(m_owner->get());
}

void CopySource::serve(std::chrono::microseconds pause) {
    for (;;) {
        while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(m_owner->get())})
            if ((event->response_type & 0x7f) == XCB_SELECTION_REQUEST)
                answer(reinterpret_cast<const xcb_selection_request_event_t&>(*event));
        if (xcb_connection_has_error(m_owner->get()) != 0)
            throw std::runtime_error("the display has gone");
        pollfd descriptor{xcb_get_file_descriptor(m_owner->get()), POLLIN, 0};
        const timespec patience{0, static_cast<long>(std::chrono::nanoseconds(pause).count())};
        if (ppoll(&descriptor, 1, &patience, nullptr) <= 0)
            return;
    }
}

void CopySource::answer(const xcb_selection_request_event_t& request) const {
    auto* const connection = m_owner->get();
    xcb_selection_notify_event_t notice{};
    notice.response_type = XCB_SELECTION_NOTIFY;
    notice.time = request.time;
    notice.requestor = request.requestor;
    notice.selection = request.selection;
    notice.target = request.target;
    notice.property = request.property;
    if (request.target == m_targets) {
        const std::array offered{m_targets, m_utf8};
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                            XCB_ATOM_ATOM, 32, static_cast<std::uint32_t>(offered.size()), offered.data());
    } else if (request.target == m_utf8) {
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, request.requestor, request.property, m_utf8, 8,
                            static_cast<std::uint32_t>(m_text.size()), m_text.constData());
    } else {
        notice.property = XCB_ATOM_NONE;
    }
    xcb_send_event(connection, 0, request.requestor, 0, reinterpret_cast<const char*>(&notice));
    xcb_flush(connection);
}

void CopySource::roundTrip() const {
    const XReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_owner->get(), xcb_get_input_focus(m_owner->get()), nullptr));
    if (!reply)
        throw std::runtime_error("the display has gone");
}

} // namespace kestrova::bench
