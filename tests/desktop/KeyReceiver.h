#pragma once

#include "tests/desktop/XConnection.h"

#include <QRect>

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace kestrova::test {

/// Another client's window with the keyboard's focus, which notes what reaches it. It says that it belongs to
/// this process and stands in the list of windows, though the window manager does not handle it.
class KeyReceiver {
public:
    explicit KeyReceiver(const QByteArray& display);

    xcb_window_t window() const { return m_window; }
    /// The key codes of the presses that have come, in order, this call's included.
    const std::vector<std::uint8_t>& presses();
    /// The modifiers that were on when the key was last pressed; absent if it was not.
    std::optional<std::uint16_t> modifiersAtPressOf(std::uint8_t key);
    /// How often another client has taken the keyboard away for a grab.
    int grabsSeen();

    void takeFocus();
    /// Takes all windows off the list, as the window manager does with those that are withdrawn.
    void emptyList();
    /// Gives the window another class than none.
    void setClass(const QByteArray& instance, const QByteArray& name);
    /// Keeps the keyboard to itself, as a menu does.
    bool grabKeyboard();
    void releaseKeyboard();
    QRect screen() const;
    /// Lays the window over the whole screen, as a screen locker does, or over a part of it.
    void cover(const QRect& part);
    /// Passes for the window manager from now on.
    void actAsWindowManager();
    /// Whether the combination could be had; it is not kept.
    bool canGrabKey(std::uint8_t key, std::uint16_t modifiers);
    /// Takes a combination as a hot key of its own.
    bool grabKey(std::uint8_t key, std::uint16_t modifiers);

private:
    void readEvents();
    void awaitServer() const;

    XConnection m_x;
    xcb_window_t m_window = 0;
    std::vector<std::uint8_t> m_presses;
    std::map<std::uint8_t, std::uint16_t> m_modifiers;
    int m_grabsSeen = 0;
};

} // namespace kestrova::test
