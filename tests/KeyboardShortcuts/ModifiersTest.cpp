#include "KeyboardShortcuts/Modifiers.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

struct ModifierRow {
    std::uint32_t carbon;
    std::uint32_t eventFlag;
    QString glyph;
};

const std::vector<ModifierRow>& modifierRows() {
    static const std::vector<ModifierRow> all{
        {0x1000, 0x40000, QStringLiteral("⌃")},
        {0x800, 0x80000, QStringLiteral("⌥")},
        {0x200, 0x20000, QStringLiteral("⇧")},
        {0x100, 0x100000, QStringLiteral("⌘")},
        {0x20000, 0x800000, QString::fromUcs4(U"\U0001F310\uFE0E")},
    };
    return all;
}

TEST(ModifiersTest, EachModifierHasItsTwoNumbersAndItsGlyph) {
    for (const auto& row : modifierRows()) {
        EXPECT_EQ(carbonModifiers(row.eventFlag), row.carbon);
        EXPECT_EQ(eventFlags(row.carbon), row.eventFlag);
        EXPECT_EQ(modifierGlyphs(row.carbon), row.glyph);
    }
}

TEST(ModifiersTest, GlyphsStandInOneOrderWithNothingBetween) {
    QString all;
    std::uint32_t mask = 0;
    for (const auto& row : modifierRows()) {
        all += row.glyph;
        mask |= row.carbon;
    }
    EXPECT_EQ(modifierGlyphs(mask), all);
    EXPECT_EQ(modifierGlyphs(0x300), u"⇧⌘");
    EXPECT_EQ(modifierGlyphs(0), QString());
}

TEST(ModifiersTest, EveryCombinationGoesThereAndBack) {
    for (std::uint32_t chosen = 0; chosen < 32; ++chosen) {
        std::uint32_t carbon = 0;
        std::uint32_t flags = 0;
        for (std::size_t bit = 0; bit < modifierRows().size(); ++bit)
            if (chosen & (1u << bit)) {
                carbon |= modifierRows()[bit].carbon;
                flags |= modifierRows()[bit].eventFlag;
            }
        EXPECT_EQ(carbonModifiers(flags), carbon);
        EXPECT_EQ(eventFlags(carbon), flags);
    }
}

TEST(ModifiersTest, FlagsThatAreNoModifierDropOut) {
    EXPECT_EQ(carbonModifiers(ModifierFlags::capsLock | ModifierFlags::numericPad | ModifierFlags::help), 0u);
    EXPECT_EQ(carbonModifiers(0xFFFFFFFF), 0x21B00u);
    EXPECT_EQ(eventFlags(0x400), 0u);
}

} // namespace
} // namespace kestrova
