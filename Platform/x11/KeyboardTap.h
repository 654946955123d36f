#pragma once

#include "Platform/x11/HeldKeys.h"

#include <xcb/xcb.h>

#include <cstdint>

namespace kestrova {

/// The whole keyboard, grabbed for as long as somebody wants it. It lives on the connection of the hot keys:
/// the grab of a hot key that is still held would be another client's otherwise, and both of them see a key
/// in one order. One thread at a time; it waits for the X server alone.
class KeyboardTap {
public:
    /// `connection` outlives the object. Its repeats come without releases.
    KeyboardTap(xcb_connection_t* connection, xcb_window_t root) : m_connection(connection), m_root(root) {}

    /// False if the server lets nobody have the keyboard. One that another client holds is waited for.
    bool start();
    /// Keeps back what is typed from now on. Next, what has come before is dealt with, then the tap stops.
    void freeze();
    /// Gives the keyboard back, once the keys are up whose presses it has taken, or another one is pressed:
    /// their repeats are nobody's, but what is typed behind the tap reaches whoever has the focus.
    void stop();

    /// Whether presses come to this connection instead of to anybody else.
    bool isHolding() const { return m_isHolding; }
    /// Whether it is wanted, but another client has the keyboard.
    bool isWaiting() const { return m_isWanted && !m_isHolding; }

    /// Whether the press is news: the tap is wanted, and the key was not held before it.
    bool onPress(xcb_keycode_t key, bool isModifier);
    /// Of the grab while it holds, else of the devices.
    void onRelease(xcb_keycode_t key);
    /// An event of the grab has been dealt with. Behind the tap the keyboard stands still until then.
    void goOn();
    /// Ends what is held of keys that are not `down`, in case a keyboard has gone with its keys held.
    void endUnless(const KeySet& down);
    /// Takes the keyboard if it is waited for and has come back. To be called for every event of the focus,
    /// which the tap asks for while it waits, and for buttons: a client may give the keyboard back without an
    /// event of the focus.
    void tryAgain();

private:
    /// Answers the status of the grab.
    std::uint8_t grab(std::uint8_t keyboardMode);
    void allow(std::uint8_t mode);
    void ungrabIfDone();
    /// Has the server tell of the window's focus that is in the way, and of none while there is none.
    void watchFocus();
    void selectFocus(xcb_window_t window, std::uint32_t events);

    xcb_connection_t* const m_connection;
    const xcb_window_t m_root;
    bool m_isWanted = false;
    bool m_isHolding = false;
    KeySet m_heldBefore;
    KeySet m_taken;
    xcb_window_t m_watched = XCB_NONE;
};

} // namespace kestrova
