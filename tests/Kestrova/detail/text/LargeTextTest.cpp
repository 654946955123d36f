#include "Kestrova/detail/text/LargeText.h"

#include <gmock/gmock.h>

#include <limits>
#include <random>
#include <vector>

namespace kestrova {
namespace {

using Change = LargeText::Change;

void type(LargeText& text, qsizetype position, const QString& typed) {
    for (const auto unit : typed)
        text.replace(position++, 0, QString(unit));
}

TEST(LargeTextTest, AnEmptyTextHasNothing) {
    const LargeText text;
    EXPECT_TRUE(text.isEmpty());
    EXPECT_EQ(text.toString(), QString());
    EXPECT_EQ(text.mid(0, 10), QString());
    EXPECT_FALSE(text.isModified());
    EXPECT_FALSE(text.canUndo());
    EXPECT_FALSE(text.canRedo());
}

TEST(LargeTextTest, AnEditPutsOneTextInThePlaceOfAnother) {
    LargeText text(QStringLiteral("one two three"));
    text.replace(4, 3, QStringLiteral("둘"));
    EXPECT_EQ(text.toString(), QStringLiteral("one 둘 three"));
    EXPECT_EQ(text.size(), 11);
    EXPECT_EQ(text.at(4), u'둘');
    EXPECT_EQ(text.at(10), u'e');
}

TEST(LargeTextTest, APartIsWhatOfTheRangeLiesWithinTheText) {
    LargeText text(QStringLiteral("abcdef"));
    text.replace(3, 0, QStringLiteral("123"));
    EXPECT_EQ(text.mid(2, 4), QStringLiteral("c123"));
    EXPECT_EQ(text.mid(7, 100), QStringLiteral("ef"));
    EXPECT_EQ(text.mid(9, 1), QString());
    EXPECT_EQ(text.mid(0, std::numeric_limits<qsizetype>::max()), text.toString());
}

TEST(LargeTextTest, EveryUnitIsKept) {
    const auto odd = QStringLiteral("a\r\nb\rc\u2028d\u2029e\u00a0f\n") + QChar(0xd800) + QChar(u'\0') +
                     QStringLiteral("g\n");
    LargeText text(odd);
    text.replace(3, 1, QStringLiteral("B\r\n"));
    EXPECT_EQ(text.toString(), QString(odd).replace(3, 1, QStringLiteral("B\r\n")));
}

TEST(LargeTextTest, AnEditThatChangesNothingIsNoStep) {
    LargeText text(QStringLiteral("abc"));
    text.replace(1, 0, QString());
    EXPECT_FALSE(text.isModified());
    EXPECT_FALSE(text.canUndo());
}

TEST(LargeTextTest, UndoAndRedoTellWhatTheyDid) {
    LargeText text(QStringLiteral("one two three"));
    text.replace(4, 3, QStringLiteral("2"));
    EXPECT_EQ(text.undo(), (Change{.position = 4, .removed = 1, .inserted = 3}));
    EXPECT_EQ(text.toString(), QStringLiteral("one two three"));
    EXPECT_EQ(text.redo(), (Change{.position = 4, .removed = 3, .inserted = 1}));
    EXPECT_EQ(text.toString(), QStringLiteral("one 2 three"));
    EXPECT_EQ(text.redo(), std::nullopt);
}

TEST(LargeTextTest, TheTextIsModifiedAsLongAsAStepStands) {
    LargeText text(QStringLiteral("abc"));
    text.replace(0, 1, QString());
    EXPECT_TRUE(text.isModified());
    text.undo();
    EXPECT_FALSE(text.isModified());
    text.redo();
    EXPECT_TRUE(text.isModified());
}

TEST(LargeTextTest, AnEditAfterAnUndoLeavesNothingToRedo) {
    LargeText text(QStringLiteral("abc"));
    text.replace(0, 1, QString());
    text.undo();
    text.replace(3, 0, QStringLiteral("d"));
    EXPECT_FALSE(text.canRedo());
    EXPECT_EQ(text.redo(), std::nullopt);
    EXPECT_EQ(text.toString(), QStringLiteral("abcd"));
}

TEST(LargeTextTest, WhatIsTypedInOneGoIsOneStep) {
    LargeText text(QStringLiteral("ad"));
    type(text, 1, QStringLiteral("bc"));
    EXPECT_EQ(text.undo(), (Change{.position = 1, .removed = 2, .inserted = 0}));
    EXPECT_FALSE(text.canUndo());
}

TEST(LargeTextTest, TypingOverASelectionGoesOnAsOneStep) {
    LargeText text(QStringLiteral("one two"));
    text.replace(4, 3, QStringLiteral("z"));
    type(text, 5, QStringLiteral("wei"));
    EXPECT_EQ(text.toString(), QStringLiteral("one zwei"));
    text.undo();
    EXPECT_EQ(text.toString(), QStringLiteral("one two"));
}

TEST(LargeTextTest, TypingElsewhereIsAnotherStep) {
    LargeText text(QStringLiteral("ab"));
    type(text, 2, QStringLiteral("c"));
    type(text, 0, QStringLiteral("_"));
    text.undo();
    EXPECT_EQ(text.toString(), QStringLiteral("abc"));
}

TEST(LargeTextTest, TypingAfterTheCaretWasMovedIsAnotherStep) {
    LargeText text;
    type(text, 0, QStringLiteral("ab"));
    text.endStep();
    type(text, 2, QStringLiteral("cd"));
    text.undo();
    EXPECT_EQ(text.toString(), QStringLiteral("ab"));
}

TEST(LargeTextTest, TypingAfterAnUndoIsAnotherStep) {
    LargeText text;
    type(text, 0, QStringLiteral("a"));
    text.replace(0, 1, QString());
    text.undo();
    type(text, 1, QStringLiteral("b"));
    text.undo();
    EXPECT_EQ(text.toString(), QStringLiteral("a"));
}

TEST(LargeTextTest, EachLineThatIsTypedIsAStepOfItsOwn) {
    LargeText text;
    type(text, 0, QStringLiteral("one\ntwo"));
    text.undo();
    EXPECT_EQ(text.toString(), QStringLiteral("one\n"));
    text.undo();
    EXPECT_EQ(text.toString(), QStringLiteral("one"));
}

TEST(LargeTextTest, WhatIsPutInAsAWholeIsAStepOfItsOwn) {
    LargeText text;
    const auto pasted = QString(1000, u'p');
    type(text, 0, QStringLiteral("a"));
    text.replace(1, 0, pasted);
    type(text, 1001, QStringLiteral("b"));
    text.undo();
    EXPECT_EQ(text.toString(), QStringLiteral("a") + pasted);
    text.undo();
    EXPECT_EQ(text.toString(), QStringLiteral("a"));
}

TEST(LargeTextTest, DeletingBackwardsGoesOnAsOneStep) {
    LargeText text(QStringLiteral("abcdef"));
    for (qsizetype position = 4; position > 1; --position)
        text.replace(position - 1, 1, QString());
    EXPECT_EQ(text.toString(), QStringLiteral("aef"));
    EXPECT_EQ(text.undo(), (Change{.position = 1, .removed = 0, .inserted = 3}));
    EXPECT_EQ(text.toString(), QStringLiteral("abcdef"));
}

TEST(LargeTextTest, DeletingForwardsGoesOnAsOneStep) {
    LargeText text(QStringLiteral("abcdef"));
    for (int deleted = 0; deleted < 3; ++deleted)
        text.replace(1, 1, QString());
    EXPECT_EQ(text.undo(), (Change{.position = 1, .removed = 0, .inserted = 3}));
    EXPECT_EQ(text.toString(), QStringLiteral("abcdef"));
}

TEST(LargeTextTest, DeletingAfterTypingIsAnotherStep) {
    LargeText text(QStringLiteral("ab"));
    type(text, 2, QStringLiteral("cd"));
    text.replace(3, 1, QString());
    text.undo();
    EXPECT_EQ(text.toString(), QStringLiteral("abcd"));
}

TEST(LargeTextTest, DeletingASelectionDoesNotGoOnWithAnotherDeletion) {
    const auto selected = QString(1000, u's');
    LargeText text(QStringLiteral("a") + selected + QStringLiteral("bc"));
    text.replace(1001, 1, QString());
    text.replace(1, 1000, QString());
    text.replace(1, 1, QString());
    text.undo();
    EXPECT_EQ(text.toString(), QStringLiteral("ac"));
    text.undo();
    EXPECT_EQ(text.toString(), QStringLiteral("a") + selected + QChar(u'c'));
}

TEST(LargeTextTest, FiftyMegabytesAreEditedWithoutACopy) {
    const QString original(50'000'000, u'x');
    LargeText text(original);
    EXPECT_EQ(text.toString().constData(), original.constData());
    type(text, 25'000'000, QStringLiteral("typed in the middle"));
    text.replace(0, 20'000'000, QString());
    text.replace(100, 20, QStringLiteral("more"));
    EXPECT_EQ(text.mid(4'999'981, 25), QStringLiteral("xxxtyped in the middlexxx"));
    while (text.canUndo())
        text.undo();
    // It is the caller's own text still.
    EXPECT_EQ(text.toString().constData(), original.constData());
}

TEST(LargeTextTest, FiftyMegabytesArePastedWithoutACopy) {
    const QString pasted(50'000'000, u'x');
    LargeText text(QStringLiteral("before"));
    text.replace(0, 6, pasted);
    EXPECT_EQ(text.toString().constData(), pasted.constData());
    text.undo();
    EXPECT_EQ(text.toString(), QStringLiteral("before"));
    text.redo();
    EXPECT_EQ(text.toString().constData(), pasted.constData());
}

TEST(LargeTextTest, ThePropertyThatItEditsAsAPlainTextDoes) {
    std::mt19937 random(20'240'611);
    const auto below = [&](qsizetype limit) {
        return std::uniform_int_distribution<qsizetype>(0, limit - 1)(random);
    };
    for (int round = 0; round < 40; ++round) {
        QString model;
        for (auto length = below(300); length > 0; --length)
            model += QChar(static_cast<char16_t>(below(0x10000)));
        LargeText text(model);
        // What the text was before each edit, whichever of them one step undoes.
        std::vector<QString> before{model};
        for (int edit = 0; edit < 300; ++edit) {
            switch (below(10)) {
            case 0: {
                // Undone as far as it goes, then done again, it is what it was.
                const auto steps = below(6);
                qsizetype undone = 0;
                auto mirrored = model;
                for (; undone < steps && text.canUndo(); ++undone) {
                    const auto change = text.undo().value();
                    mirrored.replace(change.position, change.removed,
                                     text.mid(change.position, change.inserted));
                    ASSERT_EQ(text.toString(), mirrored);
                    ASSERT_THAT(before, testing::Contains(mirrored));
                }
                for (; undone > 0; --undone)
                    ASSERT_TRUE(text.redo());
                ASSERT_EQ(text.toString(), model);
                break;
            }
            case 1:
                if (text.undo())
                    model = text.toString();
                ASSERT_THAT(before, testing::Contains(model));
                break;
            case 2:
                text.endStep();
                break;
            default: {
                const bool isNear = below(3) > 0 && !model.isEmpty();
                const auto position = isNear ? qMin(model.size(), 20 + below(4)) : below(model.size() + 1);
                const auto removed = qMin(below(4) == 0 ? below(40) : below(2), model.size() - position);
                QString inserted;
                for (auto length = below(8) == 0 ? below(120) : below(2); length > 0; --length)
                    inserted += QChar(static_cast<char16_t>(below(0x10000)));
                text.replace(position, removed, inserted);
                model.replace(position, removed, inserted);
                before.push_back(model);
            }
            }
            ASSERT_EQ(text.size(), model.size());
            ASSERT_EQ(text.toString(), model);
            if (const auto position = below(model.size() + 1); position < model.size()) {
                ASSERT_EQ(text.at(position), model.at(position));
                ASSERT_EQ(text.mid(position, 30), model.mid(position, 30));
            }
        }
        while (text.canUndo())
            text.undo();
        ASSERT_EQ(text.toString(), before.front());
    }
}

} // namespace
} // namespace kestrova
