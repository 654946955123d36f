#pragma once

#include "tests/desktop/XConnection.h"

#include <QByteArray>

#include <vector>

namespace kestrova::test {

/// Keys by their place on the keyboard, whatever layout is on it.
namespace keyAt {
inline constexpr xcb_keycode_t escape = 9;
inline constexpr xcb_keycode_t one = 10;
inline constexpr xcb_keycode_t backspace = 22;
inline constexpr xcb_keycode_t tab = 23;
inline constexpr xcb_keycode_t e = 26;
inline constexpr xcb_keycode_t returnKey = 36;
inline constexpr xcb_keycode_t control = 37;
inline constexpr xcb_keycode_t a = 38;
inline constexpr xcb_keycode_t s = 39;
inline constexpr xcb_keycode_t f = 41;
inline constexpr xcb_keycode_t k = 45;
inline constexpr xcb_keycode_t grave = 49;
inline constexpr xcb_keycode_t shift = 50;
inline constexpr xcb_keycode_t z = 52;
inline constexpr xcb_keycode_t c = 54;
inline constexpr xcb_keycode_t v = 55;
inline constexpr xcb_keycode_t p = 33;
inline constexpr xcb_keycode_t alt = 64;
inline constexpr xcb_keycode_t space = 65;
inline constexpr xcb_keycode_t capsLock = 66;
inline constexpr xcb_keycode_t numLock = 77;
inline constexpr xcb_keycode_t up = 111;
inline constexpr xcb_keycode_t down = 116;
inline constexpr xcb_keycode_t end = 115;
inline constexpr xcb_keycode_t super = 133;
/// The key of `digit`, 1 to 9, in the row above the letters.
constexpr xcb_keycode_t digit(int digit) {
    return static_cast<xcb_keycode_t>(one + digit - 1);
}
} // namespace keyAt

/// A person at the keyboard: the server takes its keys for real ones. All presses of one call go out in one
/// piece, without a pause. Throws std::runtime_error if the display takes no such keys.
class KeyPresser {
public:
    using Chord = std::vector<xcb_keycode_t>;

    explicit KeyPresser(const QByteArray& display);
    /// Lets go what is still down.
    ~KeyPresser();
    KeyPresser(const KeyPresser&) = delete;
    KeyPresser& operator=(const KeyPresser&) = delete;

    void press(xcb_keycode_t key);
    void release(xcb_keycode_t key);
    /// Presses all keys in order and lets them go in reverse order.
    void chord(const Chord& keys);
    void tap(xcb_keycode_t key) { chord({key}); }
    /// Types letters, digits and blanks as the present layout has them. Throws std::runtime_error for a
    /// character that no key has.
    void type(const QByteArray& text);

    /// Presses the lock's key if its lock is not as wanted. Throws std::runtime_error if that changes
    /// nothing.
    void lock(xcb_keycode_t lockKey, bool on);
    /// Switches to the layout's group, the first one being 0, as the person's key for it would. Throws
    /// std::runtime_error if there is none.
    void lockGroup(std::uint8_t group);
    /// The keys that the server holds for pressed, in ascending order.
    std::vector<xcb_keycode_t> keysDown() const;
    /// The modifiers that the server holds for on, locks included: a mask of XCB_MOD_MASK.
    std::uint16_t modifiers() const;

private:
    void fake(std::uint8_t type, xcb_keycode_t key);
    /// Returns once the server has carried out all that was sent.
    void settle() const;
    std::uint16_t maskOf(xcb_keycode_t key) const;

    XConnection m_x;
};

} // namespace kestrova::test
