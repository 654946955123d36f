#include "Kestrova/look/TabularDigits.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace kestrova {
namespace {

double cellWidth(const QFont& font) {
    const QFontMetricsF metrics(font);
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    return widest;
}

} // namespace

double tabularWidth(const QString& digits, const QFont& font) {
    return static_cast<double>(digits.size()) * cellWidth(font);
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
