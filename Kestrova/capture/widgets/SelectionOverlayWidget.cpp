#include "Kestrova/capture/widgets/SelectionOverlayWidget.h"

#include "Kestrova/capture/SelectionOverlayView.h"

#include <QMouseEvent>
#include <QPainter>

#include <utility>

namespace kestrova {

namespace {

/// Left of and above every display, within what the server can address.
constexpr QPoint away(-10000, -10000);

} // namespace

SelectionOverlayWidget::SelectionOverlayWidget(PointerOfPixel pointerOfPixel)
    // The keyboard stays where it is: whatever opened a menu or a card keeps it open.
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus |
                           Qt::NoDropShadowWindowHint),
      m_pointerOfPixel(std::move(pointerOfPixel)) {
    setWindowTitle(QStringLiteral("Kestrova"));
    // Also where nothing is blended now: a compositor may start later, and the window's depth never changes.
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    // Compositors neither fade such windows in, nor give them a shadow, nor blur what lies behind them.
    setAttribute(Qt::WA_X11NetWmWindowTypeDock);
    setMouseTracking(true);
    setFocusPolicy(Qt::NoFocus);
}

void SelectionOverlayWidget::setView(std::shared_ptr<SelectionOverlayView> view) {
    m_view = std::move(view);
    if (m_view)
        setNeedsDisplay();
}

void SelectionOverlayWidget::setGround(OverlayPainter::Ground ground) {
    if (std::exchange(m_ground, ground) == ground)
        return;
    display();
    update();
}

void SelectionOverlayWidget::setNeedsDisplay() {
    if (std::exchange(m_isDisplayDue, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_isDisplayDue)
                display();
        },
        Qt::QueuedConnection);
}

void SelectionOverlayWidget::display() {
    m_isDisplayDue = false;
    if (!m_view)
        return;
    const auto textSize = [this](const QString& text, OverlayFont font) { return m_text.size(text, font); };
    auto drawing = m_view->drawing(textSize);
    if (m_ground == OverlayPainter::Ground::opaque && !drawing.background)
        drawing.background = m_view->frozenImage();
    QRegion changed;
    for (const auto& rect : changedRects(m_drawing, drawing, m_view->bounds()))
        changed += painter().toolkitRect(rect);
    m_drawing = std::move(drawing);
    update(changed);
}

OverlayPainter SelectionOverlayWidget::painter() const {
    const auto bounds = m_view->bounds();
    return {QSizeF(bounds.width, bounds.height), devicePixelRatioF()};
}

void SelectionOverlayWidget::paintEvent(QPaintEvent* event) {
    if (!m_view)
        return;
    QPainter onWidget(this);
    painter().paint(onWidget, m_drawing, m_ground, m_text, event->region());
}

OverlayPointer SelectionOverlayWidget::pointer(const QSinglePointEvent& event) {
    const auto pixel = (event.scenePosition() * devicePixelRatioF()).toPoint();
    m_lastPointer = m_pointerOfPixel(*m_view, pixel);
    return m_lastPointer;
}

void SelectionOverlayWidget::orderOut() {
    if (!m_isHeld)
        return hide();
    // Hidden, it would lose the mouse to what lies below.
    m_isAway = true;
    move(away);
}

void SelectionOverlayWidget::drop() {
    setView(nullptr);
    m_isDropped = true;
    orderOut();
    if (!m_isAway)
        deleteLater();
}

void SelectionOverlayWidget::endWait() {
    if (!std::exchange(m_isAway, false))
        return;
    m_isHeld = false;
    hide();
    if (m_isDropped)
        deleteLater();
}

void SelectionOverlayWidget::mousePressEvent(QMouseEvent* event) {
    noteButtons(event->buttons());
    const auto view = m_view;
    if (view && event->button() == Qt::LeftButton)
        view->mouseDown(pointer(*event));
}

void SelectionOverlayWidget::mouseReleaseEvent(QMouseEvent* event) {
    noteButtons(event->buttons());
    const auto view = m_view;
    if (view && event->button() == Qt::LeftButton)
        view->mouseUp(pointer(*event));
    if (!m_isHeld)
        endWait();
}

void SelectionOverlayWidget::mouseMoveEvent(QMouseEvent* event) {
    const auto view = m_view;
    if (!view)
        return;
    if (event->buttons().testFlag(Qt::LeftButton))
        view->mouseDragged(pointer(*event));
    else
        view->mouseMoved(pointer(*event));
}

void SelectionOverlayWidget::enterEvent(QEnterEvent* event) {
    if (const auto view = m_view)
        view->mouseEntered(pointer(*event));
}

void SelectionOverlayWidget::leaveEvent(QEvent*) {
    if (const auto view = m_view)
        view->mouseExited(m_lastPointer);
}

void SelectionOverlayWidget::keyPressEvent(QKeyEvent* event) {
    const auto view = m_view;
    if (view && event->key() == Qt::Key_Escape)
        view->cancelOperation();
    else
        QWidget::keyPressEvent(event);
}

} // namespace kestrova
