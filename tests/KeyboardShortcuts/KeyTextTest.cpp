#include "KeyboardShortcuts/KeyText.h"

#include "tests/support/FakeKeyboardLayout.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

class KeyTextTest : public testing::Test {
protected:
    FakeKeyboardLayout layout;
    KeyText keyText{layout, QLocale(QLocale::English)};
};

TEST_F(KeyTextTest, AKeyShowsItsCharacterInUpperCase) {
    EXPECT_EQ(keyText.text(9), QStringLiteral("V"));
    EXPECT_EQ(keyText.text(21), QStringLiteral("4"));
}

TEST_F(KeyTextTest, TheLetterIsThatOfTheLayoutBecauseTheCodeIsStored) {
    layout.keys[9] = QStringLiteral("k");
    EXPECT_EQ(keyText.description({9, 768}), u"⇧⌘K");
    layout.keys[9] = QStringLiteral("é");
    EXPECT_EQ(keyText.description({9, 768}), u"⇧⌘É");
}

TEST_F(KeyTextTest, ASpecialKeyDoesNotAskTheLayout) {
    layout.keys[36] = QStringLiteral("x");
    EXPECT_EQ(keyText.text(36), QStringLiteral("↩"));
}

TEST_F(KeyTextTest, OnlyExactlyOneCharacterIsAText) {
    layout.keys[1] = QString();
    layout.keys[2] = QStringLiteral("ab");
    EXPECT_EQ(keyText.text(1), std::nullopt);
    EXPECT_EQ(keyText.text(2), std::nullopt);
    // One character of two parts, and one outside the basic plane.
    layout.keys[3] = QString::fromUcs4(U"e\u0301");
    layout.keys[4] = QString::fromUcs4(U"\U00010428");
    EXPECT_EQ(keyText.text(3), QString::fromUcs4(U"E\u0301"));
    EXPECT_EQ(keyText.text(4), QString::fromUcs4(U"\U00010400"));
    // One character, but of more than four units.
    layout.keys[5] = QString::fromUcs4(U"e\u0301\u0302\u0303\u0304");
    EXPECT_EQ(keyText.text(5), std::nullopt);
}

TEST_F(KeyTextTest, AKeyThatTheLayoutLacksHasNoText) {
    EXPECT_EQ(keyText.text(127), std::nullopt);
    EXPECT_EQ(keyText.text(-1), std::nullopt);
    // Not key 9 of a code cut to 16 bits.
    EXPECT_EQ(keyText.text(65536 + 9), std::nullopt);
}

TEST_F(KeyTextTest, ADescriptionWithoutATextShowsTheReplacementCharacter) {
    EXPECT_EQ(keyText.description({127, 768}), QStringLiteral("⇧⌘\uFFFD"));
}

TEST_F(KeyTextTest, ADescriptionIsTheGlyphsAndThenTheKey) {
    EXPECT_EQ(keyText.description({9, 768}), u"⇧⌘V");
    EXPECT_EQ(keyText.description({49, 0x1B00}), u"⌃⌥⇧⌘Space");
    EXPECT_EQ(keyText.description({96, 0}), u"F5");
    const KeyText korean{layout, QLocale(QLocale::Korean)};
    EXPECT_EQ(korean.description({49, 0x1B00}), u"⌃⌥⇧⌘스페이스");
}

} // namespace
} // namespace kestrova
