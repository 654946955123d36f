#include "Kestrova/shelf/widgets/ActionRow.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QPainter>

#include <utility>

namespace kestrova {
namespace {

constexpr int sidePadding = 10;
constexpr int verticalPadding = 8;
constexpr double radius = 6;

} // namespace

ActionRow::ActionRow(const QString& title, KeyCapsule key, QWidget* parent)
    : PanelButton(parent), m_key(std::move(key)) {
    setText(title);
    setAccessibleName(title);
    setFocusPolicy(Qt::StrongFocus);
}

int ActionRow::rowHeight() {
    return QFontMetrics(shelfFont(13)).height() + 2 * verticalPadding;
}

void ActionRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    if (hasFocus() || hover() > 0) {
        painter.setBrush(hasFocus() ? theme().selection : theme().hover);
        painter.setOpacity(hasFocus() ? 1 : hover());
        painter.drawRoundedRect(rect(), radius, radius);
        painter.setOpacity(1);
    }
    painter.setFont(shelfFont(13));
    painter.setPen(theme().text);
    painter.drawText(rect().adjusted(sidePadding, 0, -sidePadding, 0), Qt::AlignVCenter | Qt::AlignLeft,
                     text());
    const double capsuleWidth = m_key.size().width();
    m_key.paint(painter, {width() - sidePadding - capsuleWidth / 2, height() / 2.0}, theme());
}

void ActionRow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        PanelButton::keyPressEvent(event);
}

} // namespace kestrova
