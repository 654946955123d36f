#include "tests/desktop/Keys.h"
#include "tests/desktop/Mouse.h"
#include "tests/desktop/PaintedWindow.h"
#include "tests/desktop/ScreenPicture.h"
#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/TypingTarget.h"

#include <QDir>
#include <QImage>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

namespace kestrova::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

const QRect wholeDisplay(0, 0, 1280, 800);
const QColor ground(200, 120, 40);
const QColor dimmedGround(130, 78, 26);

/// What of the mouse's buttons reaches another client's window.
class ButtonWatch {
public:
    ButtonWatch(const QByteArray& display, xcb_window_t window) : m_x(display) {
        const std::uint32_t events = XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE;
        xcb_change_window_attributes(m_x.get(), window, XCB_CW_EVENT_MASK, &events);
        const XReply<xcb_get_input_focus_reply_t> carriedOut(
            xcb_get_input_focus_reply(m_x.get(), xcb_get_input_focus(m_x.get()), nullptr));
    }
    /// So far.
    const std::vector<std::uint8_t>& events() {
        while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(m_x.get())}) {
            const auto type = static_cast<std::uint8_t>(event->response_type & 0x7f);
            if (type == XCB_BUTTON_PRESS || type == XCB_BUTTON_RELEASE)
                m_events.push_back(type);
        }
        return m_events;
    }

private:
    XConnection m_x;
    std::vector<std::uint8_t> m_events;
};

/// Captures that a person draws or points at. The desktop has one colour, with windows of others on it.
class AreaCaptureTest : public ShelfTest {
protected:
    // The machine may have nothing to play sounds on, and a preview would lie over what is looked at.
    AreaCaptureTest() {
        program.editDefault(u"captureSoundEnabled"_s, false);
        program.editDefault(u"captureThumbnailEnabled"_s, false);
        const XConnection x(session.display());
        const std::uint32_t pixel = pixelOf(ground);
        xcb_change_window_attributes(x.get(), x.root(), XCB_CW_BACK_PIXEL, &pixel);
        xcb_clear_area(x.get(), 0, x.root(), 0, 0, 0, 0);
        // Closed before it has answered, a connection takes its requests with it.
        const XReply<xcb_get_input_focus_reply_t> carriedOut(
            xcb_get_input_focus_reply(x.get(), xcb_get_input_focus(x.get()), nullptr));
    }

    bool isOverlayOn(const QRect& display) {
        const auto own = windows.ofProcess(program.process().pid());
        return std::ranges::any_of(own,
                                   [&](xcb_window_t window) { return windows.frame(window) == display; });
    }
    static bool isSimilar(const QColor& one, const QColor& other) {
        const auto differ = [](int a, int b) { return std::abs(a - b) > 2; };
        return !differ(one.red(), other.red()) && !differ(one.green(), other.green()) &&
               !differ(one.blue(), other.blue());
    }
    /// A pixel of the ground, far from hints and windows.
    virtual QPoint emptyPlace() const { return {1200, 700}; }
    bool isDimmed() { return isSimilar(windows.colorAt(emptyPlace()), dimmedGround); }
    bool isOver() {
        return eventually([this] { return windows.colorAt(emptyPlace()) == ground; });
    }
    void begin(const QString& mode) {
        const auto answer = program.command({u"capture"_s, mode});
        ASSERT_EQ(answer.exitStatus, 0) << answer.standardError.constData();
        ASSERT_TRUE(eventually([this] { return isDimmed(); }));
    }
    void freeze(const QRect& display = wholeDisplay, int scale = 1) {
        keys.tap(keyAt::f);
        const QPoint withinHint(display.center().x(), display.top() + 36 * scale);
        ASSERT_TRUE(eventually([&] { return windows.colorAt(withinHint).blue() > 150; }));
    }
    QImage newestPicture() {
        const auto id = program.newestRow()[u"id"].toString();
        const auto png = program.command({u"get"_s, id, u"--image"_s, u"-"_s}).standardOutput;
        return QImage::fromData(png, "PNG").convertToFormat(QImage::Format_RGB32);
    }
    /// Points at the window until it is shown undimmed, in the window mode.
    void pointAt(QPoint place, const QColor& color) {
        // The windows may not be known yet when the pointer comes there.
        int moves = 0;
        ASSERT_TRUE(eventually([&] {
            mouse.moveTo(place + QPoint(++moves % 2, 0));
            return windows.colorAt(place) == color;
        }));
    }
    /// Whether a click, when it comes, is all that has reached the window.
    void expectOnlyAClick(ButtonWatch& watch, QPoint place) {
        mouse.click(place);
        ASSERT_TRUE(eventually([&] { return watch.events().size() >= 2; }));
        EXPECT_EQ(watch.events(), (std::vector<std::uint8_t>{XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE}));
    }
    std::unique_ptr<PaintedWindow> paint(const QRect& rect, const QColor& color) {
        return std::make_unique<PaintedWindow>(
            session.display(), PaintedWindowSpec{.rect = rect, .color = color, .isUnmanaged = true});
    }
    /// The ground where the root window's colour is not seen. Over all of the display it would pass for a
    /// screen locker.
    std::unique_ptr<PaintedWindow> paintGround() { return paint(wholeDisplay.adjusted(0, 0, 0, -1), ground); }
    std::unique_ptr<PaintedWindow> openWindow(const QRect& rect, const QColor& color, const QString& title) {
        return std::make_unique<PaintedWindow>(
            session.display(), PaintedWindowSpec{.rect = rect, .color = color, .title = title});
    }

    Mouse mouse{session.display()};
    ScreenPicture screen{session.display()};
};

TEST_F(AreaCaptureTest, ADrawnAreaIsToThePixelWhatIsUnderIt) {
    ASSERT_TRUE(program.start());
    const auto one = paint({311, 217, 120, 90}, Qt::darkBlue);
    const auto other = paint({409, 280, 201, 133}, Qt::green);
    const QRect area(301, 203, 257, 149);
    const auto shown = screen.of(area);
    begin(u"area"_s);
    EXPECT_TRUE(isOverlayOn(wholeDisplay));
    mouse.pull(area.topLeft(), area.bottomRight() + QPoint(1, 1));
    // The hole, up to its last pixel, and the line around it.
    EXPECT_EQ(screen.of(area), shown);
    EXPECT_EQ(windows.colorAt(area.topLeft() - QPoint(1, 1)), QColor(Qt::white));
    EXPECT_EQ(windows.colorAt({area.right() + 1, area.center().y()}), QColor(Qt::white));
    mouse.release();
    ASSERT_TRUE(program.waitForRows(1));
    EXPECT_EQ(newestPicture(), shown);
    EXPECT_TRUE(isOver());
}

TEST_F(AreaCaptureTest, WithACompositorTheDesktopItselfIsSeenThroughTheOverlay) {
    startCompositor();
    const auto below = paintGround();
    const auto moving = paint({100, 600, 100, 100}, Qt::white);
    ASSERT_TRUE(program.start());
    begin(u"area"_s);
    session.run(u"xdotool"_s, {u"windowmove"_s, QString::number(moving->id()), u"600"_s, u"300"_s});
    EXPECT_TRUE(eventually([this] { return isSimilar(windows.colorAt({650, 350}), QColor(166, 166, 166)); }));
    const QRect area(580, 280, 200, 150);
    mouse.drag(area.topLeft(), area.bottomRight() + QPoint(1, 1));
    ASSERT_TRUE(program.waitForRows(1));
    EXPECT_TRUE(isOver());
    EXPECT_EQ(newestPicture(), screen.of(area));
}

TEST_F(AreaCaptureTest, AnAreaUpToTheCornersOfTheScreenIsAllOfIt) {
    ASSERT_TRUE(program.start());
    const auto shown = screen.of(wholeDisplay);
    begin(u"area"_s);
    mouse.drag({0, 0}, wholeDisplay.bottomRight());
    ASSERT_TRUE(program.waitForRows(1));
    EXPECT_EQ(newestPicture(), shown);
}

TEST_F(AreaCaptureTest, TheFrozenScreenIsCapturedAsItWas) {
    ASSERT_TRUE(program.start());
    auto card = paint({400, 300, 100, 80}, Qt::cyan);
    const QRect area(380, 280, 150, 120);
    const auto shown = screen.of(area);
    begin(u"area"_s);
    card.reset();
    freeze();
    mouse.drag(area.topLeft(), area.bottomRight() + QPoint(1, 1));
    ASSERT_TRUE(program.waitForRows(1));
    EXPECT_EQ(newestPicture(), shown);
}

TEST_F(AreaCaptureTest, WhatIsNotFrozenIsCapturedAsItIsInTheEnd) {
    ASSERT_TRUE(program.start());
    auto card = paint({400, 300, 100, 80}, Qt::cyan);
    const QRect area(380, 280, 150, 120);
    begin(u"area"_s);
    card.reset();
    mouse.drag(area.topLeft(), area.bottomRight() + QPoint(1, 1));
    ASSERT_TRUE(program.waitForRows(1));
    QImage empty(area.size(), QImage::Format_RGB32);
    empty.fill(ground);
    EXPECT_EQ(newestPicture(), empty);
}

TEST_F(AreaCaptureTest, TheWindowModeTakesTheFrontOneUnderThePointer) {
    ASSERT_TRUE(program.start());
    const auto back = openWindow({200, 200, 300, 250}, Qt::darkGreen, u"Back"_s);
    const auto front = openWindow({350, 300, 300, 250}, Qt::magenta, u"Front"_s);
    begin(u"window"_s);
    const QPoint overBoth(420, 380);
    pointAt(overBoth, Qt::magenta);
    EXPECT_NE(windows.colorAt({250, 350}), QColor(Qt::darkGreen)) << "the other one is";
    mouse.click(overBoth);
    ASSERT_TRUE(program.waitForRows(1));
    EXPECT_EQ(newestPicture().size(), front->frame().size());
    EXPECT_TRUE(isOver());
}

class AreaCapturePressTest : public AreaCaptureTest, public ::testing::WithParamInterface<bool> {
protected:
    AreaCapturePressTest() {
        if (!GetParam())
            return;
        startCompositor();
        m_ground = paintGround();
        const XConnection x(session.display());
        const std::uint32_t below = XCB_STACK_MODE_BELOW;
        xcb_configure_window(x.get(), m_ground->id(), XCB_CONFIG_WINDOW_STACK_MODE, &below);
        const XReply<xcb_get_input_focus_reply_t> carriedOut(
            xcb_get_input_focus_reply(x.get(), xcb_get_input_focus(x.get()), nullptr));
    }

private:
    std::unique_ptr<PaintedWindow> m_ground;
};

TEST_P(AreaCapturePressTest, ThatPicksAWindowEndsOnNobodyElses) {
    ASSERT_TRUE(program.start());
    const auto target = openWindow({350, 300, 300, 250}, Qt::magenta, u"Target"_s);
    const QPoint within = target->inner().center();
    ButtonWatch watch(session.display(), target->id());
    begin(u"window"_s);
    pointAt(within, Qt::magenta);
    mouse.pull(within, within);
    ASSERT_TRUE(program.waitForRows(1));
    EXPECT_TRUE(isOver()) << "nothing of it is seen though the button is down";
    EXPECT_EQ(screen.of(target->inner()),
              newestPicture().copy(target->inner().translated(-target->frame().topLeft())));
    mouse.release();
    expectOnlyAClick(watch, within);
}

TEST_P(AreaCapturePressTest, ThatEscapeEndsInMidDragEndsOnNobodyElses) {
    ASSERT_TRUE(program.start());
    const auto target = openWindow({350, 300, 300, 250}, Qt::magenta, u"Target"_s);
    const QPoint within = target->inner().center();
    ButtonWatch watch(session.display(), target->id());
    begin(u"area"_s);
    mouse.pull({200, 200}, within);
    keys.tap(keyAt::escape);
    EXPECT_TRUE(isOver());
    mouse.release();
    expectOnlyAClick(watch, within);
    EXPECT_TRUE(program.rows().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Compositors, AreaCapturePressTest, ::testing::Bool(),
                         [](const auto& test) { return test.param ? "Composited" : "Plain"; });

TEST_F(AreaCaptureTest, ACompositorThatEndsLeavesThePictureOfTheDisplay) {
    startCompositor();
    const auto below = paintGround();
    const auto shown = paint({100, 600, 100, 100}, Qt::white);
    ASSERT_TRUE(program.start());
    begin(u"area"_s);
    const auto isShownDimmed = [this] {
        return isDimmed() && isSimilar(windows.colorAt({150, 650}), QColor(166, 166, 166));
    };
    ASSERT_TRUE(eventually(isShownDimmed));
    compositor->end();
    EXPECT_TRUE(eventually(isShownDimmed));
    EXPECT_TRUE(throughout(300ms, isShownDimmed)) << windows.colorAt({150, 650}).name().toStdString();
}

TEST_F(AreaCaptureTest, AfterTheClickThatClosesAnothersMenuItIsAsEver) {
    ASSERT_TRUE(program.start());
    const auto& editor = session.start({.program = u"mousepad"_s});
    const auto window = activateWindowOfClass(session, u"Mousepad"_s).toUInt();
    session.run(u"xdotool"_s, {u"windowmove"_s, u"--sync"_s, QString::number(window), u"10"_s, u"30"_s});
    const auto title = windows.title(window);
    const auto windowCount = [&] { return windows.ofProcess(editor.pid()).size(); };
    const auto without = windowCount();
    ASSERT_TRUE(eventually([&] {
        pressKeys(session, {u"alt+f"_s});
        return eventually([&] { return windowCount() > without && windows.isKeyboardHeld(); }, 2s);
    }));
    begin(u"area"_s);
    // A shorter one leaves this kind of menu open.
    mouse.pull({900, 600}, {900, 600});
    mouse.release();
    ASSERT_TRUE(eventually([&] { return windowCount() == without; }));
    ASSERT_TRUE(eventually([this] { return windows.isKeyboardHeld(); })) << "it is the session's now";
    const QRect hint(490, 30, 300, 30);
    const auto hintOfArea = screen.of(hint);
    freeze();
    keys.tap(keyAt::f);
    ASSERT_TRUE(eventually([&] { return screen.of(hint) == hintOfArea; }));
    keys.tap(keyAt::space);
    ASSERT_TRUE(eventually([&] { return screen.of(hint) != hintOfArea; }));
    keys.tap(keyAt::space);
    ASSERT_TRUE(eventually([&] { return screen.of(hint) == hintOfArea; }));
    mouse.drag({800, 300}, {900, 380});
    ASSERT_TRUE(program.waitForRows(1));
    EXPECT_EQ(newestPicture().size(), QSize(100, 80));
    EXPECT_TRUE(isOver());
    EXPECT_EQ(windows.title(window), title) << "a text that was typed into is marked there";
}

TEST_F(AreaCaptureTest, AClickWhereNoWindowIsLeavesTheChoiceOpen) {
    ASSERT_TRUE(program.start());
    begin(u"window"_s);
    mouse.click({900, 300});
    EXPECT_TRUE(throughout(300ms, [this] { return isDimmed(); }));
    keys.tap(keyAt::escape);
    EXPECT_TRUE(isOver());
    EXPECT_TRUE(program.rows().isEmpty());
}

TEST_F(AreaCaptureTest, AClickWithoutADragCancels) {
    ASSERT_TRUE(program.start());
    begin(u"area"_s);
    mouse.click({500, 400});
    EXPECT_TRUE(isOver());
    EXPECT_TRUE(program.rows().isEmpty());
}

TEST_F(AreaCaptureTest, SpaceDuringADragDropsIt) {
    ASSERT_TRUE(program.start());
    begin(u"area"_s);
    mouse.pull({400, 300}, {600, 450});
    ASSERT_EQ(windows.colorAt({399, 299}), QColor(Qt::white));
    keys.tap(keyAt::space);
    EXPECT_TRUE(eventually([this] { return isSimilar(windows.colorAt({500, 400}), dimmedGround); }));
    mouse.release();
    EXPECT_TRUE(throughout(300ms, [this] { return isDimmed(); })) << "it goes on, in the window mode";
    keys.tap(keyAt::space);
    // Keys and mouse come on different roads; what is frozen shows that the area mode is back.
    freeze();
    mouse.drag({400, 300}, {600, 450});
    ASSERT_TRUE(program.waitForRows(1));
    EXPECT_EQ(newestPicture().size(), QSize(200, 150));
}

TEST_F(AreaCaptureTest, WhatIsTypedMeanwhileReachesNobodyAndTheFocusStays) {
    ASSERT_TRUE(program.start());
    const TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(eventually([&] { return windows.hasKeyboard(target.window(0)); }));
    // The desktop's ground may be covered by the target where it is looked at.
    session.run(u"xdotool"_s,
                {u"windowmove"_s, u"--sync"_s, QString::number(target.window(0)), u"10"_s, u"30"_s});
    begin(u"area"_s);
    EXPECT_TRUE(eventually([this] { return windows.isKeyboardHeld(); }));
    keys.type("secret");
    EXPECT_TRUE(windows.hasKeyboard(target.window(0)));
    keys.tap(keyAt::escape);
    ASSERT_TRUE(isOver());
    ASSERT_TRUE(eventually([this] { return !windows.isKeyboardHeld(); }));
    EXPECT_EQ(target.focusLosses(0), 0);
    keys.type("open");
    EXPECT_TRUE(eventually([&] { return target.typed() == "open"; })) << target.typed().constData();
}

const QRect leftDisplay(0, 0, 640, 800);
const QRect rightDisplay(640, 100, 640, 600);

/// Two displays, the left one at twice the scale.
class AreaCaptureOnTwoDisplaysTest : public AreaCaptureTest {
protected:
    AreaCaptureOnTwoDisplaysTest() {
        session.run(u"xrandr"_s, {u"--setmonitor"_s, u"L"_s, u"640/169x800/211+0+0"_s, u"screen"_s});
        session.run(u"xrandr"_s, {u"--setmonitor"_s, u"R"_s, u"640/169x600/158+640+100"_s, u"none"_s});
        session.environment().insert(u"QT_SCREEN_SCALE_FACTORS"_s, u"L=2;R=1"_s);
    }
    QPoint emptyPlace() const override { return {1200, 650}; }
};

class AreaOnDisplay : public AreaCaptureOnTwoDisplaysTest, public ::testing::WithParamInterface<QRect> {};

TEST_P(AreaOnDisplay, IsToThePixelWhatIsUnderIt) {
    ASSERT_TRUE(program.start());
    const auto one = paint(QRect(GetParam().topLeft() + QPoint(101, 203), QSize(77, 51)), Qt::darkBlue);
    const QRect area(GetParam().topLeft() + QPoint(83, 187), QSize(151, 123));
    const auto shown = screen.of(area);
    begin(u"area"_s);
    EXPECT_TRUE(isOverlayOn(leftDisplay));
    EXPECT_TRUE(isOverlayOn(rightDisplay));
    mouse.drag(area.topLeft(), area.bottomRight() + QPoint(1, 1));
    ASSERT_TRUE(program.waitForRows(1));
    EXPECT_EQ(newestPicture(), shown);
}

INSTANTIATE_TEST_SUITE_P(LeftAndRight, AreaOnDisplay, ::testing::Values(leftDisplay, rightDisplay),
                         [](const auto& row) { return row.index == 0 ? "Left" : "Right"; });

/// The left display has a scale that does not divide its pixels, and its overlay comes up last.
class AreaCaptureOnOddDisplayTest : public AreaCaptureTest {
protected:
    AreaCaptureOnOddDisplayTest() {
        session.run(u"xrandr"_s, {u"--setmonitor"_s, u"R"_s, u"639/169x800/211+641+0"_s, u"screen"_s});
        session.run(u"xrandr"_s, {u"--setmonitor"_s, u"L"_s, u"641/169x800/211+0+0"_s, u"none"_s});
        session.environment().insert(u"QT_SCREEN_SCALE_FACTORS"_s, u"R=1;L=1.5"_s);
    }
};

TEST_F(AreaCaptureOnOddDisplayTest, NoPixelOfTheOtherOneIsCovered) {
    ASSERT_TRUE(program.start());
    const auto across = paint({501, 103, 333, 477}, QColor(30, 160, 60));
    const QRect area(641, 151, 120, 90);
    const auto shown = screen.of(area);
    begin(u"area"_s);
    mouse.pull(area.topLeft(), area.bottomRight() + QPoint(1, 1));
    EXPECT_EQ(screen.of(area), shown) << "up to the first column of the display";
    EXPECT_NE(windows.colorAt({639, 400}), QColor(30, 160, 60)) << "dimmed, up to the last one of the other";
    mouse.release();
    ASSERT_TRUE(program.waitForRows(1));
    EXPECT_EQ(newestPicture(), shown);
}

TEST_F(AreaCaptureOnTwoDisplaysTest, ADragThatEndsOnTheOtherDisplayYieldsThePartOnTheFirst) {
    ASSERT_TRUE(program.start());
    const auto across = paint({501, 303, 333, 177}, QColor(30, 160, 60));
    const QRect part(401, 251, 639 - 401 + 1, 200);
    const auto shown = screen.of(part);
    begin(u"area"_s);
    mouse.drag(part.topLeft(), {900, part.bottom() + 1});
    ASSERT_TRUE(program.waitForRows(1));
    EXPECT_EQ(newestPicture().size(), part.size());
    EXPECT_EQ(newestPicture(), shown);
}

} // namespace
} // namespace kestrova::test
