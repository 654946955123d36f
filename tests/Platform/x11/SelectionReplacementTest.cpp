#include "Platform/x11/SelectionReplacement.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

/// An element whose misbehaviour a test chooses.
class FakeElement final : public EditableElement {
public:
    FakeElement(QString text, TextRange range) : contents(std::move(text)), selected(range) {}

    TextUnit offsetUnit() const override { return TextUnit::Utf16; }
    std::optional<std::u32string> characters() override {
        return isReadable ? std::optional(kestrova::characters(contents, TextUnit::Utf16)) : std::nullopt;
    }
    std::optional<TextRange> selection() override { return selected; }
    Outcome insertText(int offset, const QString& text) override {
        ++insertions;
        if (insertOutcome != Outcome::Done)
            return insertOutcome;
        contents.insert(offset, text.first(std::min<qsizetype>(text.size(), longestInsertion)));
        contents.truncate(longestText);
        return Outcome::Done;
    }
    Outcome deleteText(TextRange range) override {
        ++deletions;
        if (deleteOutcome != Outcome::Done)
            return deleteOutcome;
        contents.remove(range.start, range.end - range.start);
        return Outcome::Done;
    }
    void select(TextRange range) override { selected = range; }

    QString contents;
    TextRange selected;
    Outcome insertOutcome = Outcome::Done;
    Outcome deleteOutcome = Outcome::Done;
    qsizetype longestInsertion = 1000;
    qsizetype longestText = 1000;
    bool isReadable = true;
    int insertions = 0;
    int deletions = 0;
};

bool replace(FakeElement& element, const QString& text) {
    return replaceSelection(element, text, [] { return true; });
}

TEST(SelectionReplacementTest, TheTextTakesTheSelectionsPlaceAndTheCaretFollows) {
    FakeElement element(u"one two three"_s, {4, 7});
    EXPECT_TRUE(replace(element, u"한글😀"_s));
    EXPECT_EQ(element.contents, u"one 한글😀 three"_s);
    EXPECT_EQ(element.selected, (TextRange{8, 8}));
}

TEST(SelectionReplacementTest, WithoutASelectionItGoesInAtTheCaret) {
    FakeElement element(u"ab"_s, {1, 1});
    EXPECT_TRUE(replace(element, u"x"_s));
    EXPECT_EQ(element.contents, u"axb"_s);
    EXPECT_EQ(element.deletions, 0);
}

TEST(SelectionReplacementTest, AnElementThatRefusesKeepsItsTextAndItsSelection) {
    FakeElement element(u"one two"_s, {0, 3});
    element.insertOutcome = Outcome::Refused;
    EXPECT_FALSE(replace(element, u"x"_s));
    EXPECT_EQ(element.contents, u"one two"_s);
    EXPECT_EQ(element.selected, (TextRange{0, 3}));
    EXPECT_EQ(element.deletions, 0);
}

TEST(SelectionReplacementTest, AnElementThatTakesAPartIsPutBack) {
    FakeElement element(u"one two"_s, {0, 3});
    element.longestInsertion = 2;
    EXPECT_FALSE(replace(element, u"word"_s));
    EXPECT_EQ(element.contents, u"one two"_s);
    EXPECT_EQ(element.selected, (TextRange{0, 3}));
}

TEST(SelectionReplacementTest, WhatAnElementCutOffAtItsEndIsPutBack) {
    FakeElement element(u"abcdefgh"_s, {2, 2});
    element.longestText = 8;
    EXPECT_FALSE(replace(element, u"12"_s));
    EXPECT_EQ(element.contents, u"abcdefgh"_s);
}

TEST(SelectionReplacementTest, AnElementWhoseSelectionCannotBeDeletedIsPutBackOrTheAnswerIsYes) {
    FakeElement element(u"one two"_s, {0, 3});
    element.deleteOutcome = Outcome::Refused;
    // The insertion cannot be taken back either: a caller that pastes by keys now would paste twice.
    EXPECT_TRUE(replace(element, u"x"_s));
    EXPECT_EQ(element.insertions, 1);
}

TEST(SelectionReplacementTest, AnInsertionThatIsNotAnsweredCountsAsDone) {
    FakeElement element(u"one"_s, {0, 3});
    element.insertOutcome = Outcome::Silent;
    EXPECT_TRUE(replace(element, u"x"_s));
    EXPECT_EQ(element.deletions, 0);
}

TEST(SelectionReplacementTest, NothingIsWrittenWithoutLeaveOrWithoutKnowingTheText) {
    FakeElement element(u"one"_s, {0, 3});
    EXPECT_FALSE(replaceSelection(element, u"x"_s, [] { return false; }));
    element.isReadable = false;
    EXPECT_FALSE(replace(element, u"x"_s));
    element.isReadable = true;
    for (const TextRange range : {TextRange{-1, 1}, TextRange{2, 1}, TextRange{0, 4}}) {
        element.selected = range;
        EXPECT_FALSE(replace(element, u"x"_s));
    }
    EXPECT_EQ(element.insertions + element.deletions, 0);
}

} // namespace
} // namespace kestrova
