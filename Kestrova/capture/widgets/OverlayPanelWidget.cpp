#include "Kestrova/capture/widgets/OverlayPanelWidget.h"

#include "Kestrova/capture/SelectionOverlayView.h"
#include "Kestrova/capture/widgets/CrosshairCursor.h"
#include "Kestrova/capture/widgets/SelectionOverlayWidget.h"
#include "Platform/MainQueue.h"
#include "Platform/WindowManagement.h"

#include <QGuiApplication>
#include <QPointer>
#include <QScreen>

#include <chrono>
#include <cmath>
#include <utility>

namespace kestrova {

namespace {

/// Nobody holds a button for longer without knowing that it is still down.
constexpr std::chrono::seconds longestPress{10};

/// Whole points that reach over all pixels of the display; its corner has the same numbers in both.
QRect geometryOver(const OverlayPanelWidget::Place& place) {
    const double scale = place.screen->devicePixelRatio();
    const auto points = [scale](int pixels) { return static_cast<int>(std::ceil(pixels / scale)); };
    return {place.pixels.topLeft(), QSize(points(place.pixels.width()), points(place.pixels.height()))};
}

} // namespace

OverlayPanelWidget::OverlayPanelWidget(Surroundings surroundings) : m_surroundings(std::move(surroundings)) {
    const auto& place = m_surroundings.place;
    const QPoint corner = place ? place->pixels.topLeft() : QPoint();
    m_window.reset(new SelectionOverlayWidget(
        [pointOfPixel = m_surroundings.pointOfPixel, corner](const SelectionOverlayView& view, QPoint pixel) {
            const auto point = [&](PixelPoint meaning) {
                return view.convertPointFromScreen(pointOfPixel(corner + pixel, meaning));
            };
            return OverlayPointer(point(PixelPoint::corner), point(PixelPoint::centre));
        }));
    if (!place)
        return;
    moveOverDisplay();
    QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, m_window.get(),
                     [window = m_window.get(), covered = place->screen](const QScreen* removed) {
                         // The toolkit would move it over another display.
                         if (removed == covered)
                             window->hide();
                     });
}

OverlayPanelWidget::~OverlayPanelWidget() = default;

void OverlayPanelWidget::DropLater::operator()(SelectionOverlayWidget* window) const {
    window->drop();
}

void OverlayPanelWidget::moveOverDisplay() {
    const auto& place = *m_surroundings.place;
    // First: the scale of another display must not be applied to its place.
    m_window->setScreen(place.screen);
    const QRect geometry = geometryOver(place);
    m_window->setGeometry(geometry);
    // What whole points are too large by would lie over the display beside it.
    if (QSizeF(geometry.size()) * place.screen->devicePixelRatio() != QSizeF(place.pixels.size()))
        m_surroundings.windowManagement.cutOff(m_window->winId(), QRect({}, place.pixels.size()));
}

void OverlayPanelWidget::adaptToCompositing() {
    m_window->setGround(m_surroundings.windowManagement.isCompositing() ? OverlayPainter::Ground::transparent
                                                                        : OverlayPainter::Ground::opaque);
}

void OverlayPanelWidget::setContentView(std::shared_ptr<SelectionOverlayView> view) {
    m_window->setView(std::move(view));
}

void OverlayPanelWidget::orderFrontRegardless() {
    if (!m_surroundings.place)
        return;
    m_compositingObserver =
        m_surroundings.windowManagement.observeCompositing([this] { adaptToCompositing(); });
    adaptToCompositing();
    m_window->display();
    if (m_window->isAway()) {
        m_window->endWait();
        moveOverDisplay();
    }
    m_window->show();
    m_window->raise();
}

void OverlayPanelWidget::orderOut() {
    m_compositingObserver.reset();
    m_window->orderOut();
    if (m_window->isAway())
        m_surroundings.mainQueue.after(longestPress, [window = QPointer(m_window.get())] {
            if (window)
                window->endWait();
        });
    if (m_surroundings.onRest)
        m_surroundings.onRest();
}

void OverlayPanelWidget::setCursor(OverlayCursor cursor) {
    if (std::exchange(m_cursor, cursor) == cursor)
        return;
    switch (cursor) {
    case OverlayCursor::arrow:
        m_window->setCursor(Qt::ArrowCursor);
        break;
    case OverlayCursor::openHand:
        m_window->setCursor(Qt::OpenHandCursor);
        break;
    case OverlayCursor::crosshair:
        m_window->setCursor(m_surroundings.crosshair.forScale(m_window->devicePixelRatioF()));
        break;
    }
}

void OverlayPanelWidget::setNeedsDisplay() {
    m_window->setNeedsDisplay();
}

} // namespace kestrova
