#include "Kestrova/shelf/ShelfDrags.h"

#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaCollection.h"
#include "tests/Kestrova/shelf/ShelfFixture.h"
#include "tests/support/LogCapture.h"

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

constexpr auto pollInterval = 50ms;

/// Three collections whose rows are 30 high, one below the other from y 100 on, and 200 wide.
class ShelfDragsTest : public ShelfFixture {
protected:
    void SetUp() override {
        work = addCollection(u"work"_s);
        home = addCollection(u"home"_s);
        spare = addCollection(u"spare"_s);
        act([&] {
            view._tabFrames = {{rowOf(work), QRectF(0, 100, 200, 30)},
                               {rowOf(home), QRectF(0, 130, 200, 30)},
                               {rowOf(spare), QRectF(0, 160, 200, 30)}};
            view._visibleTabs = QRectF(0, 100, 200, 300);
        });
        panel.visible = true;
        panel.place = {.x = 300, .y = 200, .width = 960, .height = 540};
    }

    static TabDropTarget rowOf(const std::shared_ptr<KovaCollection>& collection) {
        return {collection->id()};
    }
    /// Over a place of the panel, in the coordinates of the rows.
    void pointAt(QPointF place) { screens.mouse = {300 + place.x(), 200 + 540 - place.y()}; }

    bool drop(const std::vector<std::shared_ptr<ClipboardItem>>& items, QPointF place) {
        std::vector<ItemDragPayload> payloads;
        for (const auto& item : items)
            payloads.push_back({.id = item->id(), .exportText = item->content()});
        bool isTaken = false;
        act([&] { isTaken = view.drags().dropItems(payloads, place); });
        return isTaken;
    }
    bool reorder(const std::shared_ptr<KovaCollection>& dragged, double y) {
        bool isTaken = false;
        act([&] { isTaken = view.drags().dropCollections({{.id = dragged->id()}}, {100, y}); });
        return isTaken;
    }

    QStringList order() const {
        QStringList names;
        for (const auto& collection : view.allCollections())
            names.append(collection->name());
        return names;
    }
    std::vector<std::int64_t> sortOrders() const {
        std::vector<std::int64_t> orders;
        for (const auto& collection : view.allCollections())
            orders.push_back(collection->sortOrder());
        return orders;
    }
    static QStringList collectionsOf(const ClipboardItem& item) {
        QStringList names;
        if (const auto collections = item.collections())
            for (const auto& collection : *collections)
                names.append(collection->name());
        return names;
    }

    std::shared_ptr<KovaCollection> work;
    std::shared_ptr<KovaCollection> home;
    std::shared_ptr<KovaCollection> spare;
};

// From the shelf

TEST_F(ShelfDragsTest, AnItemIsDraggedWithWhatItHoldsThenAndSaysSoInTheLog) {
    const auto item = add(u"words"_s);
    std::optional<ItemDragPayload> payload;
    const LogCapture log;
    act([&] { payload = view.drags().beginItem(*item); });
    act([&] { view.saveEdit(*item, u"other words"_s); });
    EXPECT_EQ(payload, (ItemDragPayload{.id = item->id(), .exportText = u"words"_s}));
    EXPECT_EQ(log.lines(), QStringList{u"[Drag] start id=%1"_s.arg(item->id().value)});
}

TEST_F(ShelfDragsTest, ACollectionThatIsDraggedIsKnownUntilTheDragEnds) {
    std::optional<CollectionReorderPayload> payload;
    act([&] { payload = view.drags().beginCollection(*home); });
    EXPECT_EQ(payload, CollectionReorderPayload{.id = home->id()});
    EXPECT_EQ(view._draggingCollectionID, home->id());
    EXPECT_TRUE(view.drags().isUnderWay());
    act([&] { view.dragEnded(); });
    EXPECT_EQ(view._draggingCollectionID, std::nullopt);
    EXPECT_FALSE(view.drags().isUnderWay());
}

TEST_F(ShelfDragsTest, ModifiersThatWereLetGoDuringADragAreNotHeldAfterIt) {
    const auto item = add(u"words"_s);
    act([&] {
        view._commandHeld = view._optionHeld = view._controlHeld = true;
        view.drags().beginItem(*item);
    });
    act([&] { view.dragEnded(); });
    EXPECT_FALSE(view._commandHeld || view._optionHeld || view._controlHeld);
}

// Items on rows

TEST_F(ShelfDragsTest, AnItemThatIsDroppedOnARowIsAddedToItsCollectionAndSaved) {
    const auto item = add(u"words"_s);
    EXPECT_TRUE(drop({item}, {50, 145}));
    EXPECT_EQ(collectionsOf(*item), QStringList{u"home"_s});
    ModelContext others(*m_container);
    EXPECT_EQ(collectionsOf(*others.item(item->id())), QStringList{u"home"_s});
}

TEST_F(ShelfDragsTest, ADropOnTheGapBetweenTwoRowsIsRefused) {
    const auto item = add(u"words"_s);
    act([&] { view._tabFrames[rowOf(home)] = QRectF(0, 132, 200, 28); });
    EXPECT_FALSE(drop({item}, {50, 131}));
    EXPECT_EQ(collectionsOf(*item), QStringList());
}

TEST_F(ShelfDragsTest, ADropBesideTheRowsIsRefused) {
    const auto item = add(u"words"_s);
    EXPECT_FALSE(drop({item}, {250, 145}));
    EXPECT_FALSE(drop({item}, {50, 400}));
    EXPECT_EQ(collectionsOf(*item), QStringList());
}

TEST_F(ShelfDragsTest, ADropOnTheRowOfACollectionThatHasGoneIsRefused) {
    const auto item = add(u"words"_s);
    deleteElsewhere(home->id());
    EXPECT_FALSE(drop({item}, {50, 145}));
    EXPECT_EQ(collectionsOf(*item), QStringList());
}

TEST_F(ShelfDragsTest, ADropOfAnItemOnACollectionThatHoldsItKeepsOneMembership) {
    const auto item = add(u"words"_s);
    put(item, home);
    EXPECT_TRUE(drop({item}, {50, 145}));
    EXPECT_EQ(collectionsOf(*item), QStringList{u"home"_s});
}

TEST_F(ShelfDragsTest, SeveralItemsAreAddedInOneDrop) {
    const auto first = add(u"a"_s);
    const auto second = add(u"b"_s);
    EXPECT_TRUE(drop({first, second}, {50, 105}));
    EXPECT_EQ(collectionsOf(*first), QStringList{u"work"_s});
    EXPECT_EQ(collectionsOf(*second), QStringList{u"work"_s});
}

TEST_F(ShelfDragsTest, AnItemThatWasDeletedDuringTheDragIsPassedOver) {
    const auto gone = add(u"a"_s);
    const auto there = add(u"b"_s);
    const auto payload = ItemDragPayload{.id = gone->id(), .exportText = u"a"_s};
    deleteElsewhere(gone->id());
    bool isTaken = false;
    act([&] {
        isTaken = view.drags().dropItems({payload, {.id = there->id(), .exportText = u"b"_s}}, {50, 105});
    });
    EXPECT_TRUE(isTaken);
    EXPECT_EQ(collectionsOf(*there), QStringList{u"work"_s});
    act([&] { isTaken = view.drags().dropItems({payload}, {50, 105}); });
    EXPECT_TRUE(isTaken);
}

TEST_F(ShelfDragsTest, AnItemThatTheFilterHidesIsFoundToo) {
    const auto item = add(u"words"_s);
    type(u"nothing has this"_s);
    EXPECT_TRUE(drop({item}, {50, 105}));
    EXPECT_EQ(collectionsOf(*item), QStringList{u"work"_s});
}

TEST_F(ShelfDragsTest, ADropWithoutAPayloadIsRefused) {
    EXPECT_FALSE(drop({}, {50, 105}));
}

// The pointer during a drag of items

TEST_F(ShelfDragsTest, TheRowUnderThePointerIsKnownAtOnceAndThenEveryTwentiethOfASecond) {
    pointAt({50, 105});
    act([&] { view.drags().itemsEntered(); });
    EXPECT_EQ(view._hoveredDropTarget, rowOf(work));
    EXPECT_TRUE(view._hoverPollTimer);
    pointAt({50, 165});
    queue.advance(pollInterval - 1ms);
    EXPECT_EQ(view._hoveredDropTarget, rowOf(work));
    queue.advance(1ms);
    EXPECT_EQ(view._hoveredDropTarget, rowOf(spare));
    pointAt({400, 165});
    queue.advance(pollInterval);
    EXPECT_EQ(view._hoveredDropTarget, std::nullopt);
}

TEST_F(ShelfDragsTest, ATickTouchesTheStateOnlyOnTheNextTurn) {
    act([&] { view.drags().itemsEntered(); });
    queue.advance(pollInterval - 1ms);
    pointAt({50, 105});
    // The tick falls due on this turn, and what it has put off on the next one.
    bool wasUntouchedAfterTheTick = false;
    queue.after(1ms, [&] { wasUntouchedAfterTheTick = !view._hoveredDropTarget; });
    queue.advance(1ms);
    EXPECT_TRUE(wasUntouchedAfterTheTick);
    EXPECT_EQ(view._hoveredDropTarget, rowOf(work));
}

TEST_F(ShelfDragsTest, TheHoverEndsWhenTheItemsLeave) {
    pointAt({50, 105});
    act([&] { view.drags().itemsEntered(); });
    act([&] { view.drags().itemsLeft(); });
    EXPECT_EQ(view._hoveredDropTarget, std::nullopt);
    EXPECT_FALSE(view._hoverPollTimer);
    EXPECT_TRUE(queue.isEmpty());
}

TEST_F(ShelfDragsTest, ATickWhoseItemsHaveLeftMeanwhileChangesNothing) {
    pointAt({50, 105});
    act([&] { view.drags().itemsEntered(); });
    queue.after(pollInterval, [&] { act([&] { view.drags().itemsLeft(); }); });
    queue.advance(2 * pollInterval);
    EXPECT_EQ(view._hoveredDropTarget, std::nullopt);
    EXPECT_TRUE(queue.isEmpty());
}

TEST_F(ShelfDragsTest, ItemsThatEnterAgainHaveOneTimer) {
    act([&] {
        view.drags().itemsEntered();
        view.drags().itemsEntered();
    });
    act([&] { view.drags().itemsLeft(); });
    EXPECT_TRUE(queue.isEmpty());
}

TEST_F(ShelfDragsTest, WhileThePanelIsOutOfSightNothingIsUnderThePointer) {
    panel.visible = false;
    pointAt({50, 105});
    act([&] { view.drags().itemsEntered(); });
    queue.advance(pollInterval);
    EXPECT_EQ(view._hoveredDropTarget, std::nullopt);
}

TEST_F(ShelfDragsTest, ThePointerIsFollowedWhereThePanelStandsNow) {
    act([&] { view.drags().itemsEntered(); });
    panel.place = {.x = 0, .y = 0, .width = 760, .height = 540};
    screens.mouse = {10, 540 - 105};
    queue.advance(pollInterval);
    EXPECT_EQ(view._hoveredDropTarget, rowOf(work));
}

// The pointer during a drag of a collection

TEST_F(ShelfDragsTest, TheXOfThePointerInTheWindowIsKnownAtOnceAndThenEveryTwentiethOfASecond) {
    pointAt({50, 105});
    act([&] { view.drags().collectionEntered(); });
    EXPECT_EQ(view._dragReorderHoverX, 50);
    EXPECT_TRUE(view._dragReorderPollTimer);
    pointAt({70, 105});
    queue.advance(pollInterval);
    EXPECT_EQ(view._dragReorderHoverX, 70);
    act([&] { view.drags().collectionLeft(); });
    EXPECT_EQ(view._dragReorderHoverX, std::nullopt);
    EXPECT_FALSE(view._dragReorderPollTimer);
    EXPECT_TRUE(queue.isEmpty());
}

// Collections between each other

TEST_F(ShelfDragsTest, ARowThatIsDroppedAboveTheMiddleOfAnotherGoesBeforeIt) {
    EXPECT_TRUE(reorder(spare, 114.9));
    EXPECT_EQ(order(), (QStringList{u"spare"_s, u"work"_s, u"home"_s}));
    EXPECT_EQ(sortOrders(), (std::vector<std::int64_t>{0, 1, 2}));
}

TEST_F(ShelfDragsTest, ARowThatIsDroppedAtTheMiddleOfAnotherGoesBehindIt) {
    EXPECT_TRUE(reorder(spare, 115));
    EXPECT_EQ(order(), (QStringList{u"work"_s, u"spare"_s, u"home"_s}));
}

TEST_F(ShelfDragsTest, ARowThatIsDroppedAboveAllGoesToTheTop) {
    EXPECT_TRUE(reorder(home, 3));
    EXPECT_EQ(order(), (QStringList{u"home"_s, u"work"_s, u"spare"_s}));
}

TEST_F(ShelfDragsTest, ARowThatIsDroppedBelowAllGoesToTheEndAndEarlierGapsAreClosed) {
    deleteElsewhere(home->id());
    EXPECT_EQ(sortOrders(), (std::vector<std::int64_t>{1, 3}));
    EXPECT_TRUE(reorder(work, 500));
    EXPECT_EQ(order(), (QStringList{u"spare"_s, u"work"_s}));
    EXPECT_EQ(sortOrders(), (std::vector<std::int64_t>{0, 1}));
}

TEST_F(ShelfDragsTest, ANewOrderIsSaved) {
    EXPECT_TRUE(reorder(spare, 3));
    ModelContext others(*m_container);
    const CollectionQuery all(others);
    QStringList names;
    for (const auto& collection : all.results())
        names.append(collection->name());
    EXPECT_EQ(names, (QStringList{u"spare"_s, u"work"_s, u"home"_s}));
}

TEST_F(ShelfDragsTest, ARowThatIsDroppedOnItsOwnPlaceWritesNothing) {
    for (const double y : {120.0, 145.0, 170.0})
        EXPECT_TRUE(reorder(home, y)) << y;
    EXPECT_EQ(order(), (QStringList{u"work"_s, u"home"_s, u"spare"_s}));
    EXPECT_EQ(sortOrders(), (std::vector<std::int64_t>{1, 2, 3}));
    EXPECT_EQ(view.drags().reorderings(), 0u);
}

TEST_F(ShelfDragsTest, ARowWithoutAFrameIsPassedOver) {
    act([&] { view._tabFrames.erase(rowOf(work)); });
    EXPECT_TRUE(reorder(spare, 3));
    EXPECT_EQ(order(), (QStringList{u"work"_s, u"spare"_s, u"home"_s}));
}

TEST_F(ShelfDragsTest, WithoutAnyFrameARowGoesToTheEnd) {
    act([&] { view._tabFrames.clear(); });
    EXPECT_TRUE(reorder(work, 3));
    EXPECT_EQ(order(), (QStringList{u"home"_s, u"spare"_s, u"work"_s}));
}

TEST_F(ShelfDragsTest, ACollectionThatWasDeletedDuringTheDragChangesNothing) {
    const CollectionReorderPayload payload{.id = home->id()};
    deleteElsewhere(home->id());
    bool isTaken = false;
    act([&] { isTaken = view.drags().dropCollections({payload}, {100, 3}); });
    EXPECT_TRUE(isTaken);
    EXPECT_EQ(sortOrders(), (std::vector<std::int64_t>{1, 3}));
}

TEST_F(ShelfDragsTest, OfSeveralCollectionsTheFirstOneCounts) {
    act([&] { view.drags().dropCollections({{.id = spare->id()}, {.id = home->id()}}, {100, 3}); });
    EXPECT_EQ(order(), (QStringList{u"spare"_s, u"work"_s, u"home"_s}));
}

TEST_F(ShelfDragsTest, ADropOfNoCollectionIsRefusedAndEndsTheHoverToo) {
    bool isTaken = true;
    act([&] {
        view.drags().beginCollection(*home);
        view.drags().collectionEntered();
        isTaken = view.drags().dropCollections({}, {100, 3});
    });
    EXPECT_FALSE(isTaken);
    EXPECT_EQ(view._draggingCollectionID, std::nullopt);
    EXPECT_EQ(view._dragReorderHoverX, std::nullopt);
    EXPECT_FALSE(view._dragReorderPollTimer);
    EXPECT_EQ(sortOrders(), (std::vector<std::int64_t>{1, 2, 3}));
}

TEST_F(ShelfDragsTest, ADropOfACollectionEndsItsHover) {
    act([&] {
        view.drags().beginCollection(*home);
        view.drags().collectionEntered();
    });
    EXPECT_TRUE(reorder(home, 3));
    EXPECT_EQ(view._draggingCollectionID, std::nullopt);
    EXPECT_EQ(view._dragReorderHoverX, std::nullopt);
    EXPECT_FALSE(view._dragReorderPollTimer);
    EXPECT_TRUE(queue.isEmpty());
}

TEST_F(ShelfDragsTest, TheLensStaysOnItsCollectionWhenItsRowMoves) {
    lens(CollectionFilter::collection(spare->id()));
    EXPECT_TRUE(reorder(spare, 3));
    EXPECT_EQ(view.activeCollection(), spare);
    EXPECT_EQ(view.sidebarIndex(), fixedLensCount);
}

} // namespace
} // namespace kestrova
