#include "Platform/x11/KeyboardTap.h"

#include "Platform/x11/XcbReply.h"

#include <xcb/xcbext.h>

namespace kestrova {

bool KeyboardTap::start() {
    if (m_isWanted)
        return true;
    // The key that brought the tap about is most often still held. It is asked for first: what is pressed
    // after that comes to the tap.
    const auto question = xcb_query_keymap(m_connection);
    const auto status = grab(XCB_GRAB_MODE_ASYNC);
    m_heldBefore = heldKeys(m_connection, question);
    m_isHolding = status == XCB_GRAB_STATUS_SUCCESS;
    m_isWanted = m_isHolding || status == XCB_GRAB_STATUS_ALREADY_GRABBED || status == XCB_GRAB_STATUS_FROZEN;
    tryAgain();
    return m_isWanted;
}

void KeyboardTap::freeze() {
    if (m_isHolding)
        grab(XCB_GRAB_MODE_SYNC);
}

void KeyboardTap::stop() {
    m_isWanted = false;
    watchFocus();
    // Releases may be on their way, and what is typed behind them is not the tap's any more.
    endUnless(heldKeys(m_connection, xcb_query_keymap(m_connection)));
    goOn();
}

bool KeyboardTap::onPress(xcb_keycode_t key, bool isModifier) {
    const bool wasHeldBefore = m_heldBefore.test(key);
    if (m_isWanted) {
        // A modifier does not repeat, and whoever holds it on is about to type.
        if (m_isHolding && !isModifier && !wasHeldBefore)
            m_taken.set(key);
        return !wasHeldBefore;
    }
    // The key that was pressed last is the one that repeats; from now on it is not one that was taken.
    if (!isModifier && !wasHeldBefore && !m_taken.test(key)) {
        m_taken.reset();
        allow(XCB_ALLOW_REPLAY_KEYBOARD);
        ungrabIfDone();
    }
    return false;
}

void KeyboardTap::onRelease(xcb_keycode_t key) {
    m_heldBefore.reset(key);
    m_taken.reset(key);
    // The hot key of another client holds the keyboard until the key is let go, and so does, for its last
    // key, a menu that is closed with it.
    tryAgain();
    ungrabIfDone();
}

void KeyboardTap::goOn() {
    if (!m_isWanted && m_isHolding)
        allow(XCB_ALLOW_SYNC_KEYBOARD);
}

void KeyboardTap::endUnless(const KeySet& down) {
    m_heldBefore &= down;
    m_taken &= down;
    ungrabIfDone();
}

void KeyboardTap::tryAgain() {
    if (!isWaiting())
        return;
    // First of all: it may come back between a question and the next.
    watchFocus();
    m_isHolding = grab(XCB_GRAB_MODE_ASYNC) == XCB_GRAB_STATUS_SUCCESS;
    if (m_isHolding)
        watchFocus();
}

std::uint8_t KeyboardTap::grab(std::uint8_t keyboardMode) {
    const auto cookie =
        xcb_grab_keyboard(m_connection, 0, m_root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, keyboardMode);
    const XcbReply<xcb_grab_keyboard_reply_t> reply{xcb_grab_keyboard_reply(m_connection, cookie, nullptr)};
    return reply ? reply->status : std::uint8_t{XCB_GRAB_STATUS_NOT_VIEWABLE};
}

void KeyboardTap::allow(std::uint8_t mode) {
    xcb_allow_events(m_connection, mode, XCB_CURRENT_TIME);
    xcb_flush(m_connection);
}

void KeyboardTap::ungrabIfDone() {
    if (m_isWanted || !m_isHolding || m_taken.any())
        return;
    m_isHolding = false;
    m_heldBefore.reset();
    xcb_ungrab_keyboard(m_connection, XCB_CURRENT_TIME);
    xcb_flush(m_connection);
}

void KeyboardTap::watchFocus() {
    xcb_window_t focus = XCB_NONE;
    if (isWaiting()) {
        const XcbReply<xcb_get_input_focus_reply_t> reply{
            xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr)};
        // Without a window of its own the focus is told of at the root.
        focus = reply && reply->focus > XCB_INPUT_FOCUS_POINTER_ROOT ? reply->focus : m_root;
    }
    if (focus == m_watched)
        return;
    if (m_watched != XCB_NONE)
        selectFocus(m_watched, XCB_EVENT_MASK_NO_EVENT);
    if (focus != XCB_NONE)
        selectFocus(focus, XCB_EVENT_MASK_FOCUS_CHANGE);
    m_watched = focus;
}

void KeyboardTap::selectFocus(xcb_window_t window, std::uint32_t events) {
    // The window may have gone, and then its focus has moved on.
    xcb_discard_reply(
        m_connection,
        xcb_change_window_attributes_checked(m_connection, window, XCB_CW_EVENT_MASK, &events).sequence);
    xcb_flush(m_connection);
}

} // namespace kestrova
