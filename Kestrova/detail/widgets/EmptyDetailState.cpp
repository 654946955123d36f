#include "Kestrova/detail/widgets/EmptyDetailState.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"

#include <QFontMetricsF>
#include <QPainter>

#include <utility>

namespace kestrova {
namespace {

constexpr double symbolSize = 34;
constexpr double gap = 12;
constexpr double textSize = 12;

QString line() {
    return QStringLiteral("항목을 선택하면 미리보기가 보여요");
}

} // namespace

EmptyDetailState::EmptyDetailState(QWidget* parent) : QWidget(parent) {
    setAccessibleRole(*this, QAccessible::StaticText);
    setSpokenName(*this, line());
}

void EmptyDetailState::render(const ShelfTheme& theme) {
    if (std::exchange(m_theme, theme) != theme)
        update();
}

void EmptyDetailState::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const double symbolEdge = interfaceLength(symbolSize);
    const auto font = interfaceFont(textSize);
    const double lineHeight = QFontMetricsF(font).height();
    const double top = height() / 2.0 - (symbolEdge + gap + lineHeight) / 2;
    Symbol(QStringLiteral("square.dashed"))
        .paint(painter, {0, top, static_cast<double>(width()), symbolEdge}, symbolEdge,
               m_theme.inactiveSymbol);
    painter.setFont(font);
    painter.setPen(m_theme.secondaryText);
    painter.drawText(QRectF(0, top + symbolEdge + gap, width(), lineHeight), Qt::AlignCenter, line());
}

} // namespace kestrova
