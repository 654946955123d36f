#include "Kestrova/capture/HUDController.h"

#include "tests/support/EffectTrace.h"
#include "tests/support/InMemoryUserDefaults.h"
#include "tests/support/LogCapture.h"
#include "tests/support/ManualMainQueue.h"
#include "tests/support/TracedHUDPanel.h"

#include <gmock/gmock.h>

#include <chrono>
#include <vector>

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class HUDControllerTest : public testing::Test {
protected:
    using Item = std::shared_ptr<ClipboardItem>;

    HUDControllerTest() { screens.main = screens.all.front(); }

    static Item makeItem(const QString& content) {
        return std::make_shared<ClipboardItem>(content, ClipboardItemType::text, std::nullopt, Timestamp{},
                                               false, ItemSource::clipboard);
    }
    std::unique_ptr<HUDController> makeController() {
        return std::make_unique<HUDController>(HUDController::Surroundings{
            .screens = screens, .defaults = defaults, .mainQueue = queue, .makePanel = [this] {
                auto made = std::make_unique<TracedHUDPanel>(trace);
                panel = made.get();
                ++panelsMade;
                return made;
            }});
    }
    void show(HUDEvent event = HUDEvent::copied) { controller->show(item, event); }
    /// Until the toast that is up begins to go.
    void expectUpFor(MainQueue::Duration duration) {
        trace.take();
        queue.advance(duration - 1ms);
        EXPECT_THAT(trace.take(), IsEmpty()) << duration.count();
        queue.advance(1ms);
        EXPECT_EQ(trace.take().size(), 1) << duration.count();
        queue.advance(220ms);
        EXPECT_FALSE(panel->visible);
        trace.take();
    }

    ManualMainQueue queue;
    EffectTrace trace{queue};
    // One display of 1920 x 1080, of which a bar takes the upper 80 points.
    FakeScreens screens;
    InMemoryUserDefaults defaults;
    TracedHUDPanel* panel = nullptr;
    int panelsMade = 0;
    Item item = makeItem(u"item"_s);
    std::unique_ptr<HUDController> controller = makeController();
};

TEST_F(HUDControllerTest, MakesNoPanelBeforeTheFirstShow) {
    EXPECT_EQ(panelsMade, 0);
    EXPECT_TRUE(queue.isEmpty());
}

TEST_F(HUDControllerTest, SlidesInStaysASecondAndFadesOut) {
    show();
    queue.advance(10s);
    // Under the shelf: 1000 - 540 - 0.15 * 1000 - 8 - 30.
    EXPECT_THAT(
        trace.take(),
        ElementsAre(u"0 toast.setContent 0"_s, u"0 toast.setAlpha 0"_s, u"0 toast.setFrame 910,266 100x30"_s,
                    u"0 toast.orderFrontRegardless"_s, u"0 toast.animate 910,272 100x30 to alpha 1 in 180"_s,
                    u"1000 toast.animate 910,276 100x30 to alpha 0 in 220"_s, u"1220 toast.orderOut"_s));
    EXPECT_TRUE(queue.isEmpty());
}

TEST_F(HUDControllerTest, OnePanelIsMadeAndReused) {
    show();
    queue.advance(10s);
    show();
    show();
    EXPECT_EQ(panelsMade, 1);
}

TEST_F(HUDControllerTest, EachEventIsShown) {
    for (const auto event : {HUDEvent::copied, HUDEvent::pasted, HUDEvent::captured, HUDEvent::edited}) {
        show(event);
        EXPECT_EQ(panel->event, event);
    }
}

TEST_F(HUDControllerTest, ASecondEventReplacesTheFirstWithoutSlidingInAndStartsTheTimeAnew) {
    show(HUDEvent::copied);
    trace.take();
    queue.advance(900ms);
    show(HUDEvent::pasted);
    EXPECT_THAT(trace.take(), ElementsAre(u"900 toast.setContent 1"_s, u"900 toast.setFrame 910,272 100x30"_s,
                                          u"900 toast.setAlpha 1"_s));
    queue.advance(999ms);
    EXPECT_THAT(trace.take(), IsEmpty());
    queue.advance(1ms);
    EXPECT_THAT(trace.take(), ElementsAre(u"1900 toast.animate 910,276 100x30 to alpha 0 in 220"_s));
}

TEST_F(HUDControllerTest, AWiderContentWidensTheVisiblePanelAboutItsMiddle) {
    show(HUDEvent::copied);
    trace.take();
    panel->fitting = {140, 30};
    show(HUDEvent::pasted);
    EXPECT_TRUE(trace.take().contains(u"0 toast.setFrame 890,272 140x30"_s));
}

TEST_F(HUDControllerTest, AShowWithinTheFadeComesUpAtOnceAndGoesWithTheFade) {
    show();
    queue.advance(1100ms);
    trace.take();
    show(HUDEvent::pasted);
    EXPECT_THAT(trace.take(),
                ElementsAre(u"1100 toast.setContent 1"_s, u"1100 toast.setFrame 910,272 100x30"_s,
                            u"1100 toast.setAlpha 1"_s));
    queue.advance(120ms);
    EXPECT_THAT(trace.take(), ElementsAre(u"1220 toast.orderOut"_s));
    // Its own time ends with nothing to hide.
    queue.advance(10s);
    EXPECT_THAT(trace.take(), IsEmpty());
    show();
    expectUpFor(1000ms);
}

TEST_F(HUDControllerTest, AToastThatIsGoneSlidesInAgain) {
    show();
    queue.advance(10s);
    trace.take();
    show();
    EXPECT_TRUE(trace.take().contains(u"10000 toast.animate 910,272 100x30 to alpha 1 in 180"_s));
}

struct StoredDuration {
    QJsonValue stored;
    MainQueue::Duration counts;
};
class HUDDurationTest : public HUDControllerTest, public testing::WithParamInterface<StoredDuration> {};

TEST_P(HUDDurationTest, IsClampedAndDefaultsToASecond) {
    defaults.set(u"hudDurationMs"_s, GetParam().stored);
    show();
    expectUpFor(GetParam().counts);
}

INSTANTIATE_TEST_SUITE_P(Stored, HUDDurationTest,
                         testing::Values(StoredDuration{QJsonValue::Undefined, 1000ms},
                                         StoredDuration{100, 500ms}, StoredDuration{499, 500ms},
                                         StoredDuration{500, 500ms}, StoredDuration{700, 700ms},
                                         StoredDuration{3000, 3000ms}, StoredDuration{3001, 3000ms},
                                         StoredDuration{9000, 3000ms}, StoredDuration{-1, 500ms},
                                         StoredDuration{0, 500ms}, StoredDuration{1e15, 3000ms},
                                         StoredDuration{u"700"_s, 1000ms}, StoredDuration{u"words"_s, 1000ms},
                                         StoredDuration{700.5, 1000ms}, StoredDuration{true, 1000ms},
                                         StoredDuration{QJsonValue::Null, 1000ms}));

TEST_F(HUDControllerTest, AChangeOfTheDurationTakesEffectAtTheNextShow) {
    show();
    defaults.set(u"hudDurationMs"_s, 2000);
    expectUpFor(1000ms);
    show();
    expectUpFor(2000ms);
}

TEST_F(HUDControllerTest, XComesFromTheMainScreenAndYFromTheShelfsPlace) {
    screens.main = Screen{
        .identifier = 2, .frame = {1920, 200, 1000, 700}, .visibleFrame = {1920, 200, 1000, 700}, .scale = 1};
    controller->shelfPanelBottomY = [] { return 555.0; };
    show();
    EXPECT_TRUE(trace.take().contains(u"0 toast.animate 2370,517 100x30 to alpha 1 in 180"_s));
}

TEST_F(HUDControllerTest, WithoutAPlaceOfTheShelfTheSameFormulaHoldsOnTheMainScreen) {
    screens.main = Screen{.identifier = 2,
                          .frame = {1920, 200, 1000, 1000},
                          .visibleFrame = {1920, 240, 1000, 900},
                          .scale = 1};
    controller->shelfPanelBottomY = []() -> std::optional<double> { return {}; };
    show();
    // 1140 - 540 - 135 - 8 - 30.
    EXPECT_TRUE(trace.take().contains(u"0 toast.animate 2370,427 100x30 to alpha 1 in 180"_s));
}

TEST_F(HUDControllerTest, WithoutAMainScreenTheFirstOneCounts) {
    screens.main.reset();
    show();
    EXPECT_TRUE(trace.take().contains(u"0 toast.animate 910,272 100x30 to alpha 1 in 180"_s));
}

TEST_F(HUDControllerTest, WithoutAnyScreenNothingComesUpAndItIsLogged) {
    screens.main.reset();
    screens.all.clear();
    int told = 0;
    controller->onShow = [&](const Item&) { ++told; };
    const LogCapture log;
    show();
    queue.advance(10s);
    EXPECT_FALSE(panel->visible);
    EXPECT_THAT(trace.take(), ElementsAre(u"0 toast.setContent 0"_s));
    EXPECT_EQ(log.lines(), QStringList{u"[HUDController] There is no screen to show the toast on"_s});
    EXPECT_EQ(told, 1);
}

TEST_F(HUDControllerTest, TellsOfEachShowWhenTheToastIsUp) {
    std::vector<Item> told;
    controller->onShow = [&](const Item& shown) {
        EXPECT_TRUE(panel->visible);
        told.push_back(shown);
    };
    const auto other = makeItem(u"other"_s);
    show();
    controller->show(other, HUDEvent::pasted);
    EXPECT_EQ(told, (std::vector{item, other}));
}

TEST_F(HUDControllerTest, ATapFadesOutAtOnceCancelsTheTimeAndTellsOfTheItem) {
    std::vector<Item> told;
    controller->onItemTapped = [&](const Item& tapped) { told.push_back(tapped); };
    show();
    queue.advance(300ms);
    trace.take();
    panel->onTap();
    EXPECT_EQ(told, std::vector{item});
    queue.advance(10s);
    EXPECT_THAT(trace.take(), ElementsAre(u"300 toast.animate 910,276 100x30 to alpha 0 in 220"_s,
                                          u"520 toast.orderOut"_s));
}

TEST_F(HUDControllerTest, ATapIsAboutTheItemShownLast) {
    std::vector<Item> told;
    controller->onItemTapped = [&](const Item& tapped) { told.push_back(tapped); };
    const auto other = makeItem(u"other"_s);
    show();
    controller->show(other, HUDEvent::copied);
    panel->onTap();
    EXPECT_EQ(told, std::vector{other});
}

TEST_F(HUDControllerTest, ASecondTapWithinTheFadeFadesNothingAgainButIsTold) {
    int told = 0;
    controller->onItemTapped = [&](const Item&) { ++told; };
    show();
    panel->onTap();
    trace.take();
    queue.advance(100ms);
    panel->onTap();
    EXPECT_EQ(told, 2);
    queue.advance(10s);
    EXPECT_THAT(trace.take(), ElementsAre(u"220 toast.orderOut"_s));
}

TEST_F(HUDControllerTest, WithoutCallbacksShowsAndTapsDoTheRest) {
    show();
    panel->onTap();
    queue.advance(220ms);
    EXPECT_FALSE(panel->visible);
}

TEST_F(HUDControllerTest, AClosureThatIsReplacedIsReleased) {
    auto first = std::make_shared<int>(0);
    const std::weak_ptr released = first;
    controller->onShow = [first](const Item&) { ++*first; };
    first.reset();
    show();
    EXPECT_FALSE(released.expired());
    int second = 0;
    controller->onShow = [&](const Item&) { ++second; };
    EXPECT_TRUE(released.expired());
    show();
    EXPECT_EQ(second, 1);
}

TEST_F(HUDControllerTest, ACallbackMayReplaceItself) {
    int told = 0;
    controller->onShow = [&, kept = std::make_shared<int>(1)](const Item&) {
        controller->onShow = nullptr;
        told += *kept;
    };
    show();
    show();
    EXPECT_EQ(told, 1);
}

TEST_F(HUDControllerTest, TheItemOfAnEarlierToastIsReleased) {
    auto earlier = makeItem(u"earlier"_s);
    const std::weak_ptr released = earlier;
    controller->show(earlier, HUDEvent::copied);
    earlier.reset();
    EXPECT_FALSE(released.expired());
    show();
    EXPECT_TRUE(released.expired());
}

TEST_F(HUDControllerTest, AToastThatHasGoneHoldsNoItem) {
    const auto isReleasedAfter = [this](auto&& go) {
        auto shown = makeItem(u"shown"_s);
        const std::weak_ptr released = shown;
        controller->show(shown, HUDEvent::copied);
        shown.reset();
        EXPECT_FALSE(released.expired());
        go();
        return released.expired();
    };
    EXPECT_TRUE(isReleasedAfter([this] { queue.advance(1220ms); }));
    EXPECT_TRUE(isReleasedAfter([this] {
        panel->onTap();
        queue.advance(220ms);
    })) << "after a tap";
    panel->isRefused = true;
    EXPECT_TRUE(isReleasedAfter([this] { queue.advance(1000ms); })) << "that never came up";
}

TEST_F(HUDControllerTest, ATapOnAToastThatHasGoneIsNone) {
    int told = 0;
    controller->onItemTapped = [&](const Item&) { ++told; };
    show();
    queue.advance(10s);
    panel->onTap();
    EXPECT_EQ(told, 0);
}

TEST_F(HUDControllerTest, WhereThePanelMayNotShowNothingMoves) {
    show();
    queue.advance(10s);
    panel->isRefused = true;
    trace.take();
    show();
    queue.advance(10s);
    EXPECT_THAT(trace.take().filter(u"animate"_s), IsEmpty());
    panel->isRefused = false;
    show();
    EXPECT_TRUE(panel->visible);
}

TEST_F(HUDControllerTest, BlocksThatOutliveTheControllerDoNothing) {
    show();
    queue.advance(1100ms);
    trace.take();
    controller.reset();
    queue.advance(10s);
    EXPECT_THAT(trace.take(), IsEmpty());
}

} // namespace
} // namespace kestrova
