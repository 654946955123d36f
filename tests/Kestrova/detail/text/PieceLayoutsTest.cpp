#include "Kestrova/detail/text/PieceLayouts.h"

#include "Kestrova/look/InterfaceFont.h"

#include <gtest/gtest.h>

#include <random>

namespace kestrova {
namespace {

PieceLayout::Style style(int width = 200) {
    return {fixedInterfaceFont(13), width};
}

TEST(PieceLayoutsTest, APositionBetweenTwoLinesIsOnTheLaterOne) {
    const LargeText text(QString(200, u'x'));
    PieceLayouts layouts(text);
    layouts.setStyle(style());
    const auto& piece = layouts.at(0);
    ASSERT_GT(piece.lineCount(), 1);
    EXPECT_EQ(piece.lineOf(piece.lineEnd(0)), 1);
    EXPECT_EQ(piece.xOf(piece.lineEnd(0)), 0);
}

TEST(PieceLayoutsTest, APointBehindALineIsStillOnThatLine) {
    const LargeText text(QString(200, u'x'));
    PieceLayouts layouts(text);
    layouts.setStyle(style());
    const auto& piece = layouts.at(0);
    EXPECT_EQ(piece.positionAt(0, 10'000), piece.lineEnd(0) - 1);
    EXPECT_EQ(piece.positionAt(piece.lineCount() - 1, 10'000), 200);
}

TEST(PieceLayoutsTest, WhatIsComposedIsInTheLayoutButNotInTheText) {
    const LargeText text(QStringLiteral("abcd"));
    PieceLayouts layouts(text);
    layouts.setStyle(style());
    layouts.setComposition({2, QStringLiteral("한글"), {}});
    const auto& piece = layouts.at(0);
    EXPECT_EQ(piece.layout().preeditAreaText(), QStringLiteral("한글"));
    EXPECT_EQ(piece.inLayout(2), 2);
    EXPECT_EQ(piece.inLayout(3), 5);
    EXPECT_EQ(piece.inText(3), 2);
    EXPECT_EQ(piece.inText(5), 3);
    layouts.setComposition({});
    EXPECT_EQ(layouts.at(0).layout().preeditAreaText(), QString());
}

TEST(PieceLayoutsTest, AnEditLeavesWhatLiesBehindItLaidOut) {
    LargeText text(QStringLiteral("one\ntwo\nthree\n"));
    PieceLayouts layouts(text);
    layouts.setStyle(style());
    layouts.at(0);
    layouts.at(4);
    const auto* const third = &layouts.at(8).layout();
    text.replace(0, 3, QStringLiteral("first"));
    layouts.edited({0, 3, 5});
    EXPECT_EQ(&layouts.at(10).layout(), third);
    EXPECT_EQ(layouts.at(0).layout().text(), QStringLiteral("first"));
}

TEST(PieceLayoutsTest, AfterRandomEditsTheLayoutsAreThoseOfTheText) {
    std::mt19937 random(13);
    LargeText text(QStringLiteral("동해물과 백두산이\n").repeated(30) + QString(9'000, u'x') +
                   QStringLiteral("\r\nshort\n").repeated(30));
    PieceLayouts layouts(text);
    layouts.setStyle(style());
    const auto upTo = [&](qsizetype most) {
        return std::uniform_int_distribution<qsizetype>(0, most)(random);
    };
    for (int step = 0; step < 300; ++step) {
        const auto position = upTo(text.size());
        const auto removed = std::min(upTo(30), text.size() - position);
        const auto inserted = QStringLiteral("new\nline 가나다 \r\n").first(upTo(15));
        text.replace(position, removed, inserted);
        layouts.edited({position, removed, inserted.size()});
        const TextPieces pieces(text);
        for (int look = 0; look < 20; ++look) {
            const auto at = upTo(text.size());
            const auto& layout = layouts.at(at);
            const auto piece = pieces.at(at);
            ASSERT_EQ(layout.piece(), piece);
            ASSERT_EQ(layout.layout().text(), text.mid(piece.start, piece.textEnd - piece.start));
        }
    }
}

TEST(PieceLayoutsTest, OnlyWhatIsToBeKeptIsKept) {
    const LargeText text(QStringLiteral("line\n").repeated(100));
    PieceLayouts layouts(text);
    layouts.setStyle(style());
    for (qsizetype position = 0; position < text.size(); position += 5)
        layouts.at(position);
    const auto all = layouts.units();
    layouts.keepOnly(100, 120);
    EXPECT_LT(layouts.units(), all / 10);
    EXPECT_GT(layouts.units(), 0);
}

} // namespace
} // namespace kestrova
