#include "Kestrova/detail/widgets/PlainTextView.h"

#include <QScrollBar>
#include <QTest>

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

} // namespace
} // namespace kestrova
