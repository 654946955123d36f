#include "tests/Kestrova/shelf/ShelfFixture.h"

namespace kestrova {
namespace {

/// A control that Tab has reached has the keyboard.
class ShelfKeyboardControlsTest : public ShelfKeyboardFixture {
protected:
    void SetUp() override {
        addLetters(u"abc"_qs);
        act([&] {
            view._searchFocused = false;
            view._controlFocused = true;
        });
    }
};

TEST_F(ShelfKeyboardControlsTest, ReturnAndSpaceAreItsOwnInEveryLane) {
    for (const auto lane :
         {KeyboardLane::search, KeyboardLane::sidebar, KeyboardLane::tags, KeyboardLane::list})
        for (const bool isGrid : {false, true}) {
            act([&] {
                view._lane = lane;
                view._viewMode = isGrid ? ShelfViewMode::grid : ShelfViewMode::list;
                view._controlFocused = true;
            });
            EXPECT_FALSE(enter());
            EXPECT_FALSE(space());
            EXPECT_TRUE(view._controlFocused);
        }
    EXPECT_EQ(pasted, QStringList());
    EXPECT_EQ(view._route, std::nullopt);
}

TEST_F(ShelfKeyboardControlsTest, AnArrowWalksTheLanesAndTakesTheKeyboardAlong) {
    lane(KeyboardLane::list);
    act([&] { view._controlFocused = true; });
    EXPECT_TRUE(down());
    EXPECT_FALSE(view._controlFocused);
    EXPECT_TRUE(enter());
    EXPECT_EQ(pasted.size(), 1);
}

TEST_F(ShelfKeyboardControlsTest, AnArrowThatTheLaneLeavesMovesNothing) {
    EXPECT_FALSE(left());
    EXPECT_TRUE(view._controlFocused);
}

TEST_F(ShelfKeyboardControlsTest, CommandsAndEscapeStayAsTheyAre) {
    EXPECT_TRUE(command(VirtualKey::p));
    EXPECT_TRUE(view.currentItem()->pinned());
    EXPECT_TRUE(digit(u"1"_qs, ModifierFlags::command));
    EXPECT_EQ(pasted.size(), 1);
    EXPECT_TRUE(view._controlFocused);
    EXPECT_TRUE(escape());
    EXPECT_EQ(dismissals, 1);
}

TEST_F(ShelfKeyboardControlsTest, TheSearchTakesTheKeyboardBack) {
    act([&] { view._searchFocused = true; });
    EXPECT_FALSE(view._controlFocused);
    EXPECT_TRUE(enter());
}

TEST_F(ShelfKeyboardControlsTest, AClickOnAnItemTakesItBackToo) {
    act([&] { view.itemTapped(); });
    EXPECT_FALSE(view._controlFocused);
    EXPECT_EQ(view._lane, KeyboardLane::list);
}

TEST_F(ShelfKeyboardControlsTest, TheShelfComesUpWithTheSearch) {
    view.shelfPanelDidShow();
    EXPECT_FALSE(view._controlFocused);
}

TEST_F(ShelfKeyboardControlsTest, EnteringTheChipsStandsOnTheChosenOne) {
    addOneOfEachType();
    chip(ClipboardItemType::url);
    act([&] { view.enterLane(KeyboardLane::tags); });
    EXPECT_EQ(view._activeTagIndex, view.chipPosition());
    EXPECT_GT(view._activeTagIndex, 0U);
    EXPECT_FALSE(view._searchFocused);
}

} // namespace
} // namespace kestrova
