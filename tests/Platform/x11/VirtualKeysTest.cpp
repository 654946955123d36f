#include "Platform/x11/VirtualKeys.h"

#include "Platform/KeyEvent.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace kestrova {
namespace {

struct Row {
    const char* name;
    /// As the kernel numbers it.
    std::uint8_t position;
    std::uint16_t virtualKey;
    std::uint32_t flags = 0;
};

constexpr std::uint32_t fn = ModifierFlags::function;
constexpr std::uint32_t pad = ModifierFlags::numericPad;

const std::vector<Row> rows{{"a", 30, 0x00},
                            {"s", 31, 0x01},
                            {"d", 32, 0x02},
                            {"f", 33, 0x03},
                            {"h", 35, 0x04},
                            {"g", 34, 0x05},
                            {"z", 44, 0x06},
                            {"x", 45, 0x07},
                            {"c", 46, 0x08},
                            {"v", 47, 0x09},
                            {"ISO extra", 86, 0x0A},
                            {"b", 48, 0x0B},
                            {"q", 16, 0x0C},
                            {"w", 17, 0x0D},
                            {"e", 18, 0x0E},
                            {"r", 19, 0x0F},
                            {"y", 21, 0x10},
                            {"t", 20, 0x11},
                            {"1", 2, 0x12},
                            {"2", 3, 0x13},
                            {"3", 4, 0x14},
                            {"4", 5, 0x15},
                            {"6", 7, 0x16},
                            {"5", 6, 0x17},
                            {"equal", 13, 0x18},
                            {"9", 10, 0x19},
                            {"7", 8, 0x1A},
                            {"minus", 12, 0x1B},
                            {"8", 9, 0x1C},
                            {"0", 11, 0x1D},
                            {"]", 27, 0x1E},
                            {"o", 24, 0x1F},
                            {"u", 22, 0x20},
                            {"[", 26, 0x21},
                            {"i", 23, 0x22},
                            {"p", 25, 0x23},
                            {"return", 28, 0x24},
                            {"l", 38, 0x25},
                            {"j", 36, 0x26},
                            {"'", 40, 0x27},
                            {"k", 37, 0x28},
                            {";", 39, 0x29},
                            {"backslash", 43, 0x2A},
                            {",", 51, 0x2B},
                            {"/", 53, 0x2C},
                            {"n", 49, 0x2D},
                            {"m", 50, 0x2E},
                            {".", 52, 0x2F},
                            {"tab", 15, 0x30},
                            {"space", 57, 0x31},
                            {"grave", 41, 0x32},
                            {"backspace", 14, 0x33},
                            {"escape", 1, 0x35},
                            {"right super", 126, 0x36},
                            {"left super", 125, 0x37},
                            {"left shift", 42, 0x38},
                            {"caps lock", 58, 0x39},
                            {"left alt", 56, 0x3A},
                            {"left control", 29, 0x3B},
                            {"right shift", 54, 0x3C},
                            {"right alt", 100, 0x3D},
                            {"right control", 97, 0x3E},
                            {"F17", 187, 0x40, fn},
                            {"keypad .", 83, 0x41, pad},
                            {"keypad *", 55, 0x43, pad},
                            {"keypad +", 78, 0x45, pad},
                            {"num lock", 69, 0x47, pad},
                            {"louder", 115, 0x48},
                            {"quieter", 114, 0x49},
                            {"mute", 113, 0x4A},
                            {"keypad /", 98, 0x4B, pad},
                            {"keypad enter", 96, 0x4C, pad},
                            {"keypad -", 74, 0x4E, pad},
                            {"F18", 188, 0x4F, fn},
                            {"F19", 189, 0x50, fn},
                            {"keypad =", 117, 0x51, pad},
                            {"keypad 0", 82, 0x52, pad},
                            {"keypad 1", 79, 0x53, pad},
                            {"keypad 2", 80, 0x54, pad},
                            {"keypad 3", 81, 0x55, pad},
                            {"keypad 4", 75, 0x56, pad},
                            {"keypad 5", 76, 0x57, pad},
                            {"keypad 6", 77, 0x58, pad},
                            {"keypad 7", 71, 0x59, pad},
                            {"F20", 190, 0x5A, fn},
                            {"keypad 8", 72, 0x5B, pad},
                            {"keypad 9", 73, 0x5C, pad},
                            {"yen", 124, 0x5D},
                            {"underscore", 89, 0x5E},
                            {"keypad ,", 95, 0x5F, pad},
                            {"F5", 63, 0x60, fn},
                            {"F6", 64, 0x61, fn},
                            {"F7", 65, 0x62, fn},
                            {"F3", 61, 0x63, fn},
                            {"F8", 66, 0x64, fn},
                            {"F9", 67, 0x65, fn},
                            {"eisu, hanja", 123, 0x66},
                            {"F11", 87, 0x67, fn},
                            {"kana, hangul", 122, 0x68},
                            {"F13", 183, 0x69, fn},
                            {"F16", 186, 0x6A, fn},
                            {"F14", 184, 0x6B, fn},
                            {"F10", 68, 0x6D, fn},
                            {"menu", 127, 0x6E},
                            {"F12", 88, 0x6F, fn},
                            {"F15", 185, 0x71, fn},
                            {"insert", 110, 0x72, fn},
                            {"home", 102, 0x73, fn},
                            {"page up", 104, 0x74, fn},
                            {"delete", 111, 0x75, fn},
                            {"F4", 62, 0x76, fn},
                            {"end", 107, 0x77, fn},
                            {"F2", 60, 0x78, fn},
                            {"page down", 109, 0x79, fn},
                            {"F1", 59, 0x7A, fn},
                            {"left", 105, 0x7B, fn | pad},
                            {"right", 106, 0x7C, fn | pad},
                            {"down", 108, 0x7D, fn | pad},
                            {"up", 103, 0x7E, fn | pad}};

TEST(VirtualKeysTest, EachPositionHasItsCodeAndIsFoundByIt) {
    for (const auto& row : rows) {
        const auto x11 = static_cast<std::uint8_t>(row.position + 8);
        EXPECT_EQ(virtualKeyOfX11Key(x11), row.virtualKey) << row.name;
        EXPECT_EQ(x11KeyOfVirtualKey(row.virtualKey), x11) << row.name;
        EXPECT_EQ(inherentFlags(row.virtualKey), row.flags) << row.name;
    }
}

TEST(VirtualKeysTest, NoOtherPositionHasACode) {
    std::set<std::uint32_t> x11Keys;
    std::set<std::uint32_t> virtualKeys;
    for (const auto& row : rows) {
        EXPECT_TRUE(x11Keys.insert(row.position + 8u).second) << row.name;
        EXPECT_TRUE(virtualKeys.insert(row.virtualKey).second) << row.name;
    }
    for (std::uint32_t key = 0; key <= 0x1000; ++key) {
        if (!x11Keys.contains(key)) {
            EXPECT_EQ(virtualKeyOfX11Key(key), std::nullopt) << key;
        }
        if (!virtualKeys.contains(key)) {
            EXPECT_EQ(x11KeyOfVirtualKey(key), std::nullopt) << key;
            EXPECT_EQ(inherentFlags(key), 0U) << key;
        }
    }
}

TEST(VirtualKeysTest, DigitsAreThoseOfTheRowAndOfTheKeypad) {
    std::set<std::uint32_t> digits;
    for (std::uint32_t key = 0; key < 0x100; ++key) {
        if (isDigitKey(key))
            digits.insert(key);
    }
    EXPECT_EQ(digits, (std::set<std::uint32_t>{18, 19, 20, 21, 22, 23, 25, 26, 28, 29,
                                               82, 83, 84, 85, 86, 87, 88, 89, 91, 92}));
}

} // namespace
} // namespace kestrova
