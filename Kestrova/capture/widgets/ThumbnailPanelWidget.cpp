#include "Kestrova/capture/widgets/ThumbnailPanelWidget.h"

#include "Kestrova/capture/widgets/CapturedImageDragData.h"
#include "Kestrova/capture/widgets/CapturedThumbnailStackView.h"
#include "Kestrova/capture/widgets/ThumbnailTile.h"
#include "Kestrova/look/Easing.h"
#include "Kestrova/look/Outline.h"
#include "Platform/MainQueue.h"
#include "Platform/WindowManagement.h"

#include <QApplication>
#include <QDrag>
#include <QPainter>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace kestrova {
namespace {

// Small enough to see where it will land.
constexpr double dragScale = 0.5;
constexpr double dragOpacity = 0.92;

QPixmap dragPicture(const QPixmap& tile) {
    const double scale = tile.devicePixelRatio();
    QPixmap picture((QSizeF(ThumbnailTile::size) * dragScale * scale).toSize());
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setOpacity(dragOpacity);
    painter.drawPixmap(QRectF({}, QSizeF(ThumbnailTile::size) * dragScale), tile, QRectF(tile.rect()));
    return picture;
}

} // namespace

ThumbnailPanelWidget::ThumbnailPanelWidget(Surroundings surroundings)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus |
                           Qt::NoDropShadowWindowHint),
      m_surroundings(std::move(surroundings)),
      m_view(new CapturedThumbnailStackView(m_surroundings.mainQueue, this)) {
    setWindowTitle(QStringLiteral("Kestrova"));
    // Also where nothing is blended now: a compositor may start later, and the window's depth never changes.
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    // The window is never the active one.
    setAttribute(Qt::WA_AlwaysShowToolTips);
    // Tells a compositor that this is none of the windows that it dims or draws a shadow for.
    setAttribute(Qt::WA_X11NetWmWindowTypeNotification);
    setFocusPolicy(Qt::NoFocus);
    m_view->onEntryDrag = [this](const ThumbnailEntry& entry, const QPixmap& tile, QPoint pressedAt) {
        startDrag(entry, tile, pressedAt);
    };
    connect(&m_alphaAnimation, &QVariantAnimation::valueChanged,
            [this](const QVariant& alpha) { setWindowOpacity(alpha.toDouble()); });
    watchDisplays();
}

void ThumbnailPanelWidget::watchDisplays() {
    // One that is going is still in the toolkit's list within the signal, and one change is many signals.
    const auto tell = [this] {
        m_displaysNotice = m_surroundings.mainQueue.afterUnlessCancelled(MainQueue::Duration::zero(),
                                                                         [this] { displaysChanged(); });
    };
    const auto watch = [this, tell](const QScreen* display) {
        connect(display, &QScreen::availableGeometryChanged, this, tell);
    };
    for (const auto* const display : QGuiApplication::screens())
        watch(display);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [tell, watch](const QScreen* added) {
        watch(added);
        tell();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, tell);
}

void ThumbnailPanelWidget::displaysChanged() {
    const auto displays = QGuiApplication::screens();
    const bool isLost = std::ranges::none_of(
        displays, [this](const QScreen* display) { return display->availableGeometry().contains(m_column); });
    if (isLost && onPlaceLost)
        onPlaceLost();
}

std::function<void(QUuid)> ThumbnailPanelWidget::unlessCovered(std::function<void(QUuid)> act) const {
    return [&windowManagement = m_surroundings.windowManagement, act = std::move(act)](QUuid id) {
        if (act && !windowManagement.isScreenCovered())
            act(id);
    };
}

void ThumbnailPanelWidget::setContent(ThumbnailColumn column) {
    m_view->onEntryClick = unlessCovered(std::move(column.onEntryClick));
    m_view->onEntryEdit = unlessCovered(std::move(column.onEntryEdit));
    m_view->onEntryClose = unlessCovered(std::move(column.onEntryClose));
    m_view->setEntries(column.entries);
}

std::uint32_t ThumbnailPanelWidget::windowNumber() const {
    return static_cast<std::uint32_t>(winId());
}

void ThumbnailPanelWidget::setFrame(const ScreenRect& frame, const ScreenRect& largest) {
    m_column = m_surroundings.toolkitRect(frame);
    // First: the scale of the display that the window stood on must not be applied to its new place.
    if (auto* const display = QGuiApplication::screenAt(m_column.center()))
        setScreen(display);
    const auto place =
        m_surroundings.toolkitRect(largest).marginsAdded(CapturedThumbnailStackView::shadowRoom());
    setGeometry(place);
    m_view->setGeometry(QRect({}, place.size()));
    m_view->setScale(devicePixelRatioF());
    if (isVisible())
        adaptToScreen();
}

void ThumbnailPanelWidget::setAlpha(double alpha) {
    m_alphaAnimation.stop();
    setWindowOpacity(alpha);
}

void ThumbnailPanelWidget::animateAlpha(double alpha, AnimationDuration duration, AnimationTiming timing) {
    m_alphaAnimation.stop();
    m_alphaAnimation.setStartValue(windowOpacity());
    m_alphaAnimation.setEndValue(alpha);
    m_alphaAnimation.setDuration(static_cast<int>(duration.count()));
    m_alphaAnimation.setEasingCurve(easing(timing));
    m_alphaAnimation.start();
}

void ThumbnailPanelWidget::orderFrontRegardless() {
    create();
    // No window manager keeps this one below a screen locker.
    if (m_surroundings.windowManagement.isScreenCovered())
        return;
    if (!isVisible()) {
        adaptToScreen();
        show();
    }
    raise();
}

void ThumbnailPanelWidget::orderOut() {
    m_alphaAnimation.stop();
    hide();
    if (m_surroundings.onRest)
        m_surroundings.onRest();
}

void ThumbnailPanelWidget::adaptToScreen() {
    const bool isBlended = m_surroundings.windowManagement.isCompositing();
    m_view->setGround(isBlended ? CapturedThumbnailStackView::Ground::translucent
                                : CapturedThumbnailStackView::Ground::opaque);
    const auto shape = [tiles = m_view->restingTiles()](double scale) {
        const auto tile = pixelsWithin(ThumbnailTile::outline(), ThumbnailTile::size, scale);
        QRegion all;
        for (const auto& place : tiles)
            all += tile.translated((QPointF(place.topLeft()) * scale).toPoint());
        return all;
    };
    if (!isBlended)
        setMask(shape(1));
    else if (!mask().isEmpty())
        clearMask();
    m_surroundings.windowManagement.limitPresses(winId(), shape(devicePixelRatioF()));
}

void ThumbnailPanelWidget::startDrag(const ThumbnailEntry& entry, const QPixmap& tile, QPoint pressedAt) {
    if (m_surroundings.windowManagement.isScreenCovered())
        return;
    // Not within the event of whoever was pressed, who may be gone by the end of the drag; and so may be all
    // of this window.
    m_surroundings.mainQueue.post(
        [&files = m_surroundings.files, tile, pressedAt,
         payload = CapturedImagePayload{.data = entry.pngData, .suggestedName = entry.suggestedName}] {
            if (!QGuiApplication::mouseButtons().testFlag(Qt::LeftButton))
                return;
            auto* const drag = new QDrag(qApp);
            drag->setMimeData(new CapturedImageDragData(payload, files));
            drag->setPixmap(dragPicture(tile));
            drag->setHotSpot((QPointF(pressedAt) * dragScale).toPoint());
            drag->exec(Qt::CopyAction);
        });
}

} // namespace kestrova
