#include "Platform/x11/KeyboardHandover.h"

#include "Platform/x11/Atoms.h"
#include "Platform/x11/XcbReply.h"

namespace kestrova {

namespace {

using namespace std::chrono_literals;

// A look is a few round trips, and nobody notices that a letter comes so much later.
constexpr auto betweenLooks = 2ms;

} // namespace

KeyboardHandover::KeyboardHandover(xcb_connection_t* connection, xcb_window_t root)
    : m_connection(connection), m_root(root), m_stateAtom(atomNamed(connection, "WM_STATE")) {}

void KeyboardHandover::begin(xcb_window_t window) {
    if (focus() != window)
        return;
    const auto cookie =
        xcb_grab_keyboard(m_connection, 0, m_root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC);
    const XcbReply<xcb_grab_keyboard_reply_t> reply{xcb_grab_keyboard_reply(m_connection, cookie, nullptr)};
    if (!reply || reply->status != XCB_GRAB_STATUS_SUCCESS)
        return;
    m_giver = window;
    m_deadline = Clock::now() + longestWait;
}

void KeyboardHandover::goOn() {
    if (isUnderWay() && (hasArrived() || Clock::now() >= m_deadline))
        end();
}

void KeyboardHandover::end() {
    if (!isUnderWay())
        return;
    m_giver = XCB_NONE;
    xcb_ungrab_keyboard(m_connection, XCB_CURRENT_TIME);
    xcb_flush(m_connection);
}

std::optional<std::chrono::milliseconds> KeyboardHandover::untilNextLook() const {
    return isUnderWay() ? std::optional{betweenLooks} : std::nullopt;
}

xcb_window_t KeyboardHandover::focus() const {
    const XcbReply<xcb_get_input_focus_reply_t> reply{
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr)};
    return reply && reply->focus != XCB_INPUT_FOCUS_POINTER_ROOT ? reply->focus : xcb_window_t{XCB_NONE};
}

bool KeyboardHandover::hasArrived() const {
    bool isOfAnApplication = false;
    for (auto window = focus(); window != m_root;) {
        if (window == XCB_NONE || window == m_giver)
            return false;
        const auto askedParent = xcb_query_tree(m_connection, window);
        const auto askedState =
            xcb_get_property(m_connection, 0, window, m_stateAtom, XCB_GET_PROPERTY_TYPE_ANY, 0, 0);
        const XcbReply<xcb_query_tree_reply_t> tree{xcb_query_tree_reply(m_connection, askedParent, nullptr)};
        const XcbReply<xcb_get_property_reply_t> state{
            xcb_get_property_reply(m_connection, askedState, nullptr)};
        if (!tree || !state)
            return false;
        isOfAnApplication = isOfAnApplication || state->type != XCB_ATOM_NONE;
        window = tree->parent;
    }
    return isOfAnApplication;
}

} // namespace kestrova
