#include "Kestrova/detail/widgets/InfoRow.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace kestrova {
namespace {

constexpr double textSize = 12;
constexpr int verticalPadding = 6;
constexpr double gap = 16;
constexpr double iconGap = 6;
constexpr double lineGap = 2;
constexpr int mostLines = 3;

double labelHeight() {
    return QFontMetricsF(interfaceFont(textSize)).height();
}

int iconEdge() {
    return interfaceLength(16);
}

// What is longer is no path or name that anybody reads.
constexpr qsizetype longestTold = 1000;

/// Not taken for markup, and in as many lines as it takes.
QString toolTipOf(const QString& value) {
    return QStringLiteral("<p style='white-space: normal'>%1</p>")
        .arg(value.left(longestTold).toHtmlEscaped());
}

} // namespace

InfoRow::InfoRow(QWidget* parent) : QWidget(parent) {
    setAccessibleRole(*this, QAccessible::StaticText);
}

void InfoRow::render(const InfoRowData& shown, const ShelfTheme& theme) {
    const bool isSame = shown.label == m_data.label && shown.value == m_data.value &&
                        shown.leading.cacheKey() == m_data.leading.cacheKey() && theme == m_theme;
    if (isSame)
        return;
    m_data = shown;
    m_theme = theme;
    m_layout.reset();
    // Of a row that tells of nothing there is nothing to say.
    setSpokenName(*this, shown.label.isEmpty()
                             ? QString()
                             : shown.label + QStringLiteral(": ") + shown.value.left(longestTold));
    updateToolTip();
    update();
}

const InfoRow::Layout& InfoRow::layout(int width) const {
    if (m_layout && m_layoutWidth == width)
        return *m_layout;
    const auto font = interfaceFont(textSize);
    const double icon = m_data.leading.isNull() ? 0 : iconEdge() + iconGap;
    const double beside = width - QFontMetricsF(font).horizontalAdvance(m_data.label) - gap - icon;
    WrappedText oneLine(m_data.value, {.font = font, .width = beside, .mostLines = 1});
    m_layoutWidth = width;
    if (!oneLine.isCut())
        m_layout = Layout{.value = std::move(oneLine), .isBelow = false};
    else
        m_layout = Layout{
            .value = WrappedText(
                m_data.value,
                {.font = font, .width = width - icon, .mostLines = mostLines, .elideMode = Qt::ElideMiddle}),
            .isBelow = true};
    return *m_layout;
}

int InfoRow::heightForWidth(int width) const {
    const auto& [value, isBelow] = layout(width);
    const double content = isBelow ? labelHeight() + lineGap + value.height() : value.height();
    return static_cast<int>(std::ceil(content)) + 2 * verticalPadding;
}

void InfoRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const auto& [value, isBelow] = layout(width());
    painter.setFont(interfaceFont(textSize));
    painter.setPen(m_theme.secondaryText);
    painter.drawText(QRectF(0, verticalPadding, width(), labelHeight()), Qt::AlignLeft | Qt::AlignVCenter,
                     m_data.label);
    painter.setPen(m_theme.text);
    const double icon = m_data.leading.isNull() ? 0 : iconEdge() + iconGap;
    const double top = verticalPadding + (isBelow ? labelHeight() + lineGap : 0);
    const double left = isBelow ? icon : width() - value.width();
    value.paint(painter, {left, top});
    if (icon > 0) {
        QRect frame(0, 0, iconEdge(), iconEdge());
        frame.moveTopLeft(QPointF(left - icon, top + (labelHeight() - iconEdge()) / 2).toPoint());
        m_data.leading.paint(&painter, frame);
    }
}

void InfoRow::updateToolTip() {
    setToolTip(layout(width()).value.isCut() ? toolTipOf(m_data.value) : QString());
}

void InfoRow::resizeEvent(QResizeEvent*) {
    updateToolTip();
}

} // namespace kestrova
