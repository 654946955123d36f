#include "tests/Kestrova/capture/AreaCaptureSessionFixture.h"

#include <chrono>
#include <functional>

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class AreaCaptureSessionWindowsTest : public AreaCaptureSessionFixture {
protected:
    AreaCaptureSessionWindowsTest() {
        // Points of windows count downwards: it covers 880 to 1080 upwards.
        show({window(7, {0, 0, 300, 200}, u"Front"_s), window(8, {100, 0, 600, 200}, u"Behind"_s)});
        screens.mouse = {150, 1000};
    }
};

TEST_F(AreaCaptureSessionWindowsTest, TheFirstLoadIsATurnAwayAndTriggersNoHover) {
    begin(CaptureMode::window);
    EXPECT_EQ(content.contentRequests, 1);
    EXPECT_FALSE(session->availableWindows());
    queue.turn();
    EXPECT_EQ(content.contentRequests, 2);
    EXPECT_THAT(available(), ElementsAre(7U, 8U));
    queue.advance(1s);
    EXPECT_EQ(hovered(), 0U);
}

TEST_F(AreaCaptureSessionWindowsTest, InAreaModeNoWindowIsAskedFor) {
    select(CaptureMode::area);
    EXPECT_EQ(content.contentRequests, 1);
    EXPECT_FALSE(session->availableWindows());
}

TEST_F(AreaCaptureSessionWindowsTest, TheLoadAfterASpaceHoversWhatIsUnderTheMouse) {
    select(CaptureMode::area);
    key(Key::space);
    EXPECT_EQ(hovered(), 0U);
    queue.turn();
    EXPECT_EQ(hovered(), 7U);
    EXPECT_EQ(view(1).hoveredWindowTitle(), u"Front"_s);
    EXPECT_EQ(view(1).hoveredWindowFrameGlobal(), (ScreenRect{0, 880, 300, 200}));
}

TEST_F(AreaCaptureSessionWindowsTest, WindowsThatAreKnownAreNotAskedForAgain) {
    select(CaptureMode::area);
    key(Key::space);
    queue.turn();
    const int requests = content.contentRequests;
    key(Key::space);
    EXPECT_EQ(hovered(), 0U);
    key(Key::space);
    queue.turn();
    EXPECT_EQ(content.contentRequests, requests);
    EXPECT_EQ(hovered(), 7U);
}

struct Candidate {
    const char* what;
    std::function<void(ShareableWindow&)> change;
    bool isKept;
};

void PrintTo(const Candidate& candidate, std::ostream* out) {
    *out << candidate.what;
}

class CandidatesTest : public AreaCaptureSessionFixture, public testing::WithParamInterface<Candidate> {};

TEST_P(CandidatesTest, AreWindowsOfOthersThatArePeoplesAndOnTheScreen) {
    auto changed = window(7, {10, 10, 300, 200});
    GetParam().change(changed);
    show({changed});
    select(CaptureMode::window);
    ASSERT_TRUE(session->availableWindows());
    EXPECT_EQ(available().size(), GetParam().isKept ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, CandidatesTest,
    testing::Values(
        Candidate{"as it is", [](ShareableWindow&) {}, true},
        Candidate{"a panel", [](ShareableWindow& window) { window.windowLayer = 20; }, false},
        Candidate{"the desktop", [](ShareableWindow& window) { window.windowLayer = -1; }, false},
        Candidate{"minimised", [](ShareableWindow& window) { window.isOnScreen = false; }, false},
        Candidate{"one point wide", [](ShareableWindow& window) { window.frame.setWidth(1); }, false},
        Candidate{"hardly wider", [](ShareableWindow& window) { window.frame.setWidth(1.25); }, true},
        Candidate{"one point high", [](ShareableWindow& window) { window.frame.setHeight(1); }, false},
        Candidate{"no application", [](ShareableWindow& window) { window.owningApplication.reset(); }, true},
        Candidate{"this program's own",
                  [](ShareableWindow& window) {
                      window.owningApplication->bundleIdentifier = u"com.brelvane.Kestrova"_s;
                  },
                  false},
        Candidate{"an application without an identifier",
                  [](ShareableWindow& window) { window.owningApplication->bundleIdentifier.clear(); },
                  true}));

TEST_F(AreaCaptureSessionWindowsTest, TheOrderIsTheScreensFromFrontToBack) {
    content.order = {99, 8, 7};
    select(CaptureMode::window);
    EXPECT_THAT(available(), ElementsAre(8U, 7U));
}

TEST_F(AreaCaptureSessionWindowsTest, AWindowThatTheScreensOrderDoesNotNameIsDropped) {
    content.order = {8};
    select(CaptureMode::window);
    EXPECT_THAT(available(), ElementsAre(8U));
}

TEST_F(AreaCaptureSessionWindowsTest, WithoutContentThereIsNothingToHover) {
    const LogCapture log;
    begin(CaptureMode::window);
    content.contentError = screenContentError(ScreenContentError::Code::noPicture);
    queue.turn();
    EXPECT_EQ(log.lines(),
              QStringList{u"[AreaCaptureSession] No windows to choose from: as the test wants it"_s});
    ASSERT_TRUE(session->availableWindows());
    EXPECT_THAT(available(), IsEmpty());
    click({150, 1000});
    EXPECT_TRUE(isRunning());
    key(Key::escape);
    queue.turn();
    EXPECT_TRUE(isCancelled());
}

struct Hover {
    QPointF point;
    std::uint32_t windowID;
};

class HoverTest : public AreaCaptureSessionWindowsTest, public testing::WithParamInterface<Hover> {};

TEST_P(HoverTest, FindsTheFirstWindowFromTheFront) {
    select(CaptureMode::window);
    session->updateHover(GetParam().point);
    EXPECT_EQ(hovered(), GetParam().windowID);
}

// Of the edges the left one and, counted downwards, the upper one belong to a window.
INSTANTIATE_TEST_SUITE_P(Places, HoverTest,
                         testing::Values(Hover{{150, 1000}, 7}, Hover{{299, 881}, 7}, Hover{{300, 1000}, 8},
                                         Hover{{0, 1080}, 7}, Hover{{10, 880}, 0}, Hover{{700, 1000}, 0},
                                         Hover{{699.5, 880.5}, 8}, Hover{{-1, 1000}, 0},
                                         Hover{{150, 100}, 0}));

TEST_F(AreaCaptureSessionWindowsTest, TheWindowIsTheOneUnderTheMouseAndTheCoordinatesThoseOfThePixelsCorner) {
    select(CaptureMode::window);
    const QPointF corner(-1, 1000);
    const QPointF centre(150, 1000);
    view().mouseMoved({corner, centre});
    EXPECT_EQ(hovered(), 7U);
    key(Key::space);
    EXPECT_EQ(view().hoverPoint(), corner);
    key(Key::space);
    view().mouseDragged({corner, centre});
    EXPECT_EQ(hovered(), 7U);
    view().mouseDown({corner, centre});
    queue.turn();
    ASSERT_TRUE(selectedWindow());
    EXPECT_EQ(selectedWindow()->window.windowID, 7U);
}

TEST_F(AreaCaptureSessionWindowsTest, BeforeWindowsAreKnownNothingIsHovered) {
    content.holdsContent = true;
    begin(CaptureMode::window);
    content.heldContent.give(0);
    queue.turn();
    view().mouseMoved({150, 1000});
    EXPECT_EQ(hovered(), 0U);
    content.heldContent.give(1);
    EXPECT_EQ(hovered(), 0U);
    view().mouseMoved({151, 1000});
    EXPECT_EQ(hovered(), 7U);
}

TEST_F(AreaCaptureSessionWindowsTest, TheSameWindowUnderTheMouseChangesNothing) {
    select(CaptureMode::window);
    session->updateHover({150, 1000});
    const int displays = panels.all[1]->displaysNeeded;
    session->updateHover({160, 1000});
    EXPECT_EQ(panels.all[1]->displaysNeeded, displays);
    session->updateHover({600, 1000});
    EXPECT_GT(panels.all[1]->displaysNeeded, displays);
    EXPECT_EQ(view(0).hoveredWindowTitle(), u"Behind"_s);
}

TEST_F(AreaCaptureSessionWindowsTest, OffEveryWindowBothFieldsAreClearedOnce) {
    select(CaptureMode::window);
    session->updateHover({150, 1000});
    session->updateHover({150, 100});
    for (const auto& panel : panels.all) {
        EXPECT_FALSE(panel->view->hoveredWindowFrameGlobal());
        EXPECT_FALSE(panel->view->hoveredWindowTitle());
    }
    const int displays = panels.all[0]->displaysNeeded;
    session->updateHover({150, 101});
    EXPECT_EQ(panels.all[0]->displaysNeeded, displays);
}

TEST_F(AreaCaptureSessionWindowsTest, AModeChangeLeavesTheTitleToTheNextHover) {
    select(CaptureMode::window);
    session->updateHover({150, 1000});
    screens.mouse = {150, 100};
    key(Key::space);
    EXPECT_FALSE(view().hoveredWindowFrameGlobal());
    EXPECT_EQ(view().hoveredWindowTitle(), u"Front"_s);
}

TEST_F(AreaCaptureSessionWindowsTest, AClickOnAWindowSelectsIt) {
    select(CaptureMode::window);
    click({600, 1000});
    ASSERT_TRUE(selectedWindow());
    EXPECT_EQ(selectedWindow()->window, window(8, {100, 0, 600, 200}, u"Behind"_s));
}

TEST_F(AreaCaptureSessionWindowsTest, AClickWhereNoWindowIsDoesNothing) {
    select(CaptureMode::window);
    click({150, 100});
    EXPECT_TRUE(isRunning());
    click({600, 1000});
    EXPECT_TRUE(selectedWindow());
}

TEST_F(AreaCaptureSessionWindowsTest, AClickGoesByGlobalPointsOnTheOtherDisplayToo) {
    show({window(9, {2000, 500, 100, 100})});
    select(CaptureMode::window);
    drag({80, 730}, {80, 730}, 1);
    ASSERT_TRUE(selectedWindow());
    EXPECT_EQ(selectedWindow()->window.windowID, 9U);
}

TEST_F(AreaCaptureSessionWindowsTest, AWindowThatWasClosedAfterTheHoverIsSelectedAllTheSame) {
    select(CaptureMode::window);
    session->updateHover({150, 1000});
    show({});
    click({150, 1000});
    ASSERT_TRUE(selectedWindow());
    EXPECT_EQ(selectedWindow()->window.windowID, 7U);
}

TEST_F(AreaCaptureSessionWindowsTest, AnotherApplicationInFrontReloadsTheCandidates) {
    select(CaptureMode::window);
    session->updateHover({150, 1000});
    content.order = {8, 7};
    workspace.onDidActivate();
    EXPECT_THAT(available(), ElementsAre(7U, 8U));
    queue.turn();
    EXPECT_THAT(available(), ElementsAre(8U, 7U));
    EXPECT_EQ(hovered(), 8U);
}

TEST_F(AreaCaptureSessionWindowsTest, AnotherApplicationInFrontChangesNothingInAreaMode) {
    select(CaptureMode::area);
    workspace.onDidActivate();
    queue.advance(1s);
    EXPECT_EQ(content.contentRequests, 1);
    EXPECT_FALSE(session->availableWindows());
}

TEST_F(AreaCaptureSessionWindowsTest, AnAnswerThatComesAfterTheEndHarmsNobody) {
    content.holdsContent = true;
    begin(CaptureMode::window);
    content.heldContent.give(0);
    queue.turn();
    key(Key::escape);
    queue.turn();
    EXPECT_TRUE(isCancelled());
    content.heldContent.give(1);
    EXPECT_EQ(outcome->ends, 1);
}

struct Label {
    std::optional<QString> title;
    std::optional<SharingApplication> application;
    std::optional<QString> label;
};

class WindowLabelTest : public testing::TestWithParam<Label> {};

TEST_P(WindowLabelTest, IsTheTitleElseTheApplicationsName) {
    ShareableWindow window;
    window.title = GetParam().title;
    window.owningApplication = GetParam().application;
    EXPECT_EQ(windowLabel(window), GetParam().label);
}

const SharingApplication kEditor{u"org.example.Editor"_s, u"Editor"_s};

INSTANTIATE_TEST_SUITE_P(Labels, WindowLabelTest,
                         testing::Values(Label{u"Notes"_s, kEditor, u"Notes"_s},
                                         Label{u""_s, kEditor, u"Editor"_s},
                                         Label{std::nullopt, kEditor, u"Editor"_s},
                                         Label{u"Notes"_s, std::nullopt, u"Notes"_s},
                                         Label{u""_s, std::nullopt, std::nullopt},
                                         Label{std::nullopt, std::nullopt, std::nullopt}));

} // namespace
} // namespace kestrova
