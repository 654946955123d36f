// A program with one window per title given to it. It tells every key that reaches it and every loss of the
// focus, line by line on its standard output; Ctrl and the key that has v on most layouts pastes text.
// Messages to its windows make it hold the keyboard as an open menu does, let it go, or take the focus
// whenever another window gets it.

#include "tests/desktop/KeyPresser.h"
#include "tests/desktop/TypingTargetMessages.h"
#include "tests/desktop/XConnection.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <unistd.h>
#include <vector>

namespace kestrova::test {
namespace {

class TypingWindows {
public:
    TypingWindows() : m_x(qgetenv("DISPLAY")) {}

    void open(const QByteArray& title);
    /// Until the display goes.
    void run();

private:
    void handle(const xcb_generic_event_t& event);
    void handleKey(const char* what, const xcb_key_press_event_t& key) const;
    void handleMessage(const xcb_client_message_event_t& message);
    void handleActiveWindow();
    void holdKeyboard();
    void takeFocus(xcb_window_t window) const;
    void requestText(xcb_window_t window);
    void takeText(const xcb_selection_notify_event_t& event) const;
    std::size_t numberOf(xcb_window_t window) const;
    void setText(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const QByteArray& text) const;

    XConnection m_x;
    std::vector<xcb_window_t> m_windows;
    xcb_window_t m_victim = XCB_NONE;
    int m_requests = 0;
};

std::size_t TypingWindows::numberOf(xcb_window_t window) const {
    return static_cast<std::size_t>(std::ranges::find(m_windows, window) - m_windows.begin());
}

void TypingWindows::setText(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                            const QByteArray& text) const {
    xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, window, property, type, 8,
                        static_cast<std::uint32_t>(text.size()), text.constData());
}

void TypingWindows::open(const QByteArray& title) {
    constexpr std::uint32_t kEvents =
        XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_FOCUS_CHANGE;
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(m_x.get())).data;
    const std::uint32_t values[]{screen->white_pixel, kEvents};
    const xcb_window_t window = xcb_generate_id(m_x.get());
    xcb_create_window(m_x.get(), XCB_COPY_FROM_PARENT, window, m_x.root(), 0, 0, 300, 200, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    setText(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, QByteArray("typing_target\0Typing_target\0", 28));
    setText(window, m_x.atom("_NET_WM_NAME"), m_x.atom("UTF8_STRING"), title);
    const auto pid = static_cast<std::uint32_t>(::getpid());
    xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, window, m_x.atom("_NET_WM_PID"), XCB_ATOM_CARDINAL,
                        32, 1, &pid);
    xcb_map_window(m_x.get(), window);
    xcb_flush(m_x.get());
    m_windows.push_back(window);
    std::printf("window %u\n", window);
}

void TypingWindows::run() {
    const std::uint32_t rootEvents = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_x.get(), m_x.root(), XCB_CW_EVENT_MASK, &rootEvents);
    xcb_flush(m_x.get());
    while (const XReply<xcb_generic_event_t> event{xcb_wait_for_event(m_x.get())}) {
        handle(*event);
        xcb_flush(m_x.get());
    }
}

void TypingWindows::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
    case XCB_KEY_PRESS: {
        const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
        handleKey("press", key);
        if (key.detail == keyAt::v && (key.state & XCB_MOD_MASK_CONTROL) != 0)
            requestText(key.event);
        return;
    }
    case XCB_KEY_RELEASE:
        handleKey("release", reinterpret_cast<const xcb_key_press_event_t&>(event));
        return;
    case XCB_FOCUS_OUT: {
        const auto& focus = reinterpret_cast<const xcb_focus_out_event_t&>(event);
        // A grab takes the keys for a while and not the focus.
        if (focus.mode == XCB_NOTIFY_MODE_NORMAL || focus.mode == XCB_NOTIFY_MODE_WHILE_GRABBED)
            std::printf("focusOut %zu\n", numberOf(focus.event));
        return;
    }
    case XCB_CLIENT_MESSAGE:
        handleMessage(reinterpret_cast<const xcb_client_message_event_t&>(event));
        return;
    case XCB_PROPERTY_NOTIFY:
        handleActiveWindow();
        return;
    case XCB_SELECTION_NOTIFY:
        takeText(reinterpret_cast<const xcb_selection_notify_event_t&>(event));
        return;
    default:
        return;
    }
}

void TypingWindows::handleKey(const char* what, const xcb_key_press_event_t& key) const {
    std::printf("%s %zu %u %u\n", what, numberOf(key.event), key.detail, key.state);
}

void TypingWindows::handleMessage(const xcb_client_message_event_t& message) {
    if (message.type != m_x.atom(typingTargetMessages::kType))
        return;
    switch (static_cast<TypingTargetMessage>(message.data.data32[0])) {
    case TypingTargetMessage::HoldKeyboard:
        holdKeyboard();
        return;
    case TypingTargetMessage::LetKeyboardGo:
        xcb_ungrab_keyboard(m_x.get(), XCB_CURRENT_TIME);
        std::puts("letGo");
        return;
    case TypingTargetMessage::StealFocusFrom:
        m_victim = message.data.data32[1];
        std::puts("waiting");
        return;
    }
}

void TypingWindows::holdKeyboard() {
    const auto grab = [this] {
        const XReply<xcb_grab_keyboard_reply_t> reply(
            xcb_grab_keyboard_reply(m_x.get(),
                                    xcb_grab_keyboard(m_x.get(), 0, m_windows.front(), XCB_CURRENT_TIME,
                                                      XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                    nullptr));
        return reply ? reply->status : std::uint8_t{XCB_GRAB_STATUS_NOT_VIEWABLE};
    };
    // Somebody may have it for a moment; menus and lockers try again, too.
    auto status = grab();
    while (status == XCB_GRAB_STATUS_ALREADY_GRABBED || status == XCB_GRAB_STATUS_FROZEN)
        status = grab();
    std::puts(status == XCB_GRAB_STATUS_SUCCESS ? "held" : "notHeld");
}

void TypingWindows::handleActiveWindow() {
    if (m_victim == XCB_NONE)
        return;
    const XReply<xcb_get_property_reply_t> active(xcb_get_property_reply(
        m_x.get(),
        xcb_get_property(m_x.get(), 0, m_x.root(), m_x.atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 0, 1),
        nullptr));
    if (!active || xcb_get_property_value_length(active.get()) < 4 ||
        *static_cast<const xcb_window_t*>(xcb_get_property_value(active.get())) != m_victim)
        return;
    takeFocus(m_windows.front());
    std::puts("stolen");
}

void TypingWindows::takeFocus(xcb_window_t window) const {
    m_x.requestActivation(window);
}

void TypingWindows::requestText(xcb_window_t window) {
    // Each answer has a place of its own, as the next request may come before it.
    const QByteArray place = "KESTROVA_TEST_PASTE_" + QByteArray::number(++m_requests);
    xcb_convert_selection(m_x.get(), window, m_x.atom("CLIPBOARD"), m_x.atom("UTF8_STRING"), m_x.atom(place),
                          XCB_CURRENT_TIME);
}

void TypingWindows::takeText(const xcb_selection_notify_event_t& event) const {
    constexpr std::uint32_t kAllOfIt = 0x1fffffff;
    QByteArray text;
    if (event.property != XCB_ATOM_NONE) {
        const XReply<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(m_x.get(),
                                   xcb_get_property(m_x.get(), 1, event.requestor, event.property,
                                                    XCB_GET_PROPERTY_TYPE_ANY, 0, kAllOfIt),
                                   nullptr));
        if (reply)
            text = QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())),
                              xcb_get_property_value_length(reply.get()));
    }
    std::printf("text %zu %s\n", numberOf(event.requestor), text.toPercentEncoding().constData());
}

} // namespace
} // namespace kestrova::test

int main(int argc, char** argv) {
    // Each line is for a reader who waits for it.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    try {
        kestrova::test::TypingWindows windows;
        for (int index = 1; index < argc; ++index)
            windows.open(argv[index]);
        windows.run();
    } catch (const std::runtime_error& error) {
        std::fprintf(stderr, "typing_target: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
