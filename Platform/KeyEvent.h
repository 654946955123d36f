#pragma once

#include <QString>

#include <cstdint>

namespace kestrova {

/// Modifier bits of an event, in the program's own numbering. A host translates its own at the border; Num
/// Lock has no bit.
namespace ModifierFlags {
inline constexpr std::uint32_t capsLock = 0x10000;
inline constexpr std::uint32_t shift = 0x20000;
inline constexpr std::uint32_t control = 0x40000;
inline constexpr std::uint32_t option = 0x80000;
inline constexpr std::uint32_t command = 0x100000;
/// On keypad keys and on arrows.
inline constexpr std::uint32_t numericPad = 0x200000;
inline constexpr std::uint32_t help = 0x400000;
/// On function keys and on arrows.
inline constexpr std::uint32_t function = 0x800000;
} // namespace ModifierFlags

/// Key codes name positions on the keyboard, whatever the layout writes on them. The names are those of an
/// ANSI keyboard in the US layout.
namespace VirtualKey {
inline constexpr std::uint16_t s = 1;
inline constexpr std::uint16_t f = 3;
inline constexpr std::uint16_t z = 6;
inline constexpr std::uint16_t c = 8;
inline constexpr std::uint16_t v = 9;
inline constexpr std::uint16_t e = 14;
inline constexpr std::uint16_t i = 34;
inline constexpr std::uint16_t p = 35;
inline constexpr std::uint16_t returnKey = 36;
inline constexpr std::uint16_t k = 40;
inline constexpr std::uint16_t space = 49;
/// The key left of 1.
inline constexpr std::uint16_t grave = 50;
/// Backspace.
inline constexpr std::uint16_t deleteKey = 51;
inline constexpr std::uint16_t escape = 53;
inline constexpr std::uint16_t leftArrow = 123;
inline constexpr std::uint16_t rightArrow = 124;
inline constexpr std::uint16_t downArrow = 125;
inline constexpr std::uint16_t upArrow = 126;
} // namespace VirtualKey

/// One press of a key in one of the program's own windows, or a change of the modifiers held there.
struct KeyEvent {
    std::uint16_t keyCode = 0;
    std::uint32_t modifierFlags = 0;
    /// What the key gives in the current layout with no modifier held.
    QString charactersIgnoringModifiers;
    /// The key is being held down.
    bool isRepeat = false;

    bool operator==(const KeyEvent&) const = default;
};

} // namespace kestrova
