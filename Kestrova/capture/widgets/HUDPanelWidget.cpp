#include "Kestrova/capture/widgets/HUDPanelWidget.h"

#include "Kestrova/capture/widgets/HUDView.h"
#include "Kestrova/look/Easing.h"
#include "Kestrova/look/Outline.h"
#include "Platform/WindowManagement.h"

#include <QGraphicsDropShadowEffect>
#include <QGuiApplication>
#include <QMargins>
#include <QScreen>

#include <utility>

namespace kestrova {

namespace {

// The toolkit counts the whole width of the blur.
constexpr double shadowBlur = 2 * 12;
constexpr int shadowReach = 24;
constexpr int shadowOffset = 4;
constexpr float shadowOpacity = 0.25F;
constexpr QMargins shadowRoom(shadowReach, shadowReach - shadowOffset, shadowReach,
                              shadowReach + shadowOffset);

void run(QVariantAnimation& animation, const QVariant& from, const QVariant& to, AnimationDuration duration,
         AnimationTiming timing) {
    animation.stop();
    animation.setStartValue(from);
    animation.setEndValue(to);
    animation.setDuration(static_cast<int>(duration.count()));
    animation.setEasingCurve(easing(timing));
    animation.start();
}

QRectF values(const ScreenRect& rect) {
    return {rect.x, rect.y, rect.width, rect.height};
}

ScreenRect screenRect(const QRectF& values) {
    return {.x = values.x(), .y = values.y(), .width = values.width(), .height = values.height()};
}

} // namespace

HUDPanelWidget::HUDPanelWidget(Surroundings surroundings)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus |
                           Qt::NoDropShadowWindowHint),
      m_surroundings(std::move(surroundings)),
      m_view(new HUDView(this)),
      m_shadow(new QGraphicsDropShadowEffect(m_view)) {
    setWindowTitle(QStringLiteral("Kestrova"));
    // Also where nothing is blended now: a compositor may start later, and the window's depth never changes.
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    // Tells a compositor that this is none of the windows that it dims or draws a shadow for.
    setAttribute(Qt::WA_X11NetWmWindowTypeNotification);
    setFocusPolicy(Qt::NoFocus);
    m_shadow->setOffset(0, shadowOffset);
    m_shadow->setColor(QColor::fromRgbF(0, 0, 0, shadowOpacity));
    m_view->setGraphicsEffect(m_shadow);
    connect(&m_frameAnimation, &QVariantAnimation::valueChanged,
            [this](const QVariant& frame) { place(screenRect(frame.toRectF())); });
    connect(&m_alphaAnimation, &QVariantAnimation::valueChanged,
            [this](const QVariant& alpha) { setWindowOpacity(alpha.toDouble()); });
}

void HUDPanelWidget::setContent(HUDEvent event, std::function<void()> onTap) {
    m_view->onTap = [this, tapped = std::move(onTap)] {
        if (tapped && !m_surroundings.windowManagement.isScreenCovered())
            tapped();
    };
    m_view->setEvent(event);
}

QSizeF HUDPanelWidget::fittingSize() const {
    return m_view->sizeHint();
}

void HUDPanelWidget::setFrame(const ScreenRect& frame) {
    m_frameAnimation.stop();
    // First: the scale of the display that the window stood on must not be applied to its new place.
    if (auto* const display = QGuiApplication::screenAt(m_surroundings.toolkitRect(frame).center()))
        setScreen(display);
    place(frame);
}

void HUDPanelWidget::setAlpha(double alpha) {
    m_alphaAnimation.stop();
    setWindowOpacity(alpha);
}

void HUDPanelWidget::animate(const ScreenRect& frame, double alpha, AnimationDuration duration,
                             AnimationTiming timing) {
    run(m_frameAnimation, values(m_frame), values(frame), duration, timing);
    run(m_alphaAnimation, windowOpacity(), alpha, duration, timing);
}

void HUDPanelWidget::place(const ScreenRect& frame) {
    m_frame = frame;
    const auto shape = m_surroundings.toolkitRect(frame);
    const auto before = std::pair(m_view->size(), devicePixelRatioF());
    m_view->setGeometry(QRect(QPoint(shadowRoom.left(), shadowRoom.top()), shape.size()));
    setGeometry(shape.marginsAdded(shadowRoom));
    if (isVisible() && before != std::pair(m_view->size(), devicePixelRatioF()))
        adaptToScreen();
}

void HUDPanelWidget::orderFrontRegardless() {
    // No window manager keeps this one below a screen locker.
    if (m_surroundings.windowManagement.isScreenCovered())
        return;
    if (!isVisible()) {
        create();
        adaptToScreen();
        show();
    }
    raise();
}

void HUDPanelWidget::orderOut() {
    m_frameAnimation.stop();
    m_alphaAnimation.stop();
    hide();
    if (m_surroundings.onRest)
        m_surroundings.onRest();
}

void HUDPanelWidget::adaptToScreen() {
    const bool isBlended = m_surroundings.windowManagement.isCompositing();
    const auto outline = HUDView::shape(m_view->geometry());
    const double scale = devicePixelRatioF();
    // The toolkit blurs by pixels, whatever the scale.
    m_shadow->setBlurRadius(shadowBlur * scale);
    m_shadow->setEnabled(isBlended);
    m_view->setGround(isBlended ? HUDView::Ground::translucent : HUDView::Ground::opaque);
    if (!isBlended)
        setMask(pixelsWithin(outline, size()));
    else if (!mask().isEmpty())
        clearMask();
    m_surroundings.windowManagement.limitPresses(winId(), pixelsWithin(outline, size(), scale));
}

} // namespace kestrova
