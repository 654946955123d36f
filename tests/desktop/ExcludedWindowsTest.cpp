#include "tests/desktop/ScreenContentFixture.h"

namespace kestrova::test {
namespace {

enum class Compositor { None, Running };

/// A display's pictures without some windows.
class ExcludedWindowsTest : public ScreenContentTest, public ::testing::WithParamInterface<Compositor> {
protected:
    ExcludedWindowsTest() {
        if (GetParam() == Compositor::None)
            return;
        startCompositorOverBackground();
    }

    /// Waits until it is what a person sees; till then it may still have every window painted anew.
    void startCompositorOverBackground(const QStringList& more = {}) {
        leaveBackgroundPixmap();
        // The compositor covers it with the pixmap.
        showBackground(yellow);
        startCompositor(more);
        if (!waitForPixel({5, 5}, backgroundColor))
            throw std::runtime_error("the compositor does not show the background");
    }

    void startCompositor(const QStringList& more = {}) {
        session.start(
            {.program = u"picom"_s,
             .arguments = QStringList{u"--config"_s, u"/dev/null"_s, u"--backend"_s, u"xrender"_s} + more});
        const auto selection = x.atom("_NET_WM_CM_S0");
        const auto isRunning = [&] {
            const XReply<xcb_get_selection_owner_reply_t> owner(
                xcb_get_selection_owner_reply(x.get(), xcb_get_selection_owner(x.get(), selection), nullptr));
            return owner && owner->owner != XCB_NONE;
        };
        if (!eventually(isRunning))
            throw std::runtime_error("there is no compositor");
    }

    /// As programs do that set the background, for compositors.
    void leaveBackgroundPixmap() {
        const auto pixmap = xcb_generate_id(x.get());
        xcb_create_pixmap(x.get(), 24, pixmap, x.root(), 1280, 800);
        const auto context = xcb_generate_id(x.get());
        const auto pixel = pixelOf(backgroundColor);
        xcb_create_gc(x.get(), context, pixmap, XCB_GC_FOREGROUND, &pixel);
        const xcb_rectangle_t all{0, 0, 1280, 800};
        xcb_poly_fill_rectangle(x.get(), pixmap, context, 1, &all);
        tellBackgroundPixmap(pixmap);
    }
    void tellBackgroundPixmap(xcb_pixmap_t pixmap) {
        for (const auto* const name : {"_XROOTPMAP_ID", "ESETROOT_PMAP_ID"})
            xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, x.root(), x.atom(name), XCB_ATOM_PIXMAP, 32,
                                1, &pixmap);
        xcb_flush(x.get());
    }

    /// Of two colours in turn, repeated all over.
    void showSmallTile() {
        const auto pixmap = xcb_generate_id(x.get());
        xcb_create_pixmap(x.get(), 24, pixmap, x.root(), 7, 5);
        const auto context = xcb_generate_id(x.get());
        auto pixel = pixelOf(backgroundColor);
        xcb_create_gc(x.get(), context, pixmap, XCB_GC_FOREGROUND, &pixel);
        const xcb_rectangle_t all{0, 0, 7, 5};
        xcb_poly_fill_rectangle(x.get(), pixmap, context, 1, &all);
        pixel = pixelOf(yellow);
        xcb_change_gc(x.get(), context, XCB_GC_FOREGROUND, &pixel);
        const xcb_rectangle_t some{0, 0, 3, 2};
        xcb_poly_fill_rectangle(x.get(), pixmap, context, 1, &some);
        xcb_change_window_attributes(x.get(), x.root(), XCB_CW_BACK_PIXMAP, &pixmap);
        xcb_clear_area(x.get(), 0, x.root(), 0, 0, 0, 0);
        tellBackgroundPixmap(pixmap);
    }

    bool waitForPixel(QPoint at, const QColor& color) {
        return eventually([&] { return onScreen({at, QSize(1, 1)}).pixelColor(0, 0) == color; });
    }

    /// Shows a window and waits until a person sees its middle.
    std::unique_ptr<PaintedWindow> showAndSee(const QRect& rect, const QColor& color) {
        auto window = showAt(rect, color);
        if (!waitForPixel(rect.center(), color))
            throw std::runtime_error("the window is not seen");
        return window;
    }

    QImage rightWithout(const QList<const PaintedWindow*>& excluded) {
        QString numbers;
        for (const auto* const window : excluded)
            numbers += u" %1"_s.arg(window->id());
        return displayPicture(1, rightDisplay.size(), u"without"_s + numbers).image;
    }
};

TEST_P(ExcludedWindowsTest, AnExcludedWindowIsNotInThePictureAndWhatItCoversIs) {
    const auto below = showAndSee({700, 200, 200, 150}, red);
    const auto before = onScreen(rightDisplay);
    const auto excluded = showAndSee({800, 250, 256, 200}, green);
    EXPECT_TRUE(looksAlike(rightWithout({excluded.get()}), before));
    EXPECT_TRUE(looksAlike(rightWithout({excluded.get()}), before));
    EXPECT_TRUE(looksAlike(rightWithout({}), onScreen(rightDisplay)));
    EXPECT_EQ(onScreen({900, 300, 1, 1}).pixelColor(0, 0), green);
}

TEST_P(ExcludedWindowsTest, TwoExcludedWindowsMayOverlap) {
    const auto below = showAndSee({700, 200, 200, 150}, red);
    const auto before = onScreen(rightDisplay);
    const auto one = showAndSee({800, 250, 256, 200}, green);
    const auto two = showAndSee({850, 300, 256, 200}, yellow);
    EXPECT_TRUE(looksAlike(rightWithout({one.get(), two.get()}), before));
}

TEST_P(ExcludedWindowsTest, WhatIsInFrontOfAnExcludedWindowStays) {
    const auto excluded = showAndSee({800, 250, 256, 200}, green);
    const auto front = showAndSee({850, 300, 100, 100}, yellow);
    auto expected = plain(rightDisplay.size(), backgroundColor);
    for (int y = 0; y < 100; ++y) {
        for (int column = 0; column < 100; ++column)
            expected.setPixelColor(210 + column, 200 + y, yellow);
    }
    EXPECT_TRUE(looksAlike(rightWithout({excluded.get()}), expected));
}

TEST_P(ExcludedWindowsTest, AnExcludedWindowOverATranslucentOneLeavesTheMixture) {
    const auto below = showAndSee({700, 200, 200, 150}, red);
    const auto veil = showAt({750, 200, 200, 150}, QColor(0, 0, 250, 128));
    // Nothing is mixed without a compositor.
    const auto expected = GetParam() == Compositor::None ? QColor(0, 0, 125) : QColor(100, 15, 145);
    ASSERT_TRUE(waitForPixel({800, 250}, expected));
    const auto before = onScreen(rightDisplay);
    const auto excluded = showAndSee({800, 250, 256, 200}, green);
    EXPECT_TRUE(looksAlike(rightWithout({excluded.get()}), before));
}

TEST_P(ExcludedWindowsTest, ADecoratedWindowBelowIsPaintedAnewWithItsDecoration) {
    const auto below = show({.rect = {800, 200, 200, 150}, .color = red});
    ASSERT_TRUE(waitForPixel(below->inner().center(), red));
    waitUntilDecorated(*below);
    const auto before = onScreen(rightDisplay);
    const auto excluded = showAndSee({750, 150, 300, 300}, green);
    EXPECT_TRUE(looksAlike(rightWithout({excluded.get()}), before));
}

TEST_P(ExcludedWindowsTest, AWindowThatHasGoneNeedNotBeExcluded) {
    auto excluded = showAndSee({800, 250, 256, 200}, green);
    const auto gone = excluded->id();
    excluded.reset();
    ASSERT_TRUE(waitForPixel({900, 300}, backgroundColor));
    EXPECT_TRUE(looksAlike(displayPicture(1, rightDisplay.size(), u"without %1"_s.arg(gone)).image,
                           plain(rightDisplay.size(), backgroundColor)));
}

TEST_P(ExcludedWindowsTest, TheBackgroundBelowMayBeASmallPictureOverAndOver) {
    showSmallTile();
    ASSERT_TRUE(waitForPixel({7 * 100, 5 * 60}, yellow));
    const auto before = onScreen(rightDisplay);
    const auto excluded = showAndSee({801, 253, 256, 200}, green);
    EXPECT_TRUE(looksAlike(rightWithout({excluded.get()}), before));
}

TEST_P(ExcludedWindowsTest, ThePointerDoesNotLeaveTheWindowInWhichItIs) {
    const auto excluded = showAndSee({800, 250, 256, 200}, green);
    session.run(u"xdotool"_s, {u"mousemove"_s, u"--sync"_s, u"900"_s, u"300"_s});
    const std::uint32_t events = XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW;
    xcb_change_window_attributes(x.get(), excluded->id(), XCB_CW_EVENT_MASK, &events);
    x.serverTime();
    rightWithout({excluded.get()});
    x.serverTime();
    while (const XReply<xcb_generic_event_t> event{xcb_poll_for_queued_event(x.get())}) {
        EXPECT_NE(event->response_type, XCB_ENTER_NOTIFY);
        EXPECT_NE(event->response_type, XCB_LEAVE_NOTIFY);
    }
}

TEST_P(ExcludedWindowsTest, WhatAnExcludedWindowsShapeLeavesFreeStaysAsItIs) {
    const auto below = showAndSee({700, 200, 300, 300}, red);
    const auto before = onScreen(rightDisplay);
    const auto excluded = show({.rect = {750, 150, 300, 400},
                                .color = green,
                                .isUnmanaged = true,
                                .shape = QRegion(0, 0, 50, 400) + QRegion(250, 0, 50, 400)});
    ASSERT_TRUE(waitForPixel({760, 160}, green));
    EXPECT_TRUE(looksAlike(rightWithout({excluded.get()}), before));
}

INSTANTIATE_TEST_SUITE_P(Compositors, ExcludedWindowsTest,
                         ::testing::Values(Compositor::None, Compositor::Running));

/// With a compositor that is started by the test.
class CompositedExcludedWindowsTest : public ExcludedWindowsTest {};

TEST_P(CompositedExcludedWindowsTest,
       WhereAnExcludedWindowIsTransparentTheScreenStaysAsTheCompositorShowsIt) {
    startCompositorOverBackground({u"--shadow"_s});
    const auto below = showAndSee({700, 200, 200, 150}, red);
    // Shadows are not a part of any window.
    const auto isShadowed = [this](QPoint at) {
        return onScreen({at, QSize(1, 1)}).pixelColor(0, 0) != backgroundColor;
    };
    ASSERT_TRUE(eventually([&] { return isShadowed({902, 300}); }));
    const auto glass = showAt({690, 150, 300, 300}, QColor(0, 0, 0, 0));
    ASSERT_TRUE(eventually([&] { return isShadowed({992, 300}); }));
    const auto seen = onScreen(rightDisplay);
    EXPECT_TRUE(looksAlike(rightWithout({glass.get()}), seen));
}

TEST_P(CompositedExcludedWindowsTest, ABackgroundOfWhichNobodyTellsIsLikeTheRestOfIt) {
    startCompositor();
    // It shows a colour of its own.
    const auto isComposited = [this] {
        const auto picture = onScreen(rightDisplay);
        return looksAlike(picture, plain(rightDisplay.size(), picture.pixelColor(0, 0))) &&
               picture.pixelColor(0, 0) != backgroundColor;
    };
    ASSERT_TRUE(eventually(isComposited));
    const auto below = showAndSee({700, 200, 200, 150}, red);
    const auto before = onScreen(rightDisplay);
    ASSERT_NE(before.pixelColor(600, 500), QColor(Qt::black));
    const auto excluded = showAndSee({800, 250, 256, 200}, green);
    EXPECT_TRUE(looksAlike(rightWithout({excluded.get()}), before));
}

INSTANTIATE_TEST_SUITE_P(Late, CompositedExcludedWindowsTest, ::testing::Values(Compositor::None));

} // namespace
} // namespace kestrova::test
