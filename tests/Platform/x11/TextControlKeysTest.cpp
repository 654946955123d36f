#include "Platform/x11/TextControlKeys.h"

#include <gtest/gtest.h>

#include <vector>

namespace kestrova {
namespace {

constexpr std::uint16_t shift = XCB_MOD_MASK_SHIFT;
constexpr std::uint16_t control = XCB_MOD_MASK_CONTROL;
constexpr std::uint16_t super = XCB_MOD_MASK_4;
constexpr std::uint16_t alt = XCB_MOD_MASK_1;
constexpr TextControlState empty{};
constexpr TextControlState selected{.hasSelection = true, .canUndo = false};
constexpr TextControlState changed{.hasSelection = false, .canUndo = true};

ModifierMap map() {
    ModifierMap map;
    map.super = super;
    map.alt = alt;
    return map;
}

bool belongs(int key, int state, const TextControlState& text) {
    return belongsToTextControl(static_cast<std::uint16_t>(key), static_cast<std::uint16_t>(state), map(),
                                text);
}

TEST(TextControlKeysTest, CopyBelongsToASelection) {
    EXPECT_TRUE(belongs(8, control, selected));
    EXPECT_FALSE(belongs(8, control, empty));
    EXPECT_FALSE(belongs(8, control, changed));
}

TEST(TextControlKeysTest, UndoBelongsToAChange) {
    EXPECT_TRUE(belongs(6, control, changed));
    EXPECT_FALSE(belongs(6, control, empty));
    EXPECT_FALSE(belongs(6, control, selected));
}

TEST(TextControlKeysTest, EditingKeysAlwaysBelongToTheText) {
    // Backspace, Delete, the four arrows, A, V, X
    for (const int key : {51, 117, 123, 124, 125, 126, 0, 9, 7}) {
        EXPECT_TRUE(belongs(key, control, empty)) << key;
        EXPECT_TRUE(belongs(key, control | shift, empty)) << key;
    }
}

TEST(TextControlKeysTest, CommandsAreAlwaysTheProgramsOwn) {
    // K, E, P, S, grave, 1 to 9
    for (const int key : {40, 14, 35, 1, 50, 18, 19, 20, 21, 23, 22, 26, 28, 25}) {
        for (const auto& text : {empty, selected, changed}) {
            EXPECT_FALSE(belongs(key, control, text)) << key;
            EXPECT_FALSE(belongs(key, control | shift, text)) << key;
        }
    }
}

TEST(TextControlKeysTest, WithSuperOrAltOrWithoutControlNothingIsTheTexts) {
    const TextControlState both{.hasSelection = true, .canUndo = true};
    for (const int key : {8, 6, 51, 117, 123, 124, 125, 126, 0, 9, 7}) {
        for (const int state : {0, int{shift}, int{super}, int{alt}})
            EXPECT_FALSE(belongs(key, state, both)) << key << " " << state;
        EXPECT_FALSE(belongs(key, control | super, both)) << key;
        EXPECT_FALSE(belongs(key, control | alt, both)) << key;
    }
}

} // namespace
} // namespace kestrova
