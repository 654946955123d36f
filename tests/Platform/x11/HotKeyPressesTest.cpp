#include "Platform/x11/HotKeyPresses.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

constexpr xcb_keycode_t key = 55;
constexpr HotKeyIdentifier identifier{.signature = 1, .number = 2};

TEST(HotKeyPressesTest, APressIsNewOnceAndEndsWithItsRelease) {
    HotKeyPresses presses;
    presses.onRawPress(key, 100);
    EXPECT_TRUE(presses.isNew(key, 100));
    EXPECT_TRUE(presses.noteTold(key, identifier));
    EXPECT_FALSE(presses.isNew(key, 100));
    EXPECT_EQ(presses.onRawRelease(key), identifier);
    EXPECT_EQ(presses.onRawRelease(key), std::nullopt);
    presses.onRawPress(key, 200);
    EXPECT_TRUE(presses.isNew(key, 200));
}

TEST(HotKeyPressesTest, ARepeatIsNotNewWhetherItWasToldOfOrNot) {
    HotKeyPresses presses;
    presses.onRawPress(key, 100);
    EXPECT_FALSE(presses.isNew(key, 130));
    presses.noteTold(key, identifier);
    EXPECT_FALSE(presses.isNew(key, 160));
}

TEST(HotKeyPressesTest, ARepeatedRawPressIsNotNew) {
    HotKeyPresses presses;
    presses.onRawPress(key, 100);
    presses.noteTold(key, identifier);
    presses.onRawPress(key, 130);
    EXPECT_FALSE(presses.isNew(key, 130));
    EXPECT_EQ(presses.onRawRelease(key), identifier);
}

TEST(HotKeyPressesTest, AGrabThatComesAfterTheReleaseIsReleasedAtOnce) {
    HotKeyPresses presses;
    presses.onRawPress(key, 100);
    EXPECT_EQ(presses.onRawRelease(key), std::nullopt);
    EXPECT_TRUE(presses.isNew(key, 100));
    EXPECT_FALSE(presses.noteTold(key, identifier));
    EXPECT_FALSE(presses.isNew(key, 100));
    EXPECT_EQ(presses.onRawRelease(key), std::nullopt);
}

TEST(HotKeyPressesTest, AKeyThatWasDownBeforeIsNotNew) {
    HotKeyPresses presses;
    EXPECT_FALSE(presses.isNew(key, 100));
    EXPECT_EQ(presses.onRawRelease(key), std::nullopt);
}

TEST(HotKeyPressesTest, PressesEndWithTheirKeyboard) {
    HotKeyPresses presses;
    constexpr xcb_keycode_t other = 56;
    presses.onRawPress(key, 100);
    presses.noteTold(key, identifier);
    presses.onRawPress(other, 110);
    presses.noteTold(other, {.signature = 1, .number = 3});
    EXPECT_EQ(presses.endUnless([](xcb_keycode_t k) { return k == other; }), std::vector{identifier});
    EXPECT_EQ(presses.onRawRelease(key), std::nullopt);
    EXPECT_TRUE(presses.onRawRelease(other));
}

} // namespace
} // namespace kestrova
