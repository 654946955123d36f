#include "tests/desktop/XConnection.h"

#include <cstdlib>
#include <stdexcept>

namespace kestrova::test {

void FreeReply::operator()(void* reply) const {
    std::free(reply);
}

XConnection::XConnection(const QByteArray& display) {
    int screenNumber = 0;
    m_connection = xcb_connect(display.constData(), &screenNumber);
    if (xcb_connection_has_error(m_connection) != 0) {
        xcb_disconnect(m_connection);
        throw std::runtime_error("no connection to display " + display.toStdString());
    }
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    m_root = screen->root;
    m_window = xcb_generate_id(m_connection);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, m_root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_EVENT_MASK, &events);
    xcb_flush(m_connection);
}

XConnection::~XConnection() {
    close();
}

void XConnection::close() {
    if (m_connection != nullptr)
        xcb_disconnect(m_connection);
    m_connection = nullptr;
}

xcb_atom_t XConnection::atom(const QByteArray& name) const {
    const auto cookie =
        xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.constData());
    const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_connection, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

QByteArray XConnection::atomName(xcb_atom_t atom) const {
    const XReply<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(m_connection, xcb_get_atom_name(m_connection, atom), nullptr));
    return reply ? QByteArray(xcb_get_atom_name_name(reply.get()), xcb_get_atom_name_name_length(reply.get()))
                 : QByteArray();
}

xcb_timestamp_t XConnection::serverTime() const {
    // The one way to learn it: a change of a property, even by nothing, is told with its time.
    xcb_change_property(m_connection, XCB_PROP_MODE_APPEND, m_window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0,
                        nullptr);
    xcb_flush(m_connection);
    while (const XReply<xcb_generic_event_t> event{xcb_wait_for_event(m_connection)}) {
        if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY)
            return reinterpret_cast<const xcb_property_notify_event_t*>(event.get())->time;
    }
    throw std::runtime_error("the display has gone");
}

xcb_window_t XConnection::windowProperty(xcb_window_t window, const char* property) const {
    const auto cookie = xcb_get_property(m_connection, 0, window, atom(property), XCB_ATOM_WINDOW, 0, 1);
    const XReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || xcb_get_property_value_length(reply.get()) < 4)
        return XCB_WINDOW_NONE;
    return *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
}

void XConnection::requestActivation(xcb_window_t window) const {
    constexpr std::uint32_t kTaskBar = 2;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom("_NET_ACTIVE_WINDOW");
    message.data.data32[0] = kTaskBar;
    xcb_send_event(m_connection, 0, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(m_connection);
}

bool XConnection::hasWindowManager() const {
    const xcb_window_t check = windowProperty(m_root, "_NET_SUPPORTING_WM_CHECK");
    return check != XCB_WINDOW_NONE && windowProperty(check, "_NET_SUPPORTING_WM_CHECK") == check;
}

bool XConnection::hasListOfClients() const {
    const XReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        m_connection,
        xcb_get_property(m_connection, 0, m_root, atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW, 0, 0), nullptr));
    return reply && reply->type == XCB_ATOM_WINDOW;
}

xcb_window_t XConnection::clipboardOwner() const {
    const XReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        m_connection, xcb_get_selection_owner(m_connection, atom("CLIPBOARD")), nullptr));
    return reply ? reply->owner : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

} // namespace kestrova::test
