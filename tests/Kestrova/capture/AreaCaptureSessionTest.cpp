#include "tests/Kestrova/capture/AreaCaptureSessionFixture.h"

#include <chrono>

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class AreaCaptureSessionTest : public AreaCaptureSessionFixture {};

TEST_F(AreaCaptureSessionTest, TheScreenIsFrozenBeforeTheFirstPanelAppears) {
    content.holdsPictures = true;
    begin(CaptureMode::area);
    queue.advance(1s);
    EXPECT_EQ(content.captures.size(), 2U);
    EXPECT_THAT(panels.all, IsEmpty());
    EXPECT_THAT(trace.take(), IsEmpty());
    content.heldPictures.give(0);
    content.heldPictures.give(1);
    ASSERT_EQ(panels.all.size(), 2U);
    EXPECT_EQ(view(0).frozenImage()->size(), QSize(1920, 1080));
    EXPECT_EQ(view(1).frozenImage()->size(), QSize(2560, 1600));
}

TEST_F(AreaCaptureSessionTest, TheEffectsOfAStartComeInTheirOrder) {
    begin(CaptureMode::area);
    queue.advance(1s);
    EXPECT_THAT(trace.take(),
                ElementsAre(u"0 panel1.made"_s, u"0 panel1.setContentView"_s,
                            u"0 panel1.setCursor crosshair"_s, u"0 panel1.orderFrontRegardless"_s,
                            u"0 panel1.makeKey"_s, u"0 panel2.made"_s, u"0 panel2.setContentView"_s,
                            u"0 panel2.setCursor crosshair"_s, u"0 panel2.orderFrontRegardless"_s,
                            u"0 panel2.makeKey"_s, u"0 panel1.setCursor crosshair"_s,
                            u"0 panel2.setCursor crosshair"_s, u"0 monitors.tapKeyDowns"_s,
                            u"0 workspace.observeActivations"_s, u"0 panel1.setCursor crosshair"_s,
                            u"0 panel2.setCursor crosshair"_s, u"50 panel1.setCursor crosshair"_s,
                            u"50 panel2.setCursor crosshair"_s));
}

TEST_F(AreaCaptureSessionTest, TheEffectsOfAnEndComeInTheirOrder) {
    select(CaptureMode::area);
    session->finish(std::nullopt);
    EXPECT_THAT(trace.take(), ElementsAre(u"50 monitors.untapKeyDowns"_s, u"50 workspace.stopObserving"_s,
                                          u"50 panel1.setCursor arrow"_s, u"50 panel2.setCursor arrow"_s,
                                          u"50 panel1.orderOut"_s, u"50 panel2.orderOut"_s));
    for (const auto& panel : panels.all)
        EXPECT_FALSE(panel->isAlive);
    EXPECT_THAT(session->overlayViews(), IsEmpty());
    EXPECT_TRUE(isRunning());
    queue.turn();
    EXPECT_TRUE(isCancelled());
    EXPECT_TRUE(queue.isEmpty());
}

TEST_F(AreaCaptureSessionTest, WithoutATapTheKeysAreWatchedAndNoLongerAtTheEnd) {
    monitors.refusesTaps = true;
    begin(CaptureMode::area);
    auto effects = trace.take();
    EXPECT_LT(effects.indexOf(u"0 monitors.tapKeyDowns"_s),
              effects.indexOf(u"0 monitors.addGlobalKeyDown"_s));
    session->finish(std::nullopt);
    EXPECT_THAT(trace.take(), Contains(u"0 monitors.removeGlobalKeyDown"_s));
}

TEST_F(AreaCaptureSessionTest, ATapNeedsNoMonitor) {
    begin(CaptureMode::area);
    EXPECT_THAT(trace.take(), testing::Not(Contains(u"0 monitors.addGlobalKeyDown"_s)));
}

TEST_F(AreaCaptureSessionTest, WithoutATapTheSessionStillWorksThroughTheMonitor) {
    monitors.refusesTaps = true;
    select(CaptureMode::area);
    key(Key::f);
    EXPECT_TRUE(session->isFrozenActive());
    key(Key::space);
    EXPECT_EQ(session->mode(), CaptureMode::window);
    key(Key::escape);
    queue.turn();
    EXPECT_TRUE(isCancelled());
}

TEST_F(AreaCaptureSessionTest, OtherKeysStartNothingWhereTheyAreOnlyWatched) {
    monitors.refusesTaps = true;
    select(CaptureMode::area);
    monitors.onKeyDown(Key::a);
    EXPECT_TRUE(queue.isEmpty());
    monitors.onKeyDown(Key::f);
    EXPECT_FALSE(queue.isEmpty());
}

TEST_F(AreaCaptureSessionTest, AKeyTakesEffectATurnLater) {
    select(CaptureMode::area);
    monitors.onKeyDown(Key::f);
    EXPECT_FALSE(session->isFrozenActive());
    queue.turn();
    EXPECT_TRUE(session->isFrozenActive());
}

TEST_F(AreaCaptureSessionTest, AKeyMayArriveAfterTheEnd) {
    select(CaptureMode::area);
    for (const auto code : {Key::escape, Key::f, Key::space, Key::escape})
        monitors.onKeyDown(code);
    queue.advance(1s);
    EXPECT_TRUE(isCancelled());
    EXPECT_THAT(session->overlayViews(), IsEmpty());
}

TEST_F(AreaCaptureSessionTest, ASecondEndDoesNothingMore) {
    select(CaptureMode::area);
    drag({100, 100}, {200, 200});
    ASSERT_TRUE(area());
    trace.take();
    session->finish(std::nullopt);
    queue.advance(1s);
    EXPECT_THAT(trace.take(), IsEmpty());
    EXPECT_EQ(outcome->ends, 1);
    EXPECT_TRUE(area());
}

TEST_F(AreaCaptureSessionTest, WhoWaitsGoesOnATurnAfterTheEnd) {
    select(CaptureMode::area);
    view().cancelOperation();
    EXPECT_TRUE(isRunning());
    queue.turn();
    EXPECT_TRUE(isCancelled());
}

TEST_F(AreaCaptureSessionTest, TheSessionKeepsItselfAliveWhileItRuns) {
    select(CaptureMode::area);
    const std::weak_ptr weak{session};
    session.reset();
    EXPECT_FALSE(weak.expired());
    view().cancelOperation();
    queue.advance(1s);
    EXPECT_TRUE(isCancelled());
    EXPECT_TRUE(weak.expired());
}

TEST_F(AreaCaptureSessionTest, MonitorsAndObserversThatAreToldLateFindItGone) {
    select(CaptureMode::window);
    view().cancelOperation();
    queue.advance(1s);
    session.reset();
    monitors.onKeyDown(Key::escape);
    workspace.onDidActivate();
    EXPECT_TRUE(queue.isEmpty());
}

TEST_F(AreaCaptureSessionTest, ASessionThatStillRunsIsUnwoundWithTheQueue) {
    auto closing = std::make_unique<ManualMainQueue>();
    session = std::make_shared<AreaCaptureSession>(
        CaptureMode::area, AreaCaptureSession::Surroundings{
                               .mainQueue = *closing,
                               .screenContent = content,
                               .screens = screens,
                               .eventMonitors = monitors,
                               .workspace = workspace,
                               .machineInfo = machineInfo,
                               .makePanel = [this](const Screen& screen) { return panels.make(screen); }});
    run(session, outcome);
    const std::weak_ptr weak{session};
    session.reset();
    closing.reset();
    EXPECT_TRUE(weak.expired());
    EXPECT_FALSE(panels.all.front()->isAlive);
    EXPECT_TRUE(isRunning());
}

TEST_F(AreaCaptureSessionTest, WithoutAFreezeTheSessionSimplyCannotFreeze) {
    const LogCapture log;
    content.pictureError = screenContentError(ScreenContentError::Code::noPicture);
    select(CaptureMode::area);
    EXPECT_EQ(log.lines(),
              QStringList{u"[AreaCaptureSession] The screen cannot be frozen: as the test wants it"_s});
    ASSERT_EQ(panels.all.size(), 2U);
    EXPECT_FALSE(view().frozenImage());
    key(Key::f);
    EXPECT_FALSE(session->isFrozenActive());
    EXPECT_FALSE(view().showsFrozen());
    drag({100, 100}, {200, 200});
    EXPECT_TRUE(area());
}

TEST_F(AreaCaptureSessionTest, ADisplayWithoutAPictureHasAnOverlayAllTheSame) {
    std::erase_if(content.content.displays, [](const auto& display) { return display.displayID == 2; });
    select(CaptureMode::area);
    ASSERT_EQ(panels.all.size(), 2U);
    EXPECT_TRUE(view(0).frozenImage());
    EXPECT_FALSE(view(1).frozenImage());
    key(Key::f);
    EXPECT_TRUE(view(1).showsFrozen());
    drag({100, 100}, {200, 200}, 1);
    ASSERT_TRUE(area());
    EXPECT_FALSE(area()->frozen);
}

TEST_F(AreaCaptureSessionTest, FShowsAndHidesTheFrozenPictureOnEveryDisplay) {
    select(CaptureMode::area);
    const int before = panels.all[1]->displaysNeeded;
    key(Key::f);
    EXPECT_TRUE(view(0).showsFrozen());
    EXPECT_TRUE(view(1).showsFrozen());
    EXPECT_GT(panels.all[1]->displaysNeeded, before);
    key(Key::f);
    EXPECT_FALSE(view(0).showsFrozen());
    EXPECT_FALSE(view(1).showsFrozen());
}

TEST_F(AreaCaptureSessionTest, FInWindowModeDoesNothing) {
    select(CaptureMode::window);
    key(Key::f);
    EXPECT_FALSE(session->isFrozenActive());
    EXPECT_FALSE(view().showsFrozen());
}

TEST_F(AreaCaptureSessionTest, OtherKeysDoNothing) {
    select(CaptureMode::area);
    const int displays = panels.all[0]->displaysNeeded;
    for (std::uint16_t code = 0; code < 128; ++code) {
        if (code != Key::escape && code != Key::space && code != Key::f)
            key(code);
    }
    EXPECT_TRUE(isRunning());
    EXPECT_EQ(session->mode(), CaptureMode::area);
    EXPECT_EQ(panels.all[0]->displaysNeeded, displays);
    EXPECT_THAT(trace.take(), IsEmpty());
}

TEST_F(AreaCaptureSessionTest, AClickWithoutADragCancels) {
    select(CaptureMode::area);
    click({100, 100});
    EXPECT_TRUE(isCancelled());
}

struct Drag {
    QPointF to;
    bool selects;
};

class DragSizeTest : public AreaCaptureSessionFixture, public testing::WithParamInterface<Drag> {};

TEST_P(DragSizeTest, ASelectionIsLargerThanFourPointsBothWays) {
    select(CaptureMode::area);
    drag({100, 100}, QPointF(100, 100) + GetParam().to);
    EXPECT_EQ(area().has_value(), GetParam().selects);
    EXPECT_EQ(isCancelled(), !GetParam().selects);
}

INSTANTIATE_TEST_SUITE_P(Sizes, DragSizeTest,
                         testing::Values(Drag{{4, 4}, false}, Drag{{4, 100}, false}, Drag{{100, 4}, false},
                                         Drag{{4.5, 5}, true}, Drag{{-4.5, -5}, true}, Drag{{4.5, 0}, false},
                                         Drag{{4.0625, 4.0625}, true}));

TEST_F(AreaCaptureSessionTest, TheAreaIsInGlobalPointsWhicheverCornerTheDragBeganIn) {
    for (const auto& [from, to] :
         {std::pair{QPointF(10, 20), QPointF(310, 220)}, std::pair{QPointF(310, 220), QPointF(10, 20)},
          std::pair{QPointF(10, 220), QPointF(310, 20)}}) {
        outcome = std::make_shared<Outcome>();
        panels.all.clear();
        select(CaptureMode::area);
        drag(from, to, 1);
        ASSERT_TRUE(area());
        EXPECT_EQ(area()->rect, (ScreenRect{1930, -160, 300, 200}));
        EXPECT_FALSE(area()->frozen);
    }
}

TEST_F(AreaCaptureSessionTest, ADragThatEndsOnAnotherDisplayYieldsOnlyThePartOnTheFirst) {
    select(CaptureMode::area);
    drag({1800, 200}, {2100, -50});
    ASSERT_TRUE(area());
    EXPECT_EQ(area()->rect, (ScreenRect{1800, 0, 120, 200}));
}

TEST_F(AreaCaptureSessionTest, ADragOfWhichTooLittleLiesOnTheFirstDisplayCancels) {
    select(CaptureMode::area);
    drag({1916, 200}, {2400, 400});
    EXPECT_TRUE(isCancelled());
}

TEST_F(AreaCaptureSessionTest, TheDragShowsOnEveryDisplay) {
    select(CaptureMode::area);
    view().mouseDown({1800, 200});
    EXPECT_EQ(session->startGlobalPoint(), QPointF(1800, 200));
    view().mouseDragged({2000, 100});
    const ScreenRect selection{1800, 100, 200, 100};
    EXPECT_EQ(view(0).selectionRectGlobal(), selection);
    EXPECT_EQ(view(1).selectionRectGlobal(), selection);
}

TEST_F(AreaCaptureSessionTest, AnAreaChosenInTheFrozenPictureComesWithThatOfItsDisplay) {
    select(CaptureMode::area);
    const auto frozen = *view(1).frozenImage();
    key(Key::f);
    drag({100, 100}, {200, 200}, 1);
    ASSERT_TRUE(area());
    ASSERT_TRUE(area()->frozen);
    EXPECT_EQ(area()->frozen->cacheKey(), frozen.cacheKey());
}

TEST_F(AreaCaptureSessionTest, SpaceDuringADragDropsTheDrag) {
    select(CaptureMode::area);
    const auto dragged = panels.all[0]->view;
    dragged->mouseDown({100, 100});
    dragged->mouseDragged({300, 300});
    key(Key::space);
    EXPECT_FALSE(session->startGlobalPoint());
    EXPECT_EQ(view(0).selectionRectGlobal(), ScreenRect{});
    EXPECT_EQ(view(1).selectionRectGlobal(), ScreenRect{});
    dragged->mouseUp({300, 300});
    queue.turn();
    EXPECT_TRUE(isRunning());

    dragged->mouseDown({5, 5});
    EXPECT_TRUE(isRunning());
}

TEST_F(AreaCaptureSessionTest, TwoSpacesDuringADragMakeTheReleaseCancel) {
    select(CaptureMode::area);
    const auto dragged = panels.all[0]->view;
    dragged->mouseDown({100, 100});
    dragged->mouseDragged({300, 300});
    key(Key::space);
    key(Key::space);
    dragged->mouseDragged({400, 400});
    EXPECT_EQ(dragged->selectionRectGlobal(), ScreenRect{});
    dragged->mouseUp({400, 400});
    queue.turn();
    EXPECT_TRUE(isCancelled());
}

TEST_F(AreaCaptureSessionTest, SpaceThawsAndChangesTheCursor) {
    select(CaptureMode::area);
    key(Key::f);
    key(Key::space);
    EXPECT_FALSE(session->isFrozenActive());
    EXPECT_FALSE(view(1).showsFrozen());
    EXPECT_EQ(view(1).mode(), CaptureMode::window);
    EXPECT_EQ(panels.all[0]->cursor, OverlayCursor::openHand);
    EXPECT_EQ(panels.all[1]->cursor, OverlayCursor::openHand);
    key(Key::space);
    EXPECT_EQ(view(1).mode(), CaptureMode::area);
    EXPECT_EQ(panels.all[1]->cursor, OverlayCursor::crosshair);
    drag({100, 100}, {200, 200});
    ASSERT_TRUE(area());
    EXPECT_FALSE(area()->frozen);
}

TEST_F(AreaCaptureSessionTest, ADisplayThatGoesInMidSessionTakesNothingElseWithIt) {
    select(CaptureMode::area);
    screens.all.pop_back();
    key(Key::f);
    key(Key::f);
    view(1).mouseMoved({10, 10});
    drag({100, 100}, {200, 200});
    ASSERT_TRUE(area());
    EXPECT_EQ(area()->rect, (ScreenRect{100, 100, 100, 100}));
}

TEST_F(AreaCaptureSessionTest, WithoutADisplayEscapeStillEndsIt) {
    screens.all.clear();
    screens.main.reset();
    select(CaptureMode::area);
    EXPECT_THAT(panels.all, IsEmpty());
    key(Key::space);
    key(Key::escape);
    queue.turn();
    EXPECT_TRUE(isCancelled());
}

} // namespace
} // namespace kestrova
