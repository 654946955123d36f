#include "Kestrova/detail/widgets/PlainTextView.h"

#include <QAbstractTextDocumentLayout>
#include <QClipboard>
#include <QGuiApplication>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

TEST(PlainTextViewTest, ALineWhoseLastBlankHangsOverTheEdgeBringsNoScrollBar) {
    PlainTextView view(nullptr);
    view.setTheme(ShelfTheme::of(ShelfTheme::Scheme::dark));
    view.show(QStringLiteral("deep folder/").repeated(20) + QStringLiteral("이름이 긴 파일 ").repeated(20));
    // At some of these widths a line ends with the blank.
    for (int width = 200; width < 400; width += 7) {
        view.resize(width, 300);
        view.QWidget::show();
        EXPECT_FALSE(view.horizontalScrollBar()->isVisible()) << width;
    }
}

TEST(PlainTextViewTest, AllOfALongTextIsThere) {
    PlainTextView view(nullptr);
    const auto text = QStringLiteral("동해물과 백두산이\n").repeated(9'000);
    view.show(text);
    EXPECT_EQ(view.toPlainText(), text);
}

class CopyFromPlainTextViewTest : public testing::TestWithParam<QString> {};

TEST_P(CopyFromPlainTextViewTest, IsTheTextToTheLetter) {
    PlainTextView view(nullptr);
    view.show(GetParam());
    view.selectAll();
    view.copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), GetParam());
}

TEST_P(CopyFromPlainTextViewTest, OfAPartIsThatPartToTheLetter) {
    PlainTextView view(nullptr);
    view.show(u"before\r\n"_qs + GetParam() + u"\rbehind"_qs);
    auto cursor = view.textCursor();
    cursor.setPosition(7);
    cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    cursor.movePosition(QTextCursor::PreviousCharacter, QTextCursor::KeepAnchor, 7);
    view.setTextCursor(cursor);
    view.copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Texts, CopyFromPlainTextViewTest,
                         testing::Values(u"plain"_qs, u"two\nlines\n"_qs, u"no\u00a0break"_qs, u"a\u2028b"_qs,
                                         u"a\u2029b"_qs, u"a\r\nb\r\n"_qs, u"a\rb\r"_qs, u"a\n\r\r\nb"_qs,
                                         u"\ufffc\ufdd0\ufdd1\ufeff"_qs, u"\U0001F600\r\n가"_qs));

TEST(PlainTextViewTest, OneLineInThePlaceOfAnotherIsAsFarFromTheNext) {
    PlainTextView view(nullptr);
    view.setTheme(ShelfTheme::of(ShelfTheme::Scheme::dark));
    view.resize(300, 300);
    view.QWidget::show();
    const auto height = [&] {
        const auto* const document = view.document();
        return document->documentLayout()->blockBoundingRect(document->firstBlock()).height();
    };
    view.show(QStringLiteral("한글"));
    const auto first = height();
    view.show(QStringLiteral("Latin"));
    EXPECT_EQ(height(), first);
    view.show(QStringLiteral("무궁화 삼천리 화려강산 대한사람 대한으로 길이 보전하세"));
    EXPECT_EQ(height(), 2 * first);
}

} // namespace
} // namespace kestrova
