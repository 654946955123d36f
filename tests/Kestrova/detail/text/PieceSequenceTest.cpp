#include "Kestrova/detail/text/PieceSequence.h"

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr SourcePiece first{.source = 0, .offset = 0, .length = 100};
constexpr SourcePiece other{.source = 1, .offset = 7, .length = 3};

SourcePieces piecesOf(const PieceSequence& sequence) {
    SourcePieces pieces;
    for (qsizetype position = 0; position < sequence.size(); position += pieces.back().length)
        pieces.push_back(sequence.from(position));
    return pieces;
}

PieceSequence sequenceOf(const SourcePieces& pieces) {
    PieceSequence sequence;
    sequence.replace(0, 0, pieces);
    return sequence;
}

TEST(PieceSequenceTest, WithoutPiecesItIsEmpty) {
    const PieceSequence sequence;
    EXPECT_EQ(sequence.size(), 0);
    EXPECT_EQ(sequence.count(), 0U);
}

TEST(PieceSequenceTest, AnInsertionWithinAPieceCutsItInTwo) {
    auto sequence = sequenceOf({first});
    EXPECT_THAT(sequence.replace(40, 0, {&other, 1}), IsEmpty());
    EXPECT_THAT(piecesOf(sequence), ElementsAre(SourcePiece{0, 0, 40}, other, SourcePiece{0, 40, 60}));
    EXPECT_EQ(sequence.size(), 103);
}

TEST(PieceSequenceTest, ARemovalGivesBackWhatItTookOutOfEachPiece) {
    auto sequence = sequenceOf({first, other});
    EXPECT_THAT(sequence.replace(90, 11, {}), ElementsAre(SourcePiece{0, 90, 10}, SourcePiece{1, 7, 1}));
    EXPECT_THAT(piecesOf(sequence), ElementsAre(SourcePiece{0, 0, 90}, SourcePiece{1, 8, 2}));
}

TEST(PieceSequenceTest, WhatIsPutBackGrowsTogetherAgain) {
    auto sequence = sequenceOf({first});
    const auto taken = sequence.replace(20, 30, {});
    EXPECT_EQ(sequence.count(), 2U);
    sequence.replace(20, 0, taken);
    EXPECT_THAT(piecesOf(sequence), ElementsAre(first));
    EXPECT_EQ(sequence.count(), 1U);
}

TEST(PieceSequenceTest, TypingOnAtOnePlaceStaysOnePiece) {
    auto sequence = sequenceOf({first});
    for (qsizetype typed = 0; typed < 1000; ++typed) {
        const SourcePiece unit{.source = 1, .offset = typed, .length = 1};
        sequence.replace(50 + typed, 0, {&unit, 1});
    }
    EXPECT_THAT(piecesOf(sequence),
                ElementsAre(SourcePiece{0, 0, 50}, SourcePiece{1, 0, 1000}, SourcePiece{0, 50, 50}));
}

TEST(PieceSequenceTest, APositionIsFoundOnBothSidesOfTheLastEdit) {
    auto sequence = sequenceOf({{0, 0, 10}, {1, 0, 10}, {2, 0, 10}, {3, 0, 10}});
    sequence.replace(20, 0, {});
    EXPECT_EQ(sequence.from(0), (SourcePiece{0, 0, 10}));
    EXPECT_EQ(sequence.from(9), (SourcePiece{0, 9, 1}));
    EXPECT_EQ(sequence.from(10), (SourcePiece{1, 0, 10}));
    EXPECT_EQ(sequence.from(19), (SourcePiece{1, 9, 1}));
    EXPECT_EQ(sequence.from(20), (SourcePiece{2, 0, 10}));
    EXPECT_EQ(sequence.from(29), (SourcePiece{2, 9, 1}));
    EXPECT_EQ(sequence.from(30), (SourcePiece{3, 0, 10}));
    EXPECT_EQ(sequence.from(39), (SourcePiece{3, 9, 1}));
}

} // namespace
} // namespace kestrova
