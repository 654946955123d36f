#include "Kestrova/shelf/controls/PanelButton.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QPainter>

#include <utility>

namespace kestrova {

using namespace std::chrono_literals;

namespace {

constexpr double focusRingWidth = 2;
constexpr double focusRingRadius = 7;

} // namespace

PanelButton::PanelButton(QWidget* parent)
    : QAbstractButton(parent), m_hover(120ms, QEasingCurve::OutQuad, [this] { update(); }) {
    setFocusPolicy(Qt::TabFocus);
    connect(this, &QAbstractButton::clicked, [this] {
        if (onTap)
            onTap();
    });
}

void PanelButton::setTheme(const ShelfTheme& theme) {
    updateOnChange(*this, m_theme, theme);
}

void PanelButton::setSelected(bool isSelected) {
    if (std::exchange(m_isSelected, isSelected) == isSelected)
        return;
    update();
    if (QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::Selection);
        QAccessible::updateAccessibility(&event);
    }
}

bool PanelButton::event(QEvent* event) {
    const bool isHandled = QAbstractButton::event(event);
    // Over whatever the button looks like. Those that Tab does not reach show by themselves what they are to
    // the arrow keys.
    if (event->type() == QEvent::Paint && hasFocus() && focusPolicy() == Qt::TabFocus)
        paintFocusRing();
    return isHandled;
}

void PanelButton::paintFocusRing() {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_theme.accent, focusRingWidth));
    constexpr double inset = focusRingWidth / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), focusRingRadius,
                            focusRingRadius);
}

void PanelButton::keyPressEvent(QKeyEvent* event) {
    // The toolkit's buttons know no Return, and walk to their neighbours with the arrows.
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat())
            click();
        break;
    case Qt::Key_Space:
        QAbstractButton::keyPressEvent(event);
        break;
    default:
        event->ignore();
    }
}

void PanelButton::enterEvent(QEnterEvent* event) {
    QAbstractButton::enterEvent(event);
    m_hover.glideTo(true);
}

void PanelButton::leaveEvent(QEvent* event) {
    QAbstractButton::leaveEvent(event);
    m_hover.glideTo(false);
}

void PanelButton::hideEvent(QHideEvent* event) {
    QAbstractButton::hideEvent(event);
    m_hover.jumpTo(false);
}

} // namespace kestrova
