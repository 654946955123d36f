#pragma once

#include "bench/Stopwatch.h"
#include "tests/desktop/XConnection.h"

#include <QByteArray>
#include <QRect>

#include <cstdint>
#include <initializer_list>
#include <stdexcept>

namespace kestrova::bench {

/// X key codes of a PC keyboard.
namespace PanelKey {
inline constexpr std::uint8_t escape = 9;
inline constexpr std::uint8_t digit1 = 10;
inline constexpr std::uint8_t digit2 = 11;
inline constexpr std::uint8_t digit3 = 12;
inline constexpr std::uint8_t backspace = 22;
inline constexpr std::uint8_t q = 24;
inline constexpr std::uint8_t e = 26;
inline constexpr std::uint8_t leftControl = 37;
inline constexpr std::uint8_t k = 45;
inline constexpr std::uint8_t grave = 49;
inline constexpr std::uint8_t leftShift = 50;
inline constexpr std::uint8_t v = 55;
inline constexpr std::uint8_t leftAlt = 64;
inline constexpr std::uint8_t space = 65;
inline constexpr std::uint8_t up = 111;
inline constexpr std::uint8_t left = 113;
inline constexpr std::uint8_t right = 114;
inline constexpr std::uint8_t down = 116;
inline constexpr std::uint8_t leftSuper = 133;
} // namespace PanelKey

/// Parts of the panel, which stands at (160, 120) of a display of 1280x800.
namespace PanelArea {
/// The list without its chips.
inline constexpr QRect list{370, 240, 250, 300};
/// Sidebar, chips and list: all that shows what keys do, but for the search field with its blinking caret.
inline constexpr QRect body{162, 190, 480, 360};
} // namespace PanelArea

/// Presses keys as a person does and looks at the pixels that the X server has. Throws std::runtime_error if
/// what it waits for does not come.
class PanelWatch {
public:
    explicit PanelWatch(const QByteArray& display) : m_x(display) {}

    /// The pixels of `area`, in the server's coordinates.
    QByteArray pixels(const QRect& area) const;
    /// Once they have not changed for a third of a second.
    QByteArray settledPixels(const QRect& area) const;

    void press(std::uint8_t key) const { chord({key}); }
    /// The keys go down in order and up in reverse.
    void chord(std::initializer_list<std::uint8_t> keys) const;
    /// One notch of the wheel towards the person, if `down`.
    void turnWheel(bool down) const;
    /// The left one of the mouse, down or up.
    void holdButton(bool down) const;
    void movePointer(QPoint to) const;

    /// Milliseconds from `act` until `area` shows `expected`.
    template<typename Act>
    double millisecondsUntil(const QRect& area, const QByteArray& expected, Act act) const {
        return timed(area, act, [&](const QByteArray& shown) { return shown == expected; });
    }
    /// Milliseconds from `act` until `area` shows anything else than before.
    template<typename Act>
    double millisecondsUntilChange(const QRect& area, Act act) const {
        const auto before = pixels(area);
        return timed(area, act, [&](const QByteArray& shown) { return shown != before; });
    }

private:
    template<typename Act, typename Holds>
    double timed(const QRect& area, Act act, Holds holds) const {
        constexpr double deadlineMilliseconds = 5'000;
        const Stopwatch watch;
        act();
        while (watch.milliseconds() < deadlineMilliseconds)
            if (holds(pixels(area)))
                return watch.milliseconds();
        throw std::runtime_error("the panel did not show what was expected");
    }
    void fake(std::uint8_t type, std::uint8_t detail) const;

    test::XConnection m_x;
};

} // namespace kestrova::bench
