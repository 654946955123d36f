#include "Kestrova/shelf/ShelfActionsCard.h"

#include "KestrovaCore/CollectionMembership.h"
#include "tests/Kestrova/shelf/ShelfFixture.h"

namespace kestrova {
namespace {

using enum ClipboardItemType;

/// The card of an item that is shown in the shelf.
class ShelfActionsCardTest : public ShelfFixture {
protected:
    ShelfActionsCardTest() {
        panel.visible = true;
        view.viewAppears();
    }
    void open(const std::shared_ptr<ClipboardItem>& shownItem) {
        item = shownItem;
        act([&] { view._route = DetailRoute::actions(item); });
        card = makeItemActionsCard(view, item);
        card->appears();
    }
    bool send(std::uint16_t keyCode, std::uint32_t flags = 0) {
        return monitors.send({EventMask::keyDown, panel.number, {keyCode, flags, {}, false}});
    }
    bool has(const QString& label) {
        return std::ranges::any_of(card->rows(), [&](const auto& row) { return row.label == label; });
    }
    /// The row is clicked.
    void choose(const QString& label) {
        const auto rows = card->rows();
        const auto row = std::ranges::find(rows, label, &ActionRow::label);
        ASSERT_NE(row, rows.end()) << qPrintable(label);
        card->rowClicked(row - rows.begin());
    }
    bool isOnCard() const { return view._route == DetailRoute::actions(item); }
    void deleteItemElsewhere() { deleteElsewhere(item->id()); }

    std::shared_ptr<ClipboardItem> item;
    std::unique_ptr<ItemActionsCard> card;
};

TEST_F(ShelfActionsCardTest, PasteIsThePasteOfTheShelf) {
    open(add(u"words"_qs));
    choose(u"Paste"_qs);
    EXPECT_EQ(pasted, QStringList{u"words"_qs});
    EXPECT_TRUE(isOnCard());
}

TEST_F(ShelfActionsCardTest, CopyWritesShowsTheToastAndCloses) {
    open(add(u"words"_qs));
    choose(u"Copy"_qs);
    EXPECT_EQ(pasteboard.string(), u"words"_qs);
    EXPECT_EQ(hud.shown.size(), 1U);
    EXPECT_FALSE(view._route);
}

TEST_F(ShelfActionsCardTest, CopyByItsKeyDoesTheSame) {
    open(add(u"words"_qs));
    EXPECT_TRUE(send(VirtualKey::c, ModifierFlags::command));
    EXPECT_EQ(pasteboard.string(), u"words"_qs);
    EXPECT_EQ(hud.shown.size(), 1U);
    EXPECT_FALSE(view._route);
}

TEST_F(ShelfActionsCardTest, TogglingThePinCloses) {
    open(add(u"words"_qs));
    choose(u"Pin"_qs);
    EXPECT_TRUE(item->pinned());
    EXPECT_FALSE(view._route);
    open(item);
    choose(u"Unpin"_qs);
    EXPECT_FALSE(item->pinned());
}

class EditableCardTest : public ShelfActionsCardTest,
                         public testing::WithParamInterface<ClipboardItemType> {};

TEST_P(EditableCardTest, EditSuspendsTheCard) {
    open(add(u"words"_qs, {.type = GetParam()}));
    EXPECT_FALSE(has(u"이미지 편집"_qs));
    choose(u"Edit"_qs);
    EXPECT_EQ(view._route, DetailRoute::edit(item));
    EXPECT_EQ(view._suspendedRoute, DetailRoute::actions(item));
    act([&] { view.popRoute(); });
    EXPECT_TRUE(isOnCard());
}

INSTANTIATE_TEST_SUITE_P(Types, EditableCardTest, testing::Values(text, rtf, url, color));

TEST_F(ShelfActionsCardTest, APictureIsEditedAsAPicture) {
    open(add(u"picture"_qs, {.type = image, .imageData = QByteArray("png")}));
    EXPECT_FALSE(has(u"Edit"_qs));
    choose(u"이미지 편집"_qs);
    EXPECT_EQ(imagesToEdit, QStringList{u"picture"_qs});
}

TEST_F(ShelfActionsCardTest, APictureWithoutDataOrAFileCannotBeEdited) {
    for (const auto type : {image, file}) {
        open(add(u"item"_qs, {.type = type}));
        EXPECT_FALSE(has(u"Edit"_qs));
        EXPECT_FALSE(has(u"이미지 편집"_qs));
        EXPECT_FALSE(send(VirtualKey::e, ModifierFlags::command));
    }
}

TEST_F(ShelfActionsCardTest, PreviewSuspendsTheCard) {
    open(add(u"words"_qs));
    EXPECT_TRUE(send(VirtualKey::space));
    EXPECT_EQ(view._route, DetailRoute::preview(item));
    EXPECT_EQ(view._suspendedRoute, DetailRoute::actions(item));
}

TEST_F(ShelfActionsCardTest, TogglingCollectionsKeepsTheCardOpen) {
    const auto work = addCollection(u"Work"_qs);
    open(add(u"words"_qs));
    choose(u"Collection"_qs);
    choose(u"Work"_qs);
    EXPECT_TRUE(isInCollection(*item, *work));
    EXPECT_EQ(card->rows()[1].icon, u"checkmark.circle.fill"_qs);
    EXPECT_EQ(card->screen, CardScreen::collections);
    EXPECT_TRUE(isOnCard());
    choose(u"Work"_qs);
    EXPECT_FALSE(isInCollection(*item, *work));
    EXPECT_EQ(card->rows()[1].icon, u"circle"_qs);
    EXPECT_TRUE(isOnCard());
}

TEST_F(ShelfActionsCardTest, FollowsTheCollectionsThatThereAre) {
    const auto work = addCollection(u"Work"_qs);
    open(add(u"words"_qs));
    choose(u"Collection"_qs);
    addCollection(u"Later"_qs);
    followCollections(*card, view);
    EXPECT_TRUE(has(u"Later"_qs));
    deleteElsewhere(work->id());
    followCollections(*card, view);
    EXPECT_FALSE(has(u"Work"_qs));
}

TEST_F(ShelfActionsCardTest, ACollectionThatIsGoneIsNotToggled) {
    const auto work = addCollection(u"Work"_qs);
    open(add(u"words"_qs));
    choose(u"Collection"_qs);
    deleteElsewhere(work->id());
    choose(u"Work"_qs);
    EXPECT_EQ(item->collections().value_or(std::vector<std::shared_ptr<KovaCollection>>()).size(), 0U);
    EXPECT_TRUE(isOnCard());
}

TEST_F(ShelfActionsCardTest, InItsCollectionTheItemCanBeTakenFromIt) {
    const auto work = addCollection(u"Work"_qs);
    const auto words = add(u"words"_qs);
    put(words, work);
    lens(CollectionFilter::collection(work->id()));
    open(words);
    EXPECT_TRUE(card->actions.isInCurrentCollection);
    choose(u"이 컬렉션에서 빼기"_qs);
    EXPECT_FALSE(isInCollection(*item, *work));
    EXPECT_FALSE(view._route);
}

TEST_F(ShelfActionsCardTest, ThatRowGoesAndComesWithTheMembership) {
    const auto work = addCollection(u"Work"_qs);
    const auto words = add(u"words"_qs);
    put(words, work);
    lens(CollectionFilter::collection(work->id()));
    open(words);
    for (const bool isIn : {false, true}) {
        act([&] { view.toggleCollection(*item, work); });
        followCollections(*card, view);
        EXPECT_EQ(has(u"이 컬렉션에서 빼기"_qs), isIn);
    }
}

TEST_F(ShelfActionsCardTest, OfAnotherCollectionThereIsNothingToTakeItFrom) {
    const auto work = addCollection(u"Work"_qs);
    put(add(u"other"_qs), work);
    lens(CollectionFilter::collection(work->id()));
    open(add(u"words"_qs));
    EXPECT_FALSE(card->actions.isInCurrentCollection);
    EXPECT_FALSE(has(u"이 컬렉션에서 빼기"_qs));
}

TEST_F(ShelfActionsCardTest, ShareAsksOnTheNextTurn) {
    open(add(u"words"_qs));
    choose(u"Share…"_qs);
    EXPECT_TRUE(sharing.asked.empty());
    queue.turn();
    ASSERT_EQ(sharing.asked.size(), 1U);
    EXPECT_EQ(sharing.asked[0].text, u"words"_qs);
}

TEST_F(ShelfActionsCardTest, AFileIsOpenedAndShownAndTheShelfStepsAside) {
    const auto shot = add(u"shot"_qs, {.type = image, .source = ItemSource::screenshot});
    shot->setFileURLString(u"file:///home/user/shot.png"_qs);
    open(shot);
    const QUrl url(u"file:///home/user/shot.png"_qs);
    choose(u"열기"_qs);
    EXPECT_EQ(workspace.opened, QList{url});
    EXPECT_EQ(stepsAside, 1);
    choose(u"Finder 에서 보기"_qs);
    EXPECT_EQ(workspace.revealed, QList{url});
    EXPECT_EQ(stepsAside, 2);
}

TEST_F(ShelfActionsCardTest, DeleteDeletesAndCloses) {
    addLetters(u"ab"_qs);
    open(add(u"words"_qs));
    EXPECT_TRUE(send(VirtualKey::deleteKey));
    EXPECT_EQ(shown(), QStringList({u"b"_qs, u"a"_qs}));
    EXPECT_FALSE(view._route);
    act([&] { view.undoLastDelete(); });
    EXPECT_EQ(shown().size(), 3);
}

TEST_F(ShelfActionsCardTest, EscapeIsSeenByTheCardFirst) {
    open(add(u"words"_qs));
    choose(u"Collection"_qs);
    EXPECT_TRUE(send(VirtualKey::escape));
    EXPECT_TRUE(isOnCard());
    EXPECT_EQ(card->screen, CardScreen::root);
    EXPECT_TRUE(send(VirtualKey::escape));
    EXPECT_FALSE(view._route);
    EXPECT_EQ(dismissals, 0);
    card->disappears();
    EXPECT_TRUE(send(VirtualKey::escape));
    EXPECT_EQ(dismissals, 1);
}

TEST_F(ShelfActionsCardTest, CommandKOpensAndClosesIt) {
    const auto words = add(u"words"_qs);
    EXPECT_TRUE(send(VirtualKey::k, ModifierFlags::command));
    ASSERT_EQ(view._route, DetailRoute::actions(words));
    open(words);
    EXPECT_TRUE(send(VirtualKey::k, ModifierFlags::command));
    EXPECT_FALSE(view._route);
}

TEST_F(ShelfActionsCardTest, KeysOfAnotherWindowOrOfAHiddenPanelAreNotTheCards) {
    open(add(u"words"_qs));
    EXPECT_FALSE(
        monitors.send({EventMask::keyDown, panel.number + 1, {VirtualKey::returnKey, 0, {}, false}}));
    panel.visible = false;
    EXPECT_FALSE(send(VirtualKey::returnKey));
    EXPECT_TRUE(pasted.isEmpty());
}

// Deleted while the card is open

class DeletedItemCardTest : public ShelfActionsCardTest {
protected:
    DeletedItemCardTest() {
        work = addCollection(u"Work"_qs);
        const auto words = add(u"words"_qs);
        put(words, work);
        lens(CollectionFilter::collection(work->id()));
        open(words);
        deleteItemElsewhere();
    }
    std::shared_ptr<KovaCollection> work;
};

TEST_F(DeletedItemCardTest, TheCardKeepsIt) {
    EXPECT_TRUE(isOnCard());
    EXPECT_EQ(card->actions.item->content(), u"words"_qs);
    choose(u"Copy"_qs);
    EXPECT_EQ(pasteboard.string(), u"words"_qs);
}

class DeletedItemRowTest : public DeletedItemCardTest, public testing::WithParamInterface<const char16_t*> {};

TEST_P(DeletedItemRowTest, DoesNothingToIt) {
    choose(QString::fromUtf16(GetParam()));
    queue.turn();
    EXPECT_FALSE(view._route);
    EXPECT_TRUE(item->isDeleted());
    EXPECT_TRUE(savedContents(*m_container).isEmpty());
    EXPECT_TRUE(view._deletedStack.empty());
}

INSTANTIATE_TEST_SUITE_P(Rows, DeletedItemRowTest, testing::Values(u"Pin", u"Delete", u"이 컬렉션에서 빼기"));

TEST_F(DeletedItemCardTest, ItIsPutIntoNoCollection) {
    const auto later = addCollection(u"Later"_qs);
    followCollections(*card, view);
    choose(u"Collection"_qs);
    choose(u"Later"_qs);
    EXPECT_FALSE(isInCollection(*item, *later));
    EXPECT_TRUE(savedContents(*m_container).isEmpty());
}

TEST_F(DeletedItemCardTest, ItIsNotShared) {
    choose(u"Share…"_qs);
    queue.turn();
    EXPECT_TRUE(sharing.asked.empty());
}

} // namespace
} // namespace kestrova
