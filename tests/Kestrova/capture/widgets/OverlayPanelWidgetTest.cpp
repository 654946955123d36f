#include "Kestrova/capture/widgets/OverlayPanelWidget.h"

#include "Kestrova/capture/SelectionOverlayView.h"
#include "Kestrova/capture/widgets/CrosshairCursor.h"
#include "Kestrova/capture/widgets/SelectionOverlayWidget.h"
#include "tests/support/FakeWindowManagement.h"
#include "tests/support/ManualMainQueue.h"

#include <QGuiApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPointer>
#include <QScreen>
#include <QTest>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using Panel = OverlayPanelWidget;

class OverlayPanelWidgetTest : public testing::Test {
protected:
    OverlayPanelWidgetTest() {
        panel->setContentView(view);
        view->setPanel(panel.get());
    }
    ~OverlayPanelWidgetTest() override { view->setPanel(nullptr); }

    static QScreen& display() { return *QGuiApplication::primaryScreen(); }
    static double scale() { return display().devicePixelRatio(); }
    static QRect pixels() { return {display().geometry().topLeft(), display().geometry().size() * scale()}; }
    static Screen screen() {
        const QSizeF size = display().geometry().size();
        return {.identifier = 1,
                .frame = {100, 50, size.width(), size.height()},
                .visibleFrame = {},
                .scale = scale()};
    }
    Panel::Surroundings surroundings() {
        return {.mainQueue = queue,
                .windowManagement = windowManagement,
                .crosshair = crosshair,
                .place = Panel::Place{.screen = &display(), .pixels = pixels()},
                .pointOfPixel =
                    [this](QPoint pixel, Panel::PixelPoint meaning) {
                        // As far apart as on a display, and seen at once.
                        const QPointF inPixel =
                            meaning == Panel::PixelPoint::centre ? QPointF(0.25, 0.25) : QPointF();
                        const QPointF fromCorner = QPointF(pixel - pixels().topLeft()) / scale() + inPixel;
                        const auto frame = screen().frame;
                        return QPointF(frame.x + fromCorner.x(), frame.maxY() - fromCorner.y());
                    },
                .onRest = [this] { ++rests; }};
    }
    SelectionOverlayWidget& window() { return panel->window(); }
    /// Brings it up, and deals with what the toolkit tells a new window of the pointer.
    void show() {
        panel->orderFrontRegardless();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window()));
    }
    void move(QPoint to) {
        QMouseEvent moved(QEvent::MouseMove, to, window().mapToGlobal(to), Qt::NoButton, Qt::NoButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&window(), &moved);
    }
    /// What is shown, over nothing.
    QImage picture() {
        QImage image(pixels().size(), QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale());
        image.fill(Qt::transparent);
        window().render(&image, {}, {}, QWidget::DrawChildren);
        return image;
    }
    int height() const { return display().geometry().height(); }

    ManualMainQueue queue;
    FakeWindowManagement windowManagement;
    CrosshairCursor crosshair;
    int rests = 0;
    std::unique_ptr<Panel> panel = std::make_unique<Panel>(surroundings());
    std::shared_ptr<SelectionOverlayView> view = std::make_shared<SelectionOverlayView>(screen());
};

TEST_F(OverlayPanelWidgetTest, NeverTakesTheFocusNorAsksTheWindowManager) {
    EXPECT_TRUE(window().windowFlags().testFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                                                 Qt::BypassWindowManagerHint | Qt::NoDropShadowWindowHint |
                                                 Qt::WindowDoesNotAcceptFocus));
    EXPECT_TRUE(window().testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_FALSE(window().testAttribute(Qt::WA_QuitOnClose));
    EXPECT_FALSE(window().isVisible());
}

TEST_F(OverlayPanelWidgetTest, CoversTheDisplay) {
    panel->orderFrontRegardless();
    panel->makeKey();
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(window().geometry(), display().geometry());
    EXPECT_EQ(window().screen(), &display());
    panel->orderOut();
    EXPECT_FALSE(window().isVisible());
    EXPECT_EQ(rests, 1);
}

TEST_F(OverlayPanelWidgetTest, ADisplayThatHasGoneGetsNoWindow) {
    auto without = surroundings();
    without.place.reset();
    Panel other(without);
    other.setContentView(view);
    other.orderFrontRegardless();
    EXPECT_FALSE(other.window().isVisible());
}

TEST_F(OverlayPanelWidgetTest, ThePointerIsTheOneOfTheMode) {
    panel->orderFrontRegardless();
    EXPECT_EQ(window().cursor().shape(), Qt::BitmapCursor);
    EXPECT_EQ(window().cursor().pixmap().size(), QSize(24, 24) * scale());
    view->setMode(CaptureMode::window);
    move({40, 40});
    EXPECT_EQ(window().cursor().shape(), Qt::OpenHandCursor);
    panel->setCursor(OverlayCursor::arrow);
    EXPECT_EQ(window().cursor().shape(), Qt::ArrowCursor);
}

TEST_F(OverlayPanelWidgetTest, TheMouseIsToldInPointsOfTheViewWithYUpwards) {
    show();
    move({40, 30});
    ASSERT_TRUE(view->hoverPoint());
    EXPECT_EQ(*view->hoverPoint(), QPointF(40, height() - 30));
    QTest::mousePress(window().windowHandle(), Qt::LeftButton, {}, {50, 60});
    EXPECT_TRUE(view->isDragging());
    EXPECT_EQ(*view->hoverPoint(), QPointF(50, height() - 60));
    QTest::mouseRelease(window().windowHandle(), Qt::LeftButton, {}, {70, 80});
    EXPECT_FALSE(view->isDragging());
    EXPECT_EQ(*view->hoverPoint(), QPointF(70, height() - 80));
}

TEST_F(OverlayPanelWidgetTest, TheCoordinatesAreThoseOfThePixelsCornerInBothModes) {
    show();
    move({40, 30});
    EXPECT_EQ(*view->hoverPoint(), QPointF(40, height() - 30));
    view->setMode(CaptureMode::window);
    move({41, 30});
    EXPECT_EQ(*view->hoverPoint(), QPointF(41, height() - 30));
}

TEST_F(OverlayPanelWidgetTest, OtherButtonsDoNothing) {
    show();
    QTest::mouseClick(window().windowHandle(), Qt::RightButton, {}, {50, 60});
    QTest::mousePress(window().windowHandle(), Qt::MiddleButton, {}, {50, 60});
    EXPECT_FALSE(view->isDragging());
    QTest::mouseRelease(window().windowHandle(), Qt::MiddleButton, {}, {50, 60});
}

TEST_F(OverlayPanelWidgetTest, LeavingForgetsThePointer) {
    show();
    move({40, 30});
    ASSERT_TRUE(view->hoverPoint());
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&window(), &leave);
    EXPECT_FALSE(view->hoverPoint());
}

TEST_F(OverlayPanelWidgetTest, ShowsWhatTheViewDrawsAsSoonAsItIsInFront) {
    view->setSelectionRectGlobal({150, 100, 200, 100});
    panel->orderFrontRegardless();
    const auto image = picture();
    const auto alphaAt = [&](int x, int y) { return qAlpha(image.pixel(QPoint(x, y) * scale())); };
    EXPECT_EQ(alphaAt(100, height() - 100), 0) << "in the selection";
    EXPECT_EQ(alphaAt(10, 10), 89);
    EXPECT_EQ(alphaAt(100, height() - 20), 89) << "below it";
}

TEST_F(OverlayPanelWidgetTest, AChangeIsPaintedInTheNextTurn) {
    panel->orderFrontRegardless();
    ASSERT_EQ(qAlpha(picture().pixel(QPoint(100, height() - 100) * scale())), 89);
    view->setSelectionRectGlobal({150, 100, 200, 100});
    QCoreApplication::processEvents();
    EXPECT_EQ(qAlpha(picture().pixel(QPoint(100, height() - 100) * scale())), 0);
}

TEST_F(OverlayPanelWidgetTest, WhereNothingIsBlendedThePictureOfTheDisplayIsUnderTheDimming) {
    QImage frozen(pixels().size(), QImage::Format_RGB32);
    frozen.fill(QColor(100, 200, 0));
    view->setFrozenImage(frozen);
    panel->orderFrontRegardless();
    EXPECT_EQ(picture().pixel(3, 3), qRgba(0, 0, 0, 89)) << "the desktop itself, where windows are blended";
    panel->orderOut();
    windowManagement.compositing = false;
    panel->orderFrontRegardless();
    const QColor dimmed = picture().pixelColor(3, 3);
    EXPECT_EQ(dimmed.alpha(), 255);
    EXPECT_NEAR(dimmed.red(), 65, 1);
    EXPECT_NEAR(dimmed.green(), 130, 1);
}

TEST_F(OverlayPanelWidgetTest, ACompositorThatEndsLeavesThePictureUnderTheDimming) {
    QImage frozen(pixels().size(), QImage::Format_RGB32);
    frozen.fill(QColor(100, 200, 0));
    view->setFrozenImage(frozen);
    panel->orderFrontRegardless();
    ASSERT_EQ(picture().pixel(3, 3), qRgba(0, 0, 0, 89));
    windowManagement.compositing = false;
    windowManagement.tellOfChange();
    EXPECT_NEAR(picture().pixelColor(3, 3).green(), 130, 1);
    windowManagement.compositing = true;
    windowManagement.tellOfChange();
    EXPECT_EQ(picture().pixel(3, 3), qRgba(0, 0, 0, 89)) << "and one that starts again";
    panel->orderOut();
    EXPECT_FALSE(windowManagement.tellOfChange) << "there is nothing to paint any more";
}

TEST_F(OverlayPanelWidgetTest, NothingIsCutOffWherePointsDivideThePixels) {
    EXPECT_FALSE(windowManagement.cut);
}

class PressOnOverlay : public OverlayPanelWidgetTest, public testing::WithParamInterface<Qt::MouseButton> {
protected:
    void SetUp() override {
        show();
        QTest::mousePress(window().windowHandle(), GetParam(), {}, {50, 60});
    }
    static bool isSeen(const SelectionOverlayWidget& overlay) {
        return overlay.isVisible() && overlay.geometry().intersects(display().virtualGeometry());
    }
};

TEST_P(PressOnOverlay, EndsOnItThoughItIsOut) {
    const QPointer<SelectionOverlayWidget> left(&window());
    panel->orderOut();
    EXPECT_FALSE(isSeen(*left));
    EXPECT_TRUE(left->isVisible()) << "hidden, it would not get the release";
    view->setPanel(nullptr);
    panel.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_FALSE(left.isNull());
    EXPECT_EQ(view.use_count(), 1);
    QTest::mouseRelease(left->windowHandle(), GetParam(), {}, {50, 60});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(left.isNull());
}

TEST_P(PressOnOverlay, IsNotWaitedForForever) {
    const QPointer<SelectionOverlayWidget> left(&window());
    panel->orderOut();
    view->setPanel(nullptr);
    panel.reset();
    queue.advance(std::chrono::seconds{9});
    EXPECT_TRUE(left->isVisible());
    queue.advance(std::chrono::seconds{1});
    EXPECT_FALSE(left->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(left.isNull());
    // The toolkit would take the button for held in what follows.
    QWindow other;
    other.resize(10, 10);
    QTest::mouseRelease(&other, GetParam());
}

TEST_P(PressOnOverlay, DoesNotKeepItAwayWhenItComesUpAgain) {
    panel->orderOut();
    panel->orderFrontRegardless();
    EXPECT_TRUE(isSeen(window()));
    EXPECT_EQ(window().geometry(), display().geometry());
    QTest::mouseRelease(window().windowHandle(), GetParam(), {}, {50, 60});
    EXPECT_TRUE(isSeen(window()));
}

INSTANTIATE_TEST_SUITE_P(Buttons, PressOnOverlay, testing::Values(Qt::LeftButton, Qt::RightButton),
                         [](const auto& row) { return row.index == 0 ? "Left" : "Right"; });

TEST_F(OverlayPanelWidgetTest, APanelThatGoesWithinAnEventLeavesTheWindowForLater) {
    panel->orderFrontRegardless();
    const QPointer<SelectionOverlayWidget> left(&window());
    view->setPanel(nullptr);
    panel.reset();
    ASSERT_FALSE(left.isNull());
    EXPECT_FALSE(left->isVisible());
    EXPECT_EQ(view.use_count(), 1) << "it has let go of the view";
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(left.isNull());
}

} // namespace
} // namespace kestrova
