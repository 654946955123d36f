#include "Kestrova/capture/SelectionOverlayView.h"

#include "tests/Kestrova/capture/AreaCaptureSessionFixture.h"

#include <limits>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::IsEmpty;
using testing::SizeIs;

/// Each character is 8 points wide.
QSizeF textSize(const QString& text, OverlayFont font) {
    return {8.0 * double(text.size()), font == OverlayFont::medium12 ? 15.0 : 13.0};
}

/// On display 2, whose lower left corner is (1920, -180) and whose size is 1280 x 800.
class SelectionOverlayViewTest : public AreaCaptureSessionFixture {
protected:
    SelectionOverlayViewTest() {
        show({window(7, {2000, 500, 400, 300}, u"Notes"_s)});
        select(CaptureMode::area);
    }

    SelectionOverlayView& shown() { return view(1); }
    OverlayDrawing drawing() { return shown().drawing(&textSize); }
    void enterWindowMode() {
        key(Key::space);
        queue.turn();
    }
};

TEST_F(SelectionOverlayViewTest, BeforeTheMouseComesThereIsTheFreezeHintAlone) {
    const auto picture = drawing();
    EXPECT_FALSE(picture.background);
    EXPECT_FALSE(picture.hole);
    EXPECT_FALSE(picture.stroke);
    const QString text = u"F — 화면 고정 (hover 카드 · 메뉴 캡처)"_s;
    const double width = 8.0 * double(text.size());
    ASSERT_THAT(picture.badges, SizeIs(1));
    EXPECT_EQ(picture.badges[0],
              (OverlayBadge{.frame = {(1280 - width - 20) / 2, 800 - 15 - 20 - 24, width + 20, 25},
                            .cornerRadius = 6,
                            .fill = {OverlayFill::Color::black, 0.6},
                            .text = text,
                            .font = OverlayFont::medium12,
                            .textOrigin = {(1280 - width - 20) / 2 + 10, 800 - 15 - 20 - 24 + 5}}));
}

TEST_F(SelectionOverlayViewTest, FrozenItDrawsThePictureAndSaysSo) {
    key(Key::f);
    const auto picture = drawing();
    ASSERT_TRUE(picture.background);
    EXPECT_EQ(picture.background->cacheKey(), shown().frozenImage()->cacheKey());
    ASSERT_THAT(picture.badges, SizeIs(1));
    EXPECT_EQ(picture.badges[0].text, u"화면 고정됨 — hover 카드 캡처 가능   ·   F 로 해제"_s);
    EXPECT_EQ(picture.badges[0].fill, (OverlayFill{OverlayFill::Color::systemBlue, 0.85}));
    EXPECT_EQ(picture.badges[0].cornerRadius, 6);
}

TEST_F(SelectionOverlayViewTest, TheHintDoesNotDependOnThePicture) {
    shown().setFrozenImage(std::nullopt);
    shown().setShowsFrozen(true);
    EXPECT_FALSE(drawing().background);
    EXPECT_EQ(drawing().badges[0].fill.color, OverlayFill::Color::systemBlue);
}

TEST_F(SelectionOverlayViewTest, TheCoordinatesUnderTheMouseAreGlobalAndRounded) {
    shown().mouseMoved({100.5, 300.25});
    const auto picture = drawing();
    ASSERT_THAT(picture.badges, SizeIs(2));
    EXPECT_EQ(picture.badges[0], (OverlayBadge{.frame = {116.5, 300.25 - 13 - 5 - 8, 9 * 8 + 10, 18},
                                               .cornerRadius = 4,
                                               .fill = {OverlayFill::Color::black, 0.7},
                                               .text = u"2021, 120"_s,
                                               .font = OverlayFont::medium11TabularDigits,
                                               .textOrigin = {121.5, 300.25 - 13 - 5 - 8 + 2.5}}));
    EXPECT_TRUE(picture.badges[1].text.startsWith(u"F — "_s));
    shown().mouseMoved({100.4, 79.5});
    EXPECT_EQ(drawing().badges[0].text, u"2020, -101"_s);
}

struct CoordinatePlace {
    QPointF point;
    QPointF origin;
};

class CoordinateBadgeTest : public SelectionOverlayViewTest,
                            public testing::WithParamInterface<CoordinatePlace> {};

TEST_P(CoordinateBadgeTest, TurnsToTheOtherSideAtTheRightAndAtTheLowerEdge) {
    shown().mouseMoved(GetParam().point);
    const auto frame = drawing().badges.at(0).frame;
    EXPECT_EQ(QPointF(frame.x, frame.y), GetParam().origin);
}

// Of "3104, 120" it is 82 points wide, and 18 high: it reaches to the right from 16, and downwards from 8.
INSTANTIATE_TEST_SUITE_P(Places, CoordinateBadgeTest,
                         testing::Values(CoordinatePlace{{1178, 300}, {1194, 274}},
                                         CoordinatePlace{{1178.25, 300}, {1080.25, 274}},
                                         CoordinatePlace{{1278, 300}, {1180, 274}},
                                         CoordinatePlace{{100, 210}, {116, 184}},
                                         CoordinatePlace{{100, 30}, {116, 4}},
                                         CoordinatePlace{{100, 29.75}, {116, 37.75}},
                                         CoordinatePlace{{1279, 1}, {1173, 9}}));

TEST_F(SelectionOverlayViewTest, NoCoordinatesDuringADragNorWithoutTheMouse) {
    shown().mouseMoved({100, 300});
    shown().mouseDown({100, 300});
    EXPECT_THAT(drawing().badges, SizeIs(1));
    shown().mouseDragged({100, 300});
    EXPECT_THAT(drawing().badges, SizeIs(1));
    key(Key::space);
    key(Key::space);
    EXPECT_THAT(drawing().badges, SizeIs(1));
    shown().mouseExited({-1, 300});
    EXPECT_FALSE(shown().hoverPoint());
    EXPECT_THAT(drawing().badges, SizeIs(1));
}

TEST_F(SelectionOverlayViewTest, ASelectionHasAHoleAStrokeAndItsSize) {
    shown().setSelectionRectGlobal({2020.5, -80, 300.5, 200.4});
    const auto picture = drawing();
    const ScreenRect hole{100.5, 100, 300.5, 200.4};
    EXPECT_EQ(picture.hole, hole);
    EXPECT_EQ(picture.stroke, (ScreenRect{100, 99.5, 301.5, 201.4}));
    ASSERT_THAT(picture.badges, SizeIs(1));
    const auto& badge = picture.badges[0];
    EXPECT_EQ(badge.text, u"301 × 200"_s);
    EXPECT_EQ(badge.font, OverlayFont::medium11);
    EXPECT_EQ(badge.cornerRadius, 4);
    EXPECT_EQ(badge.fill, (OverlayFill{OverlayFill::Color::black, 0.7}));
    EXPECT_EQ(badge.frame, (ScreenRect{hole.maxX() - 72 - 12, 100 - 13 - 6 - 2, 84, 19}));
    EXPECT_EQ(badge.textOrigin, QPointF(badge.frame.x + 6, badge.frame.y + 3));
}

TEST_F(SelectionOverlayViewTest, TheSizeDoesNotGoBelowTheDisplay) {
    shown().setSelectionRectGlobal({2020, -180 + 20, 300, 200});
    EXPECT_EQ(drawing().badges[0].frame.y, 0);
    shown().setSelectionRectGlobal({2020, -180 + 22, 300, 200});
    EXPECT_EQ(drawing().badges[0].frame.y, 1);
}

TEST_F(SelectionOverlayViewTest, ASelectionOnAnotherDisplayIsOneHereToo) {
    shown().mouseMoved({100, 300});
    view(0).mouseDown({100, 100});
    view(0).mouseDragged({400, 300});
    const auto picture = drawing();
    EXPECT_EQ(picture.hole, (ScreenRect{100 - 1920, 280, 300, 200}));
    ASSERT_THAT(picture.badges, SizeIs(1));
    EXPECT_EQ(picture.badges[0].text, u"300 × 200"_s);
    EXPECT_EQ(picture.badges[0].frame.maxX(), 400 - 1920);
}

TEST_F(SelectionOverlayViewTest, AnEmptySelectionIsNone) {
    shown().mouseMoved({100, 300});
    for (const ScreenRect& empty : {ScreenRect{2020, 0, 0, 100}, ScreenRect{2020, 0, 100, 0},
                                    ScreenRect{2020, 0, std::numeric_limits<double>::quiet_NaN(), 100}}) {
        shown().setSelectionRectGlobal(empty);
        EXPECT_FALSE(drawing().hole);
        EXPECT_THAT(drawing().badges, SizeIs(2));
    }
}

TEST_F(SelectionOverlayViewTest, WithoutAPanelThereIsNoSelection) {
    SelectionOverlayView alone{screens.all[1]};
    alone.setSelectionRectGlobal({2020, 0, 100, 100});
    EXPECT_FALSE(alone.drawing(&textSize).hole);
    alone.setMode(CaptureMode::window);
    alone.setHoveredWindowFrameGlobal(ScreenRect{2020, 0, 100, 100});
    EXPECT_FALSE(alone.drawing(&textSize).hole);
}

TEST_F(SelectionOverlayViewTest, WindowModeLeavesTheHoveredWindowClearAndNamesIt) {
    enterWindowMode();
    shown().mouseMoved({100, 790});
    auto picture = drawing();
    EXPECT_FALSE(picture.hole);
    EXPECT_EQ(picture.badges.at(0).text, u"윈도우 캡처 — Space 로 영역, ESC 취소"_s);
    shown().mouseMoved({100, 500});
    picture = drawing();
    EXPECT_EQ(picture.hole, (ScreenRect{80, 460, 400, 300}));
    EXPECT_FALSE(picture.stroke);
    const QString text = u"윈도우 캡처 — Space 로 영역, ESC 취소   ·   Notes"_s;
    const double width = 8.0 * double(text.size());
    ASSERT_THAT(picture.badges, SizeIs(1));
    EXPECT_EQ(picture.badges[0], (OverlayBadge{.frame = {(1280 - width - 20) / 2, 741, width + 20, 25},
                                               .cornerRadius = 6,
                                               .fill = {OverlayFill::Color::black, 0.75},
                                               .text = text,
                                               .font = OverlayFont::medium12,
                                               .textOrigin = {(1280 - width - 20) / 2 + 10, 746}}));
    EXPECT_EQ(view(0).drawing(&textSize).hole, (ScreenRect{2000, 280, 400, 300}));
}

TEST_F(SelectionOverlayViewTest, AnEmptyTitleIsNotNamed) {
    enterWindowMode();
    shown().setHoveredWindowTitle(u""_s);
    EXPECT_EQ(drawing().badges.at(0).text, u"윈도우 캡처 — Space 로 영역, ESC 취소"_s);
}

TEST_F(SelectionOverlayViewTest, ATitleThatIsTooLongForTheDisplayIsCutOffAtAWholeCharacter) {
    enterWindowMode();
    // 158 units fit into the display beside the padding; a family is one character of eight.
    const QString hint = u"윈도우 캡처 — Space 로 영역, ESC 취소   ·   "_s;
    const QString family = u"👨‍👩‍👦"_s;
    ASSERT_EQ(family.size(), 8);
    const QString title = QString(154 - hint.size(), u'a') + family;
    shown().setHoveredWindowTitle(title);
    const auto cut = drawing().badges.at(0);
    EXPECT_EQ(cut.text, hint + title.chopped(family.size()) + u'…');
    EXPECT_GE(cut.frame.x, 0);
    EXPECT_LE(cut.frame.maxX(), 1280);
    shown().setHoveredWindowTitle(title.first(157 - hint.size() - 4));
    EXPECT_EQ(drawing().badges.at(0).text, hint + title.first(157 - hint.size() - 4));
}

TEST_F(SelectionOverlayViewTest, WindowModeShowsNoFrozenPictureAndNoCoordinates) {
    shown().mouseMoved({100, 700});
    enterWindowMode();
    shown().setShowsFrozen(true);
    EXPECT_FALSE(drawing().background);
    EXPECT_THAT(drawing().badges, SizeIs(1));
}

TEST_F(SelectionOverlayViewTest, EnteringWindowModeClearsTheSelectionAtOnce) {
    shown().mouseDown({100, 100});
    shown().mouseDragged({400, 300});
    ASSERT_TRUE(drawing().hole);
    key(Key::space);
    EXPECT_FALSE(drawing().hole);
    key(Key::space);
    EXPECT_FALSE(drawing().hole);
}

TEST_F(SelectionOverlayViewTest, EachSetterMarksForRedraw) {
    const auto marks = [this](const auto& set) {
        const int before = panels.all[1]->displaysNeeded;
        set(shown());
        return panels.all[1]->displaysNeeded > before;
    };
    using View = SelectionOverlayView;
    EXPECT_TRUE(marks([](View& each) { each.setMode(CaptureMode::area); }));
    EXPECT_TRUE(marks([](View& each) { each.setFrozenImage(std::nullopt); }));
    EXPECT_TRUE(marks([](View& each) { each.setShowsFrozen(false); }));
    EXPECT_TRUE(marks([](View& each) { each.setSelectionRectGlobal({}); }));
    EXPECT_TRUE(marks([](View& each) { each.setHoveredWindowFrameGlobal(std::nullopt); }));
    EXPECT_TRUE(marks([](View& each) { each.setHoveredWindowTitle(std::nullopt); }));
}

using Handler = void (SelectionOverlayView::*)(const OverlayPointer&);

struct HandlerRow {
    const char* name;
    Handler handler;
    bool marksWhileDragging;
};

void PrintTo(const HandlerRow& row, std::ostream* out) {
    *out << row.name;
}

class MouseHandlerTest : public SelectionOverlayViewTest, public testing::WithParamInterface<HandlerRow> {};

TEST_P(MouseHandlerTest, NotesTheMouseAndSetsTheCursor) {
    trace.take();
    const auto target = panels.all[1]->view;
    ((*target).*GetParam().handler)({100, 300});
    EXPECT_THAT(trace.take(), testing::Contains(u"50 panel2.setCursor crosshair"_s));
    const bool hasLeft = GetParam().handler == &SelectionOverlayView::mouseExited;
    EXPECT_EQ(target->hoverPoint(), hasLeft ? std::nullopt : std::optional(QPointF(100, 300)));
}

TEST_P(MouseHandlerTest, MarksForRedrawDuringADragOnlyWhatBelongsToIt) {
    const auto target = panels.all[1]->view;
    target->mouseDown({100, 300});
    const int before = panels.all[1]->displaysNeeded;
    ((*target).*GetParam().handler)({200, 400});
    EXPECT_EQ(panels.all[1]->displaysNeeded > before, GetParam().marksWhileDragging);
}

// A release ends the session with its panels, and there is nothing to draw any more.
INSTANTIATE_TEST_SUITE_P(
    Handlers, MouseHandlerTest,
    testing::Values(HandlerRow{"mouseDown", &SelectionOverlayView::mouseDown, true},
                    HandlerRow{"mouseDragged", &SelectionOverlayView::mouseDragged, true},
                    HandlerRow{"mouseUp", &SelectionOverlayView::mouseUp, false},
                    HandlerRow{"mouseMoved", &SelectionOverlayView::mouseMoved, false},
                    HandlerRow{"mouseEntered", &SelectionOverlayView::mouseEntered, false},
                    HandlerRow{"mouseExited", &SelectionOverlayView::mouseExited, false}));

TEST_F(SelectionOverlayViewTest, WithoutADragTheMouseMarksForRedraw) {
    for (const Handler handler : {&SelectionOverlayView::mouseMoved, &SelectionOverlayView::mouseEntered,
                                  &SelectionOverlayView::mouseExited}) {
        const int before = panels.all[1]->displaysNeeded;
        (shown().*handler)({100, 300});
        EXPECT_GT(panels.all[1]->displaysNeeded, before);
    }
}

TEST_F(SelectionOverlayViewTest, ADragInWindowModeHovers) {
    enterWindowMode();
    shown().mouseDown({100, 790});
    shown().mouseDragged({100, 500});
    EXPECT_EQ(hovered(), 7U);
    EXPECT_EQ(shown().selectionRectGlobal(), ScreenRect{});
    shown().mouseUp({100, 500});
    EXPECT_TRUE(isRunning());
}

TEST_F(SelectionOverlayViewTest, ADragWithoutAPressSelectsNothing) {
    shown().mouseDragged({400, 300});
    EXPECT_EQ(shown().selectionRectGlobal(), ScreenRect{});
}

TEST_F(SelectionOverlayViewTest, TheCursorFollowsTheMode) {
    shown().cursorUpdate();
    EXPECT_EQ(panels.all[1]->cursor, OverlayCursor::crosshair);
    shown().setMode(CaptureMode::window);
    shown().cursorUpdate();
    EXPECT_EQ(panels.all[1]->cursor, OverlayCursor::openHand);
}

TEST_F(SelectionOverlayViewTest, AViewOfASessionThatHasGoneDoesNothing) {
    const auto left = panels.all[1]->view;
    left->cancelOperation();
    queue.turn();
    session.reset();
    left->mouseDown({1, 1});
    left->mouseDragged({90, 90});
    left->mouseUp({90, 90});
    left->mouseMoved({5, 5});
    left->cancelOperation();
    EXPECT_EQ(left->selectionRectGlobal(), ScreenRect{});
    EXPECT_TRUE(isCancelled());
}

} // namespace
} // namespace kestrova
