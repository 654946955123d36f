#include "Kestrova/detail/text/TextScroll.h"

#include "Kestrova/look/InterfaceFont.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace kestrova {
namespace {

struct Shown {
    explicit Shown(const QString& content, int width = 300, int height = 200)
        : text(content), layouts(text), scroll(text, layouts) {
        layouts.setStyle({fixedInterfaceFont(13), width});
        scroll.setHeight(height);
    }

    LargeText text;
    PieceLayouts layouts;
    TextScroll scroll;
};

QString numberedLines(int count) {
    QString text;
    for (int line = 0; line < count; ++line)
        text += QStringLiteral("line %1 of some words that may well be wrapped\n").arg(line);
    return text;
}

QString longLine() {
    return QStringLiteral("lorem ipsum 동해물과 백두산이 ").repeated(100'000);
}

class TextScrollTest : public testing::TestWithParam<QString> {};

TEST_P(TextScrollTest, DownAndUpAgainIsWhereItWas) {
    Shown shown(GetParam());
    std::mt19937 random(3);
    std::uniform_int_distribution distance(1, 5'000);
    shown.scroll.moveToUnits(shown.text.size() / 2);
    const auto middle = shown.scroll.place();
    for (int round = 0; round < 20; ++round) {
        const int pixels = distance(random);
        shown.scroll.scrollBy(pixels);
        EXPECT_NE(shown.scroll.place(), middle);
        shown.scroll.scrollBy(-pixels);
        EXPECT_EQ(shown.scroll.place(), middle);
    }
}

TEST_P(TextScrollTest, StepByStepComesToTheSamePlaceAsAtOnce) {
    Shown shown(GetParam());
    shown.scroll.moveToUnits(shown.text.size() / 2);
    const auto middle = shown.scroll.place();
    shown.scroll.scrollBy(-3'700);
    const auto atOnce = shown.scroll.place();
    shown.scroll.moveTo(middle);
    for (int step = 0; step < 100; ++step)
        shown.scroll.scrollBy(-37);
    EXPECT_EQ(shown.scroll.place(), atOnce);
}

TEST_P(TextScrollTest, ItGoesNoFurtherThanTheEnds) {
    Shown shown(GetParam());
    shown.scroll.scrollBy(-10);
    EXPECT_EQ(shown.scroll.place(), TextScroll::Place{});
    shown.scroll.moveToUnits(shown.text.size());
    EXPECT_EQ(shown.scroll.place(), shown.scroll.last());
    shown.scroll.scrollBy(1'000);
    EXPECT_EQ(shown.scroll.place(), shown.scroll.last());
}

TEST_P(TextScrollTest, AtTheEndTheLastLineIsAtTheBottom) {
    Shown shown(GetParam());
    shown.scroll.moveTo(shown.scroll.last());
    const auto caret = shown.scroll.caretRect(shown.text.size());
    ASSERT_TRUE(caret);
    EXPECT_EQ(caret->bottom(), shown.scroll.height());
}

TEST_P(TextScrollTest, WhatIsRevealedIsSeenWhole) {
    Shown shown(GetParam());
    std::mt19937 random(5);
    std::uniform_int_distribution<qsizetype> anywhere(0, shown.text.size());
    for (int round = 0; round < 30; ++round) {
        const auto position = anywhere(random);
        shown.scroll.reveal(position);
        const auto caret = shown.scroll.caretRect(position);
        ASSERT_TRUE(caret) << position;
        EXPECT_GE(caret->top(), 0);
        EXPECT_LE(caret->bottom(), shown.scroll.height());
        const auto place = shown.scroll.place();
        shown.scroll.reveal(position);
        EXPECT_EQ(shown.scroll.place(), place) << "it was seen already";
    }
}

TEST_P(TextScrollTest, APointOfALineIsAtItsPositions) {
    Shown shown(GetParam());
    shown.scroll.moveToUnits(shown.text.size() / 3);
    const auto first = shown.scroll.positionAt({0, 100});
    const auto caret = shown.scroll.caretRect(first);
    ASSERT_TRUE(caret);
    EXPECT_EQ(caret->x(), 0);
    EXPECT_LE(caret->top(), 100);
    EXPECT_GT(caret->bottom(), 100);
}

TEST_P(TextScrollTest, UnitsAboveLeadBackToThePlace) {
    Shown shown(GetParam());
    shown.scroll.moveToUnits(shown.text.size() / 2);
    for (int step = 0; step < 40; ++step) {
        shown.scroll.scrollBy(7);
        const auto units = shown.scroll.unitsAbove(shown.scroll.place());
        shown.scroll.moveToUnits(units);
        EXPECT_EQ(shown.scroll.unitsAbove(shown.scroll.place()), units);
    }
}

TEST_P(TextScrollTest, AnotherWidthKeepsTheFirstLineInSight) {
    Shown shown(GetParam());
    shown.scroll.moveToUnits(shown.text.size() / 2);
    const auto first = shown.scroll.place().line;
    shown.layouts.setStyle({fixedInterfaceFont(13), 170});
    shown.scroll.relaid();
    EXPECT_TRUE(shown.scroll.caretRect(first));
}

TEST_P(TextScrollTest, AnEditAboveLeavesTheSameTextInSight) {
    Shown shown(GetParam());
    shown.scroll.moveToUnits(shown.text.size() / 2);
    const auto first = shown.scroll.place().line;
    shown.text.replace(0, 0, QStringLiteral("new\nlines\n"));
    const LargeText::Change change{0, 0, 10};
    shown.layouts.edited(change);
    shown.scroll.edited(change);
    const auto caret = shown.scroll.caretRect(first + 10);
    ASSERT_TRUE(caret);
    EXPECT_LE(caret->top(), 0) << "it is still on the first line";
}

TEST_P(TextScrollTest, OnlyWhatIsNearTheViewportIsLaidOut) {
    Shown shown(GetParam());
    shown.scroll.moveToUnits(shown.text.size() / 2);
    shown.scroll.forEachVisible([](const PieceLayout&, int) {});
    EXPECT_LT(shown.layouts.units(), 40'000);
}

INSTANTIATE_TEST_SUITE_P(Texts, TextScrollTest, testing::Values(numberedLines(20'000), longLine()),
                         [](const auto& text) { return text.index == 0 ? "Lines" : "OneLine"; });

TEST(ShortTextScrollTest, ATextThatHasRoomDoesNotScroll) {
    Shown shown(QStringLiteral("one\ntwo\n"));
    EXPECT_EQ(shown.scroll.last(), TextScroll::Place{});
    shown.scroll.scrollBy(50);
    EXPECT_EQ(shown.scroll.place(), TextScroll::Place{});
}

TEST(ShortTextScrollTest, BelowTheTextIsItsLastLine) {
    Shown shown(QStringLiteral("one\ntwo"));
    EXPECT_EQ(shown.scroll.positionAt({1'000, 190}), 7);
}

} // namespace
} // namespace kestrova
