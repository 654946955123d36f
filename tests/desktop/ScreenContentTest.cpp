#include "tests/desktop/ScreenContentFixture.h"

#include <array>
#include <span>
#include <string>
#include <sys/ipc.h>
#include <sys/shm.h>

namespace kestrova::test {
namespace {

TEST_F(ScreenContentTest, DisplaysAreTheOnesOfTheScreensInGlobalPoints) {
    EXPECT_EQ(host().ask(u"content-access"_s), u"1"_s);
    const auto displays = host().ask(u"content-displays"_s).split(u'|');
    ASSERT_EQ(displays.size(), 2);
    EXPECT_EQ(displays[0].section(u' ', 1), u"0 0 320 400"_s);
    EXPECT_EQ(displays[1].section(u' ', 1), u"640 -300 640 600"_s);
}

TEST_F(ScreenContentTest, PicturesOfDisplaysShowEachPixelThatIsOnThem) {
    const auto one = showAt({100, 200, 150, 100}, red);
    const auto across = showAt({600, 300, 80, 60}, green);
    const auto managed = show({.rect = {800, 200, 200, 150}, .color = yellow, .title = u"Lines"_s});
    waitUntilDecorated(*managed);
    const auto first = session.path(u"first"_s);
    const auto second = session.path(u"second"_s);
    ASSERT_EQ(host().ask(u"content-both %1 %2"_s.arg(first, second)), u"done"_s);
    const auto left = pixelsIn(first);
    EXPECT_EQ(left.format(), QImage::Format_RGB32);
    EXPECT_TRUE(looksAlike(left, onScreen(leftDisplay)));
    EXPECT_TRUE(looksAlike(pixelsIn(second), onScreen(rightDisplay)));
    EXPECT_EQ(left.pixelColor(120, 220), red);
    EXPECT_EQ(left.pixelColor(10, 10), backgroundColor);
}

TEST_F(ScreenContentTest, EachByteOfADisplaysPictureIsOpaque) {
    const auto window = showAt({100, 200, 150, 100}, red);
    const auto picture = displayPicture(0, leftDisplay.size());
    ASSERT_EQ(picture.outcome, u"done"_s);
    const auto opaque = [](QRgb pixel) { return qAlpha(pixel) == 255; };
    const auto* const pixels = reinterpret_cast<const QRgb*>(picture.image.constBits());
    EXPECT_TRUE(std::all_of(pixels, pixels + leftDisplay.width() * leftDisplay.height(), opaque));
}

TEST_F(ScreenContentTest, APartOfADisplayIsToldInItsPoints) {
    const auto window = showAt({20, 40, 60, 80}, red);
    const auto picture = displayPicture(0, {60, 80}, u"10 20 30 40"_s);
    ASSERT_EQ(picture.outcome, u"done"_s);
    EXPECT_TRUE(looksAlike(picture.image, plain({60, 80}, red)));
    const auto onRight = displayPicture(1, {30, 40}, u"10 20 30 40"_s);
    EXPECT_TRUE(looksAlike(onRight.image, onScreen({650, 120, 30, 40})));
}

TEST_F(ScreenContentTest, WhatIsNotOnTheDisplayIsTransparent) {
    const auto picture = displayPicture(1, {700, 620});
    ASSERT_EQ(picture.outcome, u"done"_s);
    ASSERT_EQ(picture.image.size(), QSize(700, 620));
    EXPECT_TRUE(looksAlike(picture.image.copy(0, 0, 640, 600), onScreen(rightDisplay)));
    EXPECT_EQ(picture.image.pixelColor(639, 599).alpha(), 255);
    EXPECT_EQ(picture.image.pixelColor(640, 300).alpha(), 0);
    EXPECT_EQ(picture.image.pixelColor(300, 600).alpha(), 0);
}

TEST_F(ScreenContentTest, TheMousePointerIsInNoPicture) {
    const auto window = showAt({700, 200, 100, 100}, red);
    session.run(u"xdotool"_s, {u"mousemove"_s, u"--sync"_s, u"750"_s, u"250"_s});
    EXPECT_TRUE(looksAlike(displayPicture(1, {100, 100}, u"60 100 100 100"_s).image, plain({100, 100}, red)));
}

TEST_F(ScreenContentTest, ADisplayThatWasUnpluggedIsGone) {
    const auto id = displayID(1);
    session.run(u"xrandr"_s, {u"--delmonitor"_s, u"R"_s});
    ASSERT_TRUE(eventually([&] { return host().ask(u"content-displays"_s).count(u'|') == 0; }));
    EXPECT_EQ(pictureByCommand(u"content-display"_s, id + u" 10 10"_s).outcome, u"displayGone"_s);
}

/// Memory of this process that every program on the machine finds by its number.
class NumberedMemory {
public:
    NumberedMemory() : m_number(::shmget(IPC_PRIVATE, size, IPC_CREAT | 0600)) {
        m_memory = m_number < 0 ? reinterpret_cast<void*>(-1) : ::shmat(m_number, nullptr, 0);
        if (m_memory == reinterpret_cast<void*>(-1))
            throw std::runtime_error("no numbered memory");
        std::fill_n(static_cast<char*>(m_memory), size, mark);
    }
    NumberedMemory(const NumberedMemory&) = delete;
    NumberedMemory& operator=(const NumberedMemory&) = delete;
    ~NumberedMemory() {
        ::shmdt(m_memory);
        ::shmctl(m_number, IPC_RMID, nullptr);
    }

    int number() const { return m_number; }
    bool isIntact() const {
        return std::ranges::all_of(std::span(static_cast<const char*>(m_memory), size),
                                   [](char byte) { return byte == mark; });
    }

private:
    static constexpr std::size_t size = 4 * 1024 * 1024;
    static constexpr char mark = 'A';

    int m_number;
    void* m_memory;
};

TEST_F(ScreenContentTest, InAContainerMemoryOfOtherProgramsIsNotTakenForItsOwn) {
    const NumberedMemory others;
    // The next number there would be the one that this program's memory has here.
    const QStringList container{
        u"unshare"_s, u"-r"_s,
        u"-i"_s,      u"sh"_s,
        u"-c"_s,      u"echo %1 > /proc/sys/kernel/shm_next_id && exec \"$0\" \"$@\""_s.arg(others.number())};
    if (session.run(container.first(), container.mid(1) + QStringList{u"true"_s}).exitStatus != 0)
        GTEST_SKIP() << "this machine makes no containers";
    // The toolkit would take the number.
    session.environment().insert(u"QT_XCB_NO_MITSHM"_s, u"1"_s);
    wrapHost(container);
    const auto window = showAt({700, 200, 200, 300}, red);
    const auto picture = displayPicture(1, rightDisplay.size());
    ASSERT_EQ(picture.outcome, u"done"_s);
    EXPECT_TRUE(looksAlike(picture.image, onScreen(rightDisplay)));
    EXPECT_TRUE(others.isIntact());
}

TEST_F(ScreenContentTest, AWindowAcrossScalesIsToldWhereMostOfItLiesAndKeepsItsPixelsAtEachScale) {
    const auto window = showAt({560, 300, 200, 60}, red);
    EXPECT_EQ(lineOf(window->id()).frame, QRectF(560, 300, 200, 60));
    for (const auto size : {QSize(200, 60), QSize(400, 120)})
        EXPECT_TRUE(looksAlike(windowPicture(window->id(), size).image, plain({200, 60}, red)));
    EXPECT_EQ(windowPicture(window->id(), {100, 30}).image.size(), QSize(100, 30));
}

TEST_F(ScreenContentTest, OfSeveralWindowsInOneFrameOnlyTheOneThatIsShownIsOnTheScreen) {
    // The window manager tells of its own windows only.
    const auto makeWindow = [this](xcb_window_t parent, const QRect& rect) {
        const auto window = xcb_generate_id(x.get());
        const std::uint32_t values[]{pixelOf(green), 1};
        xcb_create_window(x.get(), XCB_COPY_FROM_PARENT, window, parent, static_cast<std::int16_t>(rect.x()),
                          static_cast<std::int16_t>(rect.y()), static_cast<std::uint16_t>(rect.width()),
                          static_cast<std::uint16_t>(rect.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
        return window;
    };
    const auto frame = makeWindow(x.root(), {700, 200, 200, 150});
    const std::array tabs{makeWindow(frame, {0, 20, 200, 130}), makeWindow(frame, {0, 20, 200, 130})};
    xcb_map_window(x.get(), tabs[1]);
    xcb_map_window(x.get(), frame);
    xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, x.root(), x.atom("_NET_CLIENT_LIST_STACKING"),
                        XCB_ATOM_WINDOW, 32, tabs.size(), tabs.data());
    xcb_flush(x.get());
    EXPECT_FALSE(lineOf(tabs[0]).isOnScreen);
    EXPECT_TRUE(lineOf(tabs[1]).isOnScreen);
    EXPECT_EQ(orderOf({tabs[0], tabs[1]}), std::vector{tabs[1]});
    EXPECT_EQ(windowPicture(tabs[0], {200, 150}).outcome, u"windowNotReadable"_s);
}

/// A picture of all of a display of that depth, of which every pixel is `pixel`.
Picture pictureAtDepth(int depth, std::uint32_t pixel, QString& access) {
    DesktopSession session(DesktopSession::Bus::Own, DesktopSession::Accessibility::Off, {800, 600}, depth);
    XConnection x(session.display());
    xcb_change_window_attributes(x.get(), x.root(), XCB_CW_BACK_PIXEL, &pixel);
    xcb_clear_area(x.get(), 0, x.root(), 0, 0, 0, 0);
    x.serverTime();
    ProbedHost host(session);
    access = host.ask(u"content-access"_s);
    const auto path = session.path(u"pixels"_s);
    const auto display = host.ask(u"content-displays"_s).section(u' ', 0, 0);
    Picture picture{.outcome = host.ask(u"content-display %1 %2 800 600"_s.arg(path, display)), .image = {}};
    if (picture.outcome == u"done")
        picture.image = pixelsIn(path);
    return picture;
}

TEST(ScreenDepthTest, TenBitsAColourBecomeEight) {
    QString access;
    const auto picture = pictureAtDepth(30, 200U << 22 | 3U << 20 | 30U << 12 | 40U << 2, access);
    EXPECT_EQ(access, u"1"_s);
    ASSERT_EQ(picture.outcome, u"done"_s);
    EXPECT_TRUE(looksAlike(picture.image, plain({800, 600}, red)));
}

TEST(ScreenDepthTest, WhatIsKeptInAnUnknownWayCannotBeTaken) {
    QString access;
    const auto picture = pictureAtDepth(16, 0xFFFF, access);
    EXPECT_EQ(access, u"0"_s);
    EXPECT_EQ(picture.outcome, u"noPicture"_s);
}

TEST_F(ScreenContentTest, ACoveredWindowGivesItsOwnPixels) {
    const auto below = showAt({700, 200, 120, 90}, red);
    const auto half = showAt({760, 150, 200, 200}, green);
    const auto covered = windowPicture(below->id(), {120, 90});
    ASSERT_EQ(covered.outcome, u"done"_s);
    EXPECT_TRUE(looksAlike(covered.image, plain({120, 90}, red)));
    const auto whole = showAt({650, 150, 300, 200}, yellow);
    EXPECT_TRUE(looksAlike(windowPicture(below->id(), {120, 90}).image, plain({120, 90}, red)));
    EXPECT_TRUE(looksAlike(windowPicture(half->id(), {200, 200}).image, plain({200, 200}, green)));
}

TEST_F(ScreenContentTest, AWindowPartlyBeyondTheScreenIsWhole) {
    const auto window = showAt({1200, 650, 150, 200}, red);
    const auto picture = windowPicture(window->id(), {150, 200});
    ASSERT_EQ(picture.outcome, u"done"_s);
    EXPECT_TRUE(looksAlike(picture.image, plain({150, 200}, red)));
}

TEST_F(ScreenContentTest, AWindowIsShownWithItsDecorationAtItsFrame) {
    const auto window = show({.rect = {800, 200, 200, 150}, .color = red, .title = u"Decorated"_s});
    waitUntilDecorated(*window);
    const auto frame = window->frame();
    ASSERT_GT(frame.height(), window->inner().height());
    const auto line = lineOf(window->id());
    EXPECT_EQ(line.frame, QRectF(frame));
    EXPECT_EQ(line.title, u"Decorated"_s);
    EXPECT_EQ(line.layer, 0);
    EXPECT_TRUE(line.isOnScreen);
    EXPECT_EQ(line.identifier, u"Painted"_s);
    const auto picture = windowPicture(window->id(), frame.size());
    ASSERT_EQ(picture.outcome, u"done"_s);
    EXPECT_TRUE(looksAlike(picture.image, onScreen(frame)));
}

TEST_F(ScreenContentTest, TheFrameOfAWindowOnAScaledDisplayIsInPoints) {
    const auto window = showAt({101, 203, 151, 99}, red);
    EXPECT_EQ(lineOf(window->id()).frame, QRectF(50.5, 101.5, 75.5, 49.5));
}

TEST_F(ScreenContentTest, APictureLargerThanTheWindowIsFilledUpWithTransparency) {
    const auto window = showAt({700, 200, 100, 80}, red);
    const auto picture = windowPicture(window->id(), {110, 90});
    ASSERT_EQ(picture.image.size(), QSize(110, 90));
    EXPECT_EQ(picture.image.pixelColor(99, 79), red);
    EXPECT_EQ(picture.image.pixelColor(100, 10).alpha(), 0);
    EXPECT_EQ(picture.image.pixelColor(10, 80).alpha(), 0);
    EXPECT_TRUE(looksAlike(windowPicture(window->id(), {50, 40}).image, plain({50, 40}, red)));
}

TEST_F(ScreenContentTest, ATranslucentWindowKeepsItsTransparency) {
    const QColor veil(200, 100, 50, 128);
    const auto window = showAt({700, 200, 100, 80}, veil);
    const auto picture = windowPicture(window->id(), {100, 80});
    ASSERT_EQ(picture.outcome, u"done"_s);
    EXPECT_EQ(picture.image.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(reinterpret_cast<const QRgb*>(picture.image.constScanLine(40))[50], pixelOf(veil));
}

TEST_F(ScreenContentTest, ADecoratedTranslucentWindowKeepsItsTransparency) {
    const QColor veil(200, 100, 50, 128);
    const auto window = show({.rect = {800, 200, 200, 150}, .color = veil});
    const auto frame = window->frame();
    const auto picture = windowPicture(window->id(), frame.size());
    ASSERT_EQ(picture.outcome, u"done"_s);
    const auto centre = window->inner().center() - frame.topLeft();
    EXPECT_EQ(reinterpret_cast<const QRgb*>(picture.image.constScanLine(centre.y()))[centre.x()],
              pixelOf(veil));
    EXPECT_EQ(picture.image.pixelColor(frame.width() / 2, 5).alpha(), 255);
}

TEST_F(ScreenContentTest, OutsideTheShapeOfAWindowItsPictureIsTransparent) {
    const auto window = show(
        {.rect = {700, 200, 100, 80}, .color = red, .isUnmanaged = true, .shape = QRegion(10, 20, 50, 40)});
    const auto picture = windowPicture(window->id(), {100, 80});
    ASSERT_EQ(picture.outcome, u"done"_s);
    EXPECT_EQ(picture.image.pixelColor(10, 20), red);
    EXPECT_EQ(picture.image.pixelColor(59, 59), red);
    EXPECT_EQ(picture.image.pixelColor(9, 30).alpha(), 0);
    EXPECT_EQ(picture.image.pixelColor(60, 30).alpha(), 0);
}

TEST_F(ScreenContentTest, TheShadowThatAWindowDrawsItselfIsLeftOut) {
    const auto window = show({.rect = {700, 200, 100, 80}, .color = red, .isUnmanaged = true, .shadow = 12});
    EXPECT_EQ(lineOf(window->id()).frame, QRectF(712, 212, 76, 56));
    EXPECT_EQ(windowPicture(window->id(), {76, 56}).image.size(), QSize(76, 56));
    EXPECT_TRUE(looksAlike(windowPicture(window->id(), {76, 56}).image, plain({76, 56}, red)));
}

TEST_F(ScreenContentTest, AClosedWindowIsGone) {
    auto window = showAt({700, 200, 100, 80}, red);
    const auto id = window->id();
    ASSERT_EQ(windowPicture(id, {100, 80}).outcome, u"done"_s);
    window.reset();
    EXPECT_TRUE(eventually([&] { return windowPicture(id, {100, 80}).outcome == u"windowGone"; }));
}

TEST_F(ScreenContentTest, AMinimisedWindowIsNotOnTheScreenAndCannotBeRead) {
    const auto window = show({.rect = {800, 200, 200, 150}, .color = red});
    window->minimise();
    EXPECT_FALSE(lineOf(window->id()).isOnScreen);
    EXPECT_TRUE(orderOf({window->id()}).empty());
    EXPECT_EQ(windowPicture(window->id(), {200, 150}).outcome, u"windowNotReadable"_s);
}

TEST_F(ScreenContentTest, AWindowOfAnotherDesktopIsNotOnTheScreen) {
    const auto window = show({.rect = {800, 200, 200, 150}, .color = red});
    window->moveToDesktop(1);
    EXPECT_FALSE(lineOf(window->id()).isOnScreen);
    EXPECT_TRUE(orderOf({window->id()}).empty());
}

TEST_F(ScreenContentTest, TheOrderIsFromTheFrontToTheBack) {
    const auto one = show({.rect = {800, 200, 200, 150}, .color = red});
    const auto two = show({.rect = {850, 250, 200, 150}, .color = green});
    const auto menu = showAt({700, 200, 100, 80}, yellow);
    const std::set all{one->id(), two->id(), menu->id()};
    one->raise();
    EXPECT_TRUE(eventually([&] { return orderOf(all) == std::vector{menu->id(), one->id(), two->id()}; }));
    two->raise();
    EXPECT_TRUE(eventually([&] { return orderOf(all) == std::vector{menu->id(), two->id(), one->id()}; }));
}

TEST_F(ScreenContentTest, WhatIsNoOrdinaryWindowIsOnAnotherLayer) {
    const auto menu = showAt({700, 200, 100, 80}, yellow);
    const auto dock = show({.rect = {640, 100, 300, 30}, .color = green, .type = "_NET_WM_WINDOW_TYPE_DOCK"});
    const auto dialog =
        show({.rect = {800, 200, 200, 150}, .color = red, .type = "_NET_WM_WINDOW_TYPE_DIALOG"});
    const auto desktop =
        show({.rect = {0, 0, 1280, 800}, .color = red, .type = "_NET_WM_WINDOW_TYPE_DESKTOP"});
    EXPECT_GT(lineOf(menu->id()).layer, 0);
    EXPECT_GT(lineOf(dock->id()).layer, 0);
    EXPECT_EQ(lineOf(dialog->id()).layer, 0);
    EXPECT_LT(lineOf(desktop->id()).layer, 0);
    EXPECT_EQ(orderOf({dock->id(), desktop->id()}), std::vector{dock->id()});
}

TEST_F(ScreenContentTest, TheProgramsOwnWindowsAreItsOwn) {
    const auto window = host().ask(u"place 700 -100 100 200"_s).toUInt();
    EXPECT_TRUE(eventually([&] {
        const auto all = windows();
        return std::ranges::any_of(all, [window](const WindowLine& line) {
            return line.window == window && line.identifier == u"org.example.HostProbe";
        });
    }));
}

/// The left display at a scale that divides its pixels into no whole points.
class FractionalScaleTest : public ScreenContentTest, public ::testing::WithParamInterface<double> {
protected:
    FractionalScaleTest() {
        session.environment().insert(u"QT_SCREEN_SCALE_FACTORS"_s, u"L=%1;R=1"_s.arg(GetParam()));
        session.environment().insert(u"QT_SCALE_FACTOR_ROUNDING_POLICY"_s, u"PassThrough"_s);
    }
};

TEST_P(FractionalScaleTest, ThePictureOfADisplayHasItsPixels) {
    const auto window = showAt({100, 200, 151, 99}, red);
    const auto managed = show({.rect = {800, 200, 200, 150}, .color = yellow});
    const auto first = session.path(u"first"_s);
    ASSERT_EQ(host().ask(u"content-both %1 %2"_s.arg(first, session.path(u"second"_s))), u"done"_s);
    EXPECT_TRUE(looksAlike(pixelsIn(first), onScreen(leftDisplay)));
    const auto frame = lineOf(window->id()).frame;
    EXPECT_NEAR(frame.width() * GetParam(), 151, 1e-3);
    EXPECT_NEAR(frame.x() * GetParam(), 100, 1e-3);
}

INSTANTIATE_TEST_SUITE_P(Scales, FractionalScaleTest, ::testing::Values(1.25, 1.5, 1.75));

} // namespace
} // namespace kestrova::test
