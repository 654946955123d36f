#include "tests/Kestrova/detail/text/LargeTextEditFixture.h"

#include "Platform/x11/TextControlKeys.h"

#include <QInputMethodEvent>
#include <QPlainTextEdit>
#include <QTextCharFormat>

#include <random>

namespace kestrova {
namespace {

class LargeTextEditingTest : public LargeTextEditFixture {
protected:
    void type(const QString& text) { QTest::keyClicks(&edit, text); }

    void compose(const QString& preedit, const QString& commit = {}) {
        QList<QInputMethodEvent::Attribute> attributes;
        if (!preedit.isEmpty()) {
            QTextCharFormat format;
            format.setFontUnderline(true);
            attributes.append({QInputMethodEvent::TextFormat, 0, static_cast<int>(preedit.size()), format});
            attributes.append({QInputMethodEvent::Cursor, static_cast<int>(preedit.size()), 1, {}});
        }
        QInputMethodEvent event(preedit, attributes);
        event.setCommitString(commit);
        QApplication::sendEvent(&edit, &event);
    }

    QString query(Qt::InputMethodQuery property) const { return edit.inputMethodQuery(property).toString(); }
};

TEST_F(LargeTextEditingTest, WhatIsTypedIsInTheText) {
    int told = 0;
    edit.onTextChange = [&] { ++told; };
    type(QStringLiteral("ab c"));
    key(Qt::Key_Return);
    key(Qt::Key_Tab);
    EXPECT_EQ(edit.text(), QStringLiteral("ab c\n\t"));
    EXPECT_EQ(told, 6);
    EXPECT_TRUE(edit.isModified());
}

TEST_F(LargeTextEditingTest, ALineIsEndedAsTheOthersAre) {
    edit.setText(QStringLiteral("a\r\nb"));
    edit.select(4, 4);
    key(Qt::Key_Return);
    EXPECT_EQ(edit.text(), QStringLiteral("a\r\nb\r\n"));
    EXPECT_EQ(caret(), 6);
}

TEST_F(LargeTextEditingTest, AGraphemeIsDeletedWhole) {
    const auto family = QStringLiteral("\U0001F468\u200D\U0001F469\u200D\U0001F467");
    edit.setText(QStringLiteral("a") + family + QStringLiteral("e\u0301\r\nb"));
    key(Qt::Key_End, Qt::ControlModifier);
    key(Qt::Key_Backspace);
    EXPECT_EQ(edit.text(), QStringLiteral("a") + family + QStringLiteral("e\u0301\r\n"));
    key(Qt::Key_Backspace);
    EXPECT_EQ(edit.text(), QStringLiteral("a") + family + QStringLiteral("e\u0301"));
    key(Qt::Key_Backspace);
    EXPECT_EQ(edit.text(), QStringLiteral("a") + family);
    key(Qt::Key_Home);
    key(Qt::Key_Right);
    key(Qt::Key_Delete);
    EXPECT_EQ(edit.text(), QStringLiteral("a"));
}

TEST_F(LargeTextEditingTest, ALineEndThatADeletionPutsTogetherIsDeletedWhole) {
    edit.setText(QStringLiteral("abc\rX\ndef"));
    edit.select(5, 5);
    key(Qt::Key_Backspace);
    EXPECT_EQ(edit.text(), QStringLiteral("abc\r\ndef"));
    key(Qt::Key_Backspace);
    EXPECT_EQ(edit.text(), QStringLiteral("abcdef"));
    EXPECT_EQ(caret(), 3);
}

TEST_F(LargeTextEditingTest, ALineEndThatADeletionPutsTogetherIsNotPartedByTheNext) {
    edit.setText(QStringLiteral("abc\rX\ndef"));
    edit.select(5, 5);
    key(Qt::Key_Backspace);
    key(Qt::Key_Return);
    EXPECT_EQ(edit.text(), QStringLiteral("abc\r\n\r\ndef"));
    EXPECT_EQ(caret(), 7);
}

TEST_F(LargeTextEditingTest, OfThousandsOfMarksOneIsDeleted) {
    const QString marks(5'000, QChar(0x301));
    edit.setText(QStringLiteral("xe") + marks);
    key(Qt::Key_End, Qt::ControlModifier);
    key(Qt::Key_Backspace);
    EXPECT_EQ(edit.text(), QStringLiteral("xe") + marks.chopped(1));
}

TEST_F(LargeTextEditingTest, OfThousandsOfMarksOfTwoUnitsOneIsDeleted) {
    const auto marks = QStringLiteral("\U000E0100").repeated(1'000);
    edit.setText(QStringLiteral("xe") + marks);
    key(Qt::Key_End, Qt::ControlModifier);
    key(Qt::Key_Backspace);
    EXPECT_EQ(edit.text(), QStringLiteral("xe") + marks.chopped(2));
}

TEST_F(LargeTextEditingTest, AWordIsDeletedInEitherDirection) {
    edit.setText(QStringLiteral("one two three"));
    edit.select(7, 7);
    key(Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_EQ(edit.text(), QStringLiteral("one  three"));
    key(Qt::Key_Delete, Qt::ControlModifier);
    EXPECT_EQ(edit.text(), QStringLiteral("one three"));
}

TEST_F(LargeTextEditingTest, CutAndPasteMoveAPart) {
    edit.setText(QStringLiteral("one two"));
    edit.select(0, 4);
    key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(edit.text(), QStringLiteral("two"));
    key(Qt::Key_End);
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(edit.text(), QStringLiteral("twoone "));
}

TEST_F(LargeTextEditingTest, UndoAndRedoGoThroughTheSteps) {
    type(QStringLiteral("one"));
    key(Qt::Key_Home);
    type(QStringLiteral("x"));
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(edit.text(), QStringLiteral("one"));
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(edit.text(), QString());
    EXPECT_FALSE(edit.isModified());
    key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(edit.text(), QStringLiteral("xone"));
}

TEST_F(LargeTextEditingTest, OtherTextHasNothingToUndo) {
    type(QStringLiteral("one"));
    edit.setText(QStringLiteral("two"));
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(edit.text(), QStringLiteral("two"));
    EXPECT_FALSE(edit.isModified());
}

TEST_F(LargeTextEditingTest, UpAndDownKeepTheirPlaceInTheLines) {
    edit.setText(QStringLiteral("abcdef\nab\nabcdef"));
    edit.select(5, 5);
    key(Qt::Key_Down);
    EXPECT_EQ(caret(), 9);
    key(Qt::Key_Down);
    EXPECT_EQ(caret(), 15);
    key(Qt::Key_Up);
    key(Qt::Key_Up);
    EXPECT_EQ(caret(), 5);
}

TEST_F(LargeTextEditingTest, ShiftMarksWhatTheCaretPasses) {
    edit.setText(QStringLiteral("one two three"));
    key(Qt::Key_Right, Qt::ControlModifier);
    key(Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(edit.selectedText(), QStringLiteral("two "));
    key(Qt::Key_Left);
    EXPECT_EQ(edit.selection(), (TextSelection{4, 4}));
    key(Qt::Key_End, Qt::ShiftModifier);
    EXPECT_EQ(edit.selectedText(), QStringLiteral("two three"));
    key(Qt::Key_Right);
    EXPECT_EQ(edit.selection(), (TextSelection{13, 13}));
}

TEST_F(LargeTextEditingTest, ACaretThatMovesOutOfSightIsFollowed) {
    edit.setText(QStringLiteral("line\n").repeated(10'000));
    key(Qt::Key_End, Qt::ControlModifier);
    EXPECT_TRUE(edit.caretRect(caret()));
    key(Qt::Key_PageUp);
    EXPECT_TRUE(edit.caretRect(caret()));
    key(Qt::Key_Home, Qt::ControlModifier);
    type(QStringLiteral("x"));
    EXPECT_EQ(barValue(), 0);
}

TEST_F(LargeTextEditingTest, EveryCharacterOfALongLineIsPassedInBothDirections) {
    edit.setText(QStringLiteral("가나 e\u0301x\U0001F600 ").repeated(1'500));
    std::vector<qsizetype> forth;
    for (; caret() < edit.content().size(); key(Qt::Key_Right))
        forth.push_back(caret());
    std::vector<qsizetype> back;
    while (caret() > 0) {
        key(Qt::Key_Left);
        back.push_back(caret());
    }
    EXPECT_EQ(forth, (std::vector<qsizetype>(back.rbegin(), back.rend())));
}

TEST_F(LargeTextEditingTest, ChordsAreNotTyped) {
    key(Qt::Key_K, Qt::ControlModifier);
    key(Qt::Key_E, Qt::AltModifier);
    key(Qt::Key_P, Qt::MetaModifier);
    EXPECT_EQ(edit.text(), QString());
}

TEST_F(LargeTextEditingTest, HangulComposes) {
    edit.setText(QStringLiteral("ab"));
    edit.select(1, 1);
    compose(QStringLiteral("ㅎ"));
    EXPECT_EQ(edit.content().toString(), QStringLiteral("ab"));
    EXPECT_EQ(edit.text(), QStringLiteral("aㅎb"));
    compose(QStringLiteral("하"));
    compose(QStringLiteral("한"));
    compose(QStringLiteral("ㄱ"), QStringLiteral("한"));
    EXPECT_EQ(edit.content().toString(), QStringLiteral("a한b"));
    EXPECT_EQ(edit.text(), QStringLiteral("a한ㄱb"));
    compose({}, QStringLiteral("글"));
    EXPECT_EQ(edit.text(), QStringLiteral("a한글b"));
    EXPECT_EQ(caret(), 3);
}

TEST_F(LargeTextEditingTest, WhatIsComposedIsShownAtTheCaretWithItsFormat) {
    edit.setText(QStringLiteral("ab"));
    edit.select(1, 1);
    compose(QStringLiteral("하"));
    const auto& layout = edit.layouts().at(1).layout();
    EXPECT_EQ(layout.preeditAreaText(), QStringLiteral("하"));
    ASSERT_EQ(layout.formats().size(), 1);
    EXPECT_EQ(layout.formats().front().start, 1);
    EXPECT_TRUE(layout.formats().front().format.fontUnderline());
    const auto before = edit.caretRect(1);
    ASSERT_TRUE(before);
    EXPECT_GT(edit.inputMethodQuery(Qt::ImCursorRectangle).toRectF().x(), before->x());
}

TEST_F(LargeTextEditingTest, ComposingTakesThePlaceOfWhatIsMarked) {
    edit.setText(QStringLiteral("one two"));
    edit.select(0, 3);
    compose(QStringLiteral("ㅎ"));
    EXPECT_EQ(edit.text(), QStringLiteral("ㅎ two"));
}

TEST_F(LargeTextEditingTest, ACommitMayReplaceWhatIsAroundTheCaret) {
    edit.setText(QStringLiteral("abcd"));
    edit.select(3, 3);
    QInputMethodEvent event;
    event.setCommitString(QStringLiteral("X"), -2, 2);
    QApplication::sendEvent(&edit, &event);
    EXPECT_EQ(edit.text(), QStringLiteral("aXd"));
    EXPECT_EQ(caret(), 2);
}

TEST_F(LargeTextEditingTest, AnInputMethodIsToldOfTheTextAroundTheCaretOnly) {
    edit.setText(QString(1'000'000, u'x'));
    edit.select(500'000, 500'000);
    EXPECT_EQ(query(Qt::ImSurroundingText).size(), 512);
    EXPECT_EQ(query(Qt::ImCursorPosition), QStringLiteral("256"));
    EXPECT_EQ(query(Qt::ImTextBeforeCursor).size(), 256);
    EXPECT_EQ(query(Qt::ImTextAfterCursor).size(), 256);
    edit.perform(TextCommand::selectAll);
    EXPECT_LE(query(Qt::ImCurrentSelection).size(), 512);
    EXPECT_NE(query(Qt::ImCursorPosition), query(Qt::ImAnchorPosition));
}

TEST_F(LargeTextEditingTest, ItsKeysAreThoseOfATextControl) {
    edit.setText(QStringLiteral("one"));
    auto state = textControlState(&edit);
    ASSERT_TRUE(state);
    EXPECT_FALSE(state->hasSelection);
    EXPECT_FALSE(state->canUndo);
    edit.select(0, 2);
    state = textControlState(&edit);
    ASSERT_TRUE(state);
    EXPECT_TRUE(state->hasSelection);
    type(QStringLiteral("x"));
    state = textControlState(&edit);
    ASSERT_TRUE(state);
    EXPECT_FALSE(state->hasSelection);
    EXPECT_TRUE(state->canUndo);
    const QWidget plain;
    EXPECT_FALSE(textControlState(&plain));
}

TEST_F(LargeTextEditingTest, TheCaretBlinks) {
    edit.setText(QStringLiteral("x"));
    const auto isLit = [&] {
        const auto image = edit.viewport()->grab().toImage();
        return image.pixelColor(0, 2) == image.pixelColor(0, image.height() - 2);
    };
    const bool wasLit = isLit();
    EXPECT_TRUE(QTest::qWaitFor([&] { return isLit() != wasLit; }, 20'000));
}

TEST_F(LargeTextEditingTest, RandomKeysDoWhatTheyDoInTheToolkitsControl) {
    // One line to each paragraph and Latin letters, so that the two agree on where lines and words end.
    const auto text = QStringLiteral("one two\n\nthree four five\nsix\n").repeated(4);
    QPlainTextEdit model;
    model.resize(900, 900);
    model.show();
    edit.resize(900, 900);
    model.setPlainText(text);
    edit.setText(text);
    struct Press {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
    };
    const std::vector<Press> presses{{Qt::Key_Left, {}},
                                     {Qt::Key_Right, {}},
                                     {Qt::Key_Left, Qt::ControlModifier},
                                     {Qt::Key_Right, Qt::ControlModifier},
                                     {Qt::Key_Right, Qt::ShiftModifier},
                                     {Qt::Key_Left, Qt::ShiftModifier},
                                     {Qt::Key_Home, {}},
                                     {Qt::Key_End, {}},
                                     {Qt::Key_End, Qt::ShiftModifier},
                                     {Qt::Key_Home, Qt::ControlModifier},
                                     {Qt::Key_End, Qt::ControlModifier},
                                     {Qt::Key_Backspace, {}},
                                     {Qt::Key_Delete, {}},
                                     {Qt::Key_Backspace, Qt::ControlModifier},
                                     {Qt::Key_Return, {}},
                                     {Qt::Key_A, {}},
                                     {Qt::Key_B, Qt::ShiftModifier},
                                     {Qt::Key_Space, {}}};
    std::mt19937 random(17);
    std::uniform_int_distribution<std::size_t> any(0, presses.size() - 1);
    for (int step = 0; step < 2'000; ++step) {
        const auto& press = presses[any(random)];
        QTest::keyClick(&model, press.key, press.modifiers);
        QTest::keyClick(&edit, press.key, press.modifiers);
        ASSERT_EQ(edit.text(), model.toPlainText()) << step << " key " << press.key;
        ASSERT_EQ(edit.selection().caret, model.textCursor().position()) << step << " key " << press.key;
        ASSERT_EQ(edit.selection().anchor, model.textCursor().anchor()) << step << " key " << press.key;
    }
}

} // namespace
} // namespace kestrova
