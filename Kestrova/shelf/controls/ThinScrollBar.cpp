#include "Kestrova/shelf/controls/ThinScrollBar.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

namespace kestrova {

void ThinScrollBar::setThumbColor(const QColor& color) {
    m_thumb = color;
    update();
}

void ThinScrollBar::paintEvent(QPaintEvent*) {
    if (maximum() <= minimum())
        return;
    // Where the style takes the thumb to be, since it also decides what a press hits.
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRectF thumb =
        style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_thumb);
    const QRectF bar(width() - 7.0, thumb.top() + 1, 5, thumb.height() - 2);
    painter.drawRoundedRect(bar, 2.5, 2.5);
}

} // namespace kestrova
