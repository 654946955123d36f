#include "Kestrova/shelf/widgets/FilterChip.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/shelf/controls/KeyCapsule.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr int horizontalPadding = 10;
constexpr int verticalPadding = 4;
constexpr int smallestHeight = 22;
constexpr double symbolSize = 14;
constexpr double labelSize = 12;
constexpr double ringWidth = 1.2;

QFont labelFont() {
    return interfaceFont(labelSize, QFont::Medium);
}

int symbolEdge() {
    return interfaceLength(symbolSize);
}

} // namespace

FilterChip::FilterChip(QWidget* parent)
    : PanelButton(parent), m_digitShown(150ms, QEasingCurve::OutQuad, [this] { update(); }) {
    setCheckable(true);
    // The arrow keys walk the chips.
    setFocusPolicy(Qt::NoFocus);
    setAccessibleRole(*this, QAccessible::RadioButton);
}

void FilterChip::render(const Values& values, const ShelfTheme& theme) {
    setTheme(theme);
    setChecked(values.isSelected);
    if (values.controlShortcut)
        m_digit = *values.controlShortcut;
    if (isVisible())
        m_digitShown.glideTo(values.controlShortcut.has_value());
    else
        m_digitShown.jumpTo(values.controlShortcut.has_value());
    updateOnChange(*this, m_values, values);
}

int FilterChip::height() {
    return std::max({smallestHeight, symbolEdge() + 2 * verticalPadding,
                     QFontMetrics(labelFont()).ascent() + 2 * verticalPadding});
}

QSize FilterChip::sizeHint() const {
    const int content =
        m_values.label.isEmpty() ? symbolEdge() : QFontMetrics(labelFont()).horizontalAdvance(m_values.label);
    return {content + 2 * horizontalPadding, height()};
}

void FilterChip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = rect();
    const auto capsule = [&](double inset) {
        const auto shape = frame.adjusted(inset, inset, -inset, -inset);
        painter.drawRoundedRect(shape, shape.height() / 2, shape.height() / 2);
    };
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_values.isSelected ? theme().selectedChip : theme().chip);
    capsule(0);
    if (!m_values.isSelected && hover() > 0) {
        painter.setOpacity(hover());
        painter.setBrush(theme().hover);
        capsule(0);
        painter.setOpacity(1);
    }
    if (m_values.keyboardActive) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(theme().chipRing, ringWidth));
        capsule(ringWidth / 2);
    }
    // The keys lie over it and are to be read alone.
    painter.setOpacity(1 - m_digitShown.value());
    const auto color = m_values.isSelected ? theme().activeSymbol : theme().symbol;
    if (m_values.label.isEmpty()) {
        Symbol(m_values.systemIcon).paint(painter, frame, symbolEdge(), color);
    } else {
        painter.setFont(labelFont());
        painter.setPen(m_values.isSelected ? theme().text : theme().secondaryText);
        painter.drawText(frame, Qt::AlignCenter, m_values.label);
    }
    painter.setOpacity(1);
    KeyCapsule{{QStringLiteral("control")}, QString::number(m_digit)}.paint(painter, frame.center(), theme(),
                                                                            m_digitShown.value());
}

void FilterChip::hideEvent(QHideEvent* event) {
    PanelButton::hideEvent(event);
    m_digitShown.finish();
}

} // namespace kestrova
