#pragma once

#include <QString>

#include <array>
#include <cstdint>
#include <optional>

namespace kestrova {

class LocalizedTexts;

/// Keys without a printable character.
enum class SpecialKey {
    returnKey,
    deleteKey,
    deleteForward,
    end,
    escape,
    help,
    home,
    space,
    tab,
    pageUp,
    pageDown,
    upArrow,
    rightArrow,
    downArrow,
    leftArrow,
    f1,
    f2,
    f3,
    f4,
    f5,
    f6,
    f7,
    f8,
    f9,
    f10,
    f11,
    f12,
    f13,
    f14,
    f15,
    f16,
    f17,
    f18,
    f19,
    f20,
    keypad0,
    keypad1,
    keypad2,
    keypad3,
    keypad4,
    keypad5,
    keypad6,
    keypad7,
    keypad8,
    keypad9,
    keypadClear,
    keypadDecimal,
    keypadDivide,
    keypadEnter,
    keypadEquals,
    keypadMinus,
    keypadMultiply,
    keypadPlus,
};

struct SpecialKeyEntry {
    SpecialKey key = SpecialKey::returnKey;
    std::int64_t keyCode = 0;
    /// Empty where the text depends on the person's language.
    QStringView text;
};

inline constexpr std::array specialKeys{
    SpecialKeyEntry{SpecialKey::returnKey, 36, u"↩"},
    SpecialKeyEntry{SpecialKey::deleteKey, 51, u"⌫"},
    SpecialKeyEntry{SpecialKey::deleteForward, 117, u"⌦"},
    SpecialKeyEntry{SpecialKey::end, 119, u"↘"},
    SpecialKeyEntry{SpecialKey::escape, 53, u"⎋"},
    SpecialKeyEntry{SpecialKey::help, 114, u"?\u20DD"},
    SpecialKeyEntry{SpecialKey::home, 115, u"↖"},
    SpecialKeyEntry{SpecialKey::space, 49, {}},
    SpecialKeyEntry{SpecialKey::tab, 48, u"⇥"},
    SpecialKeyEntry{SpecialKey::pageUp, 116, u"⇞"},
    SpecialKeyEntry{SpecialKey::pageDown, 121, u"⇟"},
    SpecialKeyEntry{SpecialKey::upArrow, 126, u"↑"},
    SpecialKeyEntry{SpecialKey::rightArrow, 124, u"→"},
    SpecialKeyEntry{SpecialKey::downArrow, 125, u"↓"},
    SpecialKeyEntry{SpecialKey::leftArrow, 123, u"←"},
    SpecialKeyEntry{SpecialKey::f1, 122, u"F1"},
    SpecialKeyEntry{SpecialKey::f2, 120, u"F2"},
    SpecialKeyEntry{SpecialKey::f3, 99, u"F3"},
    SpecialKeyEntry{SpecialKey::f4, 118, u"F4"},
    SpecialKeyEntry{SpecialKey::f5, 96, u"F5"},
    SpecialKeyEntry{SpecialKey::f6, 97, u"F6"},
    SpecialKeyEntry{SpecialKey::f7, 98, u"F7"},
    SpecialKeyEntry{SpecialKey::f8, 100, u"F8"},
    SpecialKeyEntry{SpecialKey::f9, 101, u"F9"},
    SpecialKeyEntry{SpecialKey::f10, 109, u"F10"},
    SpecialKeyEntry{SpecialKey::f11, 103, u"F11"},
    SpecialKeyEntry{SpecialKey::f12, 111, u"F12"},
    SpecialKeyEntry{SpecialKey::f13, 105, u"F13"},
    SpecialKeyEntry{SpecialKey::f14, 107, u"F14"},
    SpecialKeyEntry{SpecialKey::f15, 113, u"F15"},
    SpecialKeyEntry{SpecialKey::f16, 106, u"F16"},
    SpecialKeyEntry{SpecialKey::f17, 64, u"F17"},
    SpecialKeyEntry{SpecialKey::f18, 79, u"F18"},
    SpecialKeyEntry{SpecialKey::f19, 80, u"F19"},
    SpecialKeyEntry{SpecialKey::f20, 90, u"F20"},
    SpecialKeyEntry{SpecialKey::keypad0, 82, u"0\u20E3"},
    SpecialKeyEntry{SpecialKey::keypad1, 83, u"1\u20E3"},
    SpecialKeyEntry{SpecialKey::keypad2, 84, u"2\u20E3"},
    SpecialKeyEntry{SpecialKey::keypad3, 85, u"3\u20E3"},
    SpecialKeyEntry{SpecialKey::keypad4, 86, u"4\u20E3"},
    SpecialKeyEntry{SpecialKey::keypad5, 87, u"5\u20E3"},
    SpecialKeyEntry{SpecialKey::keypad6, 88, u"6\u20E3"},
    SpecialKeyEntry{SpecialKey::keypad7, 89, u"7\u20E3"},
    SpecialKeyEntry{SpecialKey::keypad8, 91, u"8\u20E3"},
    SpecialKeyEntry{SpecialKey::keypad9, 92, u"9\u20E3"},
    SpecialKeyEntry{SpecialKey::keypadClear, 71, u"\u2612\u20E3"},
    SpecialKeyEntry{SpecialKey::keypadDecimal, 65, u".\u20E3"},
    SpecialKeyEntry{SpecialKey::keypadDivide, 75, u"/\u20E3"},
    SpecialKeyEntry{SpecialKey::keypadEnter, 76, u"↩\u20E3"},
    SpecialKeyEntry{SpecialKey::keypadEquals, 81, u"=\u20E3"},
    SpecialKeyEntry{SpecialKey::keypadMinus, 78, u"-\u20E3"},
    SpecialKeyEntry{SpecialKey::keypadMultiply, 67, u"*\u20E3"},
    SpecialKeyEntry{SpecialKey::keypadPlus, 69, u"+\u20E3"},
};
static_assert(specialKeys.size() == 53);

/// The special key with that virtual key code, if it is one.
std::optional<SpecialKey> specialKey(std::int64_t keyCode);
/// What is shown for it.
QString text(SpecialKey key, const LocalizedTexts& texts);

} // namespace kestrova
