#include "Kestrova/capture/ScreenshotCapture.h"

#include "tests/support/FakeScreenContent.h"
#include "tests/support/FakeScreens.h"

#include <gmock/gmock.h>

#include <exception>
#include <map>
#include <memory>
#include <ostream>
#include <utility>
#include <vector>

namespace kestrova {
namespace {

using namespace ScreenshotCapture;
using testing::ElementsAre;
using testing::IsEmpty;
using Code = ScreenContentError::Code;
using Case = CaptureError::Case;

/// What a task has come to.
template<class Value>
struct Outcome {
    bool isDone() const { return value || error; }
    std::optional<Code> hostError() const {
        return codeOf<Code, ScreenContentError>([](const auto& each) { return each.code(); });
    }
    std::optional<Case> captureError() const {
        return codeOf<Case, CaptureError>([](const auto& each) { return each.error(); });
    }

    std::optional<Value> value;
    std::exception_ptr error;

private:
    template<class Result, class Error, class Of>
    std::optional<Result> codeOf(Of of) const {
        if (!error)
            return std::nullopt;
        try {
            std::rethrow_exception(error);
        } catch (const Error& each) {
            return of(each);
        } catch (...) {
            return std::nullopt;
        }
    }
};

template<class Value>
QCoro::Task<> follow(QCoro::Task<Value> task, std::shared_ptr<Outcome<Value>> outcome) {
    try {
        outcome->value = co_await task;
    } catch (const MainQueueClosed&) {
        throw;
    } catch (const std::exception&) {
        outcome->error = std::current_exception();
    }
}

template<class Value>
std::shared_ptr<Outcome<Value>> outcomeOf(QCoro::Task<Value> task) {
    auto outcome = std::make_shared<Outcome<Value>>();
    follow(std::move(task), outcome);
    return outcome;
}

Screen screen(std::uint32_t identifier, const ScreenRect& frame, double scale) {
    return {.identifier = identifier, .frame = frame, .visibleFrame = frame, .scale = scale};
}

ShareableWindow window(std::uint32_t windowID, const QRectF& frame = {10, 10, 300, 200}) {
    ShareableWindow result;
    result.windowID = windowID;
    result.frame = frame;
    return result;
}

PictureConfiguration everything(QSize pixels) {
    return {.sourceRect = std::nullopt, .pixels = pixels};
}

class ScreenshotCaptureTest : public testing::Test {
protected:
    ScreenshotCaptureTest() {
        screens.all.clear();
        add(screen(1, {0, 0, 1000, 800}, 1));
        add(screen(2, {1000, 0, 600, 400}, 2));
    }
    ~ScreenshotCaptureTest() override { excludedWindowIDs.clear(); }

    /// A screen of which the host can take pictures.
    void add(const Screen& added) {
        screens.all.push_back(added);
        content.add(added.identifier, added.frame, added.scale);
    }
    auto captureAll() { return outcomeOf(captureAllDisplays(content, screens)); }
    auto capture(const ScreenRect& rect) { return outcomeOf(captureArea(content, screens, rect)); }
    auto capture(const ShareableWindow& window) { return outcomeOf(captureWindow(content, screens, window)); }
    auto capture(const Screen& whole) { return outcomeOf(captureDisplay(content, whole)); }

    FakeScreens screens;
    FakeScreenContent content;
};

// --- An area -----------------------------------------------------------------------------------------------

TEST_F(ScreenshotCaptureTest, AnAreaIsTakenFromTheFirstScreenThatItTouches) {
    capture(ScreenRect{900, 100, 200, 100});
    EXPECT_THAT(content.captures,
                ElementsAre(FakeScreenContent::Capture{
                    DisplayFilter{1, {}}, {.sourceRect = QRectF(900, 600, 100, 100), .pixels = {100, 100}}}));
}

TEST_F(ScreenshotCaptureTest, AScreenThatAnAreaTouchesComesBeforeTheMainOne) {
    for (const auto& main : screens.all) {
        screens.main = main;
        capture(ScreenRect{10, 10, 20, 20});
        capture(ScreenRect{1010, 10, 20, 20});
    }
    std::vector<std::uint32_t> displays;
    for (const auto& each : content.captures)
        displays.push_back(std::get<DisplayFilter>(each.filter).displayID);
    EXPECT_THAT(displays, ElementsAre(1, 2, 1, 2));
}

TEST_F(ScreenshotCaptureTest, AnAreaIsWhatTheHostGives) {
    content.picture = [](const auto&, const auto& configuration) {
        return FakeScreenContent::filled(configuration.pixels, Qt::red);
    };
    const auto outcome = capture(ScreenRect{1100, 100, 20, 10});
    ASSERT_TRUE(outcome->value);
    EXPECT_EQ(*outcome->value, FakeScreenContent::filled({40, 20}, Qt::red));
}

TEST_F(ScreenshotCaptureTest, OneByOnePointAtScaleTwoIsATwoByTwoPixelPicture) {
    const auto outcome = capture(ScreenRect{1100, 100, 1, 1});
    ASSERT_TRUE(outcome->value);
    EXPECT_EQ(outcome->value->size(), QSize(2, 2));
}

TEST_F(ScreenshotCaptureTest, ARectangleOutsideEveryDisplayFallsBackToTheMainScreenAndIsThenEmpty) {
    screens.main = screens.all.back();
    EXPECT_EQ(capture(ScreenRect{9000, 9000, 10, 10})->captureError(), Case::emptyRect);
    EXPECT_THAT(content.infoRequests, ElementsAre(DisplayFilter{2, {}}));
    EXPECT_THAT(content.captures, IsEmpty());
}

TEST_F(ScreenshotCaptureTest, AnEmptyRectangleIsEmptyWhereverItLies) {
    screens.main = screens.all.front();
    EXPECT_EQ(capture(ScreenRect{10, 10, 0, 10})->captureError(), Case::emptyRect);
}

TEST_F(ScreenshotCaptureTest, WithoutAMainScreenARectangleOutsideEveryDisplayHasNoDisplay) {
    EXPECT_EQ(capture(ScreenRect{9000, 9000, 10, 10})->captureError(), Case::noDisplay);
}

TEST_F(ScreenshotCaptureTest, AnAreaOfAScreenWithoutPixelsHasNoDisplay) {
    content.content.displays.erase(content.content.displays.begin());
    EXPECT_EQ(capture(ScreenRect{900, 100, 200, 100})->captureError(), Case::noDisplay);
    EXPECT_THAT(content.captures, IsEmpty());
}

TEST_F(ScreenshotCaptureTest, TheHostsRectangleAndScaleComeBeforeTheScreensOwn) {
    content.infos[1] = {.contentRect = {0, 0, 999.5, 799.5}, .pointPixelScale = 1.5};
    capture(ScreenRect{990, 0, 10, 10});
    EXPECT_THAT(content.captures,
                ElementsAre(FakeScreenContent::Capture{
                    DisplayFilter{1, {}}, {.sourceRect = QRectF(990, 789.5, 9.5, 10), .pixels = {14, 15}}}));
}

TEST_F(ScreenshotCaptureTest, WhatTheHostDoesNotKnowComesFromTheScreen) {
    content.infos[2] = {.contentRect = {}, .pointPixelScale = 0};
    capture(ScreenRect{1000, 390, 20, 10});
    capture(screens.all.back());
    EXPECT_THAT(
        content.captures,
        ElementsAre(FakeScreenContent::Capture{DisplayFilter{2, {}},
                                               {.sourceRect = QRectF(0, 0, 20, 10), .pixels = {40, 20}}},
                    FakeScreenContent::Capture{DisplayFilter{2, {}}, everything({1200, 800})}));
}

TEST_F(ScreenshotCaptureTest, WhatIsTakenAndWhatIsFrozenHaveEachAScaleOfTheirOwn) {
    content.infos[1].pointPixelScale = 1.25;
    const ScreenRect rect{100, 100, 40, 20};
    EXPECT_EQ(capture(rect)->value->size(), QSize(50, 25));
    EXPECT_EQ(cropFrozen(FakeScreenContent::filled({1000, 800}), rect, screens).size(), QSize(40, 20));
}

// --- A display ---------------------------------------------------------------------------------------------

TEST_F(ScreenshotCaptureTest, AWholeDisplayIsTakenWithoutASourceRectangle) {
    const auto outcome = capture(screens.all.back());
    EXPECT_THAT(content.captures,
                ElementsAre(FakeScreenContent::Capture{DisplayFilter{2, {}}, everything({1200, 800})}));
    ASSERT_TRUE(outcome->value);
    EXPECT_EQ(outcome->value->size(), QSize(1200, 800));
}

TEST_F(ScreenshotCaptureTest, TheSizeOfADisplayIsRoundedAndAtLeastOne) {
    content.infos[1] = {.contentRect = {0, 0, 1001, 0.1}, .pointPixelScale = 1.5};
    capture(screens.all.front());
    EXPECT_EQ(content.captures.front().configuration.pixels, QSize(1502, 1));
}

TEST_F(ScreenshotCaptureTest, ADisplayWithoutPixelsIsNone) {
    EXPECT_EQ(capture(screen(7, {0, 0, 10, 10}, 1))->captureError(), Case::noDisplay);
    EXPECT_THAT(content.captures, IsEmpty());
}

// --- A window ----------------------------------------------------------------------------------------------

TEST_F(ScreenshotCaptureTest, AWindowIsTakenByItselfWithoutAskingForTheContentAgain) {
    excludedWindowIDs = {42};
    const auto outcome = capture(window(42, {1010, 410, 300.4, 200.2}));
    EXPECT_EQ(content.contentRequests, 0);
    EXPECT_THAT(content.infoRequests, IsEmpty());
    EXPECT_THAT(content.captures,
                ElementsAre(FakeScreenContent::Capture{WindowFilter{42}, everything({600, 400})}));
    ASSERT_TRUE(outcome->value);
    EXPECT_EQ(outcome->value->size(), QSize(600, 400));
}

TEST_F(ScreenshotCaptureTest, TheSizeOfAWindowIsCutOffNotRounded) {
    capture(window(42, {10, 10, 300.9, 200.99}));
    EXPECT_EQ(content.captures.front().configuration.pixels, QSize(300, 200));
}

TEST_F(ScreenshotCaptureTest, TheSizeOfAWindowHasNoLowerBound) {
    capture(window(42, {10, 10, 0.9, 20}));
    EXPECT_EQ(content.captures.front().configuration.pixels, QSize(0, 20));
}

TEST_F(ScreenshotCaptureTest, AWindowOnNoScreenHasTheMainScreensScale) {
    screens.main = screens.all.back();
    capture(window(42, {-5000, 10, 30, 20}));
    EXPECT_EQ(content.captures.front().configuration.pixels, QSize(60, 40));
}

// --- All displays ------------------------------------------------------------------------------------------

TEST_F(ScreenshotCaptureTest, AllDisplaysAreTakenEachWithItsOwnSize) {
    const auto outcome = captureAll();
    EXPECT_THAT(content.captures,
                ElementsAre(FakeScreenContent::Capture{DisplayFilter{1, {}}, everything({1000, 800})},
                            FakeScreenContent::Capture{DisplayFilter{2, {}}, everything({1200, 800})}));
    ASSERT_TRUE(outcome->value);
    EXPECT_EQ(*outcome->value,
              (std::map<std::uint32_t, QImage>{{1, FakeScreenContent::filled({1000, 800})},
                                               {2, FakeScreenContent::filled({1200, 800})}}));
    EXPECT_EQ(content.contentRequests, 1);
}

TEST_F(ScreenshotCaptureTest, TheSizesOfAllDisplaysAreTheScreensOwnCutOff) {
    screens.all = {screen(1, {0, 0, 1001, 333}, 1.5)};
    captureAll();
    EXPECT_EQ(content.captures.front().configuration.pixels, QSize(1501, 499));
    EXPECT_THAT(content.infoRequests, IsEmpty());
}

TEST_F(ScreenshotCaptureTest, AScreenWithoutPixelsIsLeftOut) {
    content.content.displays.erase(content.content.displays.begin());
    const auto outcome = captureAll();
    ASSERT_TRUE(outcome->value);
    EXPECT_EQ(outcome->value->size(), 1u);
    EXPECT_TRUE(outcome->value->contains(2));
}

TEST_F(ScreenshotCaptureTest, NoDisplayAtAllIsAResultToo) {
    screens.all.clear();
    const auto outcome = captureAll();
    ASSERT_TRUE(outcome->value);
    EXPECT_THAT(*outcome->value, IsEmpty());
}

TEST_F(ScreenshotCaptureTest, AllDisplaysAreAskedForBeforeTheFirstAnswers) {
    content.holdsPictures = true;
    const auto outcome = captureAll();
    EXPECT_EQ(content.captures.size(), 2u);

    content.heldPictures.give(1);
    EXPECT_FALSE(outcome->isDone());
    content.heldPictures.give(0);
    ASSERT_TRUE(outcome->value);
    EXPECT_EQ(outcome->value->at(1).size(), QSize(1000, 800));
    EXPECT_EQ(outcome->value->at(2).size(), QSize(1200, 800));
}

TEST_F(ScreenshotCaptureTest, OneDisplayThatFailsLosesAllPicturesOnceTheOthersHaveAnswered) {
    content.holdsPictures = true;
    const auto first = captureAll();
    content.heldPictures.fail(0, screenContentError(Code::displayGone));
    EXPECT_FALSE(first->isDone());
    content.heldPictures.give(1);
    EXPECT_EQ(first->hostError(), Code::displayGone);
    EXPECT_FALSE(first->value);

    const auto second = captureAll();
    content.heldPictures.give(2);
    content.heldPictures.fail(3, screenContentError(Code::noPicture));
    EXPECT_EQ(second->hostError(), Code::noPicture);
    EXPECT_FALSE(second->value);
}

TEST_F(ScreenshotCaptureTest, OfSeveralErrorsTheFirstToHappenIsTold) {
    content.holdsPictures = true;
    const auto outcome = captureAll();
    content.heldPictures.fail(1, screenContentError(Code::displayGone));
    content.heldPictures.fail(0, screenContentError(Code::noPicture));
    EXPECT_EQ(outcome->hostError(), Code::displayGone);
}

// --- What is left out --------------------------------------------------------------------------------------

TEST_F(ScreenshotCaptureTest, WithNothingExcludedTheListIsEmpty) {
    content.content.windows = {window(5), window(6)};
    capture(screens.all.front());
    EXPECT_THAT(content.captures,
                ElementsAre(FakeScreenContent::Capture{DisplayFilter{1, {}}, everything({1000, 800})}));
}

TEST_F(ScreenshotCaptureTest, EveryPictureOfADisplayLeavesOutTheExcludedWindowsThatAreThere) {
    content.content.windows = {window(5), window(6), window(7)};
    excludedWindowIDs = {7, 5, 99};
    capture(screens.all.front());
    capture(ScreenRect{10, 10, 20, 20});
    captureAll();
    ASSERT_EQ(content.captures.size(), 4u);
    for (const auto& each : content.captures)
        EXPECT_THAT(std::get<DisplayFilter>(each.filter).excludedWindowIDs, ElementsAre(5, 7));
    for (const auto& each : content.infoRequests)
        EXPECT_THAT(each.excludedWindowIDs, ElementsAre(5, 7));
}

TEST_F(ScreenshotCaptureTest, WhatIsExcludedIsReadOnceTheContentIsThere) {
    content.content.windows = {window(5), window(6)};
    content.holdsContent = true;
    excludedWindowIDs = {5};
    const auto area = capture(ScreenRect{10, 10, 20, 20});
    const auto all = captureAll();
    const auto display = capture(screens.all.front());
    excludedWindowIDs = {6};
    for (const std::size_t asked : {0u, 1u, 2u})
        content.heldContent.give(asked);

    ASSERT_EQ(content.captures.size(), 4u);
    for (const auto& each : content.captures)
        EXPECT_THAT(std::get<DisplayFilter>(each.filter).excludedWindowIDs, ElementsAre(6));
}

TEST_F(ScreenshotCaptureTest, TheScreensAreReadOnceTheContentIsThere) {
    content.holdsContent = true;
    const auto area = capture(ScreenRect{10, 10, 20, 20});
    screens.all = {screen(2, {0, 0, 600, 400}, 2)};
    content.infos[2].contentRect = {0, 0, 600, 400};
    content.heldContent.give(0);
    EXPECT_EQ(std::get<DisplayFilter>(content.captures.at(0).filter).displayID, 2u);
}

// --- Errors ------------------------------------------------------------------------------------------------

TEST_F(ScreenshotCaptureTest, ErrorsOfTheHostComeThroughUnchanged) {
    content.pictureError = screenContentError(Code::windowGone);
    EXPECT_EQ(capture(window(42))->hostError(), Code::windowGone);
    EXPECT_EQ(capture(screens.all.front())->hostError(), Code::windowGone);
    EXPECT_EQ(capture(ScreenRect{10, 10, 20, 20})->hostError(), Code::windowGone);
    EXPECT_EQ(captureAll()->hostError(), Code::windowGone);

    content.contentError = screenContentError(Code::noPicture);
    EXPECT_EQ(capture(screens.all.front())->hostError(), Code::noPicture);
    EXPECT_EQ(capture(ScreenRect{10, 10, 20, 20})->hostError(), Code::noPicture);
    EXPECT_EQ(captureAll()->hostError(), Code::noPicture);
}

TEST_F(ScreenshotCaptureTest, ItTriesNothingTwice) {
    content.pictureError = screenContentError(Code::noPicture);
    capture(screens.all.front());
    EXPECT_EQ(content.contentRequests, 1);
    EXPECT_EQ(content.captures.size(), 1u);
}

TEST_F(ScreenshotCaptureTest, CapturesThatStillWaitAtTheEndAreUnwound) {
    auto leaving = std::make_unique<FakeScreenContent>();
    leaving->content = content.content;
    leaving->holdsPictures = true;
    const auto all = outcomeOf(captureAllDisplays(*leaving, screens));
    const auto one = outcomeOf(captureDisplay(*leaving, screens.all.front()));
    leaving.reset();
    EXPECT_FALSE(all->isDone() || one->isDone());
    // The frames have let go of what they held.
    EXPECT_EQ(all.use_count(), 1);
    EXPECT_EQ(one.use_count(), 1);
}

} // namespace
} // namespace kestrova
