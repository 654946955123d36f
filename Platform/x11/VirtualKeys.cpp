#include "Platform/x11/VirtualKeys.h"

#include "Platform/KeyEvent.h"

#include <algorithm>
#include <array>

namespace kestrova {

namespace {

struct Position {
    std::uint8_t x11;
    std::uint8_t virtualKey;
};

// X key codes are those of the kernel plus 8. Both columns name positions, by what the US layout writes
// there.
constexpr std::array positions{
    Position{9, 53}, // Escape
    // The digits' row
    Position{49, 50}, Position{10, 18}, Position{11, 19}, Position{12, 20}, Position{13, 21},
    Position{14, 23}, Position{15, 22}, Position{16, 26}, Position{17, 28}, Position{18, 25},
    Position{19, 29}, Position{20, 27}, Position{21, 24}, Position{22, 51},
    // Q W E R T Y U I O P [ ] and backslash
    Position{23, 48}, Position{24, 12}, Position{25, 13}, Position{26, 14}, Position{27, 15},
    Position{28, 17}, Position{29, 16}, Position{30, 32}, Position{31, 34}, Position{32, 31},
    Position{33, 35}, Position{34, 33}, Position{35, 30}, Position{51, 42},
    // A S D F G H J K L ; ' and Return
    Position{38, 0}, Position{39, 1}, Position{40, 2}, Position{41, 3}, Position{42, 5}, Position{43, 4},
    Position{44, 38}, Position{45, 40}, Position{46, 37}, Position{47, 41}, Position{48, 39},
    Position{36, 36},
    // The ISO key, Z X C V B N M , . /
    Position{94, 10}, Position{52, 6}, Position{53, 7}, Position{54, 8}, Position{55, 9}, Position{56, 11},
    Position{57, 45}, Position{58, 46}, Position{59, 43}, Position{60, 47}, Position{61, 44},
    Position{65, 49}, // Space
    // Caps Lock, then Shift, Control, Alt and Super, left and right
    Position{66, 57}, Position{50, 56}, Position{62, 60}, Position{37, 59}, Position{105, 62},
    Position{64, 58}, Position{108, 61}, Position{133, 55}, Position{134, 54}, Position{135, 110}, // Menu
    // F1 to F20
    Position{67, 122}, Position{68, 120}, Position{69, 99}, Position{70, 118}, Position{71, 96},
    Position{72, 97}, Position{73, 98}, Position{74, 100}, Position{75, 101}, Position{76, 109},
    Position{95, 103}, Position{96, 111}, Position{191, 105}, Position{192, 107}, Position{193, 113},
    Position{194, 106}, Position{195, 64}, Position{196, 79}, Position{197, 80}, Position{198, 90},
    // Insert, which sits where the other numbering has Help, Delete, Home, End, Page Up, Page Down
    Position{118, 114}, Position{119, 117}, Position{110, 115}, Position{115, 119}, Position{112, 116},
    Position{117, 121},
    // Left, right, down, up
    Position{113, 123}, Position{114, 124}, Position{116, 125}, Position{111, 126},
    // The keypad: Num Lock, which sits where the other numbering has Clear, / * - + Enter . =, 0 to 9
    Position{77, 71}, Position{106, 75}, Position{63, 67}, Position{82, 78}, Position{86, 69},
    Position{104, 76}, Position{91, 65}, Position{125, 81}, Position{90, 82}, Position{87, 83},
    Position{88, 84}, Position{89, 85}, Position{83, 86}, Position{84, 87}, Position{85, 88},
    Position{79, 89}, Position{80, 91}, Position{81, 92},
    // Mute, quieter, louder
    Position{121, 74}, Position{122, 73}, Position{123, 72},
    // Japanese: Yen, underscore, the keypad's comma; Hangul or Kana, Hanja or Eisu
    Position{132, 93}, Position{97, 94}, Position{103, 95}, Position{130, 104}, Position{131, 102}};

constexpr std::array<std::uint8_t, 20> functionKeys{122, 120, 99,  118, 96,  97,  98, 100, 101, 109,
                                                    103, 111, 105, 107, 113, 106, 64, 79,  80,  90};
constexpr std::array<std::uint8_t, 6> navigationKeys{114, 117, 115, 119, 116, 121};
constexpr std::array<std::uint8_t, 10> rowDigits{18, 19, 20, 21, 23, 22, 26, 28, 25, 29};
constexpr std::array<std::uint8_t, 10> keypadDigits{82, 83, 84, 85, 86, 87, 88, 89, 91, 92};
constexpr std::array<std::uint8_t, 9> otherKeypadKeys{71, 75, 67, 78, 69, 76, 65, 81, 95};

bool isAmong(const auto& keys, std::uint32_t key) {
    return std::ranges::find(keys, key) != keys.end();
}

} // namespace

std::optional<std::uint16_t> virtualKeyOfX11Key(std::uint32_t x11Key) {
    const auto found = std::ranges::find(positions, x11Key, &Position::x11);
    return found == positions.end() ? std::nullopt : std::optional<std::uint16_t>{found->virtualKey};
}

std::optional<std::uint8_t> x11KeyOfVirtualKey(std::uint32_t virtualKey) {
    const auto found = std::ranges::find(positions, virtualKey, &Position::virtualKey);
    return found == positions.end() ? std::nullopt : std::optional{found->x11};
}

std::uint32_t inherentFlags(std::uint32_t virtualKey) {
    if (virtualKey >= VirtualKey::leftArrow && virtualKey <= VirtualKey::upArrow)
        return ModifierFlags::numericPad | ModifierFlags::function;
    if (isAmong(functionKeys, virtualKey) || isAmong(navigationKeys, virtualKey))
        return ModifierFlags::function;
    return isKeypadKey(virtualKey) ? ModifierFlags::numericPad : 0;
}

bool isDigitKey(std::uint32_t virtualKey) {
    return isAmong(rowDigits, virtualKey) || isAmong(keypadDigits, virtualKey);
}

bool isKeypadKey(std::uint32_t virtualKey) {
    return isAmong(keypadDigits, virtualKey) || isAmong(otherKeypadKeys, virtualKey);
}

} // namespace kestrova
