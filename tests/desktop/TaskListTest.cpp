#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/TypingTarget.h"

#include <QSysInfo>

#include <algorithm>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

class TaskListTest : public ShelfTest {
protected:
    void startInTheTaskList(const QStringList& texts) {
        program.editDefault(u"showInDock"_s, true);
        startWith(texts);
        ASSERT_TRUE(eventually([this] { return isMinimised(); }));
    }
    std::vector<xcb_window_t> places() { return windows.managed(program.process().pid()); }
    bool hasState(const QByteArray& state) {
        const auto found = places();
        return found.size() == 1 && std::ranges::count(windows.states(found.front()), state) == 1;
    }
    bool isMinimised() { return hasState("_NET_WM_STATE_HIDDEN"); }

    TypingTarget target{session, {u"target"_s}};
};

TEST_F(TaskListTest, TheProgramHasNoPlaceThereByDefault) {
    startWith({u"one"_s});
    EXPECT_TRUE(throughout(std::chrono::milliseconds(300), [this] { return places().empty(); }));
}

TEST_F(TaskListTest, ThePlaceComesWithoutTakingTheKeyboard) {
    ASSERT_TRUE(windows.activate(target.window(0)));
    const int losses = target.focusLosses(0);
    startInTheTaskList({u"one"_s});
    EXPECT_EQ(target.focusLosses(0), losses) << "not even for a moment";
    EXPECT_FALSE(hasState("_NET_WM_STATE_SKIP_TASKBAR"));
    EXPECT_FALSE(hasState("_NET_WM_STATE_SKIP_PAGER"));
    EXPECT_EQ(windows.title(places().front()), u"Kestrova");
    EXPECT_EQ(windows.machine(places().front()), QSysInfo::machineHostName());
    EXPECT_EQ(windows.iconSize(places().front()), QSize(16, 16));
    EXPECT_TRUE(windows.hasKeyboard(target.window(0)));
    EXPECT_FALSE(shelf.isUp());
    // The loss of the focus is seen when there is one.
    ASSERT_TRUE(shelf.open());
    EXPECT_TRUE(eventually([&] { return target.focusLosses(0) > losses; }));
}

TEST_F(TaskListTest, ChoosingItShowsTheShelfAgainAndAgain) {
    startInTheTaskList({u"one"_s});
    ASSERT_TRUE(windows.activate(target.window(0)));
    for (int round = 0; round < 3; ++round) {
        windows.requestActivation(places().front());
        ASSERT_TRUE(shelf.waitForKeyboard());
        keys.tap(keyAt::escape);
        ASSERT_TRUE(shelf.waitUntilGone());
        // It came from there, not from the place in the list.
        ASSERT_TRUE(eventually([this] { return windows.hasKeyboard(target.window(0)); }));
        ASSERT_TRUE(eventually([this] { return isMinimised(); }));
    }
}

TEST_F(TaskListTest, WhatIsPastedGoesToTheApplicationThatWasInFront) {
    startInTheTaskList({u"pasted words"_s});
    ASSERT_TRUE(windows.activate(target.window(0)));
    windows.requestActivation(places().front());
    ASSERT_TRUE(shelf.waitForKeyboard());
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(eventually([this] { return target.pasted(0) == QStringList{u"pasted words"_s}; }));
}

TEST_F(TaskListTest, AskingItToCloseEndsNothing) {
    startInTheTaskList({u"one"_s});
    windows.requestClosing(places().front());
    EXPECT_TRUE(throughout(std::chrono::milliseconds(500), [this] { return isMinimised(); }));
    EXPECT_TRUE(program.isReady());
}

TEST_F(TaskListTest, AChangeTakesEffectAtTheNextStart) {
    startInTheTaskList({u"one"_s});
    program.editDefault(u"showInDock"_s, false);
    EXPECT_TRUE(throughout(std::chrono::milliseconds(500), [this] { return isMinimised(); }));
    ASSERT_TRUE(program.quit());
    EXPECT_TRUE(eventually([this] { return places().empty(); }));
    ASSERT_TRUE(program.start());
    EXPECT_TRUE(throughout(std::chrono::milliseconds(300), [this] { return places().empty(); }));
}

} // namespace
} // namespace kestrova::test
