#include "tests/Kestrova/shelf/ShelfFixture.h"

namespace kestrova {
namespace {

using Types = std::vector<ClipboardItemType>;
using enum ClipboardItemType;

class ShelfPanelViewTest : public ShelfFixture {};

TEST_F(ShelfPanelViewTest, StartsOnTheWholeHistoryWithNothingChosen) {
    EXPECT_EQ(view._query, QString());
    EXPECT_EQ(view._selection, std::nullopt);
    EXPECT_EQ(view._hoveredItem, std::nullopt);
    EXPECT_EQ(view._scrollTarget, std::nullopt);
    EXPECT_EQ(view._typeFilter, std::nullopt);
    EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
    EXPECT_EQ(view._route, std::nullopt);
    EXPECT_EQ(view._suspendedRoute, std::nullopt);
    EXPECT_TRUE(view._deletedStack.empty());
    EXPECT_FALSE(view._searchFocused);
    EXPECT_EQ(view._lane, KeyboardLane::search);
    EXPECT_EQ(view._activeTagIndex, 0u);
    EXPECT_EQ(view._gridColumnCount, 4u);
    EXPECT_EQ(view._viewMode, ShelfViewMode::list);
    EXPECT_TRUE(view._sidebarVisible);
    EXPECT_TRUE(view._previewVisible);
    EXPECT_EQ(view.themeRaw(), QStringLiteral("system"));
    EXPECT_EQ(view.panelWidth(), 960);
}

TEST_F(ShelfPanelViewTest, TheFlagsAndTheThemeAreThoseOfTheDefaults) {
    defaults.set(QStringLiteral("shelfSidebarVisible"), false);
    defaults.set(QStringLiteral("themePreference"), QStringLiteral("dark"));
    EXPECT_FALSE(view._sidebarVisible);
    EXPECT_EQ(view.themeRaw(), QStringLiteral("dark"));
    EXPECT_EQ(view.panelWidth(), 760);
    act([&] { view._previewVisible = false; });
    EXPECT_EQ(defaults.boolean(QStringLiteral("shelfPreviewVisible")), false);
}

TEST_F(ShelfPanelViewTest, AllShowsEveryItemNewestFirst) {
    addLetters(u"abc"_qs);
    EXPECT_EQ(contents(view.lensItems()), (QStringList{u"c"_qs, u"b"_qs, u"a"_qs}));
    EXPECT_EQ(shown(), contents(view.lensItems()));
}

TEST_F(ShelfPanelViewTest, PinnedShowsPinnedItemsWhereTheirDatePutsThem) {
    add(u"a"_qs, {.pinned = true});
    add(u"b"_qs);
    add(u"c"_qs, {.pinned = true});
    lens(CollectionFilter::pinned());
    EXPECT_EQ(shown(), (QStringList{u"c"_qs, u"a"_qs}));
    lens(CollectionFilter::all());
    EXPECT_EQ(shown(), (QStringList{u"c"_qs, u"b"_qs, u"a"_qs}));
}

TEST_F(ShelfPanelViewTest, ScreenshotsShowsWhatACaptureMade) {
    add(u"a"_qs, {.type = image});
    add(u"b"_qs, {.type = image, .source = ItemSource::screenshot});
    lens(CollectionFilter::screenshots());
    EXPECT_EQ(shown(), QStringList{u"b"_qs});
}

TEST_F(ShelfPanelViewTest, ACollectionShowsItsMembers) {
    const auto work = addCollection(u"work"_qs);
    const auto home = addCollection(u"home"_qs);
    put(add(u"a"_qs), work);
    put(add(u"b"_qs), home);
    add(u"c"_qs);
    lens(CollectionFilter::collection(work->id()));
    EXPECT_EQ(shown(), QStringList{u"a"_qs});
    EXPECT_EQ(view.activeCollection(), work);
}

TEST_F(ShelfPanelViewTest, ALensOnACollectionThatHasJustBeenDeletedElsewhereShowsAnEmptyList) {
    const auto work = addCollection(u"work"_qs);
    put(add(u"a"_qs), work);
    lens(CollectionFilter::collection(work->id()));
    deleteElsewhere(work->id());
    EXPECT_TRUE(view.lensItems().empty());
    EXPECT_TRUE(view.filteredItems().empty());
    EXPECT_EQ(view.activeCollection(), nullptr);
    EXPECT_EQ(view.sidebarIndex(), 0u);
}

TEST_F(ShelfPanelViewTest, OnlyALensOnACollectionHasAnActiveOne) {
    addCollection(u"work"_qs);
    for (const auto& filter :
         {CollectionFilter::all(), CollectionFilter::pinned(), CollectionFilter::screenshots()}) {
        lens(filter);
        EXPECT_EQ(view.activeCollection(), nullptr);
    }
}

TEST_F(ShelfPanelViewTest, TheChipForTextShowsFormattedTextToo) {
    add(u"a"_qs);
    add(u"b"_qs, {.type = rtf});
    add(u"c"_qs, {.type = url});
    chip(text);
    EXPECT_EQ(shown(), (QStringList{u"b"_qs, u"a"_qs}));
}

TEST_F(ShelfPanelViewTest, AnyOtherChipShowsExactlyItsType) {
    addOneOfEachType();
    add(u"formatted"_qs, {.type = rtf});
    for (const auto type : {url, image, file, color}) {
        chip(type);
        EXPECT_EQ(shown(), QStringList{rawText(type).toString()});
    }
}

TEST_F(ShelfPanelViewTest, TheSearchLooksAtTheContentInAnyCase) {
    add(u"Hello World"_qs);
    add(u"other"_qs);
    type(u"hELLO w"_qs);
    EXPECT_EQ(shown(), QStringList{u"Hello World"_qs});
}

TEST_F(ShelfPanelViewTest, TheSearchLooksAtTheRecognisedText) {
    add(u"Image"_qs, {.type = image, .ocrText = u"회의 자료"_qs});
    add(u"Image"_qs, {.type = image});
    type(u"자료"_qs);
    ASSERT_EQ(view.filteredItems().size(), 1u);
    EXPECT_EQ(view.filteredItems().front()->ocrText(), u"회의 자료"_qs);
}

TEST_F(ShelfPanelViewTest, TheQueryIsUsedAsItStands) {
    add(u"one two"_qs);
    add(u"two one"_qs);
    type(u"one two"_qs);
    EXPECT_EQ(shown(), QStringList{u"one two"_qs});
    type(u" one"_qs);
    EXPECT_EQ(shown(), QStringList{u"two one"_qs});
    type(u"one two "_qs);
    EXPECT_EQ(shown(), QStringList());
}

TEST_F(ShelfPanelViewTest, NeitherTheApplicationNorTheFileUrlIsSearched) {
    act([&] { view.dropURLs({QUrl(u"file:///nowhere/report.txt"_qs)}); });
    act([&] { view.items().front()->setSourceApp(u"org.example.editor"_qs); });
    type(u"example"_qs);
    EXPECT_EQ(shown(), QStringList());
    type(u"file://"_qs);
    EXPECT_EQ(shown(), QStringList());
    type(u"report"_qs);
    EXPECT_EQ(shown(), QStringList{u"/nowhere/report.txt"_qs});
}

TEST_F(ShelfPanelViewTest, ALongerQueryFindsWhatTheShorterOneHidWithinASyllable) {
    // 하 is not found in 한, but 한 is no extension of it either: its row must come back.
    add(u"한글"_qs);
    type(u"하"_qs);
    EXPECT_EQ(shown(), QStringList());
    type(u"한"_qs);
    EXPECT_EQ(shown(), QStringList{u"한글"_qs});
    type(u"한글"_qs);
    EXPECT_EQ(shown(), QStringList{u"한글"_qs});
}

TEST_F(ShelfPanelViewTest, AnAccentThatIsTypedAfterItsLetterMakesAnotherLetter) {
    add(u"caf\u00e9"_qs);
    add(u"cafe"_qs);
    type(u"cafe"_qs);
    EXPECT_EQ(shown(), QStringList{u"cafe"_qs});
    type(u"cafe\u0301"_qs);
    EXPECT_EQ(shown(), QStringList{u"caf\u00e9"_qs});
}

TEST_F(ShelfPanelViewTest, LensChipAndSearchAllNarrow) {
    add(u"apple"_qs, {.pinned = true});
    add(u"apple pie"_qs);
    add(u"https://apple.example"_qs, {.type = url, .pinned = true});
    add(u"pear"_qs, {.pinned = true});
    lens(CollectionFilter::pinned());
    chip(text);
    type(u"apple"_qs);
    EXPECT_EQ(shown(), QStringList{u"apple"_qs});
}

TEST_F(ShelfPanelViewTest, ChipsStandInTheirFixedOrder) {
    for (const auto type : {color, file, image, url, text})
        add(rawText(type).toString(), {.type = type});
    EXPECT_EQ(view.availableTypes(), (Types{text, url, image, file, color}));
}

TEST_F(ShelfPanelViewTest, ChipsAreThoseThatTheLensCanFill) {
    EXPECT_EQ(view.availableTypes(), Types{});
    add(u"a"_qs, {.type = file, .pinned = true});
    add(u"b"_qs, {.type = url});
    EXPECT_EQ(view.availableTypes(), (Types{url, file}));
    lens(CollectionFilter::pinned());
    EXPECT_EQ(view.availableTypes(), Types{file});
}

TEST_F(ShelfPanelViewTest, NeitherTheSearchNorTheChipTakesAChipAway) {
    addOneOfEachType();
    chip(url);
    type(u"nothing like it"_qs);
    EXPECT_EQ(view.availableTypes(), (Types{text, url, image, file, color}));
}

TEST_F(ShelfPanelViewTest, WithOnlyFormattedTextTheChipIsTextAndShowsIt) {
    add(u"a"_qs, {.type = rtf});
    EXPECT_EQ(view.availableTypes(), Types{text});
    act([&] { view.selectTypeChip(1); });
    EXPECT_EQ(view._typeFilter, text);
    EXPECT_EQ(shown(), QStringList{u"a"_qs});
}

TEST_F(ShelfPanelViewTest, TheCurrentItemIsTheSelectedThenTheHoveredThenTheFirst) {
    EXPECT_EQ(view.currentItem(), nullptr);
    const auto a = add(u"a"_qs);
    const auto b = add(u"b"_qs);
    const auto c = add(u"c"_qs);
    EXPECT_EQ(view.currentItem(), c);
    act([&] { view._hoveredItem = b->id(); });
    EXPECT_EQ(view.currentItem(), b);
    selectItem(a->id());
    EXPECT_EQ(view.currentItem(), a);
}

TEST_F(ShelfPanelViewTest, ASelectionThatHasBeenFilteredAwayLeavesTheCommandsToTheHoveredRow) {
    const auto a = add(u"a"_qs, {.type = url});
    const auto b = add(u"b"_qs);
    add(u"c"_qs);
    chip(text);
    act([&] {
        view._selection = a->id();
        view._hoveredItem = b->id();
    });
    EXPECT_EQ(view.currentItem(), b);
    act([&] { view._hoveredItem = a->id(); });
    EXPECT_EQ(view.currentItem()->content(), u"c"_qs);
}

TEST_F(ShelfPanelViewTest, HoveringNeverMovesTheSelection) {
    addLetters(u"ab"_qs);
    selectIndex(0);
    act([&] { view._hoveredItem = view.items()[1]->id(); });
    EXPECT_EQ(selected(), u"b"_qs);
}

TEST_F(ShelfPanelViewTest, TheSidebarIndexIsTheRowOfTheLens) {
    addCollection(u"work"_qs);
    const auto home = addCollection(u"home"_qs);
    EXPECT_EQ(view.sidebarIndex(), 0u);
    lens(CollectionFilter::pinned());
    EXPECT_EQ(view.sidebarIndex(), 1u);
    lens(CollectionFilter::screenshots());
    EXPECT_EQ(view.sidebarIndex(), 2u);
    lens(CollectionFilter::collection(home->id()));
    EXPECT_EQ(view.sidebarIndex(), 4u);
}

TEST_F(ShelfPanelViewTest, AnIndexIsThatOfTheShownListAlsoAmongRowsOfOneMoment) {
    for (const auto& content : {u"a1"_qs, u"b"_qs, u"a2"_qs, u"c"_qs, u"a3"_qs})
        add(content, {.seconds = 5});
    type(u"a"_qs);
    const auto& list = view.filteredItems();
    ASSERT_EQ(shown(), (QStringList{u"a3"_qs, u"a2"_qs, u"a1"_qs}));
    for (std::size_t i = 0; i < list.size(); ++i)
        EXPECT_EQ(view.indexInFilteredItems(list[i]->id()), i);
    EXPECT_EQ(view.indexInFilteredItems(view.items()[1]->id()), std::nullopt);
    EXPECT_EQ(view.indexInFilteredItems(ItemID{999}), std::nullopt);
    EXPECT_EQ(view.indexInFilteredItems(std::nullopt), std::nullopt);
}

TEST_F(ShelfPanelViewTest, ASidebarRowChoosesItsLensAndStaysWithinTheRows) {
    const auto work = addCollection(u"work"_qs);
    const auto home = addCollection(u"home"_qs);
    const std::vector<std::pair<std::ptrdiff_t, CollectionFilter>> rows{
        {2, CollectionFilter::screenshots()},
        {1, CollectionFilter::pinned()},
        {0, CollectionFilter::all()},
        {4, CollectionFilter::collection(home->id())},
        {-1, CollectionFilter::all()},
        {3, CollectionFilter::collection(work->id())},
        {99, CollectionFilter::collection(home->id())}};
    for (const auto& [row, expected] : rows) {
        act([&] { view.selectSidebarRow(row); });
        EXPECT_EQ(view._collectionFilter, expected) << row;
    }
}

TEST_F(ShelfPanelViewTest, WithoutCollectionsTheLastSidebarRowIsScreenshots) {
    act([&] { view.selectSidebarRow(7); });
    EXPECT_EQ(view._collectionFilter, CollectionFilter::screenshots());
}

TEST_F(ShelfPanelViewTest, AChipChoosesItsType) {
    add(u"a"_qs);
    add(u"b"_qs, {.type = file});
    act([&] { view.selectTypeChip(2); });
    EXPECT_EQ(view._typeFilter, file);
    act([&] { view.selectTypeChip(0); });
    EXPECT_EQ(view._typeFilter, std::nullopt);
}

TEST_F(ShelfPanelViewTest, AChipThatIsNotThereDoesNothingAtAll) {
    add(u"a"_qs, {.pinned = true});
    hideSidebar();
    lens(CollectionFilter::pinned());
    chip(text);
    for (const std::ptrdiff_t position : {2, 9, -1}) {
        act([&] { view.selectTypeChip(position); });
        EXPECT_EQ(view._typeFilter, text);
        EXPECT_EQ(view._collectionFilter, CollectionFilter::pinned());
    }
}

TEST_F(ShelfPanelViewTest, WithTheSidebarHiddenAChipSpeaksForTheWholeHistory) {
    add(u"a"_qs, {.pinned = true});
    add(u"b"_qs);
    hideSidebar();
    lens(CollectionFilter::pinned());
    act([&] { view.selectTypeChip(1); });
    EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
    EXPECT_EQ(view._typeFilter, text);
    EXPECT_EQ(shown(), (QStringList{u"b"_qs, u"a"_qs}));
}

TEST_F(ShelfPanelViewTest, WithTheSidebarShownAChipKeepsTheLens) {
    add(u"a"_qs, {.pinned = true});
    lens(CollectionFilter::pinned());
    act([&] { view.selectTypeChip(1); });
    EXPECT_EQ(view._collectionFilter, CollectionFilter::pinned());
}

TEST_F(ShelfPanelViewTest, TheSelectionMovesWithinTheListAndIsScrolledTo) {
    addLetters(u"cba"_qs);
    selectIndex(0);
    const std::vector<std::pair<std::ptrdiff_t, QString>> moves{{1, u"b"_qs},  {1, u"c"_qs},  {1, u"c"_qs},
                                                                {-2, u"a"_qs}, {-5, u"a"_qs}, {9, u"c"_qs}};
    for (const auto& [delta, expected] : moves) {
        act([&] { view.moveSelection(delta); });
        EXPECT_EQ(selected(), expected);
        EXPECT_EQ(view._scrollTarget, view._selection);
    }
}

TEST_F(ShelfPanelViewTest, FromNoSelectionOneStepLeadsToTheFirstItem) {
    addLetters(u"cba"_qs);
    selectItem(std::nullopt);
    act([&] { view.moveSelection(1); });
    EXPECT_EQ(selected(), u"a"_qs);
    selectItem(std::nullopt);
    act([&] { view.moveSelection(-1); });
    EXPECT_EQ(selected(), u"a"_qs);
}

TEST_F(ShelfPanelViewTest, InAnEmptyListTheSelectionStays) {
    const auto a = add(u"a"_qs);
    lens(CollectionFilter::pinned());
    selectItem(a->id());
    act([&] { view.moveSelection(1); });
    EXPECT_EQ(view._selection, a->id());
}

TEST_F(ShelfPanelViewTest, ResigningTheFocusEndsTheEditingOfAVisiblePanelOnly) {
    act([&] { view._searchFocused = true; });
    act([&] { view.resignSearchFocus(); });
    EXPECT_FALSE(view._searchFocused);
    EXPECT_EQ(endedEditing(), 0);
    panel.visible = true;
    act([&] { view._searchFocused = true; });
    act([&] { view.resignSearchFocus(); });
    EXPECT_FALSE(view._searchFocused);
    EXPECT_EQ(endedEditing(), 1);
}

TEST_F(ShelfPanelViewTest, ClosingADetailLeadsBackToTheOneThatItWasOpenedFrom) {
    const auto a = add(u"a"_qs);
    act([&] {
        view._suspendedRoute = DetailRoute::actions(a);
        view._route = DetailRoute::edit(a);
    });
    act([&] { view.popRoute(); });
    EXPECT_EQ(view._route, DetailRoute::actions(a));
    EXPECT_EQ(view._suspendedRoute, std::nullopt);
    act([&] { view.popRoute(); });
    EXPECT_EQ(view._route, std::nullopt);
}

TEST_F(ShelfPanelViewTest, ARouteIsKeyedOnItsScreenAndItsItem) {
    const auto a = add(u"a"_qs);
    const auto b = add(u"b"_qs);
    const auto id = QString::number(a->id().value);
    EXPECT_EQ(DetailRoute::preview(a).stableKey(), std::pair(u"preview"_qs, id));
    EXPECT_EQ(DetailRoute::edit(a).stableKey(), std::pair(u"edit"_qs, id));
    EXPECT_EQ(DetailRoute::actions(a).stableKey(), std::pair(u"actions"_qs, id));
    EXPECT_FALSE(DetailRoute::actions(a) == DetailRoute::actions(b));
    EXPECT_FALSE(DetailRoute::actions(a) == DetailRoute::edit(a));
}

TEST_F(ShelfPanelViewTest, ARouteKeepsAnItemThatIsDeletedMeanwhile) {
    const auto id = add(u"a"_qs)->id();
    act([&] { view._route = DetailRoute::preview(view.items().front()); });
    deleteElsewhere(id);
    ASSERT_TRUE(view._route);
    EXPECT_EQ(view._route->item->content(), u"a"_qs);
}

TEST_F(ShelfPanelViewTest, ADropTargetIsTheRowWhoseFrameHoldsThePoint) {
    const TabDropTarget work{CollectionID{1}};
    const TabDropTarget home{CollectionID{2}};
    act([&] {
        view._tabFrames = {{work, QRectF(10, 100, 200, 30)}, {home, QRectF(10, 130, 200, 30)}};
        view._visibleTabs = QRectF(10, 80, 200, 300);
    });
    EXPECT_EQ(view.dropTargetAt({10, 100}), work);
    EXPECT_EQ(view.dropTargetAt({50, 129.9}), work);
    EXPECT_EQ(view.dropTargetAt({50, 130}), home);
    EXPECT_EQ(view.dropTargetAt({50, 160}), std::nullopt);
    EXPECT_EQ(view.dropTargetAt({210, 110}), std::nullopt);
    EXPECT_EQ(view.dropTargetAt({9, 110}), std::nullopt);
}

TEST_F(ShelfPanelViewTest, NoDropTargetIsWhereARowCannotBeSeen) {
    const TabDropTarget work{CollectionID{1}};
    const TabDropTarget home{CollectionID{2}};
    act([&] {
        view._tabFrames = {{work, QRectF(10, 100, 200, 30)}, {home, QRectF(10, 130, 200, 30)}};
        view._visibleTabs = QRectF(10, 120, 200, 30);
    });
    EXPECT_EQ(view.dropTargetAt({50, 119}), std::nullopt);
    EXPECT_EQ(view.dropTargetAt({50, 120}), work);
    EXPECT_EQ(view.dropTargetAt({50, 149}), home);
    EXPECT_EQ(view.dropTargetAt({50, 150}), std::nullopt);
}

} // namespace
} // namespace kestrova
