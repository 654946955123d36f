#include "Kestrova/capture/widgets/HUDPanelWidget.h"

#include "Kestrova/capture/widgets/HUDView.h"
#include "tests/support/FakeWindowManagement.h"

#include <QPainter>
#include <QTest>
#include <QVariantAnimation>

#include <gtest/gtest.h>

#include <chrono>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

class HUDPanelWidgetTest : public testing::Test {
protected:
    template<typename Condition>
    static bool waitFor(Condition condition) {
        constexpr int deadlineMs = 10'000;
        return QTest::qWaitFor(condition, deadlineMs);
    }
    ScreenRect fittingFrame(double x, double y) const {
        const auto size = panel.fittingSize();
        return {.x = x, .y = y, .width = size.width(), .height = size.height()};
    }
    void show() {
        panel.setContent(HUDEvent::copied, [this] { ++taps; });
        panel.setFrame(fittingFrame(200, 100));
        panel.orderFrontRegardless();
    }
    /// Waits until all animations that run now have had their next turn.
    bool waitForAnimations() {
        QVariantAnimation clock;
        clock.setStartValue(0.0);
        clock.setEndValue(1.0);
        clock.setDuration(30);
        clock.start();
        return waitFor([&] { return clock.state() == QAbstractAnimation::Stopped; });
    }
    /// What the window shows, over that colour.
    QImage picture(const QColor& desktop) {
        QImage drawn(panel.size(), QImage::Format_RGB32);
        drawn.fill(desktop);
        panel.render(&drawn, {}, {}, QWidget::DrawChildren | QWidget::IgnoreMask);
        return drawn;
    }
    QRect shape() const { return panel.view().geometry(); }

    FakeWindowManagement windowManagement;
    int taps = 0;
    int rests = 0;
    HUDPanelWidget panel{{.windowManagement = windowManagement,
                          .toolkitRect =
                              [](const ScreenRect& frame) {
                                  return QRectF(frame.x, frame.y, frame.width, frame.height).toRect();
                              },
                          .onRest = [this] { ++rests; }}};
};

TEST_F(HUDPanelWidgetTest, NeverTakesTheKeyboardNorAsksTheWindowManager) {
    EXPECT_TRUE(panel.windowFlags().testFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                                              Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus));
    EXPECT_TRUE(panel.testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_FALSE(panel.testAttribute(Qt::WA_QuitOnClose));
    EXPECT_EQ(panel.focusPolicy(), Qt::NoFocus);
    EXPECT_EQ(panel.view().focusPolicy(), Qt::NoFocus);
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(HUDPanelWidgetTest, TheFrameIsThatOfTheShapeWithoutTheRoomOfTheShadow) {
    show();
    const auto size = panel.fittingSize().toSize();
    EXPECT_EQ(shape().translated(panel.pos()), QRect(QPoint(200, 100), size));
    EXPECT_EQ(panel.frame(), fittingFrame(200, 100));
    EXPECT_TRUE(panel.rect().contains(shape().marginsAdded({20, 16, 20, 24})));
}

TEST_F(HUDPanelWidgetTest, GlidesAndFadesToTheEndValues) {
    show();
    panel.setAlpha(0);
    EXPECT_EQ(panel.windowOpacity(), 0);
    const auto shapePlace = [this] { return shape().translated(panel.pos()).topLeft(); };
    panel.animate(fittingFrame(200, 94), 1, 40ms, AnimationTiming::easeOut);
    EXPECT_TRUE(waitFor([&] { return panel.windowOpacity() == 1 && shapePlace() == QPoint(200, 94); }));
    EXPECT_EQ(panel.frame(), fittingFrame(200, 94));
}

TEST_F(HUDPanelWidgetTest, AValueThatIsSetTakesOverFromTheAnimation) {
    show();
    panel.animate(fittingFrame(200, 50), 0, 10s, AnimationTiming::easeOut);
    EXPECT_TRUE(waitFor([&] { return panel.windowOpacity() < 1; }));
    panel.setFrame(fittingFrame(200, 100));
    panel.setAlpha(1);
    ASSERT_TRUE(waitForAnimations());
    EXPECT_EQ(panel.frame(), fittingFrame(200, 100));
    EXPECT_EQ(panel.windowOpacity(), 1);
}

TEST_F(HUDPanelWidgetTest, OrderedOutItHidesStandsStillAndRests) {
    show();
    panel.animate(fittingFrame(200, 50), 0, 10s, AnimationTiming::easeOut);
    panel.orderOut();
    EXPECT_FALSE(panel.isVisible());
    EXPECT_EQ(rests, 1);
    const auto left = panel.frame();
    const auto opacity = panel.windowOpacity();
    ASSERT_TRUE(waitForAnimations());
    EXPECT_EQ(panel.frame(), left);
    EXPECT_EQ(panel.windowOpacity(), opacity);
}

TEST_F(HUDPanelWidgetTest, BehindAScreenLockerItDoesNotShowAndATapIsNone) {
    windowManagement.covered = true;
    show();
    EXPECT_FALSE(panel.isVisible());
    windowManagement.covered = false;
    show();
    ASSERT_TRUE(panel.isVisible());
    windowManagement.covered = true;
    QTest::mouseClick(panel.windowHandle(), Qt::LeftButton, {}, shape().center());
    EXPECT_EQ(taps, 0);
    windowManagement.covered = false;
    QTest::mouseClick(panel.windowHandle(), Qt::LeftButton, {}, shape().center());
    EXPECT_EQ(taps, 1);
}

TEST_F(HUDPanelWidgetTest, ATapIsTold) {
    show();
    QTest::mouseClick(panel.windowHandle(), Qt::LeftButton, {}, shape().center());
    EXPECT_EQ(taps, 1);
    int others = 0;
    panel.setContent(HUDEvent::copied, [&] { ++others; });
    QTest::mouseClick(panel.windowHandle(), Qt::LeftButton, {}, shape().center());
    EXPECT_EQ(taps, 1);
    EXPECT_EQ(others, 1);
}

TEST_F(HUDPanelWidgetTest, OnlyTheShapeTakesPresses) {
    show();
    EXPECT_EQ(windowManagement.limitedWindow, panel.winId());
    const auto takes = [this](QPoint point) {
        return windowManagement.presses.contains((QPointF(point) * panel.devicePixelRatioF()).toPoint());
    };
    EXPECT_TRUE(takes(shape().center()));
    EXPECT_TRUE(takes(QPoint(shape().left() + 1, shape().center().y())));
    EXPECT_FALSE(takes(shape().topLeft())) << "a corner";
    EXPECT_FALSE(takes(QPoint(shape().center().x(), shape().bottom() + 2))) << "the shadow";
    EXPECT_FALSE(takes(QPoint(shape().left() - 2, shape().center().y())));
}

TEST_F(HUDPanelWidgetTest, TheShapeFollowsAWiderContent) {
    show();
    const int before = windowManagement.presses.boundingRect().width();
    panel.setContent(HUDEvent::pasted, {});
    panel.setFrame(fittingFrame(190, 100));
    EXPECT_GT(windowManagement.presses.boundingRect().width(), before + 10);
    EXPECT_EQ(shape().width(), static_cast<int>(panel.fittingSize().width()));
}

TEST_F(HUDPanelWidgetTest, TheShadowLiesBelowTheShapeAndFadesBeforeTheWindowEnds) {
    show();
    const auto drawn = picture(Qt::white);
    const auto shade = [&](int x, int y) { return 255 - drawn.pixelColor(x, y).lightness(); };
    const int middle = shape().center().x();
    EXPECT_GT(shade(middle, shape().bottom() + 2), 15);
    EXPECT_GT(shade(middle, shape().bottom() + 3), shade(middle, shape().top() - 3)) << "it is moved down";
    for (int x = 0; x < drawn.width(); ++x) {
        EXPECT_LE(shade(x, 0), 3) << x;
        EXPECT_LE(shade(x, drawn.height() - 1), 3) << x;
    }
    for (int y = 0; y < drawn.height(); ++y) {
        EXPECT_LE(shade(0, y), 3) << y;
        EXPECT_LE(shade(drawn.width() - 1, y), 3) << y;
    }
}

TEST_F(HUDPanelWidgetTest, WithoutACompositorItIsOpaqueHasTheShapeAndNoShadow) {
    windowManagement.compositing = false;
    show();
    EXPECT_EQ(panel.mask().boundingRect(), shape());
    EXPECT_FALSE(panel.mask().contains(shape().topLeft()));
    EXPECT_TRUE(panel.mask().contains(shape().center()));
    const auto drawn = picture(Qt::white);
    EXPECT_EQ(drawn.pixelColor(shape().center().x(), shape().bottom() + 3), QColor(Qt::white));
    EXPECT_NEAR(drawn.pixelColor(shape().left() + 6, shape().center().y()).red(), 31, 1);
    panel.orderOut();
    windowManagement.compositing = true;
    show();
    EXPECT_TRUE(panel.mask().isEmpty());
}

} // namespace
} // namespace kestrova
