#include "Kestrova/shelf/widgets/ItemRowDelegate.h"
#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"

#include <QApplication>
#include <QScrollBar>

namespace kestrova {
namespace {

class ItemListViewTest : public WidgetFixture {
protected:
    void addRows(int count) {
        for (int i = 0; i < count; ++i)
            add(QString::number(i));
    }
    QImage picture() { return list().viewport()->grab().toImage(); }
};

TEST_F(ItemListViewTest, RowsFollowEachOtherBelowAGapAndEndAboveOne) {
    addRows(40);
    show();
    const auto rect = [&](int row) { return list().visualRect(list().model()->index(row, 0)); };
    EXPECT_EQ(rect(0).topLeft(), QPoint(0, 8));
    EXPECT_EQ(rect(0).width(), list().viewport()->width());
    EXPECT_EQ(rect(1).top(), rect(0).top() + rect(0).height());
    list().verticalScrollBar()->setValue(list().verticalScrollBar()->maximum());
    EXPECT_EQ(list().viewport()->height() - (rect(39).top() + rect(39).height()), 8);
}

TEST_F(ItemListViewTest, CommandTurnsTheDigitOfTheSelectedRowIntoK) {
    addRows(2);
    show();
    const auto before = picture();
    view.perform([&] { view._commandHeld = true; });
    EXPECT_TRUE(waitFor([&] { return picture() != before; }));
    view.perform([&] { view._commandHeld = false; });
    EXPECT_TRUE(waitFor([&] { return picture() == before; }));
}

TEST_F(ItemListViewTest, AThumbnailTakesThePlaceOfItsPlaceholder) {
    add({}, ClipboardItemType::image, false, png({300, 200}, Qt::red));
    show();
    const auto hasRed = [&] {
        const auto shown = picture();
        const auto row = list().visualRect(list().model()->index(0, 0));
        return shown.pixelColor(row.left() + 12 + 9, row.center().y()) == QColor(Qt::red);
    };
    EXPECT_FALSE(hasRed());
    EXPECT_TRUE(waitFor(hasRed));
}

TEST_F(ItemListViewTest, ABrokenPictureKeepsThePlaceholder) {
    add({}, ClipboardItemType::image, false, QByteArray("no picture"));
    add({}, ClipboardItemType::image, false, png({30, 20}, Qt::red));
    show();
    const auto iconOf = [&](int row) {
        const auto frame = list().visualRect(list().model()->index(row, 0));
        return picture().copy(frame.left() + 12, frame.top(), 18, frame.height());
    };
    const auto placeholder = iconOf(1);
    const auto other = iconOf(0);
    EXPECT_TRUE(waitFor([&] { return iconOf(0) != other; }));
    EXPECT_EQ(iconOf(1), placeholder);
}

TEST_F(ItemListViewTest, IconsGrowWithTheFontOfTheDesktop) {
    EXPECT_EQ(ItemRowDelegate::thumbnailSize(), QSize(18, 18));
    const auto ordinary = QApplication::font();
    auto large = ordinary;
    large.setPointSizeF(3 * ordinary.pointSizeF());
    QApplication::setFont(large);
    EXPECT_GT(ItemRowDelegate::thumbnailSize().width(), 18);
    EXPECT_GT(ItemRowDelegate::rowHeight(), ItemRowDelegate::thumbnailSize().height());
    QApplication::setFont(ordinary);
}

} // namespace
} // namespace kestrova
