#include "tests/desktop/KeyReceiver.h"

#include "tests/desktop/Waiting.h"

#include <stdexcept>
#include <unistd.h>

namespace kestrova::test {

KeyReceiver::KeyReceiver(const QByteArray& display) : m_x(display) {
    m_window = xcb_generate_id(m_x.get());
    // Without the window manager, whose focusing would come when it likes.
    const std::uint32_t values[] = {1, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_FOCUS_CHANGE |
                                           XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(m_x.get(), XCB_COPY_FROM_PARENT, m_window, m_x.root(), 900, 500, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    const auto process = static_cast<std::uint32_t>(::getpid());
    xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, m_window, m_x.atom("_NET_WM_PID"),
                        XCB_ATOM_CARDINAL, 32, 1, &process);
    xcb_change_property(m_x.get(), XCB_PROP_MODE_APPEND, m_x.root(), m_x.atom("_NET_CLIENT_LIST"),
                        XCB_ATOM_WINDOW, 32, 1, &m_window);
    xcb_map_window(m_x.get(), m_window);
    takeFocus();
}

void KeyReceiver::takeFocus() {
    xcb_set_input_focus(m_x.get(), XCB_INPUT_FOCUS_PARENT, m_window, XCB_CURRENT_TIME);
    const auto hasFocus = [this] {
        const XReply<xcb_get_input_focus_reply_t> reply(
            xcb_get_input_focus_reply(m_x.get(), xcb_get_input_focus(m_x.get()), nullptr));
        return reply && reply->focus == m_window;
    };
    if (!eventually(hasFocus))
        throw std::runtime_error("the receiver did not get the focus");
}

const std::vector<std::uint8_t>& KeyReceiver::presses() {
    readEvents();
    return m_presses;
}

std::optional<std::uint16_t> KeyReceiver::modifiersAtPressOf(std::uint8_t key) {
    readEvents();
    const auto found = m_modifiers.find(key);
    return found == m_modifiers.end() ? std::nullopt : std::optional{found->second};
}

int KeyReceiver::grabsSeen() {
    readEvents();
    return m_grabsSeen;
}

void KeyReceiver::readEvents() {
    while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(m_x.get())}) {
        const auto type = event->response_type & 0x7f;
        if (type == XCB_KEY_PRESS) {
            const auto& press = reinterpret_cast<const xcb_key_press_event_t&>(*event);
            m_presses.push_back(press.detail);
            m_modifiers[press.detail] = static_cast<std::uint16_t>(press.state & 0xff);
        } else if (type == XCB_FOCUS_OUT &&
                   reinterpret_cast<const xcb_focus_out_event_t&>(*event).mode == XCB_NOTIFY_MODE_GRAB) {
            ++m_grabsSeen;
        }
    }
}

bool KeyReceiver::grabKeyboard() {
    const XReply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(
        m_x.get(),
        xcb_grab_keyboard(m_x.get(), 0, m_window, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
        nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void KeyReceiver::releaseKeyboard() {
    xcb_ungrab_keyboard(m_x.get(), XCB_CURRENT_TIME);
    awaitServer();
}

void KeyReceiver::emptyList() {
    xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, m_x.root(), m_x.atom("_NET_CLIENT_LIST"),
                        XCB_ATOM_WINDOW, 32, 0, nullptr);
    awaitServer();
}

QRect KeyReceiver::screen() const {
    const XReply<xcb_get_geometry_reply_t> reply(
        xcb_get_geometry_reply(m_x.get(), xcb_get_geometry(m_x.get(), m_x.root()), nullptr));
    return reply ? QRect(0, 0, reply->width, reply->height) : QRect();
}

void KeyReceiver::cover(const QRect& part) {
    const std::uint32_t geometry[] = {
        static_cast<std::uint32_t>(part.x()), static_cast<std::uint32_t>(part.y()),
        static_cast<std::uint32_t>(part.width()), static_cast<std::uint32_t>(part.height())};
    xcb_configure_window(m_x.get(), m_window,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT,
                         geometry);
    awaitServer();
}

void KeyReceiver::actAsWindowManager() {
    xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, m_x.root(), m_x.atom("_NET_SUPPORTING_WM_CHECK"),
                        XCB_ATOM_WINDOW, 32, 1, &m_window);
    awaitServer();
}

void KeyReceiver::setClass(const QByteArray& instance, const QByteArray& name) {
    const QByteArray value = instance + '\0' + name + '\0';
    xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(value.size()), value.constData());
    awaitServer();
}

void KeyReceiver::awaitServer() const {
    // What is asked after this answer finds it done.
    const XReply<xcb_get_input_focus_reply_t> done(
        xcb_get_input_focus_reply(m_x.get(), xcb_get_input_focus(m_x.get()), nullptr));
}

bool KeyReceiver::grabKey(std::uint8_t key, std::uint16_t modifiers) {
    const auto cookie = xcb_grab_key_checked(m_x.get(), 0, m_x.root(), modifiers, key, XCB_GRAB_MODE_ASYNC,
                                             XCB_GRAB_MODE_ASYNC);
    const XReply<xcb_generic_error_t> error(xcb_request_check(m_x.get(), cookie));
    return error == nullptr;
}

bool KeyReceiver::canGrabKey(std::uint8_t key, std::uint16_t modifiers) {
    const bool could = grabKey(key, modifiers);
    if (could)
        xcb_ungrab_key(m_x.get(), key, m_x.root(), modifiers);
    return could;
}

} // namespace kestrova::test
