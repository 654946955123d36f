#include "Platform/x11/TextControlKeys.h"

#include <gtest/gtest.h>

#include <vector>

namespace kestrova {
namespace {

constexpr std::uint16_t shiftMask = XCB_MOD_MASK_SHIFT;
constexpr std::uint16_t controlMask = XCB_MOD_MASK_CONTROL;
constexpr std::uint16_t superMask = XCB_MOD_MASK_4;
constexpr std::uint16_t altMask = XCB_MOD_MASK_1;
constexpr TextControlState empty{};
constexpr TextControlState selected{.hasSelection = true, .canUndo = false};
constexpr TextControlState changed{.hasSelection = false, .canUndo = true};

ModifierMap map() {
    ModifierMap map;
    map.super = superMask;
    map.alt = altMask;
    return map;
}

bool belongs(int key, int state, const TextControlState& text) {
    return belongsToTextControl(static_cast<std::uint16_t>(key), static_cast<std::uint16_t>(state), map(),
                                text);
}

TEST(TextControlKeysTest, CopyBelongsToASelection) {
    EXPECT_TRUE(belongs(8, controlMask, selected));
    EXPECT_FALSE(belongs(8, controlMask, empty));
    EXPECT_FALSE(belongs(8, controlMask, changed));
}

TEST(TextControlKeysTest, UndoBelongsToAChange) {
    EXPECT_TRUE(belongs(6, controlMask, changed));
    EXPECT_FALSE(belongs(6, controlMask, empty));
    EXPECT_FALSE(belongs(6, controlMask, selected));
}

TEST(TextControlKeysTest, EditingKeysAlwaysBelongToTheText) {
    // Backspace, Delete, the four arrows, A, V, X
    for (const int key : {51, 117, 123, 124, 125, 126, 0, 9, 7}) {
        EXPECT_TRUE(belongs(key, controlMask, empty)) << key;
        EXPECT_TRUE(belongs(key, controlMask | shiftMask, empty)) << key;
    }
}

TEST(TextControlKeysTest, CommandsAreAlwaysTheProgramsOwn) {
    // K, E, P, S, grave, 1 to 9
    for (const int key : {40, 14, 35, 1, 50, 18, 19, 20, 21, 23, 22, 26, 28, 25}) {
        for (const auto& text : {empty, selected, changed}) {
            EXPECT_FALSE(belongs(key, controlMask, text)) << key;
            EXPECT_FALSE(belongs(key, controlMask | shiftMask, text)) << key;
        }
    }
}

TEST(TextControlKeysTest, WithSuperOrAltOrWithoutControlNothingIsTheTexts) {
    const TextControlState both{.hasSelection = true, .canUndo = true};
    for (const int key : {8, 6, 51, 117, 123, 124, 125, 126, 0, 9, 7}) {
        for (const int state : {0, int{shiftMask}, int{superMask}, int{altMask}})
            EXPECT_FALSE(belongs(key, state, both)) << key << " " << state;
        EXPECT_FALSE(belongs(key, controlMask | superMask, both)) << key;
        EXPECT_FALSE(belongs(key, controlMask | altMask, both)) << key;
    }
}

} // namespace
} // namespace kestrova
