#include "Kestrova/shelf/controls/KeyCapsule.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/look/TabularDigits.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kestrova {
namespace {

constexpr double verticalPadding = 2;
constexpr double strokeWidth = 0.5;
// The drawings have a margin of their own.
constexpr double letterGap = 0.5;
constexpr double keycapRadius = 4;
constexpr double smallestHeight = 16;
// So that a row of them looks even.
constexpr double smallestWidth = 24;

double horizontalPadding(KeyCapsule::Form form) {
    return form == KeyCapsule::Form::chip ? 4 : 5;
}

double symbolEdge() {
    return interfaceLength(10);
}

QFont letterFont() {
    return interfaceFont(10, QFont::DemiBold);
}

bool isDigit(const QString& letter) {
    return letter.size() == 1 && letter.front().isDigit();
}

} // namespace

double KeyCapsule::letterWidth() const {
    return isDigit(letter) ? tabularWidth(letter, letterFont())
                           : QFontMetricsF(letterFont()).horizontalAdvance(letter);
}

double KeyCapsule::contentWidth() const {
    const auto count = static_cast<double>(symbols.size());
    return count * symbolEdge() + (letter.isEmpty() ? 0 : letterGap + letterWidth());
}

QSizeF KeyCapsule::size() const {
    // Capitals and digits have nothing below their line.
    const double content = std::max(symbolEdge(), std::ceil(QFontMetricsF(letterFont()).ascent()));
    return {std::max(smallestWidth, std::ceil(2 * horizontalPadding(form) + contentWidth())),
            std::max(smallestHeight, content + 2 * verticalPadding)};
}

void KeyCapsule::paint(QPainter& painter, QPointF center, const ShelfTheme& theme, double shown) const {
    if (shown <= 0)
        return;
    const auto extent = size();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(center);
    painter.scale(shown, shown);
    painter.setOpacity(painter.opacity() * shown);
    // From here on its corner is the origin. At rest it lies on whole pixels.
    const double ratio = painter.device()->devicePixelRatio();
    const auto onPixel = [ratio](double point) { return std::round(point * ratio) / ratio; };
    painter.translate(onPixel(center.x() - extent.width() / 2) - center.x(),
                      onPixel(center.y() - extent.height() / 2) - center.y());
    const QRectF frame({}, extent);
    painter.setBrush(form == Form::chip ? theme.keyCapsule : theme.keycap);
    painter.setPen(QPen(theme.keyCapsuleStroke, strokeWidth));
    const double inset = strokeWidth / 2;
    const double radius = form == Form::chip ? extent.height() / 2 : keycapRadius;
    painter.drawRoundedRect(frame.adjusted(inset, inset, -inset, -inset), radius, radius);
    double x = (extent.width() - contentWidth()) / 2;
    const double edge = symbolEdge();
    for (const auto& name : symbols) {
        // The painter may be scaled, so the symbol's own rounding to pixels does not apply.
        painter.drawPixmap(QPointF(onPixel(x), onPixel((extent.height() - edge) / 2)),
                           Symbol(name).pixmap(edge, ratio, theme.keyCapsuleText));
        x += edge;
    }
    painter.setFont(letterFont());
    painter.setPen(theme.keyCapsuleText);
    const QRectF place(x + letterGap, 0, letterWidth(), extent.height());
    if (isDigit(letter))
        drawTabularAtRight(painter, place, letter);
    else
        painter.drawText(place, Qt::AlignCenter | Qt::TextDontClip, letter);
    painter.restore();
}

} // namespace kestrova
