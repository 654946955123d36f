#include "Kestrova/shelf/ShelfPanelController.h"

#include "Kestrova/clipboard/OwnWrite.h"
#include "Kestrova/services/LinkPreviewCache.h"
#include "Kestrova/shelf/ShelfDrags.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "tests/support/EffectTrace.h"
#include "tests/support/InMemoryUserDefaults.h"
#include "tests/support/StoreFixture.h"

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ShelfPanelControllerTest : public StoreFixture {
protected:
    ManualMainQueue mainQueue;
    EffectTrace trace{mainQueue};
    TracedPasteboard pasteboard{trace};
    TracedWorkspace workspace{trace};
    FakeScreens screens;
    TracedEventMonitors eventMonitors{trace};
    TracedKeyPoster keyPoster{trace};
    TracedAccessibility accessibility{mainQueue, trace};
    InMemoryUserDefaults defaults;
    TracedHUD hud{trace};
    TracedPanel panel{trace};
    TracedSharing sharing{trace};
    NoLinkPreviews linkPreviews;
    std::unique_ptr<ShelfPanelController> controller;

    void SetUp() override {
        start();
        editor.processIdentifier = 4711;
        editor.bundleIdentifier = u"editor"_s;
        workspace.frontmost = editor;
    }
    void start() {
        controller.reset();
        controller = std::make_unique<ShelfPanelController>(
            ShelfPanelController::Surroundings{.modelContainer = *m_container,
                                               .mainQueue = mainQueue,
                                               .pasteboard = pasteboard,
                                               .workspace = workspace,
                                               .screens = screens,
                                               .eventMonitors = eventMonitors,
                                               .keyPoster = keyPoster,
                                               .accessibility = accessibility,
                                               .defaults = defaults,
                                               .hud = hud,
                                               .panel = panel,
                                               .sharing = sharing,
                                               .linkPreviews = linkPreviews});
        trace.take();
    }

    std::shared_ptr<ClipboardItem> item(ClipboardItemType type = ClipboardItemType::text) {
        return std::make_shared<ClipboardItem>(u"words"_s, type, std::nullopt, moment(1), false,
                                               ItemSource::clipboard);
    }
    void show() {
        controller->showPanel();
        mainQueue.advance(160ms);
        trace.take();
    }

    RunningApplication editor;
};

TEST_F(ShelfPanelControllerTest, TheShowSequenceRunsInItsOrder) {
    show();
    controller->hidePanel();
    mainQueue.advance(120ms);
    trace.take();
    controller->showPanel();
    EXPECT_THAT(trace.take(),
                ElementsAre(u"280 panel.setFrame"_s, u"280 panel.setAlpha 0"_s,
                            u"280 panel.orderFrontRegardless"_s, u"280 workspace.activateOwnWindow 77"_s,
                            u"280 panel.animateAlpha 1 160 easeOut"_s, u"280 monitors.addGlobal 10"_s));
    EXPECT_EQ(controller->previousApp(), editor);
}

TEST_F(ShelfPanelControllerTest, TheFirstShowLetsTheViewAppearAndTheNextOnesDoNot) {
    controller->showPanel();
    EXPECT_EQ(trace.take().filter(u"monitors.addLocal"_s).size(), 2);
    controller->hidePanel();
    mainQueue.advance(120ms);
    controller->showPanel();
    EXPECT_THAT(trace.take().filter(u"monitors.addLocal"_s), IsEmpty());
}

TEST_F(ShelfPanelControllerTest, TheHideSequenceGivesTheFocusBackWithoutWaitingForTheFade) {
    show();
    controller->hidePanel();
    EXPECT_THAT(trace.take(),
                ElementsAre(u"160 monitors.removeGlobal"_s, u"160 panel.animateAlpha 0 120 easeIn"_s,
                            u"160 workspace.activate editor"_s));
    EXPECT_TRUE(controller->isPanelVisible()) << "while it fades";
    mainQueue.advance(120ms);
    EXPECT_THAT(trace.take(), ElementsAre(u"280 panel.orderOut"_s));
    EXPECT_FALSE(controller->isPanelVisible());
}

TEST_F(ShelfPanelControllerTest, OpeningAFileLetsTheShelfStepAsideWithoutActivatingThePreviousApplication) {
    show();
    const auto file = item(ClipboardItemType::file);
    file->setFileURLString(u"file:///home/kim/a.pdf"_s);
    auto& view = controller->view();
    view.perform([&] { view.openFile(*file); });
    EXPECT_THAT(trace.take(),
                ElementsAre(u"160 workspace.open file:///home/kim/a.pdf"_s, u"160 monitors.removeGlobal"_s,
                            u"160 panel.animateAlpha 0 120 easeIn"_s));
    mainQueue.advance(120ms);
    EXPECT_THAT(trace.take(), ElementsAre(u"280 panel.orderOut"_s));
}

TEST_F(ShelfPanelControllerTest, SharingAsksOnTheNextTurnAndStepsAsideOnlyAfterAChoice) {
    show();
    auto& view = controller->view();
    view.perform([&] { view.share(item()); });
    EXPECT_THAT(trace.take(), IsEmpty());
    mainQueue.turn();
    EXPECT_THAT(trace.take(), ElementsAre(u"160 panel.pickShareTarget 0"_s));
    panel.onSharePicked({.identifier = u"notes"_s, .name = {}, .icon = {}});
    EXPECT_THAT(trace.take(), ElementsAre(u"160 sharing.share words notes"_s, u"160 monitors.removeGlobal"_s,
                                          u"160 panel.animateAlpha 0 120 easeIn"_s));
}

TEST_F(ShelfPanelControllerTest, AHideWithoutAPreviousApplicationActivatesNobody) {
    workspace.frontmost.reset();
    show();
    controller->hidePanel();
    EXPECT_THAT(trace.take().filter(u"workspace."_s), IsEmpty());
}

TEST_F(ShelfPanelControllerTest, ALaterHideActivatesTheSameApplicationAgain) {
    show();
    controller->hidePanel();
    controller->hidePanel();
    EXPECT_EQ(trace.take().filter(u"workspace.activate editor"_s).size(), 2);
}

TEST_F(ShelfPanelControllerTest, AShowWithinTheFadeIsOrderedOutByTheHidesEnd) {
    show();
    controller->hidePanel();
    mainQueue.advance(60ms);
    controller->showPanel();
    mainQueue.advance(60ms);
    EXPECT_FALSE(controller->isPanelVisible());
}

TEST_F(ShelfPanelControllerTest, ToggleLooksAtWhetherThePanelIsVisible) {
    controller->togglePanel();
    EXPECT_TRUE(controller->isPanelVisible());
    trace.take();
    controller->togglePanel();
    EXPECT_THAT(trace.take(),
                ElementsAre(u"0 monitors.removeGlobal"_s, u"0 panel.animateAlpha 0 120 easeIn"_s,
                            u"0 workspace.activate editor"_s));
}

TEST_F(ShelfPanelControllerTest, PreviousAppIsRewrittenAtEveryShowEvenToOurselves) {
    show();
    RunningApplication ourselves;
    ourselves.bundleIdentifier = u"com.brelvane.Kestrova"_s;
    workspace.frontmost = ourselves;
    controller->showPanel();
    EXPECT_EQ(controller->previousApp(), ourselves);
}

TEST_F(ShelfPanelControllerTest, TheOneThatIsKeptWhileThePanelIsInFrontIsPastedInto) {
    show();
    RunningApplication thePanel;
    thePanel.bundleIdentifier = u"com.brelvane.Kestrova"_s;
    thePanel.window = static_cast<std::uint32_t>(panel.windowNumber());
    workspace.frontmost = thePanel;
    show();
    EXPECT_EQ(controller->previousApp(), editor);
    controller->paste(item());
    mainQueue.advance(1s);
    EXPECT_THAT(trace.take().filter(u" editor"_s),
                ElementsAre(u"320 accessibility.setSelectedText editor words"_s,
                            u"370 workspace.activate editor"_s, u"420 keys.postPaste editor"_s));
}

TEST_F(ShelfPanelControllerTest, WithNobodyInFrontAShowForgetsThePreviousApplication) {
    show();
    workspace.frontmost.reset();
    show();
    EXPECT_EQ(controller->previousApp(), std::nullopt);
}

TEST_F(ShelfPanelControllerTest, ARepeatedShowLeavesOneMouseMonitor) {
    show();
    controller->showPanel();
    EXPECT_EQ(eventMonitors.globalMonitors, 1);
    controller->hidePanel();
    EXPECT_EQ(eventMonitors.globalMonitors, 0);
}

TEST_F(ShelfPanelControllerTest, APressOfTheMouseElsewhereHidesThePanel) {
    show();
    workspace.frontmost->window = static_cast<std::uint32_t>(panel.windowNumber());
    // A copy: the handler goes with its monitor.
    const auto press = eventMonitors.onMouseDown;
    press();
    mainQueue.advance(120ms);
    EXPECT_THAT(trace.take(),
                ElementsAre(u"160 monitors.removeGlobal"_s, u"160 panel.animateAlpha 0 120 easeIn"_s,
                            u"210 workspace.activate editor"_s, u"280 panel.orderOut"_s));
}

TEST_F(ShelfPanelControllerTest, APressElsewhereDuringADragLeavesThePanel) {
    show();
    auto& view = controller->view();
    const auto dragged = item();
    view.perform([&] { view.drags().beginItem(*dragged); });
    eventMonitors.onMouseDown();
    mainQueue.advance(120ms);
    EXPECT_TRUE(controller->isPanelVisible());
    EXPECT_THAT(trace.take(), IsEmpty());
    view.perform([&] { view.dragEnded(); });
    const auto press = eventMonitors.onMouseDown;
    press();
    mainQueue.advance(120ms);
    EXPECT_FALSE(controller->isPanelVisible());
}

TEST_F(ShelfPanelControllerTest, APressThatChoseAWindowLeavesTheKeyboardThere) {
    show();
    const auto press = eventMonitors.onMouseDown;
    press();
    RunningApplication chosen;
    chosen.window = 5;
    workspace.frontmost = chosen;
    mainQueue.advance(120ms);
    EXPECT_FALSE(controller->isPanelVisible());
    EXPECT_THAT(trace.take().filter(u"workspace."_s), IsEmpty());
}

TEST_F(ShelfPanelControllerTest, AShowTellsTheViewAfterItHasTheKeyboardAndBeforeItFadesIn) {
    show();
    controller->hidePanel();
    mainQueue.advance(120ms);
    auto& view = controller->view();
    view.perform([&] {
        view._lane = KeyboardLane::list;
        view._searchFocused = false;
        view._query = u"kept"_s;
    });
    view.onRender = [this] { trace.add(u"view.render"_s); };
    trace.take();
    controller->showPanel();
    EXPECT_EQ(view._lane, KeyboardLane::search);
    EXPECT_TRUE(view._searchFocused);
    EXPECT_EQ(view._query, u"kept");
    EXPECT_THAT(trace.take().mid(3, 3),
                ElementsAre(u"280 workspace.activateOwnWindow 77"_s, u"280 view.render"_s,
                            u"280 panel.animateAlpha 1 160 easeOut"_s));
}

TEST_F(ShelfPanelControllerTest, ARefusedMouseMonitorLeavesThePanelOpen) {
    eventMonitors.refuses = true;
    show();
    EXPECT_TRUE(controller->isPanelVisible());
    controller->hidePanel();
    EXPECT_THAT(trace.take().filter(u"removeGlobal"_s), IsEmpty());
}

TEST_F(ShelfPanelControllerTest, TheTopHangs150PointsBelowAVisibleHeightOf1000) {
    show();
    EXPECT_EQ(panel.place, (ScreenRect{.x = 480, .y = 310, .width = 960, .height = 540}));
    EXPECT_EQ(1000 - panel.place.maxY(), 150);
}

TEST_F(ShelfPanelControllerTest, ThePanelOpensOnTheDisplayUnderTheMouse) {
    screens.all.push_back({.identifier = 2,
                           .frame = {1920, 0, 2560, 1440},
                           .visibleFrame = {1920, 40, 2560, 1400},
                           .scale = 2});
    screens.mouse = {1920, 5};
    show();
    EXPECT_EQ(panel.place, (ScreenRect{.x = 2720, .y = 690, .width = 960, .height = 540}));
}

TEST_F(ShelfPanelControllerTest, WithTheMouseOnNoDisplayTheMainOneCountsElseTheFirst) {
    screens.mouse = {-5000, 0};
    screens.all.push_back(
        {.identifier = 2, .frame = {1920, 0, 1000, 1000}, .visibleFrame = {1920, 0, 1000, 1000}});
    EXPECT_EQ(controller->frame()->x, 480) << "the first";
    screens.main = screens.all[1];
    EXPECT_EQ(controller->frame()->x, 1940) << "the main one";
}

TEST_F(ShelfPanelControllerTest, WithoutAnyScreenThereIsNoFrameAndTheToastIsTold0) {
    screens.all.clear();
    EXPECT_EQ(controller->frame(), std::nullopt);
    EXPECT_EQ(hud.shelfPanelBottomY(), 0.0);
}

TEST_F(ShelfPanelControllerTest, TheToastIsToldTheLowerEdgeWhetherOrNotThePanelIsVisible) {
    EXPECT_EQ(hud.shelfPanelBottomY(), 310.0);
    show();
    EXPECT_EQ(hud.shelfPanelBottomY(), 310.0);
    controller.reset();
    EXPECT_EQ(hud.shelfPanelBottomY(), std::nullopt);
}

TEST_F(ShelfPanelControllerTest, TheWindowStartsAt960EvenWithTheSidebarStoredHidden) {
    defaults.set(u"shelfSidebarVisible"_s, false);
    start();
    show();
    EXPECT_EQ(panel.place.width, 960);
    controller->view().perform([&] { controller->view()._previewVisible.flip(); });
    EXPECT_EQ(panel.place.width, 760);
}

TEST_F(ShelfPanelControllerTest, AWidthChangeOfAVisiblePanelIsAnimated) {
    show();
    controller->view().perform([&] { controller->view()._sidebarVisible = false; });
    EXPECT_EQ(trace.take().filter(u"panel.animateFrame 280 easeInEaseOut"_s).size(), 1);
    EXPECT_EQ(panel.place, (ScreenRect{.x = 580, .y = 310, .width = 760, .height = 540}));
}

TEST_F(ShelfPanelControllerTest, AWidthChangeOfAHiddenPanelIsKeptForTheNextShow) {
    controller->view().perform([&] { controller->view()._sidebarVisible = false; });
    const auto effects = trace.take();
    EXPECT_EQ(effects.filter(u"panel.setFrame"_s).size(), 1);
    EXPECT_THAT(effects.filter(u"panel.animateFrame"_s), IsEmpty());
    show();
    EXPECT_EQ(panel.place.width, 760);
}

TEST_F(ShelfPanelControllerTest, TheSameWidthAgainChangesNothing) {
    show();
    controller->view().perform([&] { controller->view()._previewVisible.flip(); });
    EXPECT_THAT(trace.take().filter(u"Frame"_s), IsEmpty());
}

TEST_F(ShelfPanelControllerTest, CaptureModeTakesTheMonitorAndLetsClicksThrough) {
    show();
    controller->enterCaptureMode();
    EXPECT_THAT(trace.take(),
                ElementsAre(u"160 monitors.removeGlobal"_s, u"160 panel.setIgnoresMouseEvents 1"_s));
    controller->enterCaptureMode();
    EXPECT_THAT(trace.take(), IsEmpty());
    EXPECT_TRUE(controller->isPanelVisible());
    controller->exitCaptureMode();
    EXPECT_THAT(trace.take(),
                ElementsAre(u"160 panel.setIgnoresMouseEvents 0"_s, u"160 monitors.addGlobal 10"_s));
    controller->exitCaptureMode();
    EXPECT_THAT(trace.take(), IsEmpty());
}

TEST_F(ShelfPanelControllerTest, CaptureModeOfAHiddenPanelInstallsNoMonitorAtItsEnd) {
    controller->enterCaptureMode();
    controller->exitCaptureMode();
    EXPECT_EQ(eventMonitors.globalMonitors, 0);
}

TEST_F(ShelfPanelControllerTest, AShowInCaptureModeInstallsAMonitorAllTheSame) {
    controller->enterCaptureMode();
    show();
    EXPECT_EQ(eventMonitors.globalMonitors, 1);
}

TEST_F(ShelfPanelControllerTest, EditingAnImageHidesThePanelAndAsksForTheEditor) {
    show();
    std::shared_ptr<ClipboardItem> edited;
    const auto picture = item(ClipboardItemType::image);
    controller->view().onEditImage(picture);
    EXPECT_EQ(trace.take().filter(u"panel.animateAlpha 0"_s).size(), 1)
        << "a plain hide where no editor listens";
    controller->onEditImageRequested = [&](const auto& asked) { edited = asked; };
    controller->view().onEditImage(picture);
    EXPECT_EQ(edited, picture);
}

TEST_F(ShelfPanelControllerTest, TheViewsCallbacksDoNothingOnceTheControllerHasGone) {
    const auto onSelect = controller->view().onSelect;
    const auto onDismiss = controller->view().onDismiss;
    const auto onEditImage = controller->view().onEditImage;
    const auto onPanelWidthChange = controller->view().onPanelWidthChange;
    controller.reset();
    trace.take();
    onSelect(item());
    onDismiss();
    onEditImage(item());
    onPanelWidthChange(760);
    mainQueue.advance(1s);
    EXPECT_THAT(trace.take(), IsEmpty());
}

// Both paste sequences, effect by effect.

TEST_F(ShelfPanelControllerTest, TheClosingSequence) {
    defaults.set(u"shelfStayOpenAfterPaste"_s, false);
    show();
    controller->paste(item());
    mainQueue.advance(1s);
    EXPECT_THAT(trace.take(),
                ElementsAre(u"160 monitors.removeGlobal"_s, u"160 panel.orderOut"_s,
                            u"160 hud.pasted words"_s, u"240 pasteboard.write words"_s,
                            u"240 workspace.activate editor"_s, u"290 keys.postPaste editor"_s));
    EXPECT_EQ(ownWriteChangeCount, pasteboard.changeCount());
}

TEST_F(ShelfPanelControllerTest, TheStayingSequenceByKeys) {
    show();
    controller->paste(item());
    mainQueue.advance(1s);
    EXPECT_THAT(trace.take(),
                ElementsAre(u"160 accessibility.setSelectedText editor words"_s, u"160 hud.pasted words"_s,
                            u"210 pasteboard.write words"_s, u"210 workspace.activate editor"_s,
                            u"260 keys.postPaste editor"_s, u"390 workspace.activateOwnWindow 77"_s));
    EXPECT_EQ(ownWriteChangeCount, pasteboard.changeCount());
    EXPECT_TRUE(controller->isPanelVisible());
}

TEST_F(ShelfPanelControllerTest, TheStayingSequenceByInsertionPostsNoKeyAndActivatesNobody) {
    accessibility.accepts = true;
    show();
    controller->paste(item());
    mainQueue.advance(1s);
    EXPECT_THAT(trace.take(), ElementsAre(u"160 accessibility.setSelectedText editor words"_s,
                                          u"160 pasteboard.write words"_s, u"160 hud.pasted words"_s));
    EXPECT_EQ(ownWriteChangeCount, pasteboard.changeCount());
}

TEST_F(ShelfPanelControllerTest, TheDelayOfTheStayingSequenceCountsFromTheAnswer) {
    accessibility.answerDelay = 100ms;
    show();
    controller->paste(item());
    mainQueue.advance(1s);
    EXPECT_THAT(trace.take().mid(2),
                ElementsAre(u"310 pasteboard.write words"_s, u"310 workspace.activate editor"_s,
                            u"360 keys.postPaste editor"_s, u"490 workspace.activateOwnWindow 77"_s));
}

TEST_F(ShelfPanelControllerTest, APreferenceOfTheWrongTypeMeansStaying) {
    defaults.set(u"shelfStayOpenAfterPaste"_s, u"false"_s);
    show();
    controller->paste(item());
    mainQueue.advance(1s);
    EXPECT_TRUE(controller->isPanelVisible());
}

TEST_F(ShelfPanelControllerTest, PicturesAndFilesAreNeverInsertedDirectly) {
    accessibility.accepts = true;
    show();
    for (const auto type : {ClipboardItemType::image, ClipboardItemType::file}) {
        controller->paste(item(type));
        mainQueue.advance(1s);
        const auto effects = trace.take();
        EXPECT_THAT(effects.filter(u"accessibility"_s), IsEmpty());
        EXPECT_EQ(effects.filter(u"keys.postPaste"_s).size(), 1);
    }
}

TEST_F(ShelfPanelControllerTest, ATerminatedApplicationIsNotAskedAndTheKeyGoesToWhateverIsInFront) {
    accessibility.accepts = true;
    show();
    workspace.terminated = true;
    controller->paste(item());
    mainQueue.advance(1s);
    const auto effects = trace.take();
    EXPECT_THAT(effects.filter(u"accessibility"_s), IsEmpty());
    EXPECT_EQ(effects.filter(u"keys.postPaste"_s).size(), 1);
}

TEST_F(ShelfPanelControllerTest, AnApplicationWithoutAProcessIsNotAsked) {
    workspace.frontmost->processIdentifier = 0;
    accessibility.accepts = true;
    show();
    controller->paste(item());
    mainQueue.advance(1s);
    EXPECT_THAT(trace.take().filter(u"accessibility"_s), IsEmpty());
}

TEST_F(ShelfPanelControllerTest, WithoutAPreviousApplicationNobodyIsActivated) {
    workspace.frontmost.reset();
    show();
    controller->paste(item());
    mainQueue.advance(1s);
    EXPECT_THAT(trace.take(),
                ElementsAre(u"160 hud.pasted words"_s, u"210 pasteboard.write words"_s,
                            u"260 keys.postPaste -"_s, u"390 workspace.activateOwnWindow 77"_s));
}

TEST_F(ShelfPanelControllerTest, ASequenceKeepsTheApplicationThatItBeganWith) {
    show();
    controller->paste(item());
    mainQueue.advance(20ms);
    RunningApplication other;
    other.bundleIdentifier = u"other"_s;
    workspace.frontmost = other;
    controller->showPanel();
    mainQueue.advance(1s);
    const auto effects = trace.take();
    EXPECT_EQ(effects.filter(u"keys.postPaste editor"_s).size(), 1);
    EXPECT_THAT(effects.filter(u"keys.postPaste other"_s), IsEmpty());
}

TEST_F(ShelfPanelControllerTest, AToggleWithinASequenceDoesNotCancelIt) {
    show();
    controller->paste(item());
    mainQueue.advance(20ms);
    controller->togglePanel();
    mainQueue.advance(1s);
    EXPECT_EQ(trace.take().filter(u"keys.postPaste"_s).size(), 1);
}

TEST_F(ShelfPanelControllerTest, TheLastStepIsLeftOutOnceTheControllerHasGone) {
    show();
    controller->paste(item());
    mainQueue.advance(60ms);
    controller.reset();
    trace.take();
    mainQueue.advance(1s);
    EXPECT_THAT(trace.take(), ElementsAre(u"260 keys.postPaste editor"_s));
}

TEST_F(ShelfPanelControllerTest, TheItemLivesUntilTheSequenceIsOver) {
    show();
    std::weak_ptr<ClipboardItem> kept;
    {
        const auto pasted = item();
        kept = pasted;
        controller->paste(pasted);
    }
    mainQueue.advance(40ms);
    EXPECT_FALSE(kept.expired());
    mainQueue.advance(1s);
    EXPECT_TRUE(kept.expired());
}

} // namespace
} // namespace kestrova
