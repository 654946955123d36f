#include "Kestrova/shelf/widgets/SidebarRow.h"

#include "Kestrova/look/Contrast.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/look/TabularDigits.h"
#include "Kestrova/shelf/SpokenItem.h"
#include "Kestrova/shelf/controls/KeyCapsule.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"

#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr double sideMargin = 8;
constexpr double barWidth = 3;
constexpr double leadingPadding = 4;
constexpr double trailingPadding = 8;
constexpr double verticalPadding = 7;
constexpr double spacing = 8;
constexpr double symbolFrame = 18;
constexpr double textSize = 13;
constexpr double countSize = 11;
constexpr double radius = 7;

} // namespace

SidebarRow::SidebarRow(QWidget* parent)
    : PanelButton(parent), m_digitShown(150ms, QEasingCurve::OutQuad, [this] { update(); }) {
    // The arrow keys walk the rows.
    setFocusPolicy(Qt::NoFocus);
    setAccessibleRole(*this, QAccessible::ListItem);
}

void SidebarRow::render(const Values& values, const ShelfTheme& theme) {
    setTheme(theme);
    setSelected(values.isSelected);
    if (values.optionShortcut)
        m_digit = *values.optionShortcut;
    if (isVisible())
        m_digitShown.glideTo(values.optionShortcut.has_value());
    else
        m_digitShown.jumpTo(values.optionShortcut.has_value());
    if (m_values == values)
        return;
    m_values = values;
    setSpokenName(*this, QStringLiteral("%1, %2").arg(values.title, spokenCount(values.count)));
    update();
}

QSize SidebarRow::sizeHint() const {
    const int content =
        std::max(interfaceLength(symbolFrame), QFontMetrics(interfaceFont(textSize)).height());
    return {1, content + static_cast<int>(2 * verticalPadding)};
}

QColor SidebarRow::barColor() const {
    if (!m_values.isSelected)
        return Qt::transparent;
    const auto& plain = m_values.isInActiveLane ? theme().laneBar : theme().idleBar;
    auto color = m_values.color.value_or(plain);
    color.setAlphaF(plain.alphaF());
    return color;
}

QColor SidebarRow::symbolColor() const {
    // A symbol means something, so it must be seen, whichever colour the person has chosen.
    constexpr double leastContrast = 3.2;
    if (!m_values.color)
        return theme().symbol;
    auto ground = theme().ground;
    ground.setAlpha(255);
    return withContrast(*m_values.color, blended(theme().sidebarHighlight, ground), leastContrast);
}

void SidebarRow::contextMenuEvent(QContextMenuEvent* event) {
    if (onContextMenu)
        onContextMenu(event->globalPos());
}

void SidebarRow::mousePressEvent(QMouseEvent* event) {
    PanelButton::mousePressEvent(event);
    m_pressedAt =
        event->button() == Qt::LeftButton ? std::optional(event->position().toPoint()) : std::nullopt;
}

void SidebarRow::mouseMoveEvent(QMouseEvent* event) {
    const bool isHeld = m_pressedAt && event->buttons() == Qt::LeftButton;
    if (!onDrag || !isHeld || !isDragMeant(*m_pressedAt, event->position().toPoint())) {
        PanelButton::mouseMoveEvent(event);
        return;
    }
    const auto hotSpot = *std::exchange(m_pressedAt, std::nullopt);
    // Otherwise letting go would press it.
    setDown(false);
    onDrag(dragPicture(*this, size(), hotSpot, theme().ground,
                       [this](QPainter& painter) { paintRow(painter); }));
}

void SidebarRow::hideEvent(QHideEvent* event) {
    PanelButton::hideEvent(event);
    m_digitShown.finish();
}

void SidebarRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintRow(painter);
}

void SidebarRow::paintRow(QPainter& painter) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRectF plate = QRectF(rect()).adjusted(sideMargin, 0, -sideMargin, 0);
    if (const double lit = m_values.isSelected ? 1 : hover(); lit > 0) {
        painter.setOpacity(lit);
        painter.setBrush(theme().sidebarHighlight);
        painter.drawRoundedRect(plate, radius, radius);
        painter.setOpacity(1);
    }
    QRectF rest = plate.adjusted(leadingPadding, 0, -trailingPadding, 0);
    const QRectF bar(rest.left(), rest.top() + verticalPadding, barWidth,
                     rest.height() - 2 * verticalPadding);
    painter.setBrush(barColor());
    painter.drawRoundedRect(bar, barWidth / 2, barWidth / 2);
    rest.setLeft(bar.right() + spacing);

    const QRectF symbol(rest.left(), rest.top(), interfaceLength(symbolFrame), rest.height());
    Symbol(m_values.symbol).paint(painter, symbol, interfaceLength(Symbol::edgeFor(textSize)), symbolColor());
    rest.setLeft(symbol.right() + spacing);

    const auto countFont = interfaceFont(countSize);
    const auto count = QString::number(m_values.count);
    const double countWidth = tabularWidth(count, countFont);
    painter.setFont(countFont);
    painter.setPen(theme().secondaryText);
    painter.setOpacity(1 - m_digitShown.value());
    drawTabularAtRight(painter, rest, count);
    painter.setOpacity(1);
    const KeyCapsule capsule{{QStringLiteral("option")}, QString::number(m_digit)};
    const double capsuleWidth = capsule.size().width();
    capsule.paint(painter, {rest.right() - capsuleWidth / 2, rest.center().y()}, theme(),
                  m_digitShown.value());
    rest.setRight(rest.right() - std::max(countWidth, m_digitShown.isOn() ? capsuleWidth : 0.0) - spacing);

    const auto font = interfaceFont(textSize, m_values.isSelected ? QFont::DemiBold : QFont::Normal);
    painter.setFont(font);
    painter.setPen(theme().text);
    painter.drawText(
        rest, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
        QFontMetrics(font).elidedText(m_values.title, Qt::ElideRight, static_cast<int>(rest.width())));
}

} // namespace kestrova
