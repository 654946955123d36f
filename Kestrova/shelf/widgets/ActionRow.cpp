#include "Kestrova/shelf/widgets/ActionRow.h"

#include "Kestrova/look/InterfaceFont.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QPainter>

namespace kestrova {
namespace {

constexpr int sidePadding = 10;
constexpr int verticalPadding = 8;
constexpr double radius = 6;

} // namespace

ActionRow::ActionRow(const QString& title, QWidget* parent) : PanelButton(parent) {
    setText(title);
    setAccessibleName(title);
    setFocusPolicy(Qt::StrongFocus);
}

int ActionRow::rowHeight() {
    return QFontMetrics(interfaceFont(13)).height() + 2 * verticalPadding;
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
    painter.setFont(interfaceFont(13));
    painter.setPen(theme().text);
    painter.drawText(rect().adjusted(sidePadding, 0, -sidePadding, 0), Qt::AlignVCenter | Qt::AlignLeft,
                     text());
}

void ActionRow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else if (event->key() !=
             Qt::Key_Space) // In the lists it previews; it must not do the first thing at hand here.
        QAbstractButton::keyPressEvent(event);
}

} // namespace kestrova
