#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"

#include <QScrollBar>
#include <QWheelEvent>

namespace kestrova {
namespace {

class ItemListViewTest : public WidgetFixture {
protected:
    void addRows(int count) {
        for (int i = 0; i < count; ++i)
            add(QString::number(i));
    }
    void click(int row) {
        QTest::mouseClick(list().viewport(), Qt::LeftButton, Qt::NoModifier, centreOfRow(row));
    }
    void moveTo(QPoint place) {
        QMouseEvent event(QEvent::MouseMove, place, list().viewport()->mapToGlobal(place), Qt::NoButton,
                          Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(list().viewport(), &event);
    }
    void leave() {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(list().viewport(), &event);
    }
    ItemID idAt(int row) { return view.filteredItems()[static_cast<std::size_t>(row)]->id(); }
    QImage picture() { return list().viewport()->grab().toImage(); }
};

TEST_F(ItemListViewTest, ShowsTheFilteredItemsInOrder) {
    addRows(3);
    show();
    ASSERT_EQ(list().model()->rowCount(), 3);
    EXPECT_EQ(list().model()->index(0, 0).data().toString(), u"2");
    view.perform([&] { view._query = u"1"_qs; });
    ASSERT_EQ(list().model()->rowCount(), 1);
    EXPECT_EQ(list().model()->index(0, 0).data().toString(), u"1");
}

TEST_F(ItemListViewTest, AClickSelectsTheRowAndEntersTheListLane) {
    addRows(3);
    show();
    click(2);
    EXPECT_EQ(view._selection, idAt(2));
    EXPECT_EQ(view._lane, KeyboardLane::list);
    EXPECT_FALSE(view._searchFocused);
    EXPECT_TRUE(hud.shown.empty());
}

TEST_F(ItemListViewTest, ADoubleClickSelectsAndCopiesWithAToast) {
    addRows(3);
    show();
    click(1);
    QTest::mouseDClick(list().viewport(), Qt::LeftButton, Qt::NoModifier, centreOfRow(1));
    EXPECT_EQ(view._selection, idAt(1));
    ASSERT_EQ(pasteboard.written().size(), 1U);
    ASSERT_EQ(hud.shown.size(), 1U);
    EXPECT_EQ(hud.shown.front().first, HUDEvent::copied);
    EXPECT_EQ(hud.shown.front().second->content(), u"1");
}

TEST_F(ItemListViewTest, OtherButtonsAndEmptyGroundSelectNothing) {
    addRows(2);
    show();
    const auto before = view._selection;
    QTest::mouseClick(list().viewport(), Qt::RightButton, Qt::NoModifier, centreOfRow(1));
    QTest::mouseClick(list().viewport(), Qt::MiddleButton, Qt::NoModifier, centreOfRow(1));
    QTest::mouseClick(list().viewport(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(20, list().viewport()->height() - 4));
    EXPECT_EQ(view._selection, before);
    EXPECT_TRUE(view._searchFocused);
}

TEST_F(ItemListViewTest, HoverIsToldAndDoesNotMoveTheSelection) {
    addRows(3);
    show();
    moveTo(centreOfRow(1));
    EXPECT_EQ(view._hoveredItem, idAt(1));
    EXPECT_EQ(view._selection, idAt(0));
    moveTo(centreOfRow(2));
    EXPECT_EQ(view._hoveredItem, idAt(2));
    leave();
    EXPECT_EQ(view._hoveredItem, std::nullopt);
}

TEST_F(ItemListViewTest, LeavingKeepsTheHoverOfAnotherRow) {
    addRows(3);
    show();
    moveTo(centreOfRow(1));
    view.perform([&] { view._hoveredItem = idAt(0); });
    leave();
    EXPECT_EQ(view._hoveredItem, idAt(0));
}

TEST_F(ItemListViewTest, AHiddenPanelHoversNothing) {
    addRows(2);
    show();
    moveTo(centreOfRow(1));
    panel.orderOut();
    EXPECT_EQ(view._hoveredItem, std::nullopt);
}

TEST_F(ItemListViewTest, AScrollTargetComesToTheCentreOnce) {
    addRows(200);
    show();
    view.perform([&] { view._scrollTarget = idAt(100); });
    const auto row = list().visualRect(list().model()->index(100, 0));
    EXPECT_NEAR(row.center().y(), list().viewport()->height() / 2, row.height());
    list().verticalScrollBar()->setValue(0);
    view.perform([&] { view._selection = idAt(3); });
    EXPECT_EQ(list().verticalScrollBar()->value(), 0);
}

TEST_F(ItemListViewTest, NeverScrollsSideways) {
    add(QString(5000, u'x'));
    show();
    EXPECT_EQ(list().horizontalScrollBar()->maximum(), 0);
}

TEST_F(ItemListViewTest, AnEmptyListSaysSo) {
    show();
    const auto empty = picture();
    EXPECT_EQ(list().model()->rowCount(), 0);
    const auto middle = empty.copy(0, empty.height() / 2 - 60, empty.width(), 120);
    const auto ground = middle.pixel(0, 0);
    int drawn = 0;
    for (int y = 0; y < middle.height(); ++y)
        for (int x = 0; x < middle.width(); ++x)
            drawn += middle.pixel(x, y) != ground ? 1 : 0;
    EXPECT_GT(drawn, 300);
    add(u"one"_qs);
    EXPECT_NE(picture(), empty);
}

TEST_F(ItemListViewTest, ASelectedRowLooksDifferent) {
    addRows(2);
    show();
    const auto before = picture();
    view.perform([&] { view._selection = idAt(1); });
    EXPECT_NE(picture(), before);
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

TEST_F(ItemListViewTest, APinAppearsWithTheChange) {
    const auto item = add(u"a"_qs);
    show();
    const auto before = picture();
    view.perform([&] { view.togglePin(*item); });
    EXPECT_TRUE(waitFor([&] { return picture() != before; }));
    view.perform([&] { view.togglePin(*item); });
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

} // namespace
} // namespace kestrova
