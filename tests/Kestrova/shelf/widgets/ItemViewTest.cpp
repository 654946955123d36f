#include "Kestrova/shelf/widgets/ItemView.h"
#include "Kestrova/shelf/widgets/ItemGridView.h"
#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"

#include <QContextMenuEvent>
#include <QScrollBar>

namespace kestrova {
namespace {

class ItemViewFixture : public WidgetFixture {
protected:
    void addRows(int count) {
        for (int i = 0; i < count; ++i)
            add(QString::number(i));
    }
    ItemView& items() {
        if (view._viewMode == ShelfViewMode::list)
            return list();
        return part<ItemGridView>();
    }
    void switchTo(ShelfViewMode mode) {
        view.perform([&] { view._viewMode = mode; });
    }
    QModelIndex index(int place) { return items().model()->index(place, 0); }
    QPoint centre(int place) { return items().visualRect(index(place)).center(); }
    void click(int place, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(items().viewport(), button, Qt::NoModifier, centre(place));
    }
    void moveTo(QPoint place) {
        QMouseEvent event(QEvent::MouseMove, place, items().viewport()->mapToGlobal(place), Qt::NoButton,
                          Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(items().viewport(), &event);
    }
    void leave() {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(items().viewport(), &event);
    }
    void askForMenu(QPoint place, QContextMenuEvent::Reason reason = QContextMenuEvent::Mouse) {
        QContextMenuEvent event(reason, place, items().viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(items().viewport(), &event);
    }
    ItemID idAt(int place) { return view.filteredItems()[static_cast<std::size_t>(place)]->id(); }
    QScrollBar& bar() { return *items().verticalScrollBar(); }
    bool isInSight(ItemID id) {
        const auto place = view.indexInFilteredItems(id);
        return place &&
               items().viewport()->rect().contains(items().visualRect(index(static_cast<int>(*place))));
    }
    QImage picture() { return items().viewport()->grab().toImage(); }
};

/// What holds for rows and for cards alike.
class ItemViewTest : public ItemViewFixture, public testing::WithParamInterface<ShelfViewMode> {
protected:
    ItemViewTest() { switchTo(GetParam()); }
};

INSTANTIATE_TEST_SUITE_P(Modes, ItemViewTest, testing::Values(ShelfViewMode::list, ShelfViewMode::grid),
                         [](const auto& mode) {
                             return mode.param == ShelfViewMode::list ? "List" : "Grid";
                         });

TEST_P(ItemViewTest, ShowsTheFilteredItemsInOrder) {
    addRows(3);
    show();
    ASSERT_EQ(items().model()->rowCount(), 3);
    EXPECT_EQ(index(0).data().toString(), u"2");
    view.perform([&] { view._query = u"1"_qs; });
    ASSERT_EQ(items().model()->rowCount(), 1);
    EXPECT_EQ(index(0).data().toString(), u"1");
}

TEST_P(ItemViewTest, AClickSelectsTheItemAndEntersTheListLane) {
    addRows(3);
    show();
    click(2);
    EXPECT_EQ(view._selection, idAt(2));
    EXPECT_EQ(view._lane, KeyboardLane::list);
    EXPECT_FALSE(view._searchFocused);
    EXPECT_TRUE(hud.shown.empty());
}

TEST_P(ItemViewTest, ADoubleClickSelectsAndCopiesWithAToast) {
    addRows(3);
    show();
    click(1);
    QTest::mouseDClick(items().viewport(), Qt::LeftButton, Qt::NoModifier, centre(1));
    EXPECT_EQ(view._selection, idAt(1));
    ASSERT_EQ(pasteboard.written().size(), 1U);
    ASSERT_EQ(hud.shown.size(), 1U);
    EXPECT_EQ(hud.shown.front().first, HUDEvent::copied);
    EXPECT_EQ(hud.shown.front().second->content(), u"1");
}

TEST_P(ItemViewTest, ADoubleClickOverRowsThatMovedBetweenItsClicksCopiesNothing) {
    addRows(2);
    show();
    const auto place = centre(0);
    QTest::mouseClick(items().viewport(), Qt::LeftButton, Qt::NoModifier, place);
    add(u"arrived"_qs);
    QTest::mouseDClick(items().viewport(), Qt::LeftButton, Qt::NoModifier, place);
    EXPECT_TRUE(pasteboard.written().empty());
    EXPECT_TRUE(hud.shown.empty());
}

TEST_P(ItemViewTest, OtherButtonsAndEmptyGroundSelectNothing) {
    addRows(2);
    show();
    const auto before = view._selection;
    click(1, Qt::RightButton);
    click(1, Qt::MiddleButton);
    QTest::mouseClick(items().viewport(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(20, items().viewport()->height() - 4));
    EXPECT_EQ(view._selection, before);
    EXPECT_TRUE(view._searchFocused);
}

TEST_P(ItemViewTest, APressThatIsLetGoElsewhereSelectsNothing) {
    addRows(3);
    show();
    const auto before = view._selection;
    QTest::mousePress(items().viewport(), Qt::LeftButton, Qt::NoModifier, centre(1));
    QTest::mouseRelease(items().viewport(), Qt::LeftButton, Qt::NoModifier, centre(2));
    EXPECT_EQ(view._selection, before);
}

TEST_P(ItemViewTest, APressMeansTheItemAndNotThePlace) {
    addRows(3);
    show();
    const auto place = centre(1);
    const auto before = view._selection;
    QTest::mousePress(items().viewport(), Qt::LeftButton, Qt::NoModifier, place);
    add(u"newer"_qs);
    QTest::mouseRelease(items().viewport(), Qt::LeftButton, Qt::NoModifier, place);
    EXPECT_EQ(view._selection, before);
}

TEST_P(ItemViewTest, TheMenuIsAskedForOfTheItemUnderThePointerAndSelectsNothing) {
    addRows(3);
    show();
    const auto before = view._selection;
    std::vector<std::pair<QString, QPoint>> asked;
    items().onContextMenu = [&](const auto& item, QPoint place) {
        asked.emplace_back(item->content(), place);
    };
    const auto place = centre(2);
    askForMenu(place);
    ASSERT_EQ(asked.size(), 1U);
    EXPECT_EQ(asked.front(), std::pair(u"0"_qs, items().viewport()->mapToGlobal(place)));
    EXPECT_EQ(view._selection, before);
    askForMenu(QPoint(20, items().viewport()->height() - 4));
    askForMenu(place, QContextMenuEvent::Keyboard);
    EXPECT_EQ(asked.size(), 1U);
}

TEST_P(ItemViewTest, HoverIsToldAndDoesNotMoveTheSelection) {
    addRows(3);
    show();
    moveTo(centre(1));
    EXPECT_EQ(view._hoveredItem, idAt(1));
    EXPECT_EQ(view._selection, idAt(0));
    moveTo(centre(2));
    EXPECT_EQ(view._hoveredItem, idAt(2));
    leave();
    EXPECT_EQ(view._hoveredItem, std::nullopt);
}

TEST_P(ItemViewTest, LeavingKeepsTheHoverOfAnotherItem) {
    addRows(3);
    show();
    moveTo(centre(1));
    view.perform([&] { view._hoveredItem = idAt(0); });
    leave();
    EXPECT_EQ(view._hoveredItem, idAt(0));
}

TEST_P(ItemViewTest, AHiddenPanelHoversNothing) {
    addRows(2);
    show();
    moveTo(centre(1));
    panel.orderOut();
    EXPECT_EQ(view._hoveredItem, std::nullopt);
}

TEST_P(ItemViewTest, AHoveredAndASelectedItemLookDifferent) {
    addRows(3);
    show();
    const auto before = picture();
    moveTo(centre(1));
    const auto hovered = picture();
    EXPECT_NE(hovered, before);
    leave();
    view.perform([&] { view._selection = idAt(1); });
    EXPECT_NE(picture(), before);
    EXPECT_NE(picture(), hovered);
}

TEST_P(ItemViewTest, AScrollTargetComesToTheCentreOnce) {
    addRows(200);
    show();
    view.perform([&] { view._scrollTarget = idAt(100); });
    const auto cell = items().visualRect(index(100));
    EXPECT_NEAR(cell.center().y(), items().viewport()->height() / 2, 1);
    bar().setValue(0);
    view.perform([&] { view._selection = idAt(3); });
    view.perform([&] { view._scrollTarget = idAt(100); });
    EXPECT_EQ(bar().value(), 0);
}

TEST_P(ItemViewTest, AScrollTargetThatIsNotShownMovesNothing) {
    addRows(200);
    const auto hidden = add(u"other"_qs, ClipboardItemType::url);
    show();
    view.perform([&] { view._typeFilter = ClipboardItemType::text; });
    bar().setValue(300);
    view.perform([&] { view._scrollTarget = hidden->id(); });
    EXPECT_EQ(bar().value(), 300);
}

TEST_P(ItemViewTest, ATargetSetWhileThePanelIsHiddenIsInTheCentreWhenItIsShown) {
    addRows(200);
    view.perform([&] { view._scrollTarget = idAt(100); });
    panel.setFrame({.x = 0, .y = 0, .width = 960, .height = 540});
    panel.orderFrontRegardless();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&panel));
    EXPECT_NEAR(centre(100).y(), items().viewport()->height() / 2, 1);
}

TEST_P(ItemViewTest, AtTheTopANewItemIsSeen) {
    addRows(100);
    show();
    const auto added = add(u"new"_qs);
    EXPECT_EQ(bar().value(), 0);
    EXPECT_TRUE(isInSight(added->id()));
}

TEST_P(ItemViewTest, WhatIsReadFurtherDownStaysWhereItIsWhenAnItemArrives) {
    addRows(100);
    show();
    const int columns = static_cast<int>(view._viewMode == ShelfViewMode::grid ? view._gridColumnCount : 1);
    bar().setValue(500);
    const auto read = items().indexAt(QPoint(40, items().viewport()->height() / 3));
    ASSERT_TRUE(read.isValid());
    const auto id = items().item(read)->id();
    const int before = items().visualRect(read).top();
    for (int i = 0; i < columns; ++i)
        add(u"new"_qs);
    EXPECT_EQ(items().visualRect(index(static_cast<int>(*view.indexInFilteredItems(id)))).top(), before);
}

TEST_P(ItemViewTest, WhatIsReadFurtherDownStaysWhereItIsWhenOneAboveGoes) {
    addRows(100);
    show();
    bar().setValue(1500);
    const auto selected = items().indexAt(QPoint(40, items().viewport()->height() / 2));
    ASSERT_TRUE(selected.isValid());
    const auto id = items().item(selected)->id();
    view.perform([&] { view._selection = id; });
    const int before = items().visualRect(selected).top();
    view.perform([&] { view.deleteItem(*view.filteredItems().front()); });
    EXPECT_EQ(items().visualRect(index(static_cast<int>(*view.indexInFilteredItems(id)))).top(), before);
}

TEST_P(ItemViewTest, NeverScrollsSideways) {
    add(QString(5000, u'x'));
    show();
    EXPECT_EQ(items().horizontalScrollBar()->maximum(), 0);
}

TEST_P(ItemViewTest, TheWheelMovesByPoints) {
    addRows(200);
    show();
    const auto place = QPointF(40, 40);
    const auto turn = [&](QPoint pixels, QPoint angle) {
        QWheelEvent event(place, items().viewport()->mapToGlobal(place), pixels, angle, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(items().viewport(), &event);
    };
    turn({}, {0, -120});
    const int notch = bar().value();
    EXPECT_GT(notch, 60);
    EXPECT_LT(notch, items().viewport()->height() / 2);
    turn({}, {0, -30});
    EXPECT_GT(bar().value(), notch);
    EXPECT_LT(bar().value(), notch + 60);
}

TEST_P(ItemViewTest, AnEmptyOneSaysSo) {
    show();
    const auto empty = picture();
    EXPECT_EQ(items().model()->rowCount(), 0);
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

TEST_P(ItemViewTest, APinFadesInAndOut) {
    const auto item = add(u"a"_qs);
    show();
    const auto before = picture();
    view.perform([&] { view.togglePin(*item); });
    EXPECT_EQ(picture(), before) << "it begins with nothing";
    EXPECT_TRUE(waitFor([&] { return picture() != before; }));
    view.perform([&] { view.togglePin(*item); });
    EXPECT_TRUE(waitFor([&] { return picture() == before; }));
}

TEST_P(ItemViewTest, TheLargestFontKeepsEachItemApart) {
    const auto ordinary = QApplication::font();
    addRows(6);
    show();
    const int height = items().visualRect(index(0)).height();
    auto large = ordinary;
    large.setPointSizeF(2 * ordinary.pointSizeF());
    QApplication::setFont(large);
    EXPECT_TRUE(waitFor([&] { return items().visualRect(index(0)).height() > height; }));
    for (int i = 0; i < 5; ++i)
        EXPECT_FALSE(items().visualRect(index(i)).intersects(items().visualRect(index(i + 1))));
    QApplication::setFont(ordinary);
}

// Between the two

class ViewModeTest : public ItemViewFixture {};

TEST_F(ViewModeTest, OnlyTheOneOfTheModeIsThere) {
    addRows(3);
    show();
    EXPECT_TRUE(list().isVisible());
    EXPECT_FALSE(part<ItemGridView>().isVisible());
    EXPECT_EQ(part<ItemGridView>().model()->rowCount(), 0);
    switchTo(ShelfViewMode::grid);
    EXPECT_FALSE(list().isVisible());
    EXPECT_TRUE(part<ItemGridView>().isVisible());
    EXPECT_EQ(part<ItemGridView>().model()->rowCount(), 3);
    EXPECT_EQ(list().model()->rowCount(), 0);
}

TEST_F(ViewModeTest, TheSelectedItemIsInSightAfterEachSwitch) {
    addRows(200);
    show();
    view.perform([&] { view._selection = idAt(120); });
    for (const auto mode :
         {ShelfViewMode::grid, ShelfViewMode::list, ShelfViewMode::grid, ShelfViewMode::list}) {
        switchTo(mode);
        EXPECT_TRUE(isInSight(idAt(120)));
        // Whoever looks elsewhere meanwhile still comes back to it.
        bar().setValue(0);
    }
    switchTo(ShelfViewMode::grid);
    view.perform([&] { view._selection = idAt(60); });
    switchTo(ShelfViewMode::list);
    EXPECT_TRUE(isInSight(idAt(60)));
}

TEST_F(ViewModeTest, AHiddenAndShownPanelKeepsThePlaceToWhichItWasScrolled) {
    addRows(200);
    show();
    bar().setValue(1000);
    panel.orderOut();
    show();
    EXPECT_EQ(bar().value(), 1000);
}

TEST_F(ViewModeTest, HoverEndsWithTheView) {
    addRows(3);
    show();
    moveTo(centre(1));
    switchTo(ShelfViewMode::grid);
    EXPECT_EQ(view._hoveredItem, std::nullopt);
}

TEST_F(ViewModeTest, NeitherTakesTheKeyboard) {
    show();
    for (const auto mode : {ShelfViewMode::list, ShelfViewMode::grid}) {
        switchTo(mode);
        EXPECT_EQ(items().focusPolicy(), Qt::NoFocus);
        EXPECT_EQ(items().viewport()->focusPolicy(), Qt::NoFocus);
    }
}

} // namespace
} // namespace kestrova
