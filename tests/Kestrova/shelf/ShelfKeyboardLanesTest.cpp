#include "tests/Kestrova/shelf/ShelfFixture.h"

namespace kestrova {
namespace {

using enum ClipboardItemType;

class ShelfLanesTest : public ShelfKeyboardFixture {
protected:
    static constexpr auto search = KeyboardLane::search;
    static constexpr auto sidebar = KeyboardLane::sidebar;
    static constexpr auto tags = KeyboardLane::tags;
    static constexpr auto list = KeyboardLane::list;

    /// Ten rows, "0" the first.
    void addTen() { addLetters(u"9876543210"_qs); }
    void enterGrid() {
        useGrid();
        lane(list);
    }
};

// Search

TEST_F(ShelfLanesTest, FromTheSearchDownLeadsToTheChips) {
    addOneOfEachType();
    chip(image);
    panel.visible = true;
    act([&] { view._searchFocused = true; });
    EXPECT_TRUE(down());
    EXPECT_EQ(view._lane, tags);
    EXPECT_EQ(view._activeTagIndex, 3u);
    EXPECT_FALSE(view._searchFocused);
    EXPECT_EQ(endedEditing(), 1);
}

TEST_F(ShelfLanesTest, FromTheSearchDownIsTakenWithAnEmptyHistoryToo) {
    EXPECT_TRUE(down());
    EXPECT_EQ(view._lane, tags);
    EXPECT_EQ(view._activeTagIndex, 0u);
}

TEST_F(ShelfLanesTest, TheSearchFieldKeepsItsArrowsAndItsBlank) {
    addTen();
    EXPECT_FALSE(up());
    EXPECT_FALSE(left());
    EXPECT_FALSE(right());
    EXPECT_FALSE(space());
    EXPECT_EQ(view._lane, search);
    EXPECT_EQ(view._route, std::nullopt);
}

TEST_F(ShelfLanesTest, ReturnWithTheCaretInTheSearchPastesTheFirstMatch) {
    addTen();
    act([&] { view._searchFocused = true; });
    type(u"7"_qs);
    EXPECT_TRUE(enter());
    EXPECT_EQ(pasted, QStringList{u"7"_qs});
}

TEST_F(ShelfLanesTest, ReturnWithNothingFoundPassesOn) {
    addTen();
    type(u"nothing"_qs);
    for (const auto each : {search, list}) {
        lane(each);
        EXPECT_FALSE(enter());
    }
    EXPECT_TRUE(pasted.isEmpty());
}

// Chips that have gone meanwhile

TEST_F(ShelfLanesTest, InTheChipsLeftLeadsBackFromAPositionThatHasGone) {
    addOneOfEachType();
    lane(tags);
    act([&] { view._activeTagIndex = 7; });
    EXPECT_TRUE(left());
    EXPECT_EQ(view._activeTagIndex, 6u);
    EXPECT_FALSE(right()) << "there is nothing to the right";
    EXPECT_EQ(view._activeTagIndex, 6u);
    for (int position = 5; position >= 0; --position)
        EXPECT_TRUE(left());
    EXPECT_EQ(view._activeTagIndex, 0u);
    EXPECT_EQ(view._typeFilter, std::nullopt);
}

// Sidebar

TEST_F(ShelfLanesTest, InTheSidebarUpGoesThroughTheRowsAndThenToTheSearch) {
    lane(sidebar);
    lens(CollectionFilter::screenshots());
    EXPECT_TRUE(up());
    EXPECT_EQ(view._collectionFilter, CollectionFilter::pinned());
    EXPECT_TRUE(up());
    EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
    EXPECT_EQ(view._lane, sidebar);
    EXPECT_TRUE(up());
    EXPECT_EQ(view._lane, search);
    EXPECT_TRUE(view._searchFocused);
}

TEST_F(ShelfLanesTest, InTheSidebarDownGoesToTheLastRowAndStaysThere) {
    const auto work = addCollection(u"work"_qs);
    lane(sidebar);
    for (int row = 1; row <= 3; ++row)
        EXPECT_TRUE(down());
    EXPECT_EQ(view._collectionFilter, CollectionFilter::collection(work->id()));
    EXPECT_TRUE(down());
    EXPECT_EQ(view._collectionFilter, CollectionFilter::collection(work->id()));
    EXPECT_EQ(view._lane, sidebar);
}

TEST_F(ShelfLanesTest, InTheSidebarLeftAndSpacePassOn) {
    addTen();
    lane(sidebar);
    EXPECT_FALSE(left());
    EXPECT_FALSE(space());
    EXPECT_EQ(view._lane, sidebar);
}

TEST_F(ShelfLanesTest, InTheSidebarRightLeadsToTheList) {
    lane(sidebar);
    EXPECT_TRUE(right());
    EXPECT_EQ(view._lane, list);
}

TEST_F(ShelfLanesTest, InTheSidebarReturnOnlyMovesToTheListAndDoesNotPaste) {
    addTen();
    lane(sidebar);
    EXPECT_TRUE(enter());
    EXPECT_EQ(view._lane, list);
    EXPECT_TRUE(pasted.isEmpty());
}

// Chips

TEST_F(ShelfLanesTest, FromTheChipsUpLeadsToTheSearch) {
    lane(tags);
    EXPECT_TRUE(up());
    EXPECT_EQ(view._lane, search);
    EXPECT_TRUE(view._searchFocused);
}

TEST_F(ShelfLanesTest, FromTheChipsDownAndReturnLeadToTheList) {
    addTen();
    lane(tags);
    EXPECT_TRUE(down());
    EXPECT_EQ(view._lane, list);
    lane(tags);
    EXPECT_TRUE(enter());
    EXPECT_EQ(view._lane, list);
    EXPECT_TRUE(pasted.isEmpty());
}

TEST_F(ShelfLanesTest, LeftAndRightStepThroughTheChips) {
    addOneOfEachType();
    lane(tags);
    const std::vector<ClipboardItemType> types{text, url, image, file, color};
    for (std::size_t i = 0; i < types.size(); ++i) {
        EXPECT_TRUE(right());
        EXPECT_EQ(view._activeTagIndex, i + 1);
        EXPECT_EQ(view._typeFilter, types[i]);
    }
    EXPECT_TRUE(left());
    EXPECT_EQ(view._typeFilter, file);
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(left());
    EXPECT_EQ(view._activeTagIndex, 0u);
    EXPECT_EQ(view._typeFilter, std::nullopt);
    EXPECT_EQ(view._lane, tags);
}

TEST_F(ShelfLanesTest, OnTheLastChipRightPassesOnAndNothingHappens) {
    add(u"a"_qs);
    lane(tags);
    EXPECT_TRUE(right());
    EXPECT_FALSE(right());
    EXPECT_EQ(view._activeTagIndex, 1u);
    EXPECT_EQ(view._typeFilter, text);
}

TEST_F(ShelfLanesTest, OnTheFirstChipLeftLeadsToTheSidebarIfItIsShown) {
    lane(tags);
    EXPECT_TRUE(left());
    EXPECT_EQ(view._lane, sidebar);
    hideSidebar();
    lane(tags);
    EXPECT_FALSE(left());
    EXPECT_EQ(view._lane, tags);
}

TEST_F(ShelfLanesTest, AmongTheChipsTheStepGoesFromTheKeyboardPositionNotFromTheChip) {
    addOneOfEachType();
    lane(tags);
    chip(image);
    ASSERT_EQ(view._activeTagIndex, 0u);
    EXPECT_TRUE(left());
    EXPECT_EQ(view._lane, sidebar);
    EXPECT_EQ(view._typeFilter, image);
    lane(tags);
    EXPECT_TRUE(right());
    EXPECT_EQ(view._activeTagIndex, 1u);
    EXPECT_EQ(view._typeFilter, text);
}

TEST_F(ShelfLanesTest, SpaceInChipsAndListOpensThePreview) {
    addTen();
    for (const auto each : {tags, list}) {
        lane(each);
        EXPECT_TRUE(space());
        EXPECT_EQ(view._route, DetailRoute::preview(view.items().front()));
        act([&] { view._route.reset(); });
    }
    enterGrid();
    EXPECT_TRUE(space());
    EXPECT_TRUE(view._route);
}

TEST_F(ShelfLanesTest, SpaceWithNothingToPreviewPassesOn) {
    for (const auto each : {tags, list}) {
        lane(each);
        EXPECT_FALSE(space());
    }
}

TEST_F(ShelfLanesTest, EnteringTheChipsRecomputesThePositionThatTheLensPutToZero) {
    add(u"link"_qs, {.type = url, .pinned = true});
    add(u"text"_qs);
    lens(CollectionFilter::pinned());
    chip(url);
    lens(CollectionFilter::all());
    ASSERT_EQ(view._activeTagIndex, 0u);
    lane(search);
    EXPECT_TRUE(down());
    EXPECT_EQ(view._activeTagIndex, 2u);
}

// List mode

TEST_F(ShelfLanesTest, InTheListUpAndDownMoveOneRow) {
    addTen();
    lane(list);
    selectIndex(3);
    EXPECT_TRUE(down());
    EXPECT_EQ(selected(), u"4"_qs);
    EXPECT_EQ(view._scrollTarget, view._selection);
    EXPECT_TRUE(up());
    EXPECT_TRUE(up());
    EXPECT_EQ(selected(), u"2"_qs);
    EXPECT_EQ(view._lane, list);
}

TEST_F(ShelfLanesTest, OnTheFirstRowUpLeadsToTheChips) {
    addTen();
    chip(text);
    lane(list);
    selectIndex(0);
    EXPECT_TRUE(up());
    EXPECT_EQ(view._lane, tags);
    EXPECT_EQ(view._activeTagIndex, 1u);
}

TEST_F(ShelfLanesTest, WithoutASelectionUpLeadsToTheChips) {
    addTen();
    lane(list);
    selectItem(std::nullopt);
    EXPECT_TRUE(up());
    EXPECT_EQ(view._lane, tags);
}

TEST_F(ShelfLanesTest, WithAHiddenSelectionUpSelectsTheFirstRow) {
    addTen();
    lane(list);
    const auto hidden = view.items()[0]->id();
    type(u"5"_qs);
    selectItem(hidden);
    EXPECT_TRUE(up());
    EXPECT_EQ(view._lane, list);
    EXPECT_EQ(selected(), u"5"_qs);
}

TEST_F(ShelfLanesTest, OnTheLastRowDownStays) {
    addTen();
    lane(list);
    selectIndex(9);
    EXPECT_TRUE(down());
    EXPECT_EQ(selected(), u"9"_qs);
}

TEST_F(ShelfLanesTest, InListModeLeftAndRightStepThroughTheChipsFromAnyRow) {
    addOneOfEachType();
    lane(list);
    selectIndex(3);
    EXPECT_TRUE(right());
    EXPECT_EQ(view._typeFilter, text);
    EXPECT_EQ(view._activeTagIndex, 1u);
    EXPECT_TRUE(right());
    EXPECT_EQ(view._typeFilter, url);
    EXPECT_TRUE(left());
    EXPECT_TRUE(left());
    EXPECT_EQ(view._typeFilter, std::nullopt);
    EXPECT_EQ(view._activeTagIndex, 0u);
    EXPECT_EQ(view._lane, list);
}

TEST_F(ShelfLanesTest, InListModeTheStepGoesFromTheChipNotFromItsKeyboardPosition) {
    addOneOfEachType();
    lane(list);
    chip(image);
    act([&] { view._activeTagIndex = 0; });
    EXPECT_TRUE(right());
    EXPECT_EQ(view._typeFilter, file);
    EXPECT_EQ(view._activeTagIndex, 4u);
}

TEST_F(ShelfLanesTest, InListModeRightOnTheLastChipPassesOn) {
    add(u"a"_qs);
    lane(list);
    EXPECT_TRUE(right());
    EXPECT_FALSE(right());
    EXPECT_EQ(view._typeFilter, text);
}

TEST_F(ShelfLanesTest, InListModeLeftWithoutAChipLeadsToTheSidebarIfItIsShown) {
    addTen();
    lane(list);
    EXPECT_TRUE(left());
    EXPECT_EQ(view._lane, sidebar);
    hideSidebar();
    EXPECT_EQ(view._lane, list);
    EXPECT_FALSE(left());
    EXPECT_EQ(view._lane, list);
}

TEST_F(ShelfLanesTest, AChipThatTheLensNoLongerHasCountsAsAll) {
    add(u"a"_qs);
    lane(list);
    chip(color);
    EXPECT_TRUE(left());
    EXPECT_EQ(view._lane, sidebar);
}

TEST_F(ShelfLanesTest, InTheListReturnPastesTheCurrentItem) {
    addTen();
    lane(list);
    selectIndex(4);
    EXPECT_TRUE(enter());
    useGrid();
    EXPECT_TRUE(enter());
    EXPECT_EQ(pasted, (QStringList{u"4"_qs, u"4"_qs}));
}

// Grid mode, four columns: 0 1 2 3 / 4 5 6 7 / 8 9

TEST_F(ShelfLanesTest, InTheGridUpAndDownMoveOneRowOfCells) {
    addTen();
    enterGrid();
    selectIndex(1);
    EXPECT_TRUE(down());
    EXPECT_EQ(selected(), u"5"_qs);
    EXPECT_TRUE(up());
    EXPECT_EQ(selected(), u"1"_qs);
    // The first cell of the second row is just far enough down.
    selectIndex(4);
    EXPECT_TRUE(up());
    EXPECT_EQ(selected(), u"0"_qs);
    EXPECT_EQ(view._lane, list);
    selectIndex(1);
    act([&] { view._gridColumnCount = 3; });
    EXPECT_TRUE(down());
    EXPECT_EQ(selected(), u"4"_qs);
}

TEST_F(ShelfLanesTest, FromTheTopRowOfTheGridUpLeadsToTheChipsNotToARowAboveIt) {
    addTen();
    enterGrid();
    selectIndex(2);
    EXPECT_TRUE(up());
    EXPECT_EQ(view._lane, tags);
    EXPECT_EQ(selected(), u"2"_qs);
}

TEST_F(ShelfLanesTest, InAnEmptyGridUpLeadsToTheChips) {
    enterGrid();
    EXPECT_TRUE(up());
    EXPECT_EQ(view._lane, tags);
}

TEST_F(ShelfLanesTest, OnTheLastIncompleteRowRightStaysAndDownIsHeldAtTheLastItem) {
    addTen();
    enterGrid();
    selectIndex(9);
    EXPECT_TRUE(right());
    EXPECT_EQ(selected(), u"9"_qs);
    EXPECT_TRUE(down());
    EXPECT_EQ(selected(), u"9"_qs);
    selectIndex(7);
    EXPECT_TRUE(down());
    EXPECT_EQ(selected(), u"9"_qs);
}

TEST_F(ShelfLanesTest, InTheGridLeftAndRightWalkTheCellsOfOneRow) {
    addTen();
    enterGrid();
    selectIndex(5);
    EXPECT_TRUE(right());
    EXPECT_TRUE(right());
    EXPECT_EQ(selected(), u"7"_qs);
    EXPECT_TRUE(right());
    EXPECT_EQ(selected(), u"7"_qs);
    EXPECT_TRUE(left());
    EXPECT_EQ(selected(), u"6"_qs);
    EXPECT_EQ(view._typeFilter, std::nullopt);
}

TEST_F(ShelfLanesTest, InTheFirstColumnLeftLeadsToTheSidebarOrIsTakenAndDoesNothing) {
    addTen();
    enterGrid();
    selectIndex(4);
    EXPECT_TRUE(left());
    EXPECT_EQ(view._lane, sidebar);
    hideSidebar();
    EXPECT_TRUE(left());
    EXPECT_EQ(view._lane, list);
    EXPECT_EQ(selected(), u"4"_qs);
}

TEST_F(ShelfLanesTest, InAnEmptyGridLeftLeadsToTheSidebarOrPassesOnAndRightPassesOn) {
    enterGrid();
    EXPECT_FALSE(right());
    EXPECT_TRUE(left());
    EXPECT_EQ(view._lane, sidebar);
    hideSidebar();
    EXPECT_FALSE(left());
    EXPECT_EQ(view._lane, list);
}

// The lane after each event

TEST_F(ShelfLanesTest, TheLaneAfterEachEvent) {
    addTen();
    const std::function<void()> viewAppears = [&] { view.viewAppears(); };
    const std::function<void()> panelShown = [&] { view.shelfPanelDidShow(); };
    const std::function<void()> focusSearch = [&] { act([&] { view._searchFocused = true; }); };
    const std::function<void()> tap = [&] { act([&] { view.itemTapped(); }); };
    const std::function<void()> hide = [&] { hideSidebar(); };
    const auto key = [](auto press) { return std::function<void()>(press); };
    const auto upKey = key([&] { up(); });
    const auto downKey = key([&] { down(); });
    const auto leftKey = key([&] { left(); });
    const auto rightKey = key([&] { right(); });
    const auto returnKey = key([&] { enter(); });
    struct Transition {
        const char* description;
        KeyboardLane from;
        ShelfViewMode mode;
        std::function<void()> event;
        KeyboardLane to;
    };
    constexpr auto inList = ShelfViewMode::list;
    constexpr auto inGrid = ShelfViewMode::grid;
    std::vector<Transition> transitions{
        {"search, down", search, inList, downKey, tags},
        {"tags, up", tags, inList, upKey, search},
        {"tags, down", tags, inList, downKey, list},
        {"tags, Return", tags, inList, returnKey, list},
        {"tags, left at position 0 with the sidebar shown", tags, inList, leftKey, sidebar},
        {"sidebar, up from row 0", sidebar, inList, upKey, search},
        {"sidebar, right", sidebar, inList, rightKey, list},
        {"sidebar, Return", sidebar, inList, returnKey, list},
        {"sidebar, sidebar hidden", sidebar, inList, hide, list},
        {"list, up from the first row", list, inList, upKey, tags},
        {"list, up from the top row of the grid", list, inGrid, upKey, tags},
        {"list, left at chip position 0", list, inList, leftKey, sidebar},
        {"list, left in the first column of the grid", list, inGrid, leftKey, sidebar}};
    for (const auto from : {search, sidebar, tags, list}) {
        transitions.push_back({"view appears", from, inList, viewAppears, search});
        transitions.push_back({"panel shown", from, inList, panelShown, search});
        transitions.push_back({"search field focused", from, inList, focusSearch, search});
        transitions.push_back({"item tapped", from, inList, tap, list});
    }
    for (const auto& [description, from, mode, event, to] : transitions) {
        act([&] {
            view._sidebarVisible = true;
            view._searchFocused = false;
            view._viewMode = mode;
        });
        selectIndex(0);
        lane(from);
        event();
        EXPECT_EQ(view._lane, to) << description << ", from " << static_cast<int>(from);
    }
}

} // namespace
} // namespace kestrova
