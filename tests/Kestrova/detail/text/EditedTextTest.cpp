#include "Kestrova/detail/text/EditedText.h"

#include <gtest/gtest.h>

#include <random>

namespace kestrova {
namespace {

EditedText of(const QString& content) {
    EditedText text;
    text.setText(content);
    return text;
}

bool isWithinPair(const QString& text, qsizetype position) {
    if (position <= 0 || position >= text.size())
        return false;
    const bool isLineEnd = text[position - 1] == u'\r' && text[position] == u'\n';
    return isLineEnd || (text[position - 1].isHighSurrogate() && text[position].isLowSurrogate());
}

TEST(EditedTextTest, WhatIsTypedTakesThePlaceOfWhatIsMarked) {
    auto text = of(QStringLiteral("one two"));
    text.select(7, 4);
    text.insert(QStringLiteral("셋"));
    EXPECT_EQ(text.text().toString(), QStringLiteral("one 셋"));
    EXPECT_EQ(text.selection(), (TextSelection{5, 5}));
}

TEST(EditedTextTest, ASelectionEndsWithTheText) {
    auto text = of(QStringLiteral("abc"));
    text.select(-5, 99);
    EXPECT_EQ(text.selection(), (TextSelection{0, 3}));
    EXPECT_EQ(text.selectedText(), QStringLiteral("abc"));
}

TEST(EditedTextTest, AnEditThatChangesNothingIsNone) {
    auto text = of(QStringLiteral("abc"));
    int told = 0;
    text.onEdit = [&](const auto&, const auto&) { ++told; };
    text.insert({});
    text.replace(3, 5, {});
    EXPECT_EQ(told, 0);
    EXPECT_FALSE(text.text().isModified());
}

TEST(EditedTextTest, AnEditIsToldOfWithWhatItTookOut) {
    auto text = of(QStringLiteral("abcdef"));
    LargeText::Change told;
    QString taken;
    text.onEdit = [&](const auto& change, const auto& removed) {
        told = change;
        taken = removed;
    };
    text.replace(2, 3, QStringLiteral("XY"));
    EXPECT_EQ(told, (LargeText::Change{2, 3, 2}));
    EXPECT_EQ(taken, QStringLiteral("cde"));
}

TEST(EditedTextTest, MovingTheCaretEndsWhatIsUndoneAsOne) {
    auto text = of({});
    text.insert(QStringLiteral("a"));
    text.insert(QStringLiteral("b"));
    text.select(0, 0);
    text.select(2, 2);
    text.insert(QStringLiteral("c"));
    EXPECT_TRUE(text.undo());
    EXPECT_EQ(text.text().toString(), QStringLiteral("ab"));
    EXPECT_TRUE(text.undo());
    EXPECT_EQ(text.text().toString(), QString());
    EXPECT_FALSE(text.undo());
}

/// What grows together when the `X` at 4 goes.
class PairTest : public testing::TestWithParam<QString> {
protected:
    QString pair() const { return GetParam(); }
    QString apart() const { return u"abc"_qs + pair()[0] + u'X' + pair()[1] + u"def"_qs; }
    QString together() const { return u"abc"_qs + pair() + u"def"_qs; }
};

TEST_P(PairTest, ACaretIsBehindWhatAnEditPutsTogether) {
    auto text = of(apart());
    text.replace(4, 1, {});
    EXPECT_EQ(text.text().toString(), together());
    EXPECT_EQ(text.selection(), (TextSelection{5, 5}));
}

TEST_P(PairTest, ACaretIsBehindWhatAnUndoPutsTogether) {
    auto text = of(together());
    text.replace(4, 0, QStringLiteral("X"));
    EXPECT_EQ(text.selection(), (TextSelection{5, 5}));
    text.undo();
    EXPECT_EQ(text.selection(), (TextSelection{5, 5}));
}

TEST_P(PairTest, ACaretIsBehindWhatARedoPutsTogether) {
    auto text = of(apart());
    text.replace(4, 1, {});
    text.undo();
    text.redo();
    EXPECT_EQ(text.text().toString(), together());
    EXPECT_EQ(text.selection(), (TextSelection{5, 5}));
}

TEST_P(PairTest, ACaretThatIsSetWithinIsBefore) {
    auto text = of(together());
    text.select(4, 4);
    EXPECT_EQ(text.selection(), (TextSelection{3, 3}));
}

TEST_P(PairTest, WhatIsMarkedHoldsAllOfIt) {
    auto text = of(together());
    text.select(4, 7);
    EXPECT_EQ(text.selection(), (TextSelection{3, 7}));
    text.select(4, 1);
    EXPECT_EQ(text.selection(), (TextSelection{5, 1}));
    text.select(1, 4);
    EXPECT_EQ(text.selection(), (TextSelection{1, 5}));
}

INSTANTIATE_TEST_SUITE_P(Kinds, PairTest,
                         testing::Values(QStringLiteral("\r\n"), QStringLiteral("\U0001F600")));

TEST(EditedTextTest, RandomEditsGiveWhatTheyGiveInAPlainString) {
    std::mt19937 random(11);
    auto text = of(QStringLiteral("동해물과 백두산이\r\n마르고 닳도록").repeated(50));
    auto model = text.text().toString();
    const auto upTo = [&](qsizetype most) {
        return std::uniform_int_distribution<qsizetype>(0, most)(random);
    };
    for (int step = 0; step < 3'000; ++step) {
        const auto anchor = upTo(model.size());
        const auto caret = upTo(3) == 0 ? std::min(anchor + upTo(20), model.size()) : anchor;
        const auto typed = QStringLiteral("x\u0000\n\r\U0001F600가").mid(upTo(3), upTo(4));
        text.select(anchor, caret);
        const auto start = text.selection().start();
        const auto marked = text.selection().end() - start;
        ASSERT_TRUE(start == anchor || start == anchor - 1);
        ASSERT_FALSE(isWithinPair(model, start) || isWithinPair(model, start + marked));
        ASSERT_EQ(text.selectedText(), model.mid(start, marked));
        text.insert(typed);
        model.replace(start, marked, typed);
        ASSERT_FALSE(isWithinPair(model, text.selection().caret));
        ASSERT_EQ(text.text().size(), model.size());
    }
    EXPECT_EQ(text.text().toString(), model);
}

} // namespace
} // namespace kestrova
