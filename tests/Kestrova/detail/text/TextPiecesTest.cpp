#include "Kestrova/detail/text/TextPieces.h"

#include "Kestrova/detail/text/LargeText.h"

#include <QStringList>
#include <QTextBoundaryFinder>

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace kestrova {
namespace {

constexpr auto part = TextPieces::partLength;

std::vector<TextPiece> allOf(const LargeText& text) {
    const TextPieces pieces(text);
    std::vector<TextPiece> all{pieces.at(0)};
    while (all.back().end < text.size() || all.back().endsParagraph())
        all.push_back(pieces.at(all.back().end));
    return all;
}

/// Short and long paragraphs with every kind of line end, and with all that is hard to cut.
QString wildText(std::mt19937& random, qsizetype length) {
    const QStringList bits{QStringLiteral("a"),
                           QStringLiteral("word "),
                           QStringLiteral("\n"),
                           QStringLiteral("\r\n"),
                           QStringLiteral("\r"),
                           QString(QChar(QChar::LineSeparator)),
                           QString(QChar(QChar::ParagraphSeparator)),
                           QStringLiteral("가나다"),
                           QStringLiteral("\u1112\u1161\u11ab"),
                           QStringLiteral("e\u0301\u0302"),
                           QStringLiteral("\U0001F468\u200D\U0001F469\u200D\U0001F467"),
                           QString(QChar(0xD800)),
                           QString(QChar(0xDC00)),
                           QString(QChar(0)),
                           QStringLiteral("שלום"),
                           QString(5 * part, u'x'),
                           QStringLiteral("lorem ipsum ").repeated(800)};
    std::uniform_int_distribution<qsizetype> bit(0, bits.size() - 1);
    QString text;
    while (text.size() < length)
        text += bits[bit(random)];
    return text;
}

class LineEndTest : public testing::TestWithParam<QString> {};

TEST_P(LineEndTest, EndsAPieceAndIsKeptInIt) {
    const LargeText text(QStringLiteral("one") + GetParam() + QStringLiteral("two"));
    const auto end = 3 + GetParam().size();
    EXPECT_EQ(allOf(text), (std::vector<TextPiece>{{0, 3, end}, {end, end + 3, end + 3}}));
}

TEST_P(LineEndTest, AtTheEndHasAnEmptyPieceBehindIt) {
    const LargeText text(QStringLiteral("one") + GetParam());
    const auto end = text.size();
    EXPECT_EQ(allOf(text), (std::vector<TextPiece>{{0, 3, end}, {end, end, end}}));
}

INSTANTIATE_TEST_SUITE_P(Kinds, LineEndTest,
                         testing::Values(QStringLiteral("\n"), QStringLiteral("\r\n"), QStringLiteral("\r"),
                                         QString(QChar(QChar::LineSeparator)),
                                         QString(QChar(QChar::ParagraphSeparator))));

TEST(TextPiecesTest, AnEmptyTextIsOneEmptyPiece) {
    const LargeText text;
    EXPECT_EQ(allOf(text), (std::vector<TextPiece>{{0, 0, 0}}));
}

TEST(TextPiecesTest, ALineFeedBeforeACarriageReturnIsTwoLineEnds) {
    const LargeText text(QStringLiteral("\n\r"));
    EXPECT_EQ(allOf(text), (std::vector<TextPiece>{{0, 0, 1}, {1, 1, 2}, {2, 2, 2}}));
}

TEST(TextPiecesTest, APositionWithinALineEndBelongsToItsLine) {
    const LargeText text(QStringLiteral("a\r\nb"));
    EXPECT_EQ(TextPieces(text).at(2), (TextPiece{0, 1, 3}));
}

TEST(TextPiecesTest, ALongParagraphIsCutBetweenWords) {
    const LargeText text(QStringLiteral("word ").repeated(10'000));
    const auto all = allOf(text);
    EXPECT_GT(all.size(), 10U);
    for (const auto& piece : all)
        EXPECT_EQ(piece.start % 5, 0);
}

TEST(TextPiecesTest, OfALongParagraphNoPartIsShort) {
    const LargeText text(QString(1, u'\n') + QString(20 * part, u'x') + u'\n');
    const auto all = allOf(text);
    for (std::size_t index = 1; index + 1 < all.size(); ++index)
        EXPECT_GE(all[index].textEnd - all[index].start, part - 256);
}

TEST(TextPiecesTest, NoGraphemeIsCut) {
    const LargeText text(QStringLiteral("\U0001F468\u200D\U0001F469\u200D\U0001F467e\u0301").repeated(5'000));
    const auto whole = text.toString();
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, whole);
    for (const auto& piece : allOf(text)) {
        graphemes.setPosition(piece.start);
        EXPECT_TRUE(graphemes.isAtBoundary()) << piece.start;
    }
}

TEST(TextPiecesTest, AGraphemeWithoutEndIsCutAllTheSame) {
    const LargeText text(QString(100'000, QChar(0x0301)));
    for (const auto& piece : allOf(text))
        EXPECT_LE(piece.end - piece.start, 3 * part + 256);
}

TEST(TextPiecesTest, EveryPositionTellsOfTheSamePieces) {
    std::mt19937 random(7);
    for (int round = 0; round < 5; ++round) {
        const LargeText text(wildText(random, 60'000));
        const TextPieces pieces(text);
        const auto all = allOf(text);
        qsizetype reached = 0;
        for (const auto& piece : all) {
            ASSERT_EQ(piece.start, reached);
            ASSERT_LE(piece.end - piece.start, 3 * part + 256);
            for (auto position = piece.start; position < piece.end;
                 position += 1 + (piece.end - position) / 7)
                ASSERT_EQ(pieces.at(position), piece) << position;
            reached = piece.end;
        }
        EXPECT_EQ(reached, text.size());
    }
}

TEST(TextPiecesTest, WhatIsPutInMovesNoCutBeforeIt) {
    LargeText text(QString(50 * part, u'x'));
    const auto before = allOf(text);
    text.replace(40 * part, 0, QStringLiteral("y"));
    const auto after = allOf(text);
    for (std::size_t index = 0; index < 38; ++index)
        EXPECT_EQ(before[index], after[index]);
}

TEST(TextPiecesTest, TypingBeforeThemLeavesMostCutsWhereTheyAreInTheText) {
    std::mt19937 random(19);
    std::uniform_int_distribution letter(0, 25);
    std::uniform_int_distribution isBlank(0, 5);
    QString words;
    while (words.size() < 100 * part)
        words += isBlank(random) == 0 ? QChar(u' ') : QChar(u'a' + letter(random));
    LargeText text(words);
    std::size_t moved = 0;
    std::size_t all = 0;
    for (int typed = 0; typed < 20; ++typed) {
        const auto before = allOf(text);
        text.replace(0, 0, QStringLiteral("x"));
        for (const auto& piece : before) {
            ++all;
            moved += piece.start > 0 && TextPieces(text).at(piece.start + 1).start != piece.start + 1;
        }
    }
    EXPECT_LT(moved * 25, all);
}

TEST(TextPiecesTest, AParagraphIsAllOfItsParts) {
    const LargeText text(QStringLiteral("a\n") + QString(10 * part, u'x') + QStringLiteral("\r\nb"));
    EXPECT_EQ(TextPieces(text).paragraph(5 * part), (TextPiece{2, 2 + 10 * part, 2 + 10 * part}));
}

TEST(TextPiecesTest, OfAParagraphWithoutEndOnlySoMuchIsLookedAt) {
    const LargeText text(QString(5'000'000, u'x'));
    const auto paragraph = TextPieces(text).paragraph(2'500'000);
    EXPECT_NEAR(static_cast<double>(paragraph.start), 1'500'000.0, 3.0 * part);
    EXPECT_NEAR(static_cast<double>(paragraph.end), 3'500'000.0, 3.0 * part);
}

} // namespace
} // namespace kestrova
