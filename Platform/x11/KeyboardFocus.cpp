#include "Platform/x11/KeyboardFocus.h"

#include "Platform/x11/PointerWindows.h"
#include "Platform/x11/XcbReply.h"

#include <QCoreApplication>

namespace kestrova {

KeyboardFocus::KeyboardFocus(xcb_connection_t* connection, OwnWindows own)
    : m_connection(connection), m_own(own), m_facts(connection) {
    if (const auto* const setup = xcb_get_setup(connection); setup && setup->roots_len > 0)
        m_root = xcb_setup_roots_iterator(setup).data->root;
}

std::optional<FocusedWindow> KeyboardFocus::focusedWindow() const {
    FocusedWindow focused;
    for (auto window = innermostFocus(); window != XCB_NONE && window != m_root;) {
        focused.windows.push_back(window);
        const auto parent = xcb_query_tree(m_connection, window);
        const auto facts = m_facts.facts(window);
        const XcbReply<xcb_query_tree_reply_t> tree{xcb_query_tree_reply(m_connection, parent, nullptr)};
        if (!tree || !facts)
            return {};
        if (focused.windowClass == WindowClass{})
            focused.windowClass = facts->windowClass;
        focused.isOwn = focused.isOwn || m_own.contains(window) ||
                        facts->processIdentifier == QCoreApplication::applicationPid();
        window = tree->parent;
    }
    return focused.windows.empty() ? std::nullopt : std::optional{focused};
}

xcb_window_t KeyboardFocus::windowOf(const RunningApplication& application) const {
    return m_facts.windowOf(application);
}

xcb_window_t KeyboardFocus::innermostFocus() const {
    const XcbReply<xcb_get_input_focus_reply_t> focus{
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr)};
    if (!focus || focus->focus == XCB_INPUT_FOCUS_NONE)
        return XCB_NONE;
    if (focus->focus != XCB_INPUT_FOCUS_POINTER_ROOT && focus->focus != m_root)
        return focus->focus;
    const auto windows = windowsUnderPointer(m_connection);
    return windows.empty() ? xcb_window_t{XCB_NONE} : windows.back();
}

} // namespace kestrova
