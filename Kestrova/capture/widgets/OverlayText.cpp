#include "Kestrova/capture/widgets/OverlayText.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/TabularDigits.h"

#include <QFontMetricsF>
#include <QPainter>

namespace kestrova {

OverlayText::OverlayText()
    : m_medium12(interfaceFont(12, QFont::Medium)), m_medium11(interfaceFont(11, QFont::Medium)) {}

const QFont& OverlayText::qtFont(OverlayFont font) const {
    return font == OverlayFont::medium12 ? m_medium12 : m_medium11;
}

QSizeF OverlayText::size(const QString& text, OverlayFont font) const {
    const QFontMetricsF metrics(qtFont(font));
    const double width = font == OverlayFont::medium11TabularDigits ? tabularWidth(text, qtFont(font))
                                                                    : metrics.horizontalAdvance(text);
    return {width, metrics.height()};
}

void OverlayText::draw(QPainter& painter, QPointF topLeft, const QString& text, OverlayFont font) const {
    painter.setFont(qtFont(font));
    painter.setPen(Qt::white);
    const QPointF baseline = topLeft + QPointF(0, QFontMetricsF(qtFont(font)).ascent());
    if (font == OverlayFont::medium11TabularDigits)
        drawTabular(painter, baseline, text);
    else
        painter.drawText(baseline, text);
}

} // namespace kestrova
