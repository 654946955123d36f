#include "KeyboardShortcuts/Shortcut.h"

#include "KeyboardShortcuts/ShortcutName.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

const Shortcut commandShiftV{9, 768};

TEST(ShortcutTest, IsMadeFromAKeyAndModifiersInTheEventNumbering) {
    EXPECT_EQ(Shortcut::of(Key::v, ModifierFlags::command | ModifierFlags::shift), commandShiftV);
    EXPECT_EQ(Shortcut::of(Key::f5, 0), (Shortcut{96, 0}));
}

TEST(ShortcutTest, OfAnEventKeepsOnlyTheModifiers) {
    KeyEvent event;
    event.keyCode = 9;
    event.modifierFlags = ModifierFlags::command | ModifierFlags::shift | ModifierFlags::capsLock |
                          ModifierFlags::numericPad | ModifierFlags::help;
    EXPECT_EQ(Shortcut::of(event), commandShiftV);
    event.modifierFlags = ModifierFlags::function | ModifierFlags::control;
    EXPECT_EQ(Shortcut::of(event), (Shortcut{9, 0x21000}));
}

TEST(ShortcutTest, IsStoredAsAnObjectOfTwoIntegers) {
    EXPECT_EQ(encoded(commandShiftV), QStringLiteral(R"({"carbonKeyCode":9,"carbonModifiers":768})"));
}

TEST(ShortcutTest, WhatIsStoredReadsBack) {
    for (const auto& shortcut : {commandShiftV, Shortcut{0, 0}, Shortcut{126, 0x21B00}, Shortcut{-1, -2},
                                 Shortcut{std::int64_t{1} << 40, 0}})
        EXPECT_EQ(decodedShortcut(encoded(shortcut)), shortcut);
    EXPECT_EQ(
        decodedShortcut(QStringLiteral("{ \"carbonModifiers\": 768,\n\"carbonKeyCode\": 9, \"x\": [] }")),
        commandShiftV);
}

TEST(ShortcutTest, NearlyRightTextsAreNoShortcut) {
    for (const char* const text : {"",
                                   " ",
                                   "{}",
                                   "9",
                                   "null",
                                   "false",
                                   "[9,768]",
                                   "\"carbonKeyCode\"",
                                   "{\"carbonKeyCode\":9}",
                                   "{\"carbonModifiers\":768}",
                                   "{\"carbonKeyCode\":9,\"carbonModifiers\":768",
                                   "{\"carbonKeyCode\":9,\"carbonModifiers\":768}}",
                                   "{\"carbonkeycode\":9,\"carbonModifiers\":768}",
                                   "{\"carbonKeyCode\":\"9\",\"carbonModifiers\":768}",
                                   "{\"carbonKeyCode\":9.5,\"carbonModifiers\":768}",
                                   "{\"carbonKeyCode\":9,\"carbonModifiers\":1e300}",
                                   "{\"carbonKeyCode\":null,\"carbonModifiers\":768}",
                                   "{\"carbonKeyCode\":true,\"carbonModifiers\":768}",
                                   "[{\"carbonKeyCode\":9,\"carbonModifiers\":768}]",
                                   "{'carbonKeyCode':9,'carbonModifiers':768}"})
        EXPECT_EQ(decodedShortcut(QString::fromUtf8(text)), std::nullopt) << text;
}

TEST(ShortcutTest, EqualsAndHashesByItsTwoIntegers) {
    EXPECT_EQ(qHash(commandShiftV), qHash(Shortcut{9, 768}));
    EXPECT_NE(commandShiftV, (Shortcut{9, 256}));
    EXPECT_NE(commandShiftV, (Shortcut{8, 768}));
}

TEST(ShortcutNameTest, EqualsAndHashesByItsFields) {
    const ShortcutName name{QStringLiteral("a"), commandShiftV};
    const ShortcutName same{QStringLiteral("a"), commandShiftV};
    EXPECT_EQ(name, same);
    EXPECT_EQ(qHash(name), qHash(same));
    EXPECT_NE(name, (ShortcutName{QStringLiteral("b"), commandShiftV}));
    EXPECT_NE(name, (ShortcutName{QStringLiteral("a"), std::nullopt}));
}

} // namespace
} // namespace kestrova
