#include "Kestrova/capture/CapturedThumbnailController.h"

#include "Kestrova/capture/ScreenshotCapture.h"
#include "tests/Kestrova/capture/PngBytes.h"
#include "tests/support/EffectTrace.h"
#include "tests/support/InMemoryUserDefaults.h"
#include "tests/support/ManualMainQueue.h"
#include "tests/support/TracedThumbnailPanel.h"

#include <gmock/gmock.h>

#include <chrono>
#include <vector>

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using ScreenshotCapture::excludedWindowIDs;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr std::uint32_t firstWindow = 41;

QImage picture(const QColor& colour = Qt::red) {
    QImage drawn(4, 3, QImage::Format_RGB32);
    drawn.fill(colour);
    return drawn;
}

class CapturedThumbnailControllerTest : public testing::Test {
protected:
    CapturedThumbnailControllerTest() { excludedWindowIDs.clear(); }
    ~CapturedThumbnailControllerTest() override { excludedWindowIDs.clear(); }

    std::unique_ptr<CapturedThumbnailController> makeController() {
        return std::make_unique<CapturedThumbnailController>(CapturedThumbnailController::Surroundings{
            .screens = screens, .defaults = defaults, .mainQueue = queue, .makePanel = [this] {
                auto made = std::make_unique<TracedThumbnailPanel>(
                    trace, firstWindow + static_cast<std::uint32_t>(panelsMade), [this] { panel = nullptr; });
                made->isRefused = isRefused;
                panel = made.get();
                ++panelsMade;
                return made;
            }});
    }
    void show(const QString& name) { controller->show(picture(), "png of " + name.toUtf8(), name); }
    void setVisibleHeight(double height) {
        screens.all = {Screen{
            .identifier = 1, .frame = {0, 0, 1920, 2000}, .visibleFrame = {0, 0, 1920, height}, .scale = 1}};
    }
    QStringList names() const {
        QStringList all;
        for (const auto& entry : controller->entries())
            all.append(entry.suggestedName);
        return all;
    }
    QUuid id(std::size_t place) const { return controller->entries().at(place).id; }

    ManualMainQueue queue;
    EffectTrace trace{queue};
    // One display of 1920 x 1080, of which a bar takes the upper 80 points.
    FakeScreens screens;
    InMemoryUserDefaults defaults;
    TracedThumbnailPanel* panel = nullptr;
    int panelsMade = 0;
    bool isRefused = false;
    std::unique_ptr<CapturedThumbnailController> controller = makeController();
};

TEST_F(CapturedThumbnailControllerTest, MakesNoWindowBeforeTheFirstShow) {
    EXPECT_FALSE(controller->isWindowUp());
    EXPECT_EQ(panelsMade, 0);
    EXPECT_TRUE(queue.isEmpty());
}

TEST_F(CapturedThumbnailControllerTest, APreviewComesUpAtTheLowerRightAndStays) {
    show(u"a"_s);
    queue.advance(24h);
    EXPECT_THAT(trace.take(),
                ElementsAre(u"0 column.setContent a"_s, u"0 column.setFrame 1648,16 256x196 of 256x948"_s,
                            u"0 column.orderFrontRegardless"_s));
    EXPECT_TRUE(controller->isWindowUp());
    EXPECT_TRUE(queue.isEmpty()) << "there is no timer";
}

TEST_F(CapturedThumbnailControllerTest, FurtherOnesMakeTheColumnGrowUpwardsInTheSameWindow) {
    show(u"a"_s);
    trace.take();
    show(u"b"_s);
    show(u"c"_s);
    EXPECT_THAT(trace.take(),
                ElementsAre(u"0 column.setContent a b"_s, u"0 column.setAlpha 1"_s,
                            u"0 column.setFrame 1648,16 256x384 of 256x948"_s, u"0 column.setContent a b c"_s,
                            u"0 column.setAlpha 1"_s, u"0 column.setFrame 1648,16 256x572 of 256x948"_s));
    EXPECT_EQ(panelsMade, 1);
}

TEST_F(CapturedThumbnailControllerTest, AColumnThatLostItsPlaceMovesToADisplayThatIsThere) {
    show(u"a"_s);
    screens.all = {
        Screen{.identifier = 2, .frame = {0, 0, 1280, 800}, .visibleFrame = {0, 30, 1280, 770}, .scale = 1}};
    trace.take();
    panel->onPlaceLost();
    EXPECT_THAT(trace.take(), ElementsAre(u"0 column.setContent a"_s, u"0 column.setAlpha 1"_s,
                                          u"0 column.setFrame 1008,46 256x196 of 256x572"_s));
}

TEST_F(CapturedThumbnailControllerTest, AColumnThatFadesDoesNotComeBackAtAnotherPlace) {
    show(u"a"_s);
    controller->entryClose(id(0));
    trace.take();
    panel->onPlaceLost();
    EXPECT_THAT(trace.take(), IsEmpty());
}

TEST_F(CapturedThumbnailControllerTest, AnEntryHasAnIdentifierOfItsOwnThePictureThePNGAndTheName) {
    const auto drawn = picture(Qt::blue);
    controller->show(drawn, pngOf(drawn), u"a.png"_s);
    show(u"b"_s);
    const auto& entry = controller->entries().front();
    EXPECT_FALSE(entry.id.isNull());
    EXPECT_NE(entry.id, id(1));
    EXPECT_EQ(entry.image->pixels(), drawn);
    EXPECT_EQ(entry.pngData, pngOf(drawn));
    EXPECT_EQ(entry.suggestedName, u"a.png");
}

struct Enabled {
    QJsonValue stored;
    bool shows;
};
class ThumbnailEnabledTest : public CapturedThumbnailControllerTest,
                             public testing::WithParamInterface<Enabled> {};

TEST_P(ThumbnailEnabledTest, OnlyTheBooleanFalseKeepsPreviewsAway) {
    defaults.set(u"captureThumbnailEnabled"_s, GetParam().stored);
    show(u"a"_s);
    EXPECT_EQ(controller->isWindowUp(), GetParam().shows);
    EXPECT_EQ(controller->entries().size(), GetParam().shows ? 1U : 0U);
    EXPECT_EQ(trace.take().isEmpty(), !GetParam().shows);
}

INSTANTIATE_TEST_SUITE_P(Stored, ThumbnailEnabledTest,
                         testing::Values(Enabled{QJsonValue::Undefined, true}, Enabled{true, true},
                                         Enabled{false, false}, Enabled{0, true}, Enabled{u"false"_s, true},
                                         Enabled{QJsonValue::Null, true}));

TEST_F(CapturedThumbnailControllerTest, PreviewsThatAreUpStayWhenNewOnesAreTurnedOff) {
    show(u"a"_s);
    defaults.set(u"captureThumbnailEnabled"_s, false);
    show(u"b"_s);
    EXPECT_EQ(names(), QStringList{u"a"_s});
    EXPECT_TRUE(panel->visible);
}

struct Limit {
    double height;
    int entries;
};
class ThumbnailLimitTest : public CapturedThumbnailControllerTest,
                           public testing::WithParamInterface<Limit> {};

TEST_P(ThumbnailLimitTest, FollowsFromTheHeightOfTheVisibleFrame) {
    setVisibleHeight(GetParam().height);
    EXPECT_EQ(controller->maxVisibleEntries(), GetParam().entries);
}

INSTANTIATE_TEST_SUITE_P(Heights, ThumbnailLimitTest,
                         testing::Values(Limit{1080, 5}, Limit{500, 2}, Limit{200, 1}, Limit{1167, 5},
                                         Limit{1168, 6}, Limit{2160, 6}, Limit{100'000, 6}, Limit{416, 2},
                                         Limit{415.5, 1}, Limit{40, 1}, Limit{0, 1}));

TEST_F(CapturedThumbnailControllerTest, TheSeventhCaptureOnATallDisplayRemovesTheOldest) {
    setVisibleHeight(2000);
    for (const auto& name : {u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s})
        show(name);
    EXPECT_EQ(names(), (QStringList{u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s}));
    EXPECT_EQ(controller->windowFrame().height, 6 * 180 + 5 * 8 + 16);
}

TEST_F(CapturedThumbnailControllerTest, OnASmallerDisplayAllThatAreTooManyGoAtOnce) {
    setVisibleHeight(2000);
    for (const auto& name : {u"a"_s, u"b"_s, u"c"_s, u"d"_s})
        show(name);
    setVisibleHeight(500);
    show(u"e"_s);
    EXPECT_EQ(names(), (QStringList{u"d"_s, u"e"_s}));
}

TEST_F(CapturedThumbnailControllerTest, AColumnThatIsTooTallForASmallerDisplayIsStillWithinItsLargestFrame) {
    setVisibleHeight(2000);
    for (const auto& name : {u"a"_s, u"b"_s, u"c"_s, u"d"_s})
        show(name);
    setVisibleHeight(500);
    trace.take();
    controller->entryClose(id(0));
    EXPECT_TRUE(trace.take().contains(u"0 column.setFrame 1648,16 256x572 of 256x572"_s));
}

class ThumbnailScreenTest : public CapturedThumbnailControllerTest {
protected:
    ThumbnailScreenTest() {
        screens.all = {left, right};
        screens.main = right;
    }

    Screen left{.identifier = 1, .frame = {0, 0, 1000, 800}, .visibleFrame = {0, 40, 1000, 700}, .scale = 1};
    Screen right{
        .identifier = 2, .frame = {1000, 0, 1000, 900}, .visibleFrame = {1050, 0, 900, 880}, .scale = 2};
};

TEST_F(ThumbnailScreenTest, TheDisplayUnderTheMouseCounts) {
    screens.mouse = {500, 790};
    EXPECT_EQ(controller->activeFrame(), left.visibleFrame);
    EXPECT_EQ(controller->windowFrame(), (ScreenRect{.x = 728, .y = 56, .width = 256, .height = 196}));
    screens.mouse = {1000, 0};
    EXPECT_EQ(controller->activeFrame(), right.visibleFrame);
    EXPECT_EQ(controller->windowFrame(), (ScreenRect{.x = 1678, .y = 16, .width = 256, .height = 196}));
}

TEST_F(ThumbnailScreenTest, ElseTheMainOneElseTheFirstElseNothing) {
    screens.mouse = {500, 850};
    EXPECT_EQ(controller->activeFrame(), right.visibleFrame);
    screens.main.reset();
    EXPECT_EQ(controller->activeFrame(), left.visibleFrame);
    screens.all.clear();
    EXPECT_EQ(controller->activeFrame(), ScreenRect{});
}

TEST_F(ThumbnailScreenTest, ANewCaptureBringsTheColumnToTheDisplayWithTheMouse) {
    screens.mouse = {500, 100};
    show(u"a"_s);
    screens.mouse = {1500, 100};
    trace.take();
    show(u"b"_s);
    EXPECT_TRUE(trace.take().contains(u"0 column.setFrame 1678,16 256x384 of 256x760"_s));
}

TEST_F(CapturedThumbnailControllerTest, WithoutAnyScreenThePreviewIsKept) {
    screens.all.clear();
    show(u"a"_s);
    EXPECT_EQ(names(), QStringList{u"a"_s});
    EXPECT_EQ(controller->maxVisibleEntries(), 1);
}

TEST_F(CapturedThumbnailControllerTest, AClickTellsOfItAndDismissesTheWholeColumn) {
    int told = 0;
    controller->onClick = [&] {
        ++told;
        EXPECT_EQ(names().size(), 2) << "told first";
    };
    show(u"a"_s);
    show(u"b"_s);
    trace.take();
    panel->column.onEntryClick(id(1));
    EXPECT_EQ(told, 1);
    EXPECT_THAT(controller->entries(), IsEmpty());
    queue.advance(10s);
    EXPECT_THAT(trace.take(), ElementsAre(u"0 column.animateAlpha 0 in 180"_s, u"180 column.orderOut"_s));
    EXPECT_FALSE(controller->isWindowUp());
}

TEST_F(CapturedThumbnailControllerTest, TheEditButtonClosesThatPreviewAndLeavesTheOthers) {
    const auto drawn = picture(Qt::blue);
    const auto png = pngOf(drawn);
    QStringList told;
    controller->onEdit = [&](const QImage& image, const QByteArray& data, const QString& name) {
        EXPECT_EQ(image, drawn);
        EXPECT_EQ(data, png);
        EXPECT_EQ(controller->entries().size(), 3U) << "told first";
        told.append(name);
    };
    show(u"a"_s);
    controller->show(drawn, png, u"b"_s);
    show(u"c"_s);
    trace.take();
    panel->column.onEntryEdit(id(1));
    EXPECT_EQ(told, QStringList{u"b"_s});
    EXPECT_EQ(names(), (QStringList{u"a"_s, u"c"_s}));
    EXPECT_THAT(trace.take(), ElementsAre(u"0 column.setContent a c"_s, u"0 column.setAlpha 1"_s,
                                          u"0 column.setFrame 1648,16 256x384 of 256x948"_s));
}

TEST_F(CapturedThumbnailControllerTest, APictureWhosePixelsHaveGoneIsEditedAllTheSame) {
    const auto drawn = picture(Qt::green);
    controller->show(drawn, pngOf(drawn), u"a"_s);
    controller->entries().front().image->letGoOfPixels();
    QImage told;
    controller->onEdit = [&](const QImage& image, const QByteArray&, const QString&) { told = image; };
    controller->entryEdit(id(0));
    EXPECT_EQ(told.convertToFormat(QImage::Format_RGB32), drawn);
}

TEST_F(CapturedThumbnailControllerTest, WithoutCallbacksAnEntryIsRemovedAllTheSame) {
    show(u"a"_s);
    show(u"b"_s);
    controller->entryEdit(id(0));
    EXPECT_EQ(names(), QStringList{u"b"_s});
    controller->entryClicked();
    EXPECT_THAT(controller->entries(), IsEmpty());
}

TEST_F(CapturedThumbnailControllerTest, EditingAnEntryThatHasGoneDoesNothing) {
    int told = 0;
    controller->onEdit = [&](const QImage&, const QByteArray&, const QString&) { ++told; };
    show(u"a"_s);
    trace.take();
    controller->entryEdit(QUuid::createUuid());
    EXPECT_EQ(told, 0);
    EXPECT_THAT(trace.take(), IsEmpty());
}

TEST_F(CapturedThumbnailControllerTest, ClosingOneLeavesTheOthersAndClosingTheLastFades) {
    show(u"a"_s);
    show(u"b"_s);
    panel->column.onEntryClose(id(0));
    EXPECT_EQ(names(), QStringList{u"b"_s});
    trace.take();
    panel->column.onEntryClose(id(0));
    queue.advance(10s);
    EXPECT_THAT(trace.take(), ElementsAre(u"0 column.animateAlpha 0 in 180"_s, u"180 column.orderOut"_s));
}

TEST_F(CapturedThumbnailControllerTest, NoCaptureShowsTheWindowUntilTheFadeHasEnded) {
    excludedWindowIDs = {7};
    show(u"a"_s);
    EXPECT_THAT(excludedWindowIDs, ElementsAre(7, firstWindow));
    controller->entryClose(id(0));
    queue.advance(179ms);
    EXPECT_THAT(excludedWindowIDs, Contains(firstWindow));
    queue.advance(1ms);
    EXPECT_THAT(excludedWindowIDs, ElementsAre(7));
    EXPECT_EQ(panel, nullptr) << "the window has gone";
    show(u"b"_s);
    EXPECT_THAT(excludedWindowIDs, ElementsAre(7, firstWindow + 1));
}

TEST_F(CapturedThumbnailControllerTest, ACaptureWithinTheFadeBringsTheColumnBack) {
    show(u"a"_s);
    controller->entryClicked();
    queue.advance(100ms);
    trace.take();
    show(u"b"_s);
    EXPECT_THAT(trace.take(), ElementsAre(u"100 column.setContent b"_s, u"100 column.setAlpha 1"_s,
                                          u"100 column.setFrame 1648,16 256x196 of 256x948"_s));
    queue.advance(10s);
    EXPECT_THAT(trace.take(), IsEmpty());
    EXPECT_TRUE(panel->visible);
    EXPECT_EQ(panelsMade, 1);
    EXPECT_THAT(excludedWindowIDs, ElementsAre(firstWindow));
}

TEST_F(CapturedThumbnailControllerTest, ASecondClickWithinTheFadeIsToldAndTheFirstFadeEndsIt) {
    int told = 0;
    controller->onClick = [&] { ++told; };
    show(u"a"_s);
    controller->entryClicked();
    queue.advance(100ms);
    controller->entryClicked();
    EXPECT_EQ(told, 2);
    trace.take();
    queue.advance(10s);
    EXPECT_THAT(trace.take(), ElementsAre(u"180 column.orderOut"_s));
    EXPECT_THAT(excludedWindowIDs, IsEmpty());
}

TEST_F(CapturedThumbnailControllerTest, WhatAScreenLockerKeptAwayComesUpWithTheNextChange) {
    isRefused = true;
    show(u"a"_s);
    EXPECT_FALSE(panel->visible);
    EXPECT_THAT(excludedWindowIDs, ElementsAre(firstWindow));
    panel->isRefused = false;
    show(u"b"_s);
    EXPECT_TRUE(panel->visible);
}

TEST_F(CapturedThumbnailControllerTest, ACallbackMayReplaceItselfAndShowAnother) {
    int told = 0;
    controller->onClick = [&, kept = std::make_shared<int>(1)] {
        controller->onClick = nullptr;
        told += *kept;
    };
    show(u"a"_s);
    controller->entryClicked();
    controller->entryClicked();
    EXPECT_EQ(told, 1);
}

TEST_F(CapturedThumbnailControllerTest, WhatOutlivesTheControllerDoesNothing) {
    show(u"a"_s);
    const auto column = panel->column;
    controller->entryClicked();
    trace.take();
    controller.reset();
    EXPECT_THAT(excludedWindowIDs, Not(Contains(firstWindow)));
    queue.advance(10s);
    column.onEntryClick(QUuid());
    column.onEntryEdit(QUuid());
    column.onEntryClose(QUuid());
    EXPECT_THAT(trace.take(), IsEmpty());
}

} // namespace
} // namespace kestrova
