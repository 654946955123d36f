#include "Platform/x11/KeyModifiers.h"

#include "Platform/KeyEvent.h"
#include "Platform/x11/HeldModifiers.h"

#include <gtest/gtest.h>

#include <xkbcommon/xkbcommon-keysyms.h>

#include <map>
#include <vector>

namespace kestrova {
namespace {

constexpr std::uint16_t shift = XCB_MOD_MASK_SHIFT;
constexpr std::uint16_t lock = XCB_MOD_MASK_LOCK;
constexpr std::uint16_t control = XCB_MOD_MASK_CONTROL;
// Not where most keyboards have them, so that nothing is taken for granted.
constexpr std::uint16_t super = XCB_MOD_MASK_3;
constexpr std::uint16_t alt = XCB_MOD_MASK_5;
constexpr std::uint16_t numLock = XCB_MOD_MASK_4;
constexpr std::uint16_t unrelated = XCB_MOD_MASK_2;

constexpr std::uint16_t keyA = 0;
constexpr std::uint16_t digit1 = 18;
constexpr std::uint16_t keypad1 = 83;
constexpr std::uint16_t f5 = 96;
constexpr std::uint16_t leftArrow = 123;

ModifierMap ownMap() {
    ModifierMap map;
    map.super = super;
    map.alt = alt;
    map.numLock = numLock;
    map.maskOfKey[50] = map.maskOfKey[62] = shift;
    map.maskOfKey[37] = control;
    map.maskOfKey[66] = lock;
    return map;
}

ModifierMap read(const std::vector<xcb_keycode_t>& keyCodes, std::size_t keysPerModifier,
                 const std::map<xcb_keycode_t, std::vector<xcb_keysym_t>>& keysyms) {
    return modifierMap(keyCodes, keysPerModifier, [&](xcb_keycode_t key) {
        const auto found = keysyms.find(key);
        return found == keysyms.end() ? std::vector<xcb_keysym_t>{} : found->second;
    });
}

TEST(ModifierMapTest, EachRoleIsWhereTheServerSaysItIs) {
    const auto map = read({50, 62, 66, 0, 37, 105, 64, 0, 77, 0, 133, 134, 0, 0, 92, 0}, 2,
                          {{64, {XKB_KEY_Alt_L, XKB_KEY_Meta_L}},
                           {77, {XKB_KEY_Num_Lock}},
                           {133, {XKB_KEY_NoSymbol, XKB_KEY_Super_L}},
                           {134, {XKB_KEY_Super_R}},
                           {92, {XKB_KEY_ISO_Level3_Shift}}});
    EXPECT_EQ(map.alt, XCB_MOD_MASK_1);
    EXPECT_EQ(map.numLock, XCB_MOD_MASK_2);
    EXPECT_EQ(map.super, XCB_MOD_MASK_3);
    EXPECT_EQ(map.maskOfKey[50], shift);
    EXPECT_EQ(map.maskOfKey[62], shift);
    EXPECT_EQ(map.maskOfKey[66], lock);
    EXPECT_EQ(map.maskOfKey[105], control);
    EXPECT_EQ(map.maskOfKey[134], XCB_MOD_MASK_3);
    EXPECT_EQ(map.maskOfKey[92], XCB_MOD_MASK_5);
    EXPECT_EQ(map.maskOfKey[0], 0);
    EXPECT_EQ(map.maskOfKey[38], 0);
}

TEST(ModifierMapTest, MetaStandsInForAltOnlyWhereItIsNotSuper) {
    EXPECT_EQ(read({0, 0, 0, 64, 0, 0, 0, 0}, 1, {{64, {XKB_KEY_Meta_L}}}).alt, XCB_MOD_MASK_1);
    EXPECT_EQ(read({0, 0, 0, 64, 0, 0, 0, 0}, 1, {{64, {XKB_KEY_Meta_L, XKB_KEY_Super_L}}}).alt, 0);
    EXPECT_EQ(read({0, 0, 0, 64, 65, 0, 0, 0}, 1, {{64, {XKB_KEY_Meta_L}}, {65, {XKB_KEY_Alt_R}}}).alt,
              XCB_MOD_MASK_2);
}

TEST(ModifierMapTest, AKeyboardWithoutTheKeysHasNoRoles) {
    EXPECT_EQ(read({}, 0, {}), ModifierMap{});
    EXPECT_EQ(read({50, 0, 37, 0, 0, 0, 0, 0}, 1, {{50, {XKB_KEY_Super_L}}}).super, 0);
}

TEST(CarbonModifiersTest, EachModifierHasItsState) {
    struct Row {
        std::uint32_t carbon;
        std::uint16_t state;
    };
    for (const auto& row : std::vector<Row>{{0, 0},
                                            {0x100, super},
                                            {0x200, shift},
                                            {0x800, alt},
                                            {0x1000, control},
                                            {0x300, super | shift},
                                            {0x1B00, super | shift | alt | control}})
        EXPECT_EQ(stateOfCarbonModifiers(row.carbon, keyA, ownMap()), row.state) << std::hex << row.carbon;
}

TEST(CarbonModifiersTest, WhatTheKeyboardLacksIsRefused) {
    ModifierMap bare;
    EXPECT_EQ(stateOfCarbonModifiers(0x100, keyA, bare), std::nullopt);
    EXPECT_EQ(stateOfCarbonModifiers(0x800, keyA, bare), std::nullopt);
    EXPECT_EQ(stateOfCarbonModifiers(0x200, keyA, bare), shift);
    EXPECT_EQ(stateOfCarbonModifiers(0x400, keyA, ownMap()), std::nullopt);
    EXPECT_EQ(stateOfCarbonModifiers(0x20000, keyA, ownMap()), std::nullopt);
    EXPECT_EQ(stateOfCarbonModifiers(0x20000, f5, ownMap()), 0);
    EXPECT_EQ(stateOfCarbonModifiers(0x20100, leftArrow, ownMap()), super);
}

struct FlagsRow {
    std::uint16_t state;
    std::uint16_t key;
    std::uint32_t flags;
};

TEST(EventFlagsTest, GlobalShortcutsTakeEachModifierForItself) {
    for (const auto& row : std::vector<FlagsRow>{{0, keyA, 0},
                                                 {shift, keyA, 0x20000},
                                                 {control, keyA, 0x40000},
                                                 {alt, keyA, 0x80000},
                                                 {super, keyA, 0x100000},
                                                 {lock, keyA, 0x10000},
                                                 {numLock | unrelated, keyA, 0},
                                                 {control | shift, digit1, 0x60000},
                                                 {super, leftArrow, 0xB00000},
                                                 {0, f5, 0x800000}})
        EXPECT_EQ(globalEventFlags(row.state, row.key, ownMap()), row.flags) << std::hex << row.state;
}

TEST(EventFlagsTest, InOwnWindowsControlIsCommand) {
    for (const auto& row : std::vector<FlagsRow>{{0, keyA, 0},
                                                 {shift, keyA, 0x20000},
                                                 {control, keyA, 0x100000},
                                                 {super, keyA, 0x100000},
                                                 {control | super, keyA, 0x100000},
                                                 {alt, keyA, 0x80000},
                                                 {control | alt, keyA, 0x180000},
                                                 {lock, keyA, 0x10000},
                                                 {numLock | unrelated, keyA, 0},
                                                 {control | shift, keyA, 0x120000},
                                                 {control, digit1, 0x100000},
                                                 {shift, digit1, 0x20000},
                                                 {super | shift, digit1, 0x120000},
                                                 {control | shift, digit1, 0x40000},
                                                 {control | shift | numLock, digit1, 0x40000},
                                                 {control | shift | lock, digit1, 0x50000},
                                                 {control | shift | alt, digit1, 0xC0000},
                                                 {control | shift, keypad1, 0x240000},
                                                 {0, keypad1, 0x200000},
                                                 {0, leftArrow, 0xA00000},
                                                 {control, leftArrow, 0xB00000},
                                                 {0, f5, 0x800000}})
        EXPECT_EQ(localEventFlags(row.state, row.key, ownMap()), row.flags)
            << std::hex << row.state << " " << row.key;
}

TEST(EventFlagsTest, ControlAndShiftHeldTogetherAreControl) {
    for (const auto& row : std::vector<FlagsRow>{{0, 0, 0},
                                                 {control, 0, 0x100000},
                                                 {super, 0, 0x100000},
                                                 {shift, 0, 0x20000},
                                                 {alt, 0, 0x80000},
                                                 {super | shift, 0, 0x120000},
                                                 {control | shift, 0, 0x40000},
                                                 {control | shift | numLock, 0, 0x40000}})
        EXPECT_EQ(localHeldFlags(row.state, ownMap()), row.flags) << std::hex << row.state;
}

TEST(HeldModifiersTest, AnEventsKeyIsAddedAndTakenAway) {
    HeldModifiers held;
    EXPECT_EQ(held.afterPress(50, 0, ownMap()), shift);
    EXPECT_EQ(held.afterPress(37, shift, ownMap()), shift | control);
    EXPECT_EQ(held.afterRelease(50, shift | control, ownMap()), control);
    EXPECT_EQ(held.afterRelease(37, control, ownMap()), 0);
}

TEST(HeldModifiersTest, ATwinThatIsStillHeldCounts) {
    HeldModifiers held;
    held.afterPress(50, 0, ownMap());
    held.afterPress(62, shift, ownMap());
    EXPECT_EQ(held.afterRelease(50, shift, ownMap()), shift);
    EXPECT_EQ(held.afterRelease(62, shift, ownMap()), 0);
}

TEST(HeldModifiersTest, WhatWasHeldWhenTheKeyboardWentElsewhereIsForgotten) {
    HeldModifiers held;
    held.afterPress(62, 0, ownMap());
    held.clear();
    held.afterPress(50, 0, ownMap());
    EXPECT_EQ(held.afterRelease(50, shift, ownMap()), 0);
}

TEST(HeldModifiersTest, ALockStaysWithItsFirstReleaseAndGoesWithItsSecond) {
    HeldModifiers held;
    EXPECT_EQ(held.afterPress(66, 0, ownMap()), lock);
    EXPECT_EQ(held.afterRelease(66, lock, ownMap()), lock);
    EXPECT_EQ(held.afterPress(66, lock, ownMap()), lock);
    EXPECT_EQ(held.afterRelease(66, lock, ownMap()), 0);
}

} // namespace
} // namespace kestrova
