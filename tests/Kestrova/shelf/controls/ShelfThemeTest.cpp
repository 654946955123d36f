#include "Kestrova/shelf/controls/ShelfTheme.h"
#include "Kestrova/look/Contrast.h"

#include <QPalette>

#include <gtest/gtest.h>
#include <initializer_list>

namespace kestrova {
namespace {

using Scheme = ShelfTheme::Scheme;

/// What is seen where `top` lies on an opaque colour.
QColor over(const QColor& top, const QColor& below) {
    const float alpha = top.alphaF();
    const auto mix = [alpha](float a, float b) { return a * alpha + b * (1 - alpha); };
    return QColor::fromRgbF(mix(top.redF(), below.redF()), mix(top.greenF(), below.greenF()),
                            mix(top.blueF(), below.blueF()));
}

class ShelfThemeTest : public testing::TestWithParam<Scheme> {
protected:
    const ShelfTheme theme = ShelfTheme::of(GetParam());

    void expectReadable(const QColor& text, std::initializer_list<QColor> layers, const char* where) const {
        expectContrast(4.5, text, layers, where);
    }
    void expectVisible(const QColor& symbol, std::initializer_list<QColor> layers, const char* where) const {
        expectContrast(3, symbol, layers, where);
    }

private:
    void expectContrast(double least, const QColor& top, std::initializer_list<QColor> layers,
                        const char* where) const {
        for (const auto desktop : {QColor(Qt::white), QColor(Qt::black)}) {
            auto ground = over(theme.ground, desktop);
            for (const auto& layer : layers)
                ground = over(layer, ground);
            EXPECT_GE(contrast(over(top, ground), ground), least)
                << where << " over " << qPrintable(desktop.name());
        }
    }
};

TEST_P(ShelfThemeTest, TextsCanBeReadOnEveryGroundOverAnyDesktop) {
    expectReadable(theme.text, {}, "row");
    expectReadable(theme.text, {theme.selection}, "selected row");
    expectReadable(theme.text, {theme.hover}, "hovered row");
    expectReadable(theme.text, {theme.sidebarHighlight}, "sidebar row");
    expectReadable(theme.text, {theme.field}, "field");
    expectReadable(theme.text, {theme.focusedField}, "focused field");
    expectReadable(theme.text, {theme.selectedChip}, "selected chip");
    expectReadable(theme.text, {theme.card}, "card");
    expectReadable(theme.text, {theme.card, theme.selection}, "selected row on a card");
    expectReadable(theme.text, {theme.card, theme.hover}, "hovered row on a card");
    expectReadable(theme.secondaryText, {}, "badge");
    expectReadable(theme.secondaryText, {theme.selection}, "badge of a selected row");
    expectReadable(theme.secondaryText, {theme.hover}, "badge of a hovered row");
    expectReadable(theme.secondaryText, {theme.sidebarHighlight}, "count of a sidebar row");
    expectReadable(theme.secondaryText, {theme.focusedField}, "placeholder");
    expectReadable(theme.secondaryText, {theme.chip}, "chip");
    expectReadable(theme.secondaryText, {theme.chip, theme.hover}, "hovered chip");
    expectReadable(theme.secondaryText, {theme.card}, "title of a card");
    expectReadable(theme.keyCapsuleText, {theme.keyCapsule}, "keys");
    expectReadable(theme.keyCapsuleText, {theme.selection, theme.keyCapsule}, "keys on a selected row");
    expectReadable(theme.keyCapsuleText, {theme.sidebarHighlight, theme.keyCapsule}, "keys on a sidebar row");
    expectReadable(theme.keyCapsuleText, {theme.selectedChip, theme.keyCapsule}, "keys on a chip");
    expectReadable(theme.keyCapsuleText, {theme.card, theme.keyCapsule}, "keys on a card");
}

TEST_P(ShelfThemeTest, HintsCanBeRead) {
    expectReadable(theme.hintText, {theme.hintBar}, "label");
    expectReadable(theme.keyCapsuleText, {theme.hintBar, theme.keycap}, "keycap");
}

TEST_P(ShelfThemeTest, SymbolsThatMeanSomethingCanBeSeen) {
    expectVisible(theme.symbol, {}, "symbol");
    expectVisible(theme.symbol, {theme.selection}, "symbol of a selected row");
    expectVisible(theme.symbol, {theme.sidebarHighlight}, "symbol of a sidebar row");
    expectVisible(theme.symbol, {theme.chip}, "symbol of a chip");
    expectVisible(theme.activeSymbol, {theme.selectedChip}, "symbol of a selected chip");
    expectVisible(theme.activeSymbol, {theme.hover}, "hovered button that is on");
    expectVisible(theme.inactiveSymbol, {}, "button that is off");
    expectVisible(theme.inactiveSymbol, {theme.hover}, "hovered button that is off");
    expectVisible(theme.inactiveSymbol, {theme.focusedField}, "button that empties the search");
    expectVisible(theme.laneBar, {theme.sidebarHighlight}, "bar of the lane");
    expectVisible(theme.idleBar, {theme.sidebarHighlight}, "bar of a selected row");
    expectVisible(theme.chipRing, {theme.chip}, "ring of a chip");
}

TEST_P(ShelfThemeTest, TheMaterialIsNearlyOpaque) {
    EXPECT_GE(theme.ground.alphaF(), 0.92F);
    EXPECT_EQ(theme.card.alpha(), 255);
}

TEST_P(ShelfThemeTest, MarkedTextCanBeRead) {
    const auto palette = theme.palette();
    EXPECT_GE(contrast(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight)), 4.5);
}

INSTANTIATE_TEST_SUITE_P(Schemes, ShelfThemeTest, testing::Values(Scheme::light, Scheme::dark));

TEST(ShelfThemeSchemeTest, ThePreferenceHoldsAndAnythingElseFollowsTheDesktop) {
    QPalette lightDesktop(Qt::white);
    lightDesktop.setColor(QPalette::Window, Qt::white);
    lightDesktop.setColor(QPalette::WindowText, Qt::black);
    QPalette darkDesktop(lightDesktop);
    darkDesktop.setColor(QPalette::Window, Qt::black);
    darkDesktop.setColor(QPalette::WindowText, Qt::white);
    using Desktop = Appearance::ColorScheme;
    for (const auto said :
         {std::optional<Desktop>(), std::optional(Desktop::light), std::optional(Desktop::dark)})
        for (const auto& palette : {lightDesktop, darkDesktop}) {
            EXPECT_EQ(ShelfTheme::scheme(u"light", said, palette), Scheme::light);
            EXPECT_EQ(ShelfTheme::scheme(u"dark", said, palette), Scheme::dark);
        }
    for (const auto* const other : {u"system", u"", u"Dark"}) {
        for (const auto& palette : {lightDesktop, darkDesktop}) {
            EXPECT_EQ(ShelfTheme::scheme(other, Desktop::light, palette), Scheme::light);
            EXPECT_EQ(ShelfTheme::scheme(other, Desktop::dark, palette), Scheme::dark);
        }
        EXPECT_EQ(ShelfTheme::scheme(other, std::nullopt, lightDesktop), Scheme::light);
        EXPECT_EQ(ShelfTheme::scheme(other, std::nullopt, darkDesktop), Scheme::dark);
    }
}

} // namespace
} // namespace kestrova
