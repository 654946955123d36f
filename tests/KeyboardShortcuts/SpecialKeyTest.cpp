#include "KeyboardShortcuts/SpecialKey.h"

#include "KeyboardShortcuts/LocalizedTexts.h"

#include <gtest/gtest.h>

#include <set>

namespace kestrova {
namespace {

struct KeyRow {
    SpecialKey key;
    std::int64_t keyCode;
    const char32_t* text;
};

const std::vector<KeyRow>& keyRows() {
    using enum SpecialKey;
    static const std::vector<KeyRow> all{
        {returnKey, 36, U"\u21A9"},
        {deleteKey, 51, U"\u232B"},
        {deleteForward, 117, U"\u2326"},
        {end, 119, U"\u2198"},
        {escape, 53, U"\u238B"},
        {help, 114, U"?\u20DD"},
        {home, 115, U"\u2196"},
        {space, 49, U"Space"},
        {tab, 48, U"\u21E5"},
        {pageUp, 116, U"\u21DE"},
        {pageDown, 121, U"\u21DF"},
        {upArrow, 126, U"\u2191"},
        {rightArrow, 124, U"\u2192"},
        {downArrow, 125, U"\u2193"},
        {leftArrow, 123, U"\u2190"},
        {f1, 122, U"F1"},
        {f2, 120, U"F2"},
        {f3, 99, U"F3"},
        {f4, 118, U"F4"},
        {f5, 96, U"F5"},
        {f6, 97, U"F6"},
        {f7, 98, U"F7"},
        {f8, 100, U"F8"},
        {f9, 101, U"F9"},
        {f10, 109, U"F10"},
        {f11, 103, U"F11"},
        {f12, 111, U"F12"},
        {f13, 105, U"F13"},
        {f14, 107, U"F14"},
        {f15, 113, U"F15"},
        {f16, 106, U"F16"},
        {f17, 64, U"F17"},
        {f18, 79, U"F18"},
        {f19, 80, U"F19"},
        {f20, 90, U"F20"},
        {keypad0, 82, U"0\u20E3"},
        {keypad1, 83, U"1\u20E3"},
        {keypad2, 84, U"2\u20E3"},
        {keypad3, 85, U"3\u20E3"},
        {keypad4, 86, U"4\u20E3"},
        {keypad5, 87, U"5\u20E3"},
        {keypad6, 88, U"6\u20E3"},
        {keypad7, 89, U"7\u20E3"},
        {keypad8, 91, U"8\u20E3"},
        {keypad9, 92, U"9\u20E3"},
        {keypadClear, 71, U"\u2612\u20E3"},
        {keypadDecimal, 65, U".\u20E3"},
        {keypadDivide, 75, U"/\u20E3"},
        {keypadEnter, 76, U"\u21A9\u20E3"},
        {keypadEquals, 81, U"=\u20E3"},
        {keypadMinus, 78, U"-\u20E3"},
        {keypadMultiply, 67, U"*\u20E3"},
        {keypadPlus, 69, U"+\u20E3"},
    };
    return all;
}

TEST(SpecialKeyTest, ThereAre53WithACodeEach) {
    std::set<std::int64_t> codes;
    for (const auto& entry : specialKeys)
        codes.insert(entry.keyCode);
    EXPECT_EQ(codes.size(), 53u);
    EXPECT_EQ(keyRows().size(), 53u);
}

TEST(SpecialKeyTest, EachHasItsCodeAndItsText) {
    const LocalizedTexts english{QLocale(QLocale::English)};
    for (const auto& row : keyRows()) {
        EXPECT_EQ(specialKey(row.keyCode), row.key) << row.keyCode;
        EXPECT_EQ(text(row.key, english), QString::fromUcs4(row.text)) << row.keyCode;
    }
}

TEST(SpecialKeyTest, TheTextOfSpaceIsTheCapitalizedWordOfTheLanguage) {
    EXPECT_EQ(text(SpecialKey::space, LocalizedTexts{QLocale(QLocale::Korean)}), u"스페이스");
}

TEST(SpecialKeyTest, OtherKeysAreNotSpecial) {
    for (const std::int64_t keyCode : {0, 9, 50, 52, 93, 127, -1})
        EXPECT_EQ(specialKey(keyCode), std::nullopt) << keyCode;
}

} // namespace
} // namespace kestrova
