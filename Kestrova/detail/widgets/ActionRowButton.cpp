#include "Kestrova/detail/widgets/ActionRowButton.h"

#include "Kestrova/detail/ActionRows.h"
#include "Kestrova/look/Contrast.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace kestrova {
namespace {

constexpr int sidePadding = 8;
constexpr int verticalPadding = 6;
constexpr int gap = 8;
constexpr double radius = 6;
constexpr double textSize = 12;
constexpr double symbolFrame = 16;
constexpr double highlightOpacity = 0.12;
constexpr double textOpacity = 0.95;
constexpr double iconOpacity = 0.8;
constexpr double destructiveIconOpacity = 0.85;
constexpr double disabledIconOpacity = 0.3;
// With a little to spare for the edges of thin strokes.
constexpr double leastContrast = 4.6;

QColor faded(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

/// What is said beside the label.
QString spokenHint(const ActionRow& row) {
    if (const auto isIn = membership(row))
        return *isIn ? QStringLiteral("들어 있음") : QStringLiteral("들어 있지 않음");
    return row.shortcut.value_or(QString());
}

} // namespace

ActionRowButton::ActionRowButton(QWidget* parent) : PanelButton(parent) {
    // The card puts the keyboard here; Tab does not come by.
    setFocusPolicy(Qt::NoFocus);
    setMouseTracking(true);
    setAccessibleRole(*this, QAccessible::MenuItem);
}

int ActionRowButton::rowHeight() {
    return std::max(QFontMetrics(interfaceFont(textSize)).height(), interfaceLength(symbolFrame)) +
           2 * verticalPadding;
}

void ActionRowButton::render(const ActionRow& row, bool isHighlighted, const ShelfTheme& theme) {
    setTheme(theme);
    updateOnChange(*this, m_looks,
                   Looks{.icon = row.icon,
                         .label = row.label,
                         .shortcut = row.shortcut.value_or(QString()),
                         .destructive = row.destructive,
                         .disabled = row.disabled,
                         .isHighlighted = isHighlighted});
    setSpokenName(*this, row.label);
    setSpokenDescription(*this, spokenHint(row));
    setCheckable(membership(row).has_value());
    setChecked(membership(row).value_or(false));
    setEnabled(!row.disabled);
}

QColor ActionRowButton::iconColor() const {
    if (m_looks.disabled)
        return theme().primary(disabledIconOpacity);
    return m_looks.destructive ? faded(theme().destructive, destructiveIconOpacity)
                               : theme().primary(iconOpacity);
}

QColor ActionRowButton::labelColor() const {
    if (!m_looks.destructive)
        return theme().primary(textOpacity);
    // The red of menus is made for their ground, which is darker than a row that is lit up.
    const auto lit = blended(theme().primary(highlightOpacity), theme().card);
    return withContrast(blended(faded(theme().destructive, textOpacity), theme().card), lit, leastContrast);
}

void ActionRowButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_looks.isHighlighted) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme().primary(highlightOpacity));
        painter.drawRoundedRect(rect(), radius, radius);
    }
    auto rest = rect().adjusted(sidePadding, 0, -sidePadding, 0);
    const int frame = interfaceLength(symbolFrame);
    Symbol(m_looks.icon)
        .paint(painter, QRectF(rest.left(), rest.top(), frame, rest.height()),
               interfaceLength(Symbol::edgeFor(textSize)), iconColor());
    rest.setLeft(rest.left() + frame + gap);

    const auto font = interfaceFont(textSize);
    const QFontMetrics metrics(font);
    painter.setFont(font);
    if (!m_looks.shortcut.isEmpty()) {
        painter.setPen(theme().secondaryText);
        painter.drawText(rest, Qt::AlignVCenter | Qt::AlignRight | Qt::TextSingleLine, m_looks.shortcut);
        rest.setRight(rest.right() - metrics.horizontalAdvance(m_looks.shortcut) - gap);
    }
    painter.setPen(labelColor());
    // A name that is written from the right still stands beside its mark.
    painter.drawText(rest, Qt::AlignVCenter | Qt::AlignLeft | Qt::AlignAbsolute | Qt::TextSingleLine,
                     metrics.elidedText(m_looks.label, Qt::ElideRight, rest.width()));
}

void ActionRowButton::keyPressEvent(QKeyEvent* event) {
    event->ignore();
}

void ActionRowButton::mouseMoveEvent(QMouseEvent* event) {
    PanelButton::mouseMoveEvent(event);
    onPointerMove(event->globalPosition().toPoint());
}

void ActionRowButton::leaveEvent(QEvent* event) {
    PanelButton::leaveEvent(event);
    onPointerLeave();
}

} // namespace kestrova
