#include "tests/Kestrova/shelf/ShelfFixture.h"

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using enum ClipboardItemType;

/// With the panel up, and three letters of which "a" is the newest.
class ShelfReactionsTest : public ShelfFixture {
protected:
    ShelfReactionsTest() {
        addLetters(u"cba"_qs);
        panel.visible = true;
    }
    void focusSearch() {
        act([&] { view._searchFocused = true; });
    }
};

// The view appears, is shown, disappears

TEST_F(ShelfReactionsTest, AppearingSelectsTheFirstItemAndLeavesTheScrollTargetAlone) {
    view.viewAppears();
    EXPECT_EQ(selected(), u"a"_qs);
    EXPECT_EQ(view._scrollTarget, std::nullopt);
}

TEST_F(ShelfReactionsTest, AppearingWithAnEmptyListSelectsNothing) {
    selectIndex(1);
    lens(CollectionFilter::screenshots());
    view.viewAppears();
    EXPECT_EQ(view._selection, std::nullopt);
}

TEST_F(ShelfReactionsTest, AppearingPutsTheKeyboardIntoTheSearch) {
    lane(KeyboardLane::list);
    view.viewAppears();
    EXPECT_EQ(view._lane, KeyboardLane::search);
    EXPECT_TRUE(view._searchFocused);
}

TEST_F(ShelfReactionsTest, AppearingInstallsTheMonitorsOnce) {
    view.viewAppears();
    view.viewAppears();
    EXPECT_EQ(monitors.localMonitors(EventMask::keyDown), 1u);
    EXPECT_EQ(monitors.localMonitors(EventMask::flagsChanged), 1u);
    EXPECT_EQ(monitors.localMonitors(), 2u);
}

TEST_F(ShelfReactionsTest, EachShowSelectsTheNewestMatchAndPutsTheKeyboardIntoTheSearch) {
    lane(KeyboardLane::list);
    selectIndex(2);
    view.shelfPanelDidShow();
    EXPECT_EQ(selected(), u"a"_qs);
    EXPECT_EQ(view._scrollTarget, view._selection);
    EXPECT_EQ(view._lane, KeyboardLane::search);
    EXPECT_TRUE(view._searchFocused);
}

TEST_F(ShelfReactionsTest, AShowKeepsSearchFiltersRouteAndMode) {
    add(u"xa"_qs, {.pinned = true});
    lens(CollectionFilter::pinned());
    chip(text);
    type(u"x"_qs);
    useGrid();
    act([&] { view.preview(view.items().front()); });
    view.shelfPanelDidShow();
    EXPECT_EQ(view._query, u"x"_qs);
    EXPECT_EQ(view._typeFilter, text);
    EXPECT_EQ(view._collectionFilter, CollectionFilter::pinned());
    EXPECT_EQ(view._viewMode, ShelfViewMode::grid);
    EXPECT_TRUE(view._route);
    EXPECT_EQ(selected(), u"xa"_qs);
}

TEST_F(ShelfReactionsTest, DisappearingEndsTheMonitorsAndTheDrags) {
    view.viewAppears();
    act([&] {
        view._optionHeld = view._commandHeld = view._controlHeld = true;
        view._hoverPollTimer = queue.every(50ms, [] {});
        view._dragReorderPollTimer = queue.every(50ms, [] {});
        view._hoveredDropTarget = TabDropTarget{CollectionID{1}};
        view._draggingCollectionID = CollectionID{1};
        view._dragReorderHoverX = 5;
    });
    view.viewDisappears();
    EXPECT_EQ(monitors.localMonitors(), 0u);
    EXPECT_FALSE(view._optionHeld || view._commandHeld || view._controlHeld);
    EXPECT_FALSE(view._hoverPollTimer);
    EXPECT_FALSE(view._dragReorderPollTimer);
    EXPECT_TRUE(queue.isEmpty());
    EXPECT_EQ(view._hoveredDropTarget, std::nullopt);
    EXPECT_EQ(view._draggingCollectionID, std::nullopt);
    EXPECT_EQ(view._dragReorderHoverX, std::nullopt);
}

// Fields change

TEST_F(ShelfReactionsTest, FocusingTheSearchByAnyMeansSetsItsLane) {
    lane(KeyboardLane::sidebar);
    focusSearch();
    EXPECT_EQ(view._lane, KeyboardLane::search);
}

TEST_F(ShelfReactionsTest, LosingTheFocusKeepsTheLane) {
    focusSearch();
    act([&] {
        view._searchFocused = false;
        view._lane = KeyboardLane::tags;
    });
    EXPECT_EQ(view._lane, KeyboardLane::tags);
}

TEST_F(ShelfReactionsTest, TypingSelectsTheFirstMatchAndLeavesTheFocus) {
    focusSearch();
    type(u"b"_qs);
    EXPECT_EQ(selected(), u"b"_qs);
    EXPECT_EQ(view._scrollTarget, view._selection);
    EXPECT_TRUE(view._searchFocused);
    EXPECT_EQ(endedEditing(), 0);
    type(u"bb"_qs);
    EXPECT_EQ(view._selection, std::nullopt);
    EXPECT_EQ(view._scrollTarget, std::nullopt);
}

TEST_F(ShelfReactionsTest, TypingIntoTheSearchClearsNoFilter) {
    add(u"b2"_qs, {.pinned = true});
    lens(CollectionFilter::pinned());
    chip(text);
    type(u"b"_qs);
    EXPECT_EQ(view._collectionFilter, CollectionFilter::pinned());
    EXPECT_EQ(view._typeFilter, text);
}

TEST_F(ShelfReactionsTest, AChipThatIsChosenWhileTextIsInTheFieldTakesTheFocusAndKeepsTheText) {
    const auto link = add(u"link b"_qs, {.type = url});
    type(u"b"_qs);
    focusSearch();
    selectIndex(1);
    act([&] { view.selectTypeChip(2); });
    EXPECT_EQ(view._query, u"b"_qs);
    EXPECT_FALSE(view._searchFocused);
    EXPECT_EQ(endedEditing(), 1);
    EXPECT_EQ(view._selection, link->id());
    EXPECT_EQ(view._scrollTarget, link->id());
}

TEST_F(ShelfReactionsTest, ALensSelectsItsFirstItemAndTakesTheFocus) {
    focusSearch();
    act([&] { view.togglePin(*view.items()[1]); });
    act([&] { view._activeTagIndex = 1; });
    lens(CollectionFilter::pinned());
    EXPECT_EQ(selected(), u"b"_qs);
    EXPECT_EQ(view._scrollTarget, view._selection);
    EXPECT_EQ(view._activeTagIndex, 0u);
    EXPECT_FALSE(view._searchFocused);
    EXPECT_EQ(endedEditing(), 1);
}

TEST_F(ShelfReactionsTest, FromAllToScreenshotsTheChipIsClearedEvenIfItWouldStillMatch) {
    add(u"shot"_qs, {.type = image, .source = ItemSource::screenshot});
    chip(image);
    lens(CollectionFilter::screenshots());
    EXPECT_EQ(view._typeFilter, std::nullopt);
    EXPECT_EQ(shown(), QStringList{u"shot"_qs});
}

TEST_F(ShelfReactionsTest, BetweenAllAndPinnedAnAvailableChipIsKeptWhileItsKeyboardPositionSaysZero) {
    add(u"link"_qs, {.type = url, .pinned = true});
    lens(CollectionFilter::pinned());
    chip(url);
    act([&] { view._activeTagIndex = 1; });
    lens(CollectionFilter::all());
    EXPECT_EQ(view._typeFilter, url);
    EXPECT_EQ(view._activeTagIndex, 0u);
    lens(CollectionFilter::pinned());
    EXPECT_EQ(view._typeFilter, url);
}

TEST_F(ShelfReactionsTest, FromAllToPinnedAChipThatNothingPinnedFillsIsCleared) {
    add(u"link"_qs, {.type = url});
    add(u"pinned"_qs, {.pinned = true});
    chip(url);
    lens(CollectionFilter::pinned());
    EXPECT_EQ(view._typeFilter, std::nullopt);
    EXPECT_EQ(selected(), u"pinned"_qs);
}

TEST_F(ShelfReactionsTest, EveryOtherChangeOfTheLensClearsTheChip) {
    const auto work = addCollection(u"work"_qs);
    const auto home = addCollection(u"home"_qs);
    const auto all = CollectionFilter::all();
    const auto pinned = CollectionFilter::pinned();
    const auto screenshots = CollectionFilter::screenshots();
    const auto atWork = CollectionFilter::collection(work->id());
    const auto atHome = CollectionFilter::collection(home->id());
    // A text in each of them, so that the chip would be available.
    const auto everywhere = add(u"everywhere"_qs, {.pinned = true, .source = ItemSource::screenshot});
    put(everywhere, work);
    put(everywhere, home);
    const std::vector<std::pair<CollectionFilter, CollectionFilter>> changes{
        {all, screenshots},    {all, atWork},    {pinned, screenshots}, {pinned, atWork},
        {screenshots, all},    {atWork, all},    {screenshots, pinned}, {atWork, pinned},
        {screenshots, atWork}, {atWork, atHome}, {atWork, screenshots}};
    for (const auto& [from, to] : changes) {
        lens(from);
        chip(text);
        lens(to);
        EXPECT_EQ(view._typeFilter, std::nullopt);
    }
}

TEST_F(ShelfReactionsTest, HidingTheSidebarReportsTheWidthLeavesItsLaneAndTakesTheFocus) {
    focusSearch();
    lane(KeyboardLane::sidebar);
    hideSidebar();
    EXPECT_EQ(widths, std::vector<double>{760});
    EXPECT_EQ(view._lane, KeyboardLane::list);
    EXPECT_FALSE(view._searchFocused);
    EXPECT_EQ(endedEditing(), 1);
}

TEST_F(ShelfReactionsTest, HidingTheSidebarKeepsEveryOtherLane) {
    for (const auto other : {KeyboardLane::search, KeyboardLane::tags, KeyboardLane::list}) {
        act([&] { view._sidebarVisible = true; });
        lane(other);
        hideSidebar();
        EXPECT_EQ(view._lane, other);
    }
}

TEST_F(ShelfReactionsTest, ShowingTheSidebarReportsTheWidth) {
    hideSidebar();
    act([&] { view._sidebarVisible = true; });
    EXPECT_EQ(widths, (std::vector<double>{760, 960}));
}

TEST_F(ShelfReactionsTest, AnotherModeReportsTheWidthScrollsToTheSelectionAndTakesTheFocus) {
    focusSearch();
    selectIndex(2);
    useGrid();
    EXPECT_EQ(widths, std::vector<double>{960});
    EXPECT_EQ(view._scrollTarget, view._selection);
    EXPECT_FALSE(view._searchFocused);
    EXPECT_EQ(endedEditing(), 1);
}

TEST_F(ShelfReactionsTest, AnotherModeWithoutASelectionKeepsTheScrollTarget) {
    const auto target = view.items()[1]->id();
    act([&] { view._scrollTarget = target; });
    selectItem(std::nullopt);
    useGrid();
    EXPECT_EQ(view._scrollTarget, target);
}

TEST_F(ShelfReactionsTest, TogglingThePreviewReportsTheWidthAndTakesTheFocus) {
    hideSidebar();
    widths.clear();
    focusSearch();
    act([&] { view._previewVisible = false; });
    EXPECT_EQ(widths, std::vector<double>{760});
    EXPECT_FALSE(view._searchFocused);
}

TEST_F(ShelfReactionsTest, AFlagThatIsChangedElsewhereRunsTheSameReactions) {
    lane(KeyboardLane::sidebar);
    defaults.set(QStringLiteral("shelfSidebarVisible"), false);
    EXPECT_EQ(widths, std::vector<double>{760});
    EXPECT_EQ(view._lane, KeyboardLane::list);
    defaults.set(QStringLiteral("shelfPreviewVisible"), false);
    EXPECT_EQ(widths, (std::vector<double>{760, 760}));
}

// The history changes

TEST_F(ShelfReactionsTest, ANewItemAppearsAtTheTopAndTheSelectionStays) {
    selectIndex(1);
    add(u"new"_qs);
    EXPECT_EQ(shown().front(), u"new"_qs);
    EXPECT_EQ(selected(), u"b"_qs);
}

TEST_F(ShelfReactionsTest, AnItemThatIsDeletedWhileSelectedStaysSelectedAndOneStepLeadsToTheFirst) {
    selectIndex(1);
    const auto gone = view._selection;
    deleteElsewhere(*gone);
    EXPECT_EQ(view._selection, gone);
    EXPECT_EQ(view.currentItem()->content(), u"a"_qs);
    act([&] { view.moveSelection(1); });
    EXPECT_EQ(view.indexInFilteredItems(view._selection), 0u);
}

TEST_F(ShelfReactionsTest, ASelectionThatTheSearchHidesIsReplacedAtTheNextChangeOfTheQuery) {
    type(u"b"_qs);
    const auto hidden = view.items()[0]->id();
    selectItem(hidden);
    EXPECT_EQ(view._selection, hidden);
    EXPECT_EQ(view.currentItem()->content(), u"b"_qs);
    type(u"c"_qs);
    EXPECT_EQ(selected(), u"c"_qs);
}

TEST_F(ShelfReactionsTest, AChipWithTheSidebarHiddenClearsItselfThroughTheLens) {
    // From pinned to all it is kept; from any other lens the lens's own reaction clears it.
    add(u"shot"_qs, {.type = image, .pinned = true, .source = ItemSource::screenshot});
    hideSidebar();
    lens(CollectionFilter::screenshots());
    act([&] { view.selectTypeChip(1); });
    EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
    EXPECT_EQ(view._typeFilter, std::nullopt);
    lens(CollectionFilter::pinned());
    act([&] { view.selectTypeChip(1); });
    EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
    EXPECT_EQ(view._typeFilter, image);
}

// The moment to paint

class ShelfRenderTest : public ShelfReactionsTest {
protected:
    ShelfRenderTest() {
        view.onRender = [this] { ++renders; };
    }
    int rendersOf(const std::function<void()>& handler) {
        const int before = renders;
        act(handler);
        return renders - before;
    }
    int renders = 0;
};

TEST_F(ShelfRenderTest, EveryPaintedFieldIsPaintedOnceItHasChanged) {
    const auto a = view.items().front();
    const std::vector<std::pair<const char*, std::function<void()>>> changes{
        {"_query", [&] { view._query = u"a"_qs; }},
        {"_selection", [&] { view._selection = view.items()[1]->id(); }},
        {"_hoveredItem", [&] { view._hoveredItem = a->id(); }},
        {"_scrollTarget", [&] { view._scrollTarget = view.items()[2]->id(); }},
        {"_typeFilter", [&] { view._typeFilter = text; }},
        {"_collectionFilter", [&] { view._collectionFilter = CollectionFilter::pinned(); }},
        {"_route", [&] { view._route = DetailRoute::actions(a); }},
        {"_optionHeld", [&] { view._optionHeld = true; }},
        {"_commandHeld", [&] { view._commandHeld = true; }},
        {"_controlHeld", [&] { view._controlHeld = true; }},
        {"_searchFocused", [&] { view._searchFocused = true; }},
        {"_lane", [&] { view._lane = KeyboardLane::list; }},
        {"_activeTagIndex", [&] { view._activeTagIndex = 1; }},
        {"_sidebarVisible", [&] { view._sidebarVisible = false; }},
        {"_viewMode", [&] { view._viewMode = ShelfViewMode::grid; }},
        {"_previewVisible", [&] { view._previewVisible = false; }}};
    for (const auto& [field, change] : changes) {
        EXPECT_EQ(rendersOf(change), 1) << field;
        EXPECT_EQ(rendersOf(change), 0) << field << " again";
    }
}

TEST_F(ShelfRenderTest, TheHistoryTheCollectionsAndTheThemeArePaintedToo) {
    add(u"new"_qs);
    EXPECT_EQ(renders, 1);
    addCollection(u"work"_qs);
    EXPECT_EQ(renders, 2);
    defaults.set(QStringLiteral("themePreference"), QStringLiteral("light"));
    EXPECT_EQ(renders, 3);
}

TEST_F(ShelfRenderTest, AHandlerThatChangesTheHistoryTwiceIsPaintedOnce) {
    EXPECT_EQ(rendersOf([&] {
                  view.deleteItem(*view.items().front());
                  view.undoLastDelete();
              }),
              1);
}

TEST_F(ShelfRenderTest, WhatIsNotPaintedIsNot) {
    EXPECT_EQ(rendersOf([&] {
                  view._gridColumnCount = 7;
                  view._tabFrames[{CollectionID{1}}] = QRectF(0, 0, 1, 1);
                  view._dragReorderHoverX = 3;
                  view._hoveredDropTarget = TabDropTarget{CollectionID{1}};
              }),
              0);
}

} // namespace
} // namespace kestrova
