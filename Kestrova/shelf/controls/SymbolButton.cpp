#include "Kestrova/shelf/controls/SymbolButton.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"

#include <QPainter>

namespace kestrova {

using namespace std::chrono_literals;

SymbolButton::SymbolButton(const QString& name, double symbolSize, QWidget* parent)
    : PanelButton(parent),
      m_symbolSize(symbolSize),
      m_capsuleShown(150ms, QEasingCurve::OutQuad, [this] { update(); }) {
    setAccessibleName(name);
}

void SymbolButton::render(const QString& symbol, bool isOn, const ShelfTheme& theme) {
    setTheme(theme);
    updateOnChange(*this, m_symbol, symbol);
    updateOnChange(*this, m_isOn, isOn);
    if (isCheckable())
        setChecked(isOn);
}

void SymbolButton::showCapsule(bool isShown) {
    if (isVisible())
        m_capsuleShown.glideTo(isShown);
    else
        m_capsuleShown.jumpTo(isShown);
}

void SymbolButton::hideEvent(QHideEvent* event) {
    PanelButton::hideEvent(event);
    m_capsuleShown.finish();
}

void SymbolButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = rect();
    if (hover() > 0) {
        painter.setOpacity(hover());
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme().hover);
        const double edge = qMin(frame.width(), frame.height()) - 4;
        QRectF plate(0, 0, edge, edge);
        plate.moveCenter(frame.center());
        painter.drawRoundedRect(plate, 7, 7);
        painter.setOpacity(1);
    }
    // The keys lie over it and are to be read alone.
    painter.setOpacity(1 - m_capsuleShown.value());
    Symbol(m_symbol).paint(painter, frame, interfaceLength(Symbol::edgeFor(m_symbolSize)),
                           m_isOn ? theme().activeSymbol : theme().inactiveSymbol);
    painter.setOpacity(1);
    m_capsule.paint(painter, frame.center(), theme(), m_capsuleShown.value());
}

} // namespace kestrova
