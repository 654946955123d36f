#include "Kestrova/detail/widgets/ItemEditor.h"

#include "Kestrova/detail/text/TextLineHeight.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QUrl>

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class ItemEditorTest : public testing::Test {
protected:
    /// With the caret at the start.
    ItemEditor& open(const QString& text, const QString& lineEnd = u"\n"_s) {
        editor = std::make_unique<ItemEditor>(text, lineEnd, nullptr);
        editor->setTheme(ShelfTheme::of(ShelfTheme::Scheme::dark));
        editor->resize(400, 300);
        editor->show();
        editor->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(editor.get()));
        editor->setFocus();
        return *editor;
    }
    ~ItemEditorTest() override { QApplication::setFont(m_font); }

    void changeFontAndTheme() {
        auto larger = m_font;
        larger.setPointSizeF(m_font.pointSizeF() * 2);
        QApplication::setFont(larger);
        editor->setTheme(ShelfTheme::of(ShelfTheme::Scheme::light));
    }
    void paste(QMimeData* data) {
        QApplication::clipboard()->setMimeData(data);
        editor->paste();
    }
    void paste(const QString& text) {
        auto* const data = new QMimeData;
        data->setText(text);
        paste(data);
    }
    void compose(const QString& preedit, const QString& commit = {}) {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit);
        QCoreApplication::sendEvent(editor.get(), &event);
    }
    bool everyLineHasTheHeight() const {
        for (auto block = editor->document()->begin(); block.isValid(); block = block.next())
            if (block.blockFormat().lineHeight() != textLineHeight(editor->font()))
                return false;
        return true;
    }
    /// Dropped by a program that would rather have it moved. Ignore if it is refused.
    Qt::DropAction drop(const QMimeData& data, Qt::DropActions offered) {
        auto& target = *editor->viewport();
        const auto place = target.rect().center();
        QDragEnterEvent enter(place, offered, &data, Qt::LeftButton, Qt::ShiftModifier);
        QCoreApplication::sendEvent(&target, &enter);
        QDragMoveEvent move(place, offered, &data, Qt::LeftButton, Qt::ShiftModifier);
        QCoreApplication::sendEvent(&target, &move);
        QDropEvent drop(place, offered, &data, Qt::LeftButton, Qt::ShiftModifier);
        QCoreApplication::sendEvent(&target, &drop);
        EXPECT_EQ(enter.isAccepted(), drop.isAccepted());
        EXPECT_EQ(move.isAccepted(), drop.isAccepted());
        if (!drop.isAccepted())
            return Qt::IgnoreAction;
        EXPECT_EQ(enter.dropAction(), drop.dropAction());
        EXPECT_EQ(move.dropAction(), drop.dropAction());
        return drop.dropAction();
    }

    std::unique_ptr<ItemEditor> editor;

private:
    const QFont m_font = QApplication::font();
};

// What comes in and goes out

TEST_F(ItemEditorTest, PastedLinesAreAsFarFromEachOtherAsTheOthers) {
    open(u"a\nb"_s);
    paste(u"c\nd\r\ne\n"_s);
    EXPECT_EQ(editor->text(), u"c\nd\ne\na\nb");
    EXPECT_TRUE(everyLineHasTheHeight());
}

TEST_F(ItemEditorTest, PastedLinesEndAsThoseOfTheText) {
    open(u"a\r\nb"_s, u"\r\n"_s);
    paste(u"c\nd\re\r\n"_s);
    EXPECT_EQ(editor->text(), u"c\r\nd\r\ne\r\na\r\nb");
}

TEST_F(ItemEditorTest, OnlyPlainTextIsPasted) {
    open(u"a"_s);
    auto* const data = new QMimeData;
    data->setHtml(u"<b>bold</b>"_s);
    data->setText(u"<plain>"_s);
    paste(data);
    EXPECT_EQ(editor->text(), u"<plain>a");
    for (const auto& format : editor->document()->allFormats())
        EXPECT_FALSE(format.toCharFormat().fontWeight() == QFont::Bold);
}

TEST_F(ItemEditorTest, ARichTextWithoutAPlainOneIsNotPasted) {
    open(u"a"_s);
    auto* const data = new QMimeData;
    data->setData(u"application/x-qrichtext"_s, "<b>bold</b>");
    paste(data);
    EXPECT_EQ(editor->text(), u"a");
}

TEST_F(ItemEditorTest, OnlyPlainTextIsCopied) {
    open(u"no\u00a0break\r\nline"_s, u"\r\n"_s);
    editor->selectAll();
    editor->copy();
    const auto* const copied = QApplication::clipboard()->mimeData();
    EXPECT_EQ(copied->text(), u"no\u00a0break\r\nline");
    EXPECT_FALSE(copied->hasHtml());
}

TEST_F(ItemEditorTest, ADroppedTextStaysWithTheProgramThatItComesFrom) {
    open(QString());
    QMimeData data;
    data.setText(u"words"_s);
    EXPECT_EQ(drop(data, Qt::CopyAction | Qt::MoveAction), Qt::CopyAction);
    EXPECT_EQ(editor->text(), u"words");
}

TEST_F(ItemEditorTest, DroppedFilesBecomeTheirAddressesAndAreNotMoved) {
    open(QString());
    QMimeData data;
    data.setUrls({QUrl(u"file:///home/a"_s)});
    EXPECT_EQ(drop(data, Qt::CopyAction | Qt::MoveAction), Qt::CopyAction);
    EXPECT_EQ(editor->text(), u"file:///home/a");
}

TEST_F(ItemEditorTest, TextThatCanOnlyBeMovedIsNotTaken) {
    open(QString());
    QMimeData data;
    data.setText(u"words"_s);
    EXPECT_EQ(drop(data, Qt::MoveAction), Qt::IgnoreAction);
    EXPECT_EQ(editor->text(), QString());
}

// Another font, another theme

TEST_F(ItemEditorTest, AnotherFontChangesTheDistanceOfLinesThatNobodyHasTouched) {
    open(u"a\nb"_s);
    changeFontAndTheme();
    EXPECT_TRUE(everyLineHasTheHeight());
    EXPECT_FALSE(editor->document()->isModified());
    EXPECT_FALSE(editor->document()->isUndoAvailable());
}

/// Texts that a control could easily change.
class ItemEditorHistoryTest : public ItemEditorTest,
                              public testing::WithParamInterface<std::pair<QString, QString>> {
protected:
    void SetUp() override { open(text(), GetParam().second); }
    const QString& text() const { return GetParam().first; }
};

TEST_P(ItemEditorHistoryTest, AnotherFontAfterAnEditIsNoEdit) {
    QTest::keyClicks(editor.get(), u"x"_s);
    changeFontAndTheme();
    EXPECT_EQ(editor->text(), u"x"_s + text());
    editor->undo();
    EXPECT_EQ(editor->text(), text());
    EXPECT_FALSE(editor->document()->isModified());
    EXPECT_FALSE(editor->document()->isUndoAvailable());
    editor->redo();
    EXPECT_EQ(editor->text(), u"x"_s + text());
}

TEST_P(ItemEditorHistoryTest, AnotherFontAfterAnUndoLeavesWhatCanBeRedone) {
    QTest::keyClicks(editor.get(), u"x"_s);
    editor->undo();
    changeFontAndTheme();
    EXPECT_FALSE(editor->document()->isModified());
    EXPECT_EQ(editor->text(), text());
    editor->redo();
    EXPECT_EQ(editor->text(), u"x"_s + text());
    EXPECT_TRUE(editor->document()->isModified());
}

TEST_P(ItemEditorHistoryTest, APasteIsOneStepThatCanBeUndoneAndDoneAgain) {
    paste(u"1\n2\n"_s);
    const auto pasted = u'1' + GetParam().second + u'2' + GetParam().second + text();
    EXPECT_EQ(editor->text(), pasted);
    editor->undo();
    EXPECT_EQ(editor->text(), text());
    EXPECT_FALSE(editor->document()->isModified());
    editor->redo();
    EXPECT_EQ(editor->text(), pasted);
}

TEST_P(ItemEditorHistoryTest, WhatAnInputMethodCommitsCanBeUndoneInAnotherFont) {
    compose(u"ㅎ"_s);
    compose(u"하"_s);
    EXPECT_EQ(editor->text(), u"하"_s + text());
    changeFontAndTheme();
    EXPECT_EQ(editor->text(), u"하"_s + text());
    compose({}, u"한"_s);
    EXPECT_EQ(editor->text(), u"한"_s + text());
    editor->undo();
    EXPECT_EQ(editor->text(), text());
    editor->redo();
    EXPECT_EQ(editor->text(), u"한"_s + text());
}

TEST_P(ItemEditorHistoryTest, WhatIsCopiedAndPastedIsTheSameAgain) {
    editor->selectAll();
    editor->copy();
    editor->moveCursor(QTextCursor::Start);
    editor->paste();
    EXPECT_EQ(editor->text(), text() + text());
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ItemEditorHistoryTest,
    testing::Values(std::pair(u"plain"_s, u"\n"_s), std::pair(u"a\nb\n"_s, u"\n"_s),
                    std::pair(u"a\r\nb\r\n"_s, u"\r\n"_s), std::pair(u"a\rb\r"_s, u"\r"_s),
                    std::pair(u"no\u00a0break\u2007spaces\u202f"_s, u"\n"_s),
                    std::pair(u"a\u2028b"_s, u"\n"_s),
                    std::pair(u"nul"_s + QChar(0) + QChar(7) + u"end"_s, u"\n"_s),
                    std::pair(u"lone"_s + QChar(0xd83d) + QChar(u'x') + QChar(0xdc00), u"\n"_s),
                    std::pair(u"\ufffc\ufffe\ufeff"_s, u"\n"_s), std::pair(u"한글과 😀 e\u0301"_s, u"\n"_s)));

struct Replacement {
    int start;
    int length;
    QString result;
};

class ReplacementByInputMethodTest : public ItemEditorTest,
                                     public testing::WithParamInterface<Replacement> {};

TEST_P(ReplacementByInputMethodTest, StaysWithinTheLineOfTheCaret) {
    open(u"one\ntwo\nthree"_s);
    auto cursor = editor->textCursor();
    cursor.setPosition(5);
    editor->setTextCursor(cursor);
    QInputMethodEvent event;
    event.setCommitString(u"X"_s, GetParam().start, GetParam().length);
    QCoreApplication::sendEvent(editor.get(), &event);
    EXPECT_EQ(editor->text(), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    Ranges, ReplacementByInputMethodTest,
    testing::Values(Replacement{0, 0, u"one\ntXwo\nthree"_s}, Replacement{-1, 2, u"one\nXo\nthree"_s},
                    Replacement{-4, 4, u"one\nXwo\nthree"_s}, Replacement{0, 9, u"one\ntX\nthree"_s},
                    Replacement{-100, 200, u"one\nX\nthree"_s}, Replacement{-100, 5, u"one\nXtwo\nthree"_s},
                    Replacement{50, 5, u"one\ntwoX\nthree"_s}));

TEST_F(ItemEditorTest, AReplacementByAnInputMethodGoesByWhatIsLeftOfTheSelection) {
    open(u"one\ntwo"_s);
    auto cursor = editor->textCursor();
    cursor.setPosition(2);
    cursor.setPosition(5, QTextCursor::KeepAnchor);
    editor->setTextCursor(cursor);
    QInputMethodEvent event;
    event.setCommitString(u"X"_s, -100, 200);
    QCoreApplication::sendEvent(editor.get(), &event);
    EXPECT_EQ(editor->text(), u"X");
}

} // namespace
} // namespace kestrova
