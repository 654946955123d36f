#include "Kestrova/look/TabularDigits.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace kestrova {
namespace {

bool isDigit(QChar character) {
    return character >= u'0' && character <= u'9';
}

double cellWidth(const QFont& font) {
    const QFontMetricsF metrics(font);
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    return widest;
}

} // namespace

double tabularWidth(const QString& text, const QFont& font) {
    const QFontMetricsF metrics(font);
    const double cell = cellWidth(font);
    double width = 0;
    for (const auto character : text)
        width += isDigit(character) ? cell : metrics.horizontalAdvance(character);
    return width;
}

void drawTabular(QPainter& painter, const QPointF& baseline, const QString& text) {
    const QFontMetricsF metrics(painter.font());
    const double cell = cellWidth(painter.font());
    QPointF place = baseline;
    for (const auto character : text) {
        const double own = metrics.horizontalAdvance(character);
        const double width = isDigit(character) ? cell : own;
        painter.drawText(place + QPointF((width - own) / 2, 0), QString(character));
        place.rx() += width;
    }
}

void drawTabularAtRight(QPainter& painter, const QRectF& frame, const QString& digits) {
    const double width = cellWidth(painter.font());
    double x = frame.right() - static_cast<double>(digits.size()) * width;
    for (const auto digit : digits) {
        painter.drawText(QRectF(x, frame.top(), width, frame.height()), Qt::AlignCenter | Qt::TextDontClip,
                         QString(digit));
        x += width;
    }
}

} // namespace kestrova
