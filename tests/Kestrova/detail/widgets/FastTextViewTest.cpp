#include "Kestrova/detail/widgets/FastTextView.h"

#include "Kestrova/detail/text/LargeTextEdit.h"
#include "Kestrova/detail/widgets/PlainTextView.h"
#include "Kestrova/look/InterfaceFont.h"

#include <QAbstractTextDocumentLayout>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

const ShelfTheme& theme() {
    static const auto dark = ShelfTheme::of(ShelfTheme::Scheme::dark);
    return dark;
}

class FastTextViewTest : public testing::Test {
protected:
    FastTextViewTest() {
        view.resize(400, 300);
        view.show();
    }

    void render(const QString& text) { view.render(text, theme()); }
    /// By what it is: to the toolkit it is only one of its own classes.
    template<typename Control>
    Control* find() const {
        for (auto* const child : view.findChildren<QAbstractScrollArea*>())
            if (auto* const control = dynamic_cast<Control*>(child))
                return control;
        return nullptr;
    }
    PlainTextView& plain() { return *find<PlainTextView>(); }
    LargeTextEdit& large() { return *find<LargeTextEdit>(); }

    const QString shortText = QStringLiteral("line\n").repeated(200);
    const QString longText = QStringLiteral("line\n").repeated(50'000);
    FastTextView view{nullptr};
};

TEST_F(FastTextViewTest, AnOrdinaryTextIsInTheToolkitsControl) {
    render(shortText);
    EXPECT_EQ(plain().toPlainText(), shortText);
    EXPECT_TRUE(plain().isVisible());
    EXPECT_FALSE(find<LargeTextEdit>());
}

TEST_F(FastTextViewTest, AVeryLongTextIsInAControlForSuch) {
    render(longText);
    EXPECT_TRUE(large().isVisible());
    EXPECT_FALSE(plain().isVisible());
    EXPECT_EQ(large().text().constData(), longText.constData()) << "it is not copied";
}

TEST_F(FastTextViewTest, WhatIsNoLongerShownIsNotKept) {
    render(longText);
    render(shortText);
    EXPECT_TRUE(plain().isVisible());
    EXPECT_FALSE(large().isVisible());
    EXPECT_EQ(large().text(), QString());
    render(longText);
    EXPECT_EQ(plain().toPlainText(), QString());
}

TEST_F(FastTextViewTest, TheSameTextKeepsScrollingAndSelection) {
    render(shortText);
    plain().verticalScrollBar()->setValue(50);
    plain().selectAll();
    render(QString(shortText.constData(), shortText.size()));
    EXPECT_EQ(plain().verticalScrollBar()->value(), 50);
    EXPECT_TRUE(plain().textCursor().hasSelection());

    render(longText);
    large().verticalScrollBar()->setValue(5'000);
    large().select(3, 30);
    render(QString(longText.constData(), longText.size()));
    EXPECT_EQ(large().verticalScrollBar()->value(), 5'000);
    EXPECT_EQ(large().selection(), (TextSelection{3, 30}));
}

TEST_F(FastTextViewTest, AnotherTextIsShownFromItsStart) {
    render(longText);
    large().verticalScrollBar()->setValue(5'000);
    large().select(3, 30);
    render(longText + u'x');
    EXPECT_EQ(large().verticalScrollBar()->value(), 0);
    EXPECT_TRUE(large().selection().isEmpty());
}

TEST_F(FastTextViewTest, ItCanBeMarkedButNotChanged) {
    render(shortText);
    EXPECT_TRUE(plain().isReadOnly());
    EXPECT_TRUE(plain().textInteractionFlags() & Qt::TextSelectableByMouse);
    render(longText);
    EXPECT_TRUE(large().isReadOnly());
}

TEST_F(FastTextViewTest, ItHasNoGroundNoFrameAndNoInset) {
    for (const auto& text : {shortText, longText}) {
        render(text);
        auto& area = text == shortText ? static_cast<QAbstractScrollArea&>(plain()) : large();
        EXPECT_EQ(area.frameShape(), QFrame::NoFrame);
        EXPECT_FALSE(area.viewport()->autoFillBackground());
        EXPECT_EQ(area.palette().color(QPalette::Base), QColor(Qt::transparent));
        EXPECT_EQ(area.viewport()->pos(), QPoint(0, 0));
        EXPECT_EQ(area.palette().color(QPalette::Text), theme().text);
    }
    EXPECT_EQ(plain().document()->documentMargin(), 0);
}

TEST_F(FastTextViewTest, ItIsWrittenInTheFixedWidthFontOfOrdinarySize) {
    render(longText);
    EXPECT_EQ(plain().font(), fixedInterfaceFont(13));
    EXPECT_EQ(large().font(), fixedInterfaceFont(13));
}

TEST_F(FastTextViewTest, TheScrollBarHidesWhenThereIsNothingToScroll) {
    render(QStringLiteral("short"));
    EXPECT_FALSE(plain().verticalScrollBar()->isVisible());
    render(longText);
    EXPECT_GT(large().verticalScrollBar()->maximum(), 0);
}

TEST_F(FastTextViewTest, AtFirstItDoesNotTakeTheKeyboard) {
    render(longText);
    EXPECT_EQ(plain().focusPolicy(), Qt::NoFocus);
    EXPECT_EQ(large().focusPolicy(), Qt::NoFocus);
    QTest::mouseClick(large().viewport(), Qt::LeftButton);
    EXPECT_FALSE(large().hasFocus());
}

TEST_F(FastTextViewTest, WithTheKeyboardArrowsPagesHomeAndEndScrollEitherControl) {
    view.setTakesKeyboard(true);
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    for (const auto& text : {shortText, longText}) {
        render(text);
        view.setFocus();
        auto& area = text == shortText ? static_cast<QAbstractScrollArea&>(plain()) : large();
        ASSERT_TRUE(area.hasFocus());
        const auto value = [&] { return area.verticalScrollBar()->value(); };
        QTest::keyClick(&area, Qt::Key_Down);
        const int line = value();
        EXPECT_GT(line, 0);
        QTest::keyClick(&area, Qt::Key_PageDown);
        EXPECT_GT(value(), 5 * line);
        QTest::keyClick(&area, Qt::Key_PageUp);
        EXPECT_EQ(value(), line);
        QTest::keyClick(&area, Qt::Key_Up);
        EXPECT_EQ(value(), 0);
        QTest::keyClick(&area, Qt::Key_End);
        EXPECT_EQ(value(), area.verticalScrollBar()->maximum());
        QTest::keyClick(&area, Qt::Key_Home);
        EXPECT_EQ(value(), 0);
    }
}

TEST_F(FastTextViewTest, TheKeyboardFollowsFromControlToControl) {
    view.setTakesKeyboard(true);
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    render(shortText);
    view.setFocus();
    render(longText);
    EXPECT_TRUE(large().hasFocus());
    render(shortText);
    EXPECT_TRUE(plain().hasFocus());
}

TEST_F(FastTextViewTest, LinesOfEitherControlAreEquallyFarApart) {
    const auto text = QStringLiteral("동해물과 백두산이\nplain\n\n무궁화 삼천리\n");
    render(text + longText);
    render(text);
    auto& layout = *plain().document()->documentLayout();
    for (auto block = plain().document()->begin(); block != plain().document()->lastBlock();
         block = block.next())
        EXPECT_EQ(layout.blockBoundingRect(block).height(), large().scroll().lineHeight())
            << block.blockNumber();
}

} // namespace
} // namespace kestrova
