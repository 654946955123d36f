#include "Kestrova/shelf/widgets/KeyCapsule.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/shelf/widgets/ShelfTheme.h"

#include <QFontMetricsF>
#include <QPainter>

namespace kestrova {
namespace {

constexpr double height = 16;
constexpr double horizontalPadding = 4;
constexpr double symbolEdge = 10;
constexpr double spacing = 1;

QFont letterFont() {
    return interfaceFont(10, QFont::DemiBold);
}

} // namespace

double KeyCapsule::textWidth() const {
    return QFontMetricsF(letterFont()).horizontalAdvance(letter);
}

QSizeF KeyCapsule::size() const {
    const double symbols = static_cast<double>(modifiers.size()) * (symbolEdge + spacing);
    return {qMax(24.0, 2 * horizontalPadding + symbols + textWidth()), height};
}

void KeyCapsule::paint(QPainter& painter, QPointF center, const ShelfTheme& theme, double shown) const {
    if (shown <= 0)
        return;
    painter.save();
    painter.translate(center);
    painter.scale(shown, shown);
    painter.setOpacity(painter.opacity() * shown);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto extent = size();
    const QRectF frame(QPointF(-extent.width() / 2, -extent.height() / 2), extent);
    painter.setBrush(theme.keyCapsule);
    painter.setPen(QPen(theme.keyCapsuleStroke, 0.5));
    painter.drawRoundedRect(frame.adjusted(0.25, 0.25, -0.25, -0.25), height / 2, height / 2);
    const double content = static_cast<double>(modifiers.size()) * (symbolEdge + spacing) + textWidth();
    double x = -content / 2;
    for (const auto& name : modifiers) {
        const QRectF place(x, frame.top(), symbolEdge, height);
        // The painter is scaled, so the symbol's own rounding to pixels does not apply.
        painter.drawPixmap(
            QPointF(x, -symbolEdge / 2),
            Symbol(name).pixmap(symbolEdge, painter.device()->devicePixelRatio(), theme.keyCapsuleText));
        x = place.right() + spacing;
    }
    painter.setFont(letterFont());
    painter.setPen(theme.keyCapsuleText);
    painter.drawText(QRectF(x, frame.top(), textWidth() + 1, height), Qt::AlignVCenter | Qt::AlignLeft,
                     letter);
    painter.restore();
}

} // namespace kestrova
