#include "Kestrova/clipboard/OwnWrite.h"
#include "tests/Kestrova/shelf/ShelfFixture.h"

namespace kestrova {
namespace {

using enum ClipboardItemType;

class ShelfKeyboardTest : public ShelfKeyboardFixture {};

// Monitors

class ShelfMonitorTest : public ShelfKeyboardTest {
protected:
    ShelfMonitorTest() {
        addLetters(u"ba"_qs);
        panel.visible = true;
        view.viewAppears();
    }
    bool sendReturn(std::uint64_t window) {
        return monitors.send({EventMask::keyDown, window, {VirtualKey::returnKey, 0, {}, false}});
    }
    void sendFlags(std::uint64_t window, std::uint32_t flags) {
        EXPECT_FALSE(monitors.send({EventMask::flagsChanged, window, {0, flags, {}, false}}));
    }
};

TEST_F(ShelfMonitorTest, AKeyOfThePanelIsSwallowedIfItIsTaken) {
    EXPECT_TRUE(sendReturn(panel.number));
    EXPECT_EQ(pasted, QStringList{u"a"_qs});
    EXPECT_FALSE(monitors.send({EventMask::keyDown, panel.number, {0, 0, u"a"_qs, false}}));
}

TEST_F(ShelfMonitorTest, KeysOfOtherWindowsAndOfNoneAreNotTouched) {
    EXPECT_FALSE(sendReturn(panel.number + 1));
    EXPECT_FALSE(sendReturn(0));
    EXPECT_TRUE(pasted.isEmpty());
}

TEST_F(ShelfMonitorTest, AHiddenPanelTakesNoKeys) {
    panel.visible = false;
    EXPECT_FALSE(sendReturn(panel.number));
    EXPECT_TRUE(pasted.isEmpty());
}

TEST_F(ShelfMonitorTest, ModifiersOfThePanelAreFollowedAndPassedOn) {
    sendFlags(panel.number, ModifierFlags::option);
    EXPECT_TRUE(view._optionHeld);
    EXPECT_FALSE(view._commandHeld || view._controlHeld);
    sendFlags(panel.number, ModifierFlags::option | ModifierFlags::command);
    EXPECT_TRUE(view._optionHeld && view._commandHeld);
    sendFlags(panel.number, ModifierFlags::control | ModifierFlags::shift);
    EXPECT_TRUE(view._controlHeld);
    EXPECT_FALSE(view._optionHeld || view._commandHeld);
    sendFlags(panel.number, 0);
    EXPECT_FALSE(view._controlHeld);
}

TEST_F(ShelfMonitorTest, ModifiersThatAreLetGoWithTheWindowAreHeldNoLonger) {
    sendFlags(panel.number, ModifierFlags::command);
    panel.visible = false;
    sendFlags(panel.number, ModifierFlags::command | ModifierFlags::option);
    EXPECT_TRUE(view._commandHeld);
    EXPECT_FALSE(view._optionHeld) << "only letting go counts";
    sendFlags(panel.number, ModifierFlags::option);
    EXPECT_FALSE(view._commandHeld || view._optionHeld);
}

TEST_F(ShelfMonitorTest, AModifierThatIsLetGoInAMenuOfOursIsHeldNoLonger) {
    sendFlags(panel.number, ModifierFlags::option | ModifierFlags::command);
    sendFlags(panel.number + 1, ModifierFlags::command);
    EXPECT_FALSE(view._optionHeld);
    EXPECT_TRUE(view._commandHeld);
    sendFlags(panel.number + 1, 0);
    EXPECT_FALSE(view._commandHeld);
}

TEST_F(ShelfMonitorTest, AShowBeginsWithoutHeldModifiers) {
    sendFlags(panel.number, ModifierFlags::option | ModifierFlags::command | ModifierFlags::control);
    view.shelfPanelDidShow();
    EXPECT_FALSE(view._optionHeld || view._commandHeld || view._controlHeld);
}

TEST_F(ShelfMonitorTest, ModifiersOfOtherWindowsAreNotFollowed) {
    sendFlags(panel.number + 1, ModifierFlags::option);
    EXPECT_FALSE(view._optionHeld);
}

// Escape and the open detail screen

TEST_F(ShelfKeyboardTest, EscapeClosesThePanelWhateverTheModifiersAndKeepsTheSearch) {
    type(u"a"_qs);
    for (const std::uint32_t flags : {0u, ModifierFlags::shift, ModifierFlags::capsLock,
                                      ModifierFlags::command | ModifierFlags::option, 0xFFFFFFFFu})
        EXPECT_TRUE(press(VirtualKey::escape, flags));
    EXPECT_EQ(dismissals, 5);
    EXPECT_EQ(view._query, u"a"_qs);
}

TEST_F(ShelfKeyboardTest, EscapeClosesTheDetailFirstAndThePanelNext) {
    act([&] { view._route = DetailRoute::preview(add(u"a"_qs)); });
    EXPECT_TRUE(escape());
    EXPECT_EQ(view._route, std::nullopt);
    EXPECT_EQ(dismissals, 0);
    EXPECT_TRUE(escape());
    EXPECT_EQ(dismissals, 1);
}

TEST_F(ShelfKeyboardTest, EscapeFromAScreenOfTheCardLeadsBackToTheCard) {
    const auto a = add(u"a"_qs);
    act([&] {
        view._suspendedRoute = DetailRoute::actions(a);
        view._route = DetailRoute::preview(a);
    });
    EXPECT_TRUE(escape());
    EXPECT_EQ(view._route, DetailRoute::actions(a));
}

TEST_F(ShelfKeyboardTest, AllOtherKeysBelongToTheOpenDetail) {
    addLetters(u"ba"_qs);
    act([&] { view._route = DetailRoute::preview(view.items().front()); });
    EXPECT_FALSE(digit(u"1"_qs, ModifierFlags::command));
    EXPECT_FALSE(enter());
    EXPECT_FALSE(down());
    EXPECT_FALSE(space());
    EXPECT_FALSE(command(VirtualKey::deleteKey));
    EXPECT_FALSE(press(VirtualKey::s, ModifierFlags::option | ModifierFlags::command));
    EXPECT_FALSE(digit(u"2"_qs, ModifierFlags::option));
    EXPECT_TRUE(pasted.isEmpty());
    EXPECT_EQ(view.items().size(), 2u);
    EXPECT_TRUE(view._sidebarVisible);
}

// What counts as a plain key

TEST_F(ShelfKeyboardTest, ArrowAndKeypadBitsLeaveAKeyPlain) {
    add(u"a"_qs);
    EXPECT_TRUE(press(VirtualKey::returnKey, ModifierFlags::numericPad | ModifierFlags::function));
    EXPECT_TRUE(press(VirtualKey::returnKey, 0x1FF));
    EXPECT_EQ(pasted.size(), 2);
}

TEST_F(ShelfKeyboardTest, EveryModifierTakesAPlainKeyOutOfTheTable) {
    add(u"a"_qs);
    for (const auto flag :
         {ModifierFlags::capsLock, ModifierFlags::shift, ModifierFlags::control, ModifierFlags::option,
          ModifierFlags::command, ModifierFlags::help, 0x1000000u, 0x80000000u}) {
        EXPECT_FALSE(press(VirtualKey::returnKey, flag)) << std::hex << flag;
        EXPECT_FALSE(press(VirtualKey::downArrow, flag | ModifierFlags::function)) << std::hex << flag;
    }
    EXPECT_TRUE(pasted.isEmpty());
    EXPECT_EQ(view._lane, KeyboardLane::search);
}

TEST_F(ShelfKeyboardTest, AShiftedArrowReachesTheSearchField) {
    for (const auto key :
         {VirtualKey::leftArrow, VirtualKey::rightArrow, VirtualKey::upArrow, VirtualKey::downArrow})
        EXPECT_FALSE(press(key, arrowFlags | ModifierFlags::shift));
    EXPECT_EQ(view._lane, KeyboardLane::search);
}

TEST_F(ShelfKeyboardTest, LettersReachTheSearchField) {
    add(u"a"_qs);
    EXPECT_FALSE(press(VirtualKey::c, 0, u"c"_qs));
    EXPECT_FALSE(press(VirtualKey::deleteKey));
    EXPECT_FALSE(digit(u"1"_qs, 0));
    EXPECT_FALSE(digit(u"1"_qs, ModifierFlags::shift));
}

// Command

TEST_F(ShelfKeyboardTest, CommandZUndoesTheLastDeletionAndIsTakenWithoutOneToo) {
    addLetters(u"ba"_qs);
    EXPECT_TRUE(command(VirtualKey::deleteKey));
    EXPECT_TRUE(command(VirtualKey::z));
    EXPECT_EQ(shown(), (QStringList{u"a"_qs, u"b"_qs}));
    EXPECT_TRUE(command(VirtualKey::z));
}

TEST_F(ShelfKeyboardTest, CommandCWritesTheItemWithoutAToast) {
    addLetters(u"ba"_qs);
    selectIndex(1);
    EXPECT_TRUE(command(VirtualKey::c));
    EXPECT_EQ(pasteboard.written(), std::vector<PasteboardEntry>{PlainText{u"b"_qs}});
    EXPECT_EQ(ownWriteChangeCount, pasteboard.changeCount());
    EXPECT_TRUE(hud.shown.empty());
}

TEST_F(ShelfKeyboardTest, CommandEEditsTextsLinksAndColours) {
    for (const auto type : {text, rtf, url, color}) {
        const auto item = add(u"x"_qs, {.type = type});
        act([&] { view._route.reset(); });
        selectItem(item->id());
        EXPECT_TRUE(command(VirtualKey::e));
        EXPECT_EQ(view._route, DetailRoute::edit(item));
    }
}

TEST_F(ShelfKeyboardTest, CommandEOpensTheEditorForAPictureThatIsThere) {
    add(u"picture"_qs, {.type = image, .imageData = QByteArray("png")});
    EXPECT_TRUE(command(VirtualKey::e));
    EXPECT_EQ(imagesToEdit, QStringList{u"picture"_qs});
    EXPECT_EQ(view._route, std::nullopt);
}

TEST_F(ShelfKeyboardTest, CommandEPassesOnForAPictureWithoutDataAndForAFile) {
    for (const auto type : {image, file}) {
        add(u"x"_qs, {.type = type});
        EXPECT_FALSE(command(VirtualKey::e));
    }
    EXPECT_TRUE(imagesToEdit.isEmpty());
    EXPECT_EQ(view._route, std::nullopt);
}

TEST_F(ShelfKeyboardTest, CommandPFlipsThePinAndSaves) {
    const auto a = add(u"a"_qs);
    EXPECT_TRUE(command(VirtualKey::p));
    ModelContext other(*m_container);
    EXPECT_TRUE(other.item(a->id())->pinned());
    EXPECT_TRUE(command(VirtualKey::p));
    EXPECT_FALSE(a->pinned());
}

TEST_F(ShelfKeyboardTest, CommandKOpensTheActions) {
    const auto a = add(u"a"_qs);
    EXPECT_TRUE(command(VirtualKey::k));
    EXPECT_EQ(view._route, DetailRoute::actions(a));
    EXPECT_EQ(view._suspendedRoute, std::nullopt);
}

TEST_F(ShelfKeyboardTest, CommandGraveFlipsTheMode) {
    EXPECT_TRUE(command(VirtualKey::grave));
    EXPECT_EQ(view._viewMode, ShelfViewMode::grid);
    EXPECT_TRUE(command(VirtualKey::grave));
    EXPECT_EQ(view._viewMode, ShelfViewMode::list);
}

TEST_F(ShelfKeyboardTest, CommandDeleteDeletes) {
    addLetters(u"ba"_qs);
    selectIndex(1);
    EXPECT_TRUE(command(VirtualKey::deleteKey));
    EXPECT_EQ(shown(), QStringList{u"a"_qs});
}

TEST_F(ShelfKeyboardTest, CommandKeysThatNeedAnItemPassOnWithoutOne) {
    for (const auto key : {VirtualKey::c, VirtualKey::e, VirtualKey::p, VirtualKey::k, VirtualKey::deleteKey})
        EXPECT_FALSE(command(key));
    EXPECT_TRUE(pasteboard.written().empty());
}

TEST_F(ShelfKeyboardTest, OtherCommandKeysPassOn) {
    add(u"a"_qs);
    EXPECT_FALSE(command(VirtualKey::v));
    EXPECT_FALSE(command(VirtualKey::s));
    EXPECT_FALSE(press(VirtualKey::upArrow, arrowFlags | ModifierFlags::command));
}

TEST_F(ShelfKeyboardTest, AnyFurtherModifierKillsACommandKeyButTheLowBitsDoNotCount) {
    add(u"a"_qs);
    for (const auto flag :
         {ModifierFlags::capsLock, ModifierFlags::shift, ModifierFlags::control, ModifierFlags::option})
        EXPECT_FALSE(press(VirtualKey::k, ModifierFlags::command | flag)) << flag;
    EXPECT_TRUE(press(VirtualKey::k, ModifierFlags::command | 0x108));
}

// Option

TEST_F(ShelfKeyboardTest, AnOptionArrowWithoutTheBitsOfAnArrowMovesTheLens) {
    EXPECT_TRUE(press(VirtualKey::downArrow, ModifierFlags::option));
    EXPECT_EQ(view._collectionFilter, CollectionFilter::pinned());
    EXPECT_TRUE(press(VirtualKey::downArrow, ModifierFlags::option));
    EXPECT_TRUE(press(VirtualKey::downArrow, ModifierFlags::option));
    EXPECT_EQ(view._collectionFilter, CollectionFilter::screenshots());
    EXPECT_TRUE(press(VirtualKey::upArrow, ModifierFlags::option));
    EXPECT_EQ(view._collectionFilter, CollectionFilter::pinned());
    EXPECT_TRUE(press(VirtualKey::upArrow, ModifierFlags::option));
    EXPECT_TRUE(press(VirtualKey::upArrow, ModifierFlags::option));
    EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
}

TEST_F(ShelfKeyboardTest, AnOptionArrowAsAKeyboardSendsItPassesOn) {
    EXPECT_FALSE(press(VirtualKey::downArrow, ModifierFlags::option | arrowFlags));
    EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
}

TEST_F(ShelfKeyboardTest, WithTheSidebarHiddenOptionArrowsPassOn) {
    hideSidebar();
    EXPECT_FALSE(press(VirtualKey::downArrow, ModifierFlags::option));
    EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
}

TEST_F(ShelfKeyboardTest, OptionCommandIAndSFlipPreviewAndSidebar) {
    constexpr auto both = ModifierFlags::option | ModifierFlags::command;
    EXPECT_TRUE(press(VirtualKey::i, both));
    EXPECT_FALSE(view._previewVisible);
    EXPECT_TRUE(press(VirtualKey::s, both));
    EXPECT_FALSE(view._sidebarVisible);
    EXPECT_TRUE(press(VirtualKey::i, both));
    EXPECT_TRUE(press(VirtualKey::s, both));
    EXPECT_TRUE(view._previewVisible && view._sidebarVisible);
    EXPECT_FALSE(press(VirtualKey::k, both));
    EXPECT_FALSE(digit(u"1"_qs, both));
}

// Digits

TEST_F(ShelfKeyboardTest, ControlDigitsChooseChips) {
    addOneOfEachType();
    EXPECT_TRUE(digit(u"3"_qs, ModifierFlags::control));
    EXPECT_EQ(view._typeFilter, url);
    EXPECT_EQ(view._activeTagIndex, 2u);
    EXPECT_TRUE(digit(u"6"_qs, ModifierFlags::control));
    EXPECT_EQ(view._typeFilter, color);
    EXPECT_FALSE(digit(u"7"_qs, ModifierFlags::control));
    EXPECT_EQ(view._typeFilter, color);
    EXPECT_EQ(view._activeTagIndex, 5u);
}

TEST_F(ShelfKeyboardTest, ControlOneAlwaysWorksSinceItMeansAll) {
    EXPECT_TRUE(digit(u"1"_qs, ModifierFlags::control));
    EXPECT_FALSE(digit(u"2"_qs, ModifierFlags::control));
    add(u"a"_qs);
    chip(text);
    EXPECT_TRUE(digit(u"1"_qs, ModifierFlags::control));
    EXPECT_EQ(view._typeFilter, std::nullopt);
    EXPECT_EQ(view._activeTagIndex, 0u);
}

TEST_F(ShelfKeyboardTest, WithTheSidebarHiddenTheLensThatAChipResetsPutsItsPositionBackToZero) {
    add(u"a"_qs, {.pinned = true});
    hideSidebar();
    lens(CollectionFilter::pinned());
    EXPECT_TRUE(digit(u"2"_qs, ModifierFlags::control));
    EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
    EXPECT_EQ(view._typeFilter, text);
    EXPECT_EQ(view._activeTagIndex, 0u);
}

TEST_F(ShelfKeyboardTest, OptionDigitsChooseSidebarRowsWithTheSidebarHiddenToo) {
    const auto work = addCollection(u"work"_qs);
    for (const bool visible : {true, false}) {
        act([&] { view._sidebarVisible = visible; });
        EXPECT_TRUE(digit(u"2"_qs, ModifierFlags::option));
        EXPECT_EQ(view._collectionFilter, CollectionFilter::pinned());
        EXPECT_TRUE(digit(u"3"_qs, ModifierFlags::option));
        EXPECT_EQ(view._collectionFilter, CollectionFilter::screenshots());
        EXPECT_TRUE(digit(u"4"_qs, ModifierFlags::option));
        EXPECT_EQ(view._collectionFilter, CollectionFilter::collection(work->id()));
        EXPECT_TRUE(digit(u"1"_qs, ModifierFlags::option));
        EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
    }
}

TEST_F(ShelfKeyboardTest, OptionFourWithoutCollectionsDoesNothingAndOptionThreeSelectsScreenshots) {
    EXPECT_FALSE(digit(u"4"_qs, ModifierFlags::option));
    EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
    EXPECT_TRUE(digit(u"3"_qs, ModifierFlags::option));
    EXPECT_EQ(view._collectionFilter, CollectionFilter::screenshots());
}

TEST_F(ShelfKeyboardTest, CommandDigitsPasteTheShownItemOfThatNumber) {
    addLetters(u"cba"_qs);
    EXPECT_TRUE(digit(u"2"_qs, ModifierFlags::command));
    type(u"c"_qs);
    EXPECT_TRUE(digit(u"1"_qs, ModifierFlags::command));
    EXPECT_EQ(pasted, (QStringList{u"b"_qs, u"c"_qs}));
}

TEST_F(ShelfKeyboardTest, ACommandDigitPastTheEndPassesOn) {
    EXPECT_FALSE(digit(u"1"_qs, ModifierFlags::command));
    addLetters(u"ba"_qs);
    EXPECT_FALSE(digit(u"3"_qs, ModifierFlags::command));
    EXPECT_TRUE(pasted.isEmpty());
}

TEST_F(ShelfKeyboardTest, DigitsOfEveryScriptCount) {
    addLetters(u"ba"_qs);
    // Arabic-Indic, Devanagari, fullwidth, and one outside the basic plane (mathematical bold).
    for (const auto& two : {u"\u0662"_qs, u"\u0968"_qs, u"\uff12"_qs, u"\U0001d7d0"_qs})
        EXPECT_TRUE(digit(two, ModifierFlags::command));
    EXPECT_EQ(pasted, (QStringList{u"b"_qs, u"b"_qs, u"b"_qs, u"b"_qs}));
}

TEST_F(ShelfKeyboardTest, WhatIsNoDigitFromOneToNinePassesOn) {
    addLetters(u"ba"_qs);
    for (const auto& other : {u""_qs, u"0"_qs, u"a"_qs, u"\u00bd"_qs, u"\u2169"_qs, u"-"_qs})
        EXPECT_FALSE(digit(other, ModifierFlags::command)) << other.toStdString();
    // Only the first character is looked at.
    EXPECT_TRUE(digit(u"2x"_qs, ModifierFlags::command));
    EXPECT_EQ(pasted, QStringList{u"b"_qs});
}

TEST_F(ShelfKeyboardTest, DigitsWithAnyOtherModifiersPassOn) {
    addLetters(u"ba"_qs);
    namespace Flags = ModifierFlags;
    for (const auto flags : {0u, Flags::shift, Flags::numericPad, Flags::shift | Flags::command,
                             Flags::command | Flags::control, Flags::capsLock | Flags::command,
                             Flags::option | Flags::control, Flags::numericPad | Flags::command})
        EXPECT_FALSE(digit(u"1"_qs, flags)) << std::hex << flags;
}

// Repeated keys

TEST_F(ShelfKeyboardTest, AHeldEscapeLeavesOneScreen) {
    const auto a = add(u"a"_qs);
    act([&] {
        view._suspendedRoute = DetailRoute::actions(a);
        view._route = DetailRoute::edit(a);
    });
    const auto repeat = [&] { return press(VirtualKey::escape, 0, {}, true); };
    EXPECT_TRUE(escape());
    EXPECT_TRUE(repeat());
    EXPECT_EQ(view._route, DetailRoute::actions(a));
    EXPECT_TRUE(escape());
    EXPECT_TRUE(repeat());
    EXPECT_FALSE(view._route);
    EXPECT_EQ(dismissals, 0);
    EXPECT_TRUE(escape());
    EXPECT_TRUE(repeat());
    EXPECT_EQ(dismissals, 1);
}

TEST_F(ShelfMonitorTest, AHeldSpaceThatOpensThePreviewDoesNotReachIt) {
    const auto send = [&](bool isRepeat) {
        return monitors.send({EventMask::keyDown, panel.number, {VirtualKey::space, 0, {}, isRepeat}});
    };
    act([&] { view.enterLane(KeyboardLane::list); });
    EXPECT_TRUE(send(false));
    ASSERT_TRUE(view._route);
    EXPECT_TRUE(send(true));
    EXPECT_FALSE(send(false)) << "pressed anew, it is the preview's";
    EXPECT_FALSE(send(true));
}

TEST_F(ShelfKeyboardTest, AKeyThatIsHeldDownPastesOnce) {
    add(u"a"_qs);
    EXPECT_TRUE(digit(u"1"_qs, ModifierFlags::command));
    EXPECT_TRUE(digit(u"1"_qs, ModifierFlags::command, true));
    EXPECT_TRUE(press(VirtualKey::returnKey));
    EXPECT_TRUE(press(VirtualKey::returnKey, 0, {}, true));
    EXPECT_EQ(pasted.size(), 2);
}

TEST_F(ShelfKeyboardTest, AHeldReturnThatLeadsToTheListDoesNotPasteThere) {
    add(u"a"_qs);
    lane(KeyboardLane::tags);
    EXPECT_TRUE(press(VirtualKey::returnKey));
    EXPECT_TRUE(press(VirtualKey::returnKey, 0, {}, true));
    EXPECT_EQ(view._lane, KeyboardLane::list);
    EXPECT_TRUE(pasted.isEmpty());
}

TEST_F(ShelfKeyboardTest, AHeldKeyWithNothingToPastePassesOn) {
    EXPECT_FALSE(press(VirtualKey::returnKey, 0, {}, true));
    EXPECT_FALSE(digit(u"1"_qs, ModifierFlags::command, true));
}

struct HeldKey {
    const char* name;
    std::uint16_t keyCode;
    std::uint32_t flags = ModifierFlags::command;
    ClipboardItemType type = text;
};

void PrintTo(const HeldKey& key, std::ostream* out) {
    *out << key.name;
}

class HeldCommandTest : public ShelfKeyboardFixture, public testing::WithParamInterface<HeldKey> {
protected:
    /// All that a command may change.
    auto outcome() {
        std::vector<bool> pins;
        for (const auto& item : view.items())
            pins.push_back(item->pinned());
        return std::tuple(shown(), pins, view._viewMode, view._route, static_cast<bool>(view._previewVisible),
                          static_cast<bool>(view._sidebarVisible), pasteboard.written().size(),
                          imagesToEdit.size());
    }
};

TEST_P(HeldCommandTest, IsDoneOnceAndTheRepeatsReachNobodyElse) {
    for (int i = 0; i < 4; ++i)
        add(QString::number(i), {.type = GetParam().type, .imageData = QByteArray("png bytes")});
    const auto before = outcome();
    EXPECT_TRUE(press(GetParam().keyCode, GetParam().flags));
    // A screen that has opened takes the keys from then on.
    act([&] { view._route.reset(); });
    const auto once = outcome();
    const bool opensAScreen = before == once;
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(press(GetParam().keyCode, GetParam().flags, {}, true));
        EXPECT_TRUE(outcome() == once);
    }
    EXPECT_EQ(opensAScreen, GetParam().keyCode == VirtualKey::k ||
                                (GetParam().keyCode == VirtualKey::e && GetParam().type == text));
}

INSTANTIATE_TEST_SUITE_P(
    Commands, HeldCommandTest,
    testing::Values(HeldKey{"Copy", VirtualKey::c}, HeldKey{"Edit", VirtualKey::e},
                    HeldKey{"EditPicture", VirtualKey::e, ModifierFlags::command, image},
                    HeldKey{"Pin", VirtualKey::p}, HeldKey{"Actions", VirtualKey::k},
                    HeldKey{"Mode", VirtualKey::grave}, HeldKey{"Delete", VirtualKey::deleteKey},
                    HeldKey{"Preview", VirtualKey::i, ModifierFlags::command | ModifierFlags::option},
                    HeldKey{"Sidebar", VirtualKey::s, ModifierFlags::command | ModifierFlags::option}),
    [](const auto& key) { return std::string(key.param.name); });

TEST_F(ShelfKeyboardTest, AHeldCommandZUndoesOneDeletionAfterTheOther) {
    addLetters(u"cba"_qs);
    for (int i = 0; i < 3; ++i)
        command(VirtualKey::deleteKey);
    ASSERT_EQ(shown(), QStringList());
    EXPECT_TRUE(command(VirtualKey::z));
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(press(VirtualKey::z, ModifierFlags::command, {}, true));
    EXPECT_EQ(shown(), (QStringList{u"a"_qs, u"b"_qs, u"c"_qs}));
}

} // namespace
} // namespace kestrova
