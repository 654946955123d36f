#include "Kestrova/shelf/controls/LabelButton.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace kestrova {
namespace {

constexpr int padding = 8;
constexpr int spacing = 8;
constexpr double textSize = 13;
constexpr double radius = 7;

QFont labelFont() {
    return interfaceFont(textSize);
}

int symbolEdge() {
    return interfaceLength(Symbol::edgeFor(textSize));
}

} // namespace

LabelButton::LabelButton(QString symbol, const QString& label, QWidget* parent)
    : PanelButton(parent), m_symbol(std::move(symbol)) {
    setText(label);
    setAccessibleName(label);
}

QSize LabelButton::sizeHint() const {
    const QFontMetrics metrics(labelFont());
    return {2 * padding + symbolEdge() + spacing + metrics.horizontalAdvance(text()),
            2 * padding + std::max(symbolEdge(), metrics.height())};
}

void LabelButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (hover() > 0) {
        painter.setOpacity(hover());
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme().hover);
        painter.drawRoundedRect(rect(), radius, radius);
        painter.setOpacity(1);
    }
    QRectF rest = rect().adjusted(padding, 0, -padding, 0);
    const int edge = symbolEdge();
    Symbol(m_symbol).paint(painter, {rest.left(), rest.top(), static_cast<double>(edge), rest.height()}, edge,
                           theme().symbol);
    rest.setLeft(rest.left() + edge + spacing);
    painter.setFont(labelFont());
    painter.setPen(theme().text);
    painter.drawText(
        rest, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
        QFontMetrics(labelFont()).elidedText(text(), Qt::ElideRight, static_cast<int>(rest.width())));
}

} // namespace kestrova
