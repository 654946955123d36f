#include "KeyboardShortcuts/Key.h"

#include "KeyboardShortcuts/SpecialKey.h"
#include "Platform/KeyEvent.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace kestrova {
namespace {

// In the order of their codes; no two constants may stand for one key.
TEST(KeyTest, ThePrintableKeysAreThoseOfTheHost) {
    const std::vector<std::pair<Key, std::int64_t>> rows{
        {Key::a, 0},
        {Key::s, 1},
        {Key::d, 2},
        {Key::f, 3},
        {Key::h, 4},
        {Key::g, 5},
        {Key::z, 6},
        {Key::x, 7},
        {Key::c, 8},
        {Key::v, 9},
        {Key::section, 10},
        {Key::b, 11},
        {Key::q, 12},
        {Key::w, 13},
        {Key::e, 14},
        {Key::r, 15},
        {Key::y, 16},
        {Key::t, 17},
        {Key::one, 18},
        {Key::two, 19},
        {Key::three, 20},
        {Key::four, 21},
        {Key::six, 22},
        {Key::five, 23},
        {Key::equal, 24},
        {Key::nine, 25},
        {Key::seven, 26},
        {Key::minus, 27},
        {Key::eight, 28},
        {Key::zero, 29},
        {Key::rightBracket, 30},
        {Key::o, 31},
        {Key::u, 32},
        {Key::leftBracket, 33},
        {Key::i, 34},
        {Key::p, 35},
        {Key::l, 37},
        {Key::j, 38},
        {Key::quote, 39},
        {Key::k, 40},
        {Key::semicolon, 41},
        {Key::backslash, 42},
        {Key::comma, 43},
        {Key::slash, 44},
        {Key::n, 45},
        {Key::m, 46},
        {Key::period, 47},
        {Key::backtick, 50},
    };
    std::set<std::int64_t> codes;
    for (const auto& [key, code] : rows) {
        EXPECT_EQ(key.rawValue, code);
        EXPECT_EQ(specialKey(code), std::nullopt) << code;
        codes.insert(code);
    }
    EXPECT_EQ(codes.size(), rows.size());
    EXPECT_EQ(Key::v.rawValue, VirtualKey::v);
    EXPECT_EQ(Key::backtick.rawValue, VirtualKey::grave);
}

TEST(KeyTest, TheOthersAreTheSpecialKeys) {
    using enum SpecialKey;
    const std::vector<std::pair<Key, SpecialKey>> rows{
        {Key::returnKey, returnKey},
        {Key::deleteKey, deleteKey},
        {Key::deleteForward, deleteForward},
        {Key::end, end},
        {Key::escape, escape},
        {Key::help, help},
        {Key::home, home},
        {Key::space, space},
        {Key::tab, tab},
        {Key::pageUp, pageUp},
        {Key::pageDown, pageDown},
        {Key::upArrow, upArrow},
        {Key::rightArrow, rightArrow},
        {Key::downArrow, downArrow},
        {Key::leftArrow, leftArrow},
        {Key::f1, f1},
        {Key::f2, f2},
        {Key::f3, f3},
        {Key::f4, f4},
        {Key::f5, f5},
        {Key::f6, f6},
        {Key::f7, f7},
        {Key::f8, f8},
        {Key::f9, f9},
        {Key::f10, f10},
        {Key::f11, f11},
        {Key::f12, f12},
        {Key::f13, f13},
        {Key::f14, f14},
        {Key::f15, f15},
        {Key::f16, f16},
        {Key::f17, f17},
        {Key::f18, f18},
        {Key::f19, f19},
        {Key::f20, f20},
        {Key::keypad0, keypad0},
        {Key::keypad1, keypad1},
        {Key::keypad2, keypad2},
        {Key::keypad3, keypad3},
        {Key::keypad4, keypad4},
        {Key::keypad5, keypad5},
        {Key::keypad6, keypad6},
        {Key::keypad7, keypad7},
        {Key::keypad8, keypad8},
        {Key::keypad9, keypad9},
        {Key::keypadClear, keypadClear},
        {Key::keypadDecimal, keypadDecimal},
        {Key::keypadDivide, keypadDivide},
        {Key::keypadEnter, keypadEnter},
        {Key::keypadEquals, keypadEquals},
        {Key::keypadMinus, keypadMinus},
        {Key::keypadMultiply, keypadMultiply},
        {Key::keypadPlus, keypadPlus},
    };
    EXPECT_EQ(rows.size(), specialKeys.size());
    for (const auto& [key, special] : rows)
        EXPECT_EQ(specialKey(key.rawValue), special) << key.rawValue;
}

} // namespace
} // namespace kestrova
