#include "Kestrova/shelf/widgets/PanelButton.h"

namespace kestrova {

using namespace std::chrono_literals;

PanelButton::PanelButton(QWidget* parent)
    : QAbstractButton(parent), m_hover(120ms, QEasingCurve::OutQuad, [this] { update(); }) {
    setFocusPolicy(Qt::NoFocus);
    connect(this, &QAbstractButton::clicked, [this] {
        if (onTap)
            onTap();
    });
}

void PanelButton::setTheme(const ShelfTheme& theme) {
    updateOnChange(*this, m_theme, theme);
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
