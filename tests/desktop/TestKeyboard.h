#pragma once

#include "tests/desktop/XConnection.h"

#include <QPoint>

#include <cstdint>
#include <functional>
#include <vector>

namespace kestrova::test {

/// X key codes of positions.
namespace Key {
inline constexpr std::uint8_t control = 37;
inline constexpr std::uint8_t shift = 50;
inline constexpr std::uint8_t alt = 64;
inline constexpr std::uint8_t capsLock = 66;
inline constexpr std::uint8_t numLock = 77;
inline constexpr std::uint8_t super = 133;
inline constexpr std::uint8_t a = 38;
inline constexpr std::uint8_t b = 56;
inline constexpr std::uint8_t v = 55;
inline constexpr std::uint8_t down = 116;
} // namespace Key

/// Presses keys and buttons at once, nothing in between. What it left pressed or locked is let go and
/// unlocked by its display's end. Its display is shared with nobody.
class TestKeyboard {
public:
    explicit TestKeyboard(const QByteArray& display);

    void press(std::uint8_t key);
    void release(std::uint8_t key);
    void tap(std::uint8_t key);
    /// Presses all, then releases all in reverse order.
    void chord(const std::vector<std::uint8_t>& keys);
    /// Returns when the press and the release have gone out to whoever gets them. A window manager that keeps
    /// a press back while it makes up its mind about it keeps back all that the mouse does after it, too.
    void click(std::uint8_t button, std::int16_t x, std::int16_t y);
    /// Moves the mouse and presses, and whatever becomes of that, lets go and moves it on. Returns when the
    /// mouse is there.
    void clickAndMoveOn(std::uint8_t button, QPoint place, QPoint next);
    bool isDown(std::uint8_t key);
    /// The state of the core keyboard's modifiers.
    std::uint16_t modifiers();

    /// Sends what was pressed, and returns when the server has dealt with it.
    void finish();

private:
    struct MouseState {
        QPoint place;
        /// Bit 1 for the first button, and so on.
        std::uint32_t buttons = 0;
    };

    void fake(std::uint8_t type, std::uint8_t detail);
    void move(QPoint place);
    void awaitMouse(const std::function<bool(const MouseState&)>& isDone);

    XConnection m_x;
};

} // namespace kestrova::test
