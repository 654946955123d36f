#include "tests/Kestrova/shelf/ShelfFixture.h"

namespace kestrova {
namespace {

using enum ClipboardItemType;

class DeleteAndUndoTest : public ShelfKeyboardFixture {
protected:
    void deleteNewest() {
        act([&] { view.deleteItem(*view.items().front()); });
    }
    void undo() {
        act([&] { view.undoLastDelete(); });
    }
};

TEST_F(DeleteAndUndoTest, TheRowGoesAtOnceWithoutAToast) {
    addLetters(u"ba"_qs);
    deleteNewest();
    EXPECT_EQ(savedContents(*m_container), QStringList{u"b"_qs});
    EXPECT_TRUE(hud.shown.empty());
    undo();
    EXPECT_TRUE(hud.shown.empty());
}

TEST_F(DeleteAndUndoTest, ADeletionTouchesNeitherSelectionNorRouteNorLens) {
    addLetters(u"cba"_qs);
    const auto kept = view.items()[1];
    const auto gone = view.items()[0]->id();
    act([&] {
        view._selection = gone;
        view._route = DetailRoute::actions(kept);
    });
    deleteNewest();
    EXPECT_EQ(view._selection, gone);
    EXPECT_EQ(view._route, DetailRoute::actions(kept));
    EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
    EXPECT_EQ(view.currentItem(), kept);
}

TEST_F(DeleteAndUndoTest, NothingIsKeptOfARowThatWasShownInDetailBefore) {
    std::weak_ptr<ClipboardItem> gone;
    {
        const auto item = add(u"secret"_qs);
        gone = item;
        act([&] { view._route = DetailRoute::preview(item); });
        act([&] { view.popRoute(); });
        act([&] { view.deleteItem(*item); });
    }
    EXPECT_TRUE(gone.expired());
}

TEST_F(DeleteAndUndoTest, NothingIsKeptOfARowWhoseDetailTheDeletionCloses) {
    std::weak_ptr<ClipboardItem> gone;
    {
        const auto item = add(u"secret"_qs);
        gone = item;
        act([&] { view._route = DetailRoute::preview(item); });
        act([&] {
            view.deleteItem(*item);
            view.popRoute();
        });
        view.viewDisappears();
    }
    EXPECT_TRUE(gone.expired());
}

TEST_F(DeleteAndUndoTest, EverythingButTheSourceComesBackInItsOldPlaceAsANewRow) {
    add(u"older"_qs);
    const auto item = add(u"shot"_qs, {.type = image,
                                       .pinned = true,
                                       .source = ItemSource::screenshot,
                                       .ocrText = u"words"_qs,
                                       .imageData = QByteArray("png bytes")});
    add(u"newer"_qs);
    const auto work = addCollection(u"work"_qs);
    const auto home = addCollection(u"home"_qs);
    put(item, home);
    put(item, work);
    act([&] {
        item->setWidth(640);
        item->setHeight(480);
        item->setFileURLString(u"file:///shot.png"_qs);
        item->setFileSize(9);
        item->setSourceApp(u"org.example.editor"_qs);
    });
    const auto id = item->id();
    const auto createdAt = item->createdAt();

    act([&] { view.deleteItem(*item); });
    undo();

    EXPECT_EQ(shown(), (QStringList{u"newer"_qs, u"shot"_qs, u"older"_qs}));
    EXPECT_NE(view.items()[1]->id(), id);
    ModelContext other(*m_container);
    const auto back = other.item(view.items()[1]->id());
    ASSERT_TRUE(back);
    EXPECT_EQ(back->content(), u"shot"_qs);
    EXPECT_EQ(back->type(), image);
    EXPECT_EQ(back->imageData(), QByteArray("png bytes"));
    EXPECT_EQ(back->width(), 640);
    EXPECT_EQ(back->height(), 480);
    EXPECT_EQ(back->fileURLString(), u"file:///shot.png"_qs);
    EXPECT_EQ(back->fileSize(), 9);
    EXPECT_EQ(back->createdAt(), createdAt);
    EXPECT_EQ(back->sourceApp(), u"org.example.editor"_qs);
    EXPECT_TRUE(back->pinned());
    EXPECT_EQ(back->ocrText(), u"words"_qs);
    EXPECT_EQ(back->source(), ItemSource::clipboard);
    ASSERT_TRUE(back->collections());
    ASSERT_EQ(back->collections()->size(), 2u);
    EXPECT_EQ(back->collections()->at(0)->id(), home->id());
    EXPECT_EQ(back->collections()->at(1)->id(), work->id());
}

TEST_F(DeleteAndUndoTest, AScreenshotThatComesBackIsNoLongerAmongTheScreenshots) {
    add(u"shot"_qs, {.type = image, .source = ItemSource::screenshot});
    lens(CollectionFilter::screenshots());
    deleteNewest();
    undo();
    EXPECT_EQ(shown(), QStringList());
    lens(CollectionFilter::all());
    EXPECT_EQ(shown(), QStringList{u"shot"_qs});
}

TEST_F(DeleteAndUndoTest, WhatComesBackIsSelectedAndScrolledTo) {
    addLetters(u"ba"_qs);
    act([&] { view.deleteItem(*view.items()[1]); });
    undo();
    EXPECT_EQ(selected(), u"b"_qs);
    EXPECT_EQ(view._scrollTarget, view._selection);
}

TEST_F(DeleteAndUndoTest, TheLastDeletionIsTheFirstToComeBack) {
    addLetters(u"ba"_qs);
    deleteNewest();
    deleteNewest();
    undo();
    EXPECT_EQ(shown(), QStringList{u"b"_qs});
    undo();
    EXPECT_EQ(shown(), (QStringList{u"a"_qs, u"b"_qs}));
}

TEST_F(DeleteAndUndoTest, TwentyOneDeletionsAndTwentyOneUndosBringBackTwentyItems) {
    constexpr std::size_t deletions = 21;
    for (std::size_t i = 0; i < deletions; ++i)
        add(QString::number(i));
    for (std::size_t i = 0; i < deletions; ++i) {
        deleteNewest();
        EXPECT_LE(view._deletedStack.size(), 20u);
    }
    for (std::size_t i = 0; i + 1 < deletions; ++i)
        undo();
    EXPECT_EQ(view.items().size(), 20u);
    const auto selection = view._selection;
    undo();
    EXPECT_EQ(view.items().size(), 20u);
    EXPECT_EQ(view._selection, selection);
    // The oldest record went: that of the first deletion.
    EXPECT_EQ(shown().front(), u"19"_qs);
}

TEST_F(DeleteAndUndoTest, UndoWithASearchBringsTheItemBackUnseenAndTheCommandsActOnTheFirst) {
    addLetters(u"ba"_qs);
    deleteNewest();
    type(u"b"_qs);
    undo();
    EXPECT_EQ(shown(), QStringList{u"b"_qs});
    EXPECT_EQ(view._selection, view.items().front()->id());
    EXPECT_EQ(view.currentItem()->content(), u"b"_qs);
    EXPECT_EQ(savedContents(*m_container), (QStringList{u"a"_qs, u"b"_qs}));
}

TEST_F(DeleteAndUndoTest, AnItemComesBackInTheCollectionsThatRemain) {
    const auto a = add(u"a"_qs);
    const auto work = addCollection(u"work"_qs);
    const auto home = addCollection(u"home"_qs);
    put(a, work);
    put(a, home);
    deleteNewest();
    deleteElsewhere(work->id());
    undo();
    const auto collections = view.items().front()->collections();
    ASSERT_TRUE(collections);
    ASSERT_EQ(collections->size(), 1u);
    EXPECT_EQ(collections->front(), home);
}

TEST_F(DeleteAndUndoTest, WithNoCollectionLeftTheItemIsInNone) {
    const auto a = add(u"a"_qs);
    const auto work = addCollection(u"work"_qs);
    put(a, work);
    deleteNewest();
    deleteElsewhere(work->id());
    undo();
    EXPECT_EQ(view.items().front()->collections(), std::nullopt);
}

TEST_F(DeleteAndUndoTest, APinnedItemComesBackPinned) {
    add(u"a"_qs, {.pinned = true});
    deleteNewest();
    undo();
    EXPECT_TRUE(view.items().front()->pinned());
}

TEST_F(DeleteAndUndoTest, DeletingWithNothingSelectedTakesTheHoveredElseTheFirstItem) {
    addLetters(u"cba"_qs);
    selectItem(std::nullopt);
    act([&] { view._hoveredItem = view.items()[1]->id(); });
    EXPECT_TRUE(command(VirtualKey::deleteKey));
    EXPECT_EQ(shown(), (QStringList{u"a"_qs, u"c"_qs}));
    EXPECT_TRUE(command(VirtualKey::deleteKey));
    EXPECT_EQ(shown(), QStringList{u"c"_qs});
}

TEST_F(DeleteAndUndoTest, UndoWorksAfterThePanelWasClosedAndShownAgain) {
    addLetters(u"ba"_qs);
    deleteNewest();
    view.viewDisappears();
    view.viewAppears();
    view.shelfPanelDidShow();
    EXPECT_TRUE(command(VirtualKey::z));
    EXPECT_EQ(shown(), (QStringList{u"a"_qs, u"b"_qs}));
}

TEST_F(DeleteAndUndoTest, ARowThatTheStoreRemovesItselfIsNotRemembered) {
    const auto a = add(u"a"_qs);
    deleteElsewhere(a->id());
    EXPECT_TRUE(view._deletedStack.empty());
}

TEST_F(DeleteAndUndoTest, WhatCameBackUnsavedStaysSelectedWhenItIsSavedLater) {
    addLetters(u"ba"_qs);
    deleteNewest();
    {
        ForeignConnection other(storeFile());
        other.execute("BEGIN IMMEDIATE");
        undo();
        EXPECT_EQ(selected(), u"a"_qs);
    }
    ASSERT_TRUE(view._selection->isTemporary());
    act([&] { view.togglePin(*view.items().back()); });
    EXPECT_EQ(savedContents(*m_container), (QStringList{u"a"_qs, u"b"_qs}));
    EXPECT_EQ(selected(), u"a"_qs);
    EXPECT_FALSE(view._selection->isTemporary());
}

} // namespace
} // namespace kestrova
