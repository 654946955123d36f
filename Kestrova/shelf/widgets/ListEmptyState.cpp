#include "Kestrova/shelf/widgets/ListEmptyState.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QFontMetricsF>
#include <QPainter>

namespace kestrova {
namespace {

constexpr double symbolSize = 34;
constexpr double gapBelowSymbol = 12;
constexpr double gapBelowTitle = 6;
constexpr double sidePadding = 12;
constexpr int flags = Qt::AlignHCenter | Qt::TextWordWrap;

} // namespace

void ListEmptyState::paint(QPainter& painter, const QRectF& area, const ShelfTheme& theme) const {
    const auto titleFont = interfaceFont(13, QFont::Medium);
    const auto hintFont = interfaceFont(11);
    const double symbolEdge = interfaceLength(symbolSize);
    const double width = area.width() - 2 * sidePadding;
    const auto heightOf = [&](const QFont& font, const QString& text) {
        return QFontMetricsF(font).boundingRect({0, 0, width, 1e4}, flags, text).height();
    };
    const double titleHeight = heightOf(titleFont, title);
    const double hintHeight = heightOf(hintFont, hint);
    const double left = area.left() + sidePadding;
    double y =
        area.center().y() - (symbolEdge + gapBelowSymbol + titleHeight + gapBelowTitle + hintHeight) / 2;
    Symbol(symbol).paint(painter, {left, y, width, symbolEdge}, symbolEdge, theme.inactiveSymbol);
    y += symbolEdge + gapBelowSymbol;
    painter.setFont(titleFont);
    painter.setPen(theme.text);
    painter.drawText(QRectF(left, y, width, titleHeight), flags, title);
    y += titleHeight + gapBelowTitle;
    painter.setFont(hintFont);
    painter.setPen(theme.secondaryText);
    painter.drawText(QRectF(left, y, width, hintHeight), flags, hint);
}

} // namespace kestrova
