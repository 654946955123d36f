#include "Kestrova/detail/Characters.h"

#include <QTextBoundaryFinder>

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace kestrova {
namespace {

struct CountedText {
    QString text;
    qsizetype count;

    friend void PrintTo(const CountedText& sample, std::ostream* stream) {
        *stream << sample.text.toStdString();
    }
};

class CharacterCountTest : public testing::TestWithParam<CountedText> {};

TEST_P(CharacterCountTest, CountsAsAPersonDoes) {
    EXPECT_EQ(characterCount(GetParam().text), GetParam().count);
}

INSTANTIATE_TEST_SUITE_P(Plain, CharacterCountTest,
                         testing::Values(CountedText{QString(), 0}, CountedText{u"twelve chars"_qs, 12},
                                         CountedText{u"한글과 blank"_qs, 9}, CountedText{u"a\nb\n"_qs, 4}));
INSTANTIATE_TEST_SUITE_P(
    OfSeveralUnits, CharacterCountTest,
    testing::Values(CountedText{u"\r\n"_qs, 1}, CountedText{u"a\r\nb\rc"_qs, 5},
                    CountedText{u"e\u0301"_qs, 1}, CountedText{u"👩‍💻"_qs, 1},
                    CountedText{u"👨‍👩‍👧‍👦!"_qs, 2}, CountedText{u"🇰🇷🇰🇷"_qs, 2},
                    CountedText{u"👍🏽"_qs, 1}, CountedText{u"\u1112\u1161\u11ab"_qs, 1},
                    // A leading consonant joins the syllable behind it, and that the final one.
                    CountedText{u"\u1100가"_qs, 1}, CountedText{u"가\u11a8나"_qs, 2}));

TEST(CharacterCountTest, HalvesOfCharactersCountForThemselves) {
    EXPECT_EQ(characterCount(QString(QChar(0xD83D)) + u'a' + QChar(0xDC69)), 3);
    EXPECT_EQ(characterCount(QString(QChar(0xD83D))), 1);
}

qsizetype countedInOneGo(const QString& text) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() != -1)
        ++count;
    return count;
}

QString randomText(std::mt19937& random, qsizetype length) {
    const std::array<QString, 14> pieces{u"a"_qs,      u"가"_qs,     u"\r"_qs,     u"\n"_qs,     u"\u0301"_qs,
                                         u"\u1100"_qs, u"\u1161"_qs, u"\u11a8"_qs, u"\u200d"_qs, u"👩"_qs,
                                         u"💻"_qs,      u"🇰"_qs,      u"🏽"_qs,   u"\u0600"_qs};
    std::uniform_int_distribution<std::size_t> any(0, pieces.size() - 1);
    QString text;
    while (text.size() < length)
        text += pieces.at(any(random));
    return text;
}

TEST(CharacterCountTest, SlicesMakeNoDifference) {
    std::mt19937 random(20);
    for (int round = 0; round < 60; ++round) {
        const auto text = randomText(random, 3000);
        const auto expected = countedInOneGo(text);
        for (const qsizetype slice : {1, 7, 1023, 5000}) {
            CharacterCount count(text);
            while (!count.isComplete())
                count.advance(slice);
            ASSERT_EQ(count.value(), expected) << "slices of " << slice << ", round " << round;
        }
    }
}

TEST(CharacterCountTest, ACharacterOfManyThousandUnitsIsOne) {
    EXPECT_EQ(characterCount(u'a' + QString(20'000, QChar(0x301)) + u'b'), 2);
}

TEST(CharacterCountTest, ACharacterWithoutEndIsOneToo) {
    const QString marks(1'000'000, QChar(0x301));
    EXPECT_EQ(characterCount(u'a' + marks + u'b'), 2);
    EXPECT_EQ(characterCount(u'a' + marks), 1);
    const auto pairs = QStringLiteral("\U000E0100").repeated(500'000);
    EXPECT_EQ(characterCount(u"ab"_qs + pairs + u"cd"_qs), 4);
}

TEST(CharacterCountTest, ItComesBackFromWithinACharacterWithoutEnd) {
    CharacterCount count(QString(2'000'000, QChar(0x301)));
    count.advance(100'000);
    EXPECT_FALSE(count.isComplete());
    while (!count.isComplete())
        count.advance(100'000);
    EXPECT_EQ(count.value(), 1);
}

TEST(FirstCharactersTest, NoCharacterIsCut) {
    const auto family = u"👨‍👩‍👧‍👦"_qs;
    EXPECT_EQ(firstCharacters(family.repeated(5), 3), family.repeated(3));
    EXPECT_EQ(firstCharacters(u"ab"_qs, 3), u"ab");
    EXPECT_EQ(firstCharacters(u"abcd"_qs, 3), u"abc");
    EXPECT_EQ(firstCharacters(u"abe\u0301f"_qs, 3), u"abe\u0301");
}

} // namespace
} // namespace kestrova
