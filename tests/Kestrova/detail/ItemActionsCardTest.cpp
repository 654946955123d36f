#include "tests/Kestrova/detail/CardFixture.h"

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr auto arrowFlags = ModifierFlags::function | ModifierFlags::numericPad;
constexpr auto command = ModifierFlags::command;

/// The card of a text, on the screen.
class ItemActionsCardTest : public CardFixture {
protected:
    enum Row { paste, copy, editing, previewing, pin, collectionsRow, share, deleting };

    ItemActionsCardTest() {
        auto actions = actionsOf(insert(u"words"_qs));
        actions.onEdit = doing(u"edit");
        actions.allCollections = insertCollections({u"A"_qs, u"B"_qs, u"C"_qs});
        card = makeCard(std::move(actions));
        card->appears();
    }
    void openCollections() {
        card->perform([this] { card->go(CardScreen::collections); });
    }
    void select(std::ptrdiff_t index) {
        card->perform([&] { card->selectedIndex = index; });
    }
    void pointAt(std::ptrdiff_t row) {
        now += 1s;
        card->pointerMoved(row);
    }
    bool up() { return send(VirtualKey::upArrow, arrowFlags); }
    bool down() { return send(VirtualKey::downArrow, arrowFlags); }
    bool enter() { return send(VirtualKey::returnKey); }
    bool escape(std::uint32_t flags = 0) { return send(VirtualKey::escape, flags); }

    std::unique_ptr<ItemActionsCard> card;
};

TEST_F(ItemActionsCardTest, BeginsOnTheFirstRowOfTheRoot) {
    EXPECT_EQ(card->screen, CardScreen::root);
    EXPECT_EQ(card->selectedIndex, 0);
    EXPECT_EQ(card->hoveredIndex, std::nullopt);
}

// The monitor

TEST_F(ItemActionsCardTest, TheMonitorIsThereWhileTheCardIs) {
    EXPECT_EQ(monitors.localMonitors(EventMask::keyDown), 1U);
    card->disappears();
    EXPECT_FALSE(card->keyMonitor);
    EXPECT_EQ(monitors.localMonitors(), 0U);
    card->appears();
    EXPECT_EQ(monitors.localMonitors(), 1U);
}

TEST_F(ItemActionsCardTest, ASecondMonitorIsNotInstalled) {
    card->appears();
    EXPECT_EQ(monitors.localMonitors(), 1U);
}

TEST_F(ItemActionsCardTest, TheMonitorGoesWithTheCard) {
    card.reset();
    EXPECT_EQ(monitors.localMonitors(), 0U);
}

TEST_F(ItemActionsCardTest, KeysOfOtherWindowsAreNotTheCards) {
    EXPECT_FALSE(send(VirtualKey::returnKey, 0, false, ownWindow + 1));
    EXPECT_FALSE(send(VirtualKey::escape, 0, false, 0));
    EXPECT_TRUE(done.isEmpty());
}

TEST_F(ItemActionsCardTest, TheCardSeesEscapeBeforeWhoeverHasBeenThereLonger) {
    card->disappears();
    const auto earlier = monitors.addLocalMonitor(EventMask::keyDown, [this](const LocalEvent&) {
        done.append(u"earlier"_qs);
        return true;
    });
    card->appears();
    openCollections();
    EXPECT_TRUE(escape());
    EXPECT_TRUE(done.isEmpty());
    EXPECT_EQ(card->screen, CardScreen::root);
    EXPECT_TRUE(escape());
    EXPECT_EQ(done, QStringList{u"cancel"_qs});
}

TEST_F(ItemActionsCardTest, AKeyMayEndTheMonitorThatBroughtIt) {
    card->actions.onCancel = [this] { card->disappears(); };
    EXPECT_TRUE(escape());
    EXPECT_EQ(monitors.localMonitors(), 0U);
}

// Keys of the root, one test a row of the table

struct RootKey {
    const char* name;
    std::uint16_t keyCode;
    std::uint32_t flags;
    const char16_t* does;
};

class RootKeyTest : public ItemActionsCardTest, public testing::WithParamInterface<RootKey> {};

TEST_P(RootKeyTest, DoesItOnceAPress) {
    EXPECT_TRUE(send(GetParam().keyCode, GetParam().flags));
    EXPECT_EQ(done, QStringList{QString::fromUtf16(GetParam().does)});
    EXPECT_TRUE(send(GetParam().keyCode, GetParam().flags, true));
    EXPECT_EQ(done.size(), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Keys, RootKeyTest,
    testing::Values(RootKey{"EscapeCancels", VirtualKey::escape, 0, u"cancel"},
                    RootKey{"EscapeCancelsWhateverIsHeld", VirtualKey::escape, command | ModifierFlags::shift,
                            u"cancel"},
                    RootKey{"ReturnRunsTheSelectedRow", VirtualKey::returnKey, 0, u"paste"},
                    RootKey{"SpacePreviews", VirtualKey::space, 0, u"preview"},
                    RootKey{"DeleteDeletes", VirtualKey::deleteKey, 0, u"delete"},
                    RootKey{"CommandCCopies", VirtualKey::c, command, u"copy"},
                    RootKey{"CommandEEdits", VirtualKey::e, command, u"edit"},
                    RootKey{"CommandPTogglesThePin", VirtualKey::p, command, u"toggle pin"},
                    RootKey{"CommandKCancels", VirtualKey::k, command, u"cancel"}),
    [](const auto& key) { return key.param.name; });

TEST_F(ItemActionsCardTest, UpGoesToTheRowAbove) {
    select(3);
    EXPECT_TRUE(up());
    EXPECT_EQ(card->selectedIndex, 2);
}

TEST_F(ItemActionsCardTest, DownGoesToTheRowBelow) {
    EXPECT_TRUE(down());
    EXPECT_EQ(card->selectedIndex, 1);
}

TEST_F(ItemActionsCardTest, AfterUpAtTheFirstRowTheIndexStaysZero) {
    EXPECT_TRUE(up());
    EXPECT_EQ(card->selectedIndex, 0);
}

TEST_F(ItemActionsCardTest, DownStaysAtTheLastRow) {
    select(deleting);
    EXPECT_TRUE(down());
    EXPECT_EQ(card->selectedIndex, deleting);
}

TEST_F(ItemActionsCardTest, ArrowsThatAreHeldGoOn) {
    for (int press = 0; press < 3; ++press)
        EXPECT_TRUE(send(VirtualKey::downArrow, arrowFlags, press > 0));
    EXPECT_EQ(card->selectedIndex, 3);
    EXPECT_TRUE(send(VirtualKey::upArrow, arrowFlags, true));
    EXPECT_EQ(card->selectedIndex, 2);
}

TEST_F(ItemActionsCardTest, ArrowsTakeTheHighlightFromThePointer) {
    pointAt(5);
    EXPECT_TRUE(down());
    EXPECT_EQ(card->hoveredIndex, std::nullopt);
    EXPECT_EQ(card->highlightedIndex(), 1);
    pointAt(5);
    EXPECT_TRUE(up());
    EXPECT_EQ(card->hoveredIndex, std::nullopt);
}

TEST_F(ItemActionsCardTest, ReturnRunsTheSelectedRowWhateverThePointerIsOn) {
    pointAt(copy);
    EXPECT_TRUE(enter());
    EXPECT_EQ(done, QStringList{u"paste"_qs});
}

TEST_F(ItemActionsCardTest, CommandEEditsAPictureThatHasNoText) {
    card->actions.onEdit = {};
    card->actions.onEditImage = doing(u"edit image");
    EXPECT_TRUE(send(VirtualKey::e, command));
    EXPECT_EQ(done, QStringList{u"edit image"_qs});
}

TEST_F(ItemActionsCardTest, CommandEOfWhatCannotBeEditedIsPassedOn) {
    card->actions.onEdit = {};
    EXPECT_FALSE(send(VirtualKey::e, command));
}

// Modifiers

struct HeldKey {
    const char* name;
    std::uint32_t flag;
};

class HeldKeyTest : public ItemActionsCardTest, public testing::WithParamInterface<HeldKey> {};

TEST_P(HeldKeyTest, ThePlainKeysArePassedOn) {
    for (const auto keyCode : {VirtualKey::returnKey, VirtualKey::space, VirtualKey::deleteKey})
        EXPECT_FALSE(send(keyCode, GetParam().flag)) << keyCode;
    EXPECT_FALSE(send(VirtualKey::upArrow, arrowFlags | GetParam().flag));
    EXPECT_FALSE(send(VirtualKey::downArrow, arrowFlags | GetParam().flag));
    EXPECT_TRUE(done.isEmpty());
    EXPECT_EQ(card->selectedIndex, 0);
}

INSTANTIATE_TEST_SUITE_P(Modifiers, HeldKeyTest,
                         testing::Values(HeldKey{"CapsLock", ModifierFlags::capsLock},
                                         HeldKey{"Shift", ModifierFlags::shift},
                                         HeldKey{"Control", ModifierFlags::control},
                                         HeldKey{"Option", ModifierFlags::option},
                                         HeldKey{"Command", command}, HeldKey{"Help", ModifierFlags::help}),
                         [](const auto& key) { return key.param.name; });

TEST_F(ItemActionsCardTest, CommandKeysWithAnotherModifierArePassedOn) {
    for (const auto flag : {ModifierFlags::capsLock, ModifierFlags::shift, ModifierFlags::control,
                            ModifierFlags::option, ModifierFlags::help})
        for (const auto keyCode : {VirtualKey::c, VirtualKey::e, VirtualKey::p, VirtualKey::k})
            EXPECT_FALSE(send(keyCode, command | flag)) << keyCode << " " << flag;
    EXPECT_TRUE(done.isEmpty());
}

TEST_F(ItemActionsCardTest, WhatTheKeypadAndFunctionKeysCarryDoesNotCount) {
    EXPECT_TRUE(send(VirtualKey::returnKey, arrowFlags));
    EXPECT_EQ(done, QStringList{u"paste"_qs});
}

TEST_F(ItemActionsCardTest, AllOtherKeysArePassedOn) {
    constexpr std::uint16_t one = 18;
    EXPECT_FALSE(send(one, command));
    EXPECT_FALSE(send(VirtualKey::leftArrow, arrowFlags));
    EXPECT_FALSE(send(VirtualKey::rightArrow, arrowFlags));
    EXPECT_FALSE(send(VirtualKey::c));
    EXPECT_FALSE(send(VirtualKey::z, command));
    EXPECT_TRUE(done.isEmpty());
}

// The collections

class CardCollectionsTest : public ItemActionsCardTest {
protected:
    CardCollectionsTest() { openCollections(); }
};

TEST_F(ItemActionsCardTest, TheCollectionRowOpensTheCollections) {
    select(collectionsRow);
    EXPECT_TRUE(enter());
    EXPECT_EQ(card->screen, CardScreen::collections);
    EXPECT_EQ(card->selectedIndex, 0);
    EXPECT_EQ(card->hoveredIndex, std::nullopt);
}

TEST_F(CardCollectionsTest, EscapeGoesBackAndDoesNotClose) {
    select(2);
    pointAt(2);
    EXPECT_TRUE(escape(ModifierFlags::shift));
    EXPECT_EQ(card->screen, CardScreen::root);
    EXPECT_EQ(card->selectedIndex, 0);
    EXPECT_EQ(card->hoveredIndex, std::nullopt);
    EXPECT_TRUE(done.isEmpty());
}

TEST_F(CardCollectionsTest, EscapeThatIsHeldDoesNotCloseEither) {
    EXPECT_TRUE(escape());
    EXPECT_TRUE(send(VirtualKey::escape, 0, true));
    EXPECT_TRUE(done.isEmpty());
}

TEST_F(CardCollectionsTest, TheFirstRowGoesBack) {
    EXPECT_TRUE(enter());
    EXPECT_EQ(card->screen, CardScreen::root);
}

TEST_F(CardCollectionsTest, ReturnTogglesTheCollectionAndStays) {
    EXPECT_TRUE(down());
    EXPECT_TRUE(down());
    EXPECT_TRUE(enter());
    EXPECT_EQ(done, QStringList{u"toggle B"_qs});
    EXPECT_EQ(card->screen, CardScreen::collections);
    EXPECT_EQ(card->selectedIndex, 2);
}

TEST_F(CardCollectionsTest, SpaceAndDeleteDoNothing) {
    EXPECT_FALSE(send(VirtualKey::space));
    EXPECT_FALSE(send(VirtualKey::deleteKey));
    EXPECT_TRUE(done.isEmpty());
}

TEST_F(CardCollectionsTest, CommandKeysDoNothing) {
    for (const auto keyCode : {VirtualKey::c, VirtualKey::e, VirtualKey::p, VirtualKey::k})
        EXPECT_FALSE(send(keyCode, command)) << keyCode;
    EXPECT_TRUE(done.isEmpty());
}

TEST_F(CardCollectionsTest, WithoutCollectionsDownStopsAtTheLineThatSaysSoAndReturnDoesNothing) {
    card->collectionsChanged({}, {});
    // Below it there is no row to skip to.
    EXPECT_TRUE(down());
    EXPECT_EQ(card->selectedIndex, 1);
    EXPECT_TRUE(enter());
    EXPECT_TRUE(done.isEmpty());
    EXPECT_EQ(card->screen, CardScreen::collections);
    EXPECT_TRUE(up());
    EXPECT_EQ(card->selectedIndex, 0);
}

TEST_F(CardCollectionsTest, ACollectionThatIsMadeMeanwhileHasItsRow) {
    auto more = card->actions.allCollections;
    more.push_back(insertCollections({u"new"_qs}).front());
    card->collectionsChanged(more, {});
    EXPECT_EQ(card->rows().back().label, u"new"_qs);
}

TEST_F(CardCollectionsTest, WhereTheSelectedCollectionIsDeletedTheLastRowIsSelected) {
    select(3);
    pointAt(3);
    card->collectionsChanged({card->actions.allCollections.front()}, {});
    EXPECT_EQ(card->selectedIndex, 1);
    EXPECT_EQ(card->hoveredIndex, std::nullopt);
}

TEST_F(ItemActionsCardTest, ReturnOutsideTheListDoesNothing) {
    select(100);
    EXPECT_TRUE(enter());
    EXPECT_TRUE(done.isEmpty());
}

TEST_F(ItemActionsCardTest, ItCanBeTakenFromTheShownCollectionForAsLongAsItIsInIt) {
    card->collectionsChanged({}, doing(u"remove"));
    EXPECT_TRUE(card->actions.isInCurrentCollection);
    EXPECT_EQ(card->rows().size(), 9U);
    card->collectionsChanged({}, {});
    EXPECT_FALSE(card->actions.isInCurrentCollection);
    EXPECT_EQ(card->rows().size(), 8U);
}

// The pointer

TEST_F(ItemActionsCardTest, ARowUnderThePointerIsHighlightedAndNotSelected) {
    pointAt(4);
    EXPECT_EQ(card->highlightedIndex(), 4);
    EXPECT_EQ(card->selectedIndex, 0);
    card->pointerLeft();
    EXPECT_EQ(card->highlightedIndex(), 0);
}

TEST_F(ItemActionsCardTest, TheHighlightStaysOnTheFirstRowFor400MillisecondsAfterTheOpening) {
    now += 399ms;
    card->pointerMoved(4);
    EXPECT_EQ(card->highlightedIndex(), 0);
    now += 1ms;
    card->pointerMoved(4);
    EXPECT_EQ(card->highlightedIndex(), 4);
}

TEST_F(ItemActionsCardTest, SoItDoesAfterEachChangeOfTheScreen) {
    pointAt(4);
    openCollections();
    EXPECT_EQ(card->hoveredIndex, std::nullopt);
    now += 399ms;
    card->pointerMoved(2);
    EXPECT_EQ(card->hoveredIndex, std::nullopt);
    now += 1ms;
    card->pointerMoved(2);
    EXPECT_EQ(card->hoveredIndex, 2);
}

TEST_F(ItemActionsCardTest, SoItDoesWhenTheShelfComesBackWithTheCard) {
    pointAt(4);
    card->disappears();
    card->appears();
    card->pointerMoved(4);
    EXPECT_EQ(card->hoveredIndex, std::nullopt);
}

TEST_F(ItemActionsCardTest, AClickRunsTheRow) {
    card->rowClicked(copy);
    EXPECT_EQ(done, QStringList{u"copy"_qs});
}

TEST_F(CardCollectionsTest, AClickOnADisabledRowDoesNothing) {
    card->collectionsChanged({}, {});
    card->rowClicked(1);
    EXPECT_TRUE(done.isEmpty());
    EXPECT_EQ(card->screen, CardScreen::collections);
}

TEST_F(ItemActionsCardTest, AsksToBePaintedWhenSomethingChanged) {
    int rendered = 0;
    card->onRender = [&] { ++rendered; };
    EXPECT_TRUE(down());
    EXPECT_EQ(rendered, 1);
    EXPECT_TRUE(up());
    EXPECT_TRUE(up());
    EXPECT_EQ(rendered, 2);
    openCollections();
    EXPECT_EQ(rendered, 3);
}

} // namespace
} // namespace kestrova
