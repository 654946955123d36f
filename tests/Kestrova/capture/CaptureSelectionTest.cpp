#include "tests/Kestrova/capture/CaptureFixture.h"

#include <gmock/gmock.h>

#include <ostream>

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// From the beginning of a session to the picture of what was selected.
class CaptureSelectionTest : public CaptureFixture {};

TEST_F(CaptureSelectionTest, ASessionIsMadeBeforeItsCallbackAndSelectsAtTheNextTurn) {
    coordinator->onCaptureSessionWillStart = [&] {
        EXPECT_THAT(sessions.modes, ElementsAre(CaptureMode::window));
        EXPECT_EQ(sessions.selecting(), 0U);
        trace.add(QStringLiteral("sessionWillStart"));
    };
    coordinator->beginSession(CaptureMode::window);
    EXPECT_THAT(effects(), ElementsAre(QStringLiteral("sessionWillStart")));
    EXPECT_EQ(sessions.selecting(), 0U);
    queue.turn();
    EXPECT_EQ(sessions.selecting(), 1U);
}

TEST_F(CaptureSelectionTest, ASecondSessionIsNotBegunWhileOneRuns) {
    begin();
    coordinator->beginSession(CaptureMode::area);
    coordinator->beginSession(CaptureMode::window);
    queue.advance(1s);
    EXPECT_THAT(sessions.modes, ElementsAre(CaptureMode::area));
    EXPECT_THAT(effects(), ElementsAre(QStringLiteral("sessionWillStart")));
    sessions.end(0, std::nullopt);
    begin(CaptureMode::window);
    EXPECT_THAT(sessions.modes, ElementsAre(CaptureMode::area, CaptureMode::window));
}

TEST_F(CaptureSelectionTest, ACancelledSessionCallsBothSessionCallbacksAndNoOthers) {
    begin();
    sessions.end(0, std::nullopt);
    queue.advance(1s);
    EXPECT_THAT(effects(), ElementsAre(QStringLiteral("sessionWillStart"), QStringLiteral("sessionDidEnd")));
    EXPECT_EQ(rows(), 0U);
    EXPECT_TRUE(sessions.last.expired());
}

TEST_F(CaptureSelectionTest, TheSessionIsOverBeforeItsEndIsTold) {
    begin();
    coordinator->onCaptureSessionDidEnd = [&] { coordinator->beginSession(CaptureMode::window); };
    sessions.end(0, std::nullopt);
    EXPECT_THAT(sessions.modes, ElementsAre(CaptureMode::area, CaptureMode::window));
}

struct Threshold {
    double width;
    double height;
    bool isCaptured;
};
void PrintTo(const Threshold& row, std::ostream* stream) {
    *stream << row.width << " by " << row.height;
}
class AreaThreshold : public CaptureSelectionTest, public testing::WithParamInterface<Threshold> {};

TEST_P(AreaThreshold, IsAboveFourPointsInBothDirections) {
    const auto& [width, height, isCaptured] = GetParam();
    begin();
    sessions.end(0, area(width, height));
    queue.advance(1s);
    begin();
    sessions.end(1, frozenArea(width, height));
    queue.advance(1s);
    EXPECT_EQ(rows(), isCaptured ? 2U : 0U);
    EXPECT_EQ(effects().contains(QStringLiteral("sound.play Glass")), isCaptured);
}

INSTANTIATE_TEST_SUITE_P(Table, AreaThreshold,
                         testing::Values(Threshold{4, 50, false}, Threshold{50, 4, false},
                                         Threshold{4, 4, false}, Threshold{0, 0, false},
                                         Threshold{4.25, 4, false}, Threshold{4.25, 4.25, true},
                                         Threshold{5, 50, true}));

TEST_F(CaptureSelectionTest, AnAreaIsTakenWhenTheOverlayHasHadTimeToGo) {
    begin();
    trace.take();
    queue.advance(1s);
    sessions.end(0, area(100, 50));
    EXPECT_THAT(trace.take(), ElementsAre(QStringLiteral("1000 sessionDidEnd")));
    queue.advance(79ms);
    EXPECT_EQ(content.contentRequests, 0);
    queue.advance(1ms);
    EXPECT_THAT(trace.take(), ElementsAre(QStringLiteral("1080 sound.play Glass"),
                                          QStringLiteral("1080 pasteboard.write (other)"),
                                          QStringLiteral("1080 didCapture 200x100")));
}

TEST_F(CaptureSelectionTest, AWindowIsTakenWhenTheOverlayHasHadTimeToGo) {
    begin(CaptureMode::window);
    sessions.end(0, windowSelection());
    trace.take();
    queue.advance(79ms);
    EXPECT_THAT(content.captures, IsEmpty());
    queue.advance(1ms);
    ASSERT_THAT(content.captures, SizeIs(1));
    EXPECT_EQ(content.captures.front().filter, ContentFilter(WindowFilter{42}));
    EXPECT_THAT(trace.take(), ElementsAre(QStringLiteral("80 sound.play Glass"),
                                          QStringLiteral("80 pasteboard.write (other)"),
                                          QStringLiteral("80 didCapture 100x80")));
}

TEST_F(CaptureSelectionTest, AFrozenAreaIsCutOutAtOnce) {
    begin();
    sessions.end(0, frozenArea(100, 50));
    EXPECT_THAT(trace.take(),
                ElementsAre(QStringLiteral("0 sessionWillStart"), QStringLiteral("0 sessionDidEnd"),
                            QStringLiteral("0 sound.play Glass"),
                            QStringLiteral("0 pasteboard.write (other)"),
                            QStringLiteral("0 didCapture 200x100")));
    EXPECT_THAT(content.captures, IsEmpty());
    ASSERT_THAT(handedOver, SizeIs(1));
    EXPECT_EQ(handedOver.front().image.pixelColor(0, 0), QColor(Qt::red));
}

TEST_F(CaptureSelectionTest, ASessionCanBeginDuringTheWaitAndDuringASlowCapture) {
    content.holdsPictures = true;
    begin();
    sessions.end(0, area(20, 10));
    begin();
    sessions.end(1, area(40, 20));
    queue.advance(80ms);
    EXPECT_EQ(content.heldPictures.asked(), 2U);
    begin();
    EXPECT_EQ(sessions.selecting(), 3U);
    content.heldPictures.give(1);
    content.heldPictures.give(0);
    EXPECT_THAT(effects().filter(QStringLiteral("didCapture")),
                ElementsAre(QStringLiteral("didCapture 80x40"), QStringLiteral("didCapture 40x20")));
    EXPECT_EQ(rows(), 2U);
    EXPECT_THAT(files(), SizeIs(2));
}

TEST_F(CaptureSelectionTest, AFullScreenCaptureRunsDuringASession) {
    begin();
    captureFullScreen();
    EXPECT_EQ(rows(), 1U);
    EXPECT_FALSE(sessions.last.expired());
    sessions.end(0, std::nullopt);
    EXPECT_EQ(effects().filter(QStringLiteral("sessionDidEnd")).size(), 1);
}

TEST_F(CaptureSelectionTest, AFailedCaptureOfASelectionIsReportedWithIt) {
    content.pictureError = screenContentError(ScreenContentError::Code::windowGone);
    begin();
    sessions.end(0, area(20, 10));
    begin(CaptureMode::window);
    sessions.end(1, windowSelection());
    queue.advance(80ms);
    // What was frozen cannot be cut out once its display has gone.
    begin();
    const auto frozen = frozenArea();
    screens.all.clear();
    sessions.end(2, frozen);
    EXPECT_EQ(effects().filter(QStringLiteral("diagnostics.")).size(), 3);
    EXPECT_THAT(effects(), IsEmpty());
    ASSERT_THAT(diagnostics.reported, SizeIs(3));
    ASSERT_TRUE(diagnostics.reported[0] && diagnostics.reported[1] && diagnostics.reported[2]);
    EXPECT_EQ(std::get<AreaSelection>(*diagnostics.reported[0]).rect, (ScreenRect{0, 0, 20, 10}));
    EXPECT_EQ(std::get<WindowSelection>(*diagnostics.reported[1]).window, window);
    EXPECT_TRUE(std::get<AreaSelection>(*diagnostics.reported[2]).frozen);
    EXPECT_EQ(rows(), 0U);
    EXPECT_THAT(pasteboard.inner.written(), IsEmpty());
}

TEST_F(CaptureSelectionTest, ASessionGoesOnWithoutItsCoordinatorAndThenNothingFollows) {
    begin();
    coordinator.reset();
    EXPECT_FALSE(sessions.last.expired()) << "its task holds it";
    trace.take();
    sessions.end(0, area());
    EXPECT_TRUE(sessions.last.expired());
    queue.advance(1s);
    EXPECT_THAT(trace.take(), IsEmpty());
    EXPECT_EQ(content.contentRequests, 0);
}

TEST_F(CaptureSelectionTest, ACoordinatorThatItsOwnCallbackLetsGoTakesNoPicture) {
    begin();
    coordinator->onCaptureSessionDidEnd = [&] { coordinator.reset(); };
    sessions.end(0, frozenArea());
    queue.advance(1s);
    EXPECT_THAT(effects(), ElementsAre(QStringLiteral("sessionWillStart")));
    EXPECT_EQ(rows(), 0U);
}

} // namespace
} // namespace kestrova
