#include "tests/Kestrova/detail/text/LargeTextEditFixture.h"

#include <QAccessible>

namespace kestrova {
namespace {

class LargeTextAccessibleTest : public LargeTextEditFixture {
protected:
    QAccessibleInterface& accessible() { return *QAccessible::queryAccessibleInterface(&edit); }
    QAccessibleTextInterface& text() { return *accessible().textInterface(); }

    QString at(int offset, QAccessible::TextBoundaryType boundary) {
        return text().textAtOffset(offset, boundary, &start, &end);
    }

    int start = 0;
    int end = 0;
};

TEST_F(LargeTextAccessibleTest, ItIsATextThatCanBeWritten) {
    EXPECT_EQ(accessible().role(), QAccessible::EditableText);
    EXPECT_TRUE(accessible().state().editable);
    EXPECT_TRUE(accessible().state().multiLine);
    ASSERT_TRUE(accessible().editableTextInterface());
    accessible().editableTextInterface()->insertText(0, QStringLiteral("abc"));
    accessible().editableTextInterface()->replaceText(1, 2, QStringLiteral("XY"));
    accessible().editableTextInterface()->deleteText(0, 1);
    EXPECT_EQ(edit.text(), QStringLiteral("XYc"));
}

TEST_F(LargeTextAccessibleTest, ReadOnlyItCannotBeWritten) {
    edit.setReadOnly(true);
    EXPECT_TRUE(accessible().state().readOnly);
    EXPECT_FALSE(accessible().state().editable);
    EXPECT_FALSE(accessible().editableTextInterface());
}

TEST_F(LargeTextAccessibleTest, OnlyWhatIsAskedForIsTold) {
    edit.setText(QStringLiteral("one two\nthree four\n").repeated(100'000));
    EXPECT_EQ(text().characterCount(), 1'900'000);
    EXPECT_EQ(text().text(4, 13), QStringLiteral("two\nthree"));
    EXPECT_EQ(at(5, QAccessible::CharBoundary), QStringLiteral("w"));
    EXPECT_EQ(at(5, QAccessible::WordBoundary), QStringLiteral("two"));
    EXPECT_EQ(start, 4);
    EXPECT_EQ(end, 7);
    EXPECT_EQ(at(950'005, QAccessible::LineBoundary), QStringLiteral("one two\n"));
    EXPECT_EQ(at(950'005, QAccessible::ParagraphBoundary), QStringLiteral("one two\n"));
    EXPECT_EQ(text().textAfterOffset(5, QAccessible::LineBoundary, &start, &end),
              QStringLiteral("three four\n"));
    EXPECT_EQ(text().textBeforeOffset(9, QAccessible::LineBoundary, &start, &end),
              QStringLiteral("one two\n"));
    EXPECT_EQ(text().textBeforeOffset(0, QAccessible::LineBoundary, &start, &end), QString());
    EXPECT_EQ(text().textAfterOffset(1'900'000, QAccessible::CharBoundary, &start, &end), QString());
}

TEST_F(LargeTextAccessibleTest, CaretAndSelectionAreToldAndSet) {
    edit.setText(QStringLiteral("one two"));
    text().setCursorPosition(3);
    EXPECT_EQ(text().cursorPosition(), 3);
    EXPECT_EQ(text().selectionCount(), 0);
    text().addSelection(4, 7);
    EXPECT_EQ(edit.selectedText(), QStringLiteral("two"));
    text().selection(0, &start, &end);
    EXPECT_EQ(start, 4);
    EXPECT_EQ(end, 7);
    text().removeSelection(0);
    EXPECT_EQ(text().selectionCount(), 0);
}

TEST_F(LargeTextAccessibleTest, ACaretIsNotSetWithinALineEnd) {
    edit.setText(QStringLiteral("abc\r\ndef"));
    text().setCursorPosition(4);
    EXPECT_EQ(text().cursorPosition(), 3);
    text().addSelection(4, 8);
    EXPECT_EQ(edit.selectedText(), QStringLiteral("\r\ndef"));
}

TEST_F(LargeTextAccessibleTest, AWalkThroughATextThatIsPaintedNowhereKeepsOnlyPartOfItLaidOut) {
    edit.setText(QStringLiteral("line\n").repeated(30'000));
    edit.hide();
    for (int offset = 0; offset < text().characterCount(); offset = end)
        at(offset, QAccessible::LineBoundary);
    constexpr qsizetype most = 250'000;
    EXPECT_LT(edit.layouts().units(), most);
}

TEST_F(LargeTextAccessibleTest, ACharacterHasAPlaceOnTheScreen) {
    edit.setText(QStringLiteral("one two"));
    const auto rect = text().characterRect(4);
    EXPECT_TRUE(rect.isValid());
    EXPECT_EQ(text().offsetAtPoint(QPoint(rect.left() + 1, rect.center().y())), 4);
}

} // namespace
} // namespace kestrova
