#include "Kestrova/shelf/widgets/DetailSheet.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/controls/PanelButton.h"

#include <QFontMetrics>
#include <QPainter>

#include <utility>

namespace kestrova {
namespace {

constexpr int sidePadding = 16;
constexpr int topPadding = 12;
constexpr int gap = 8;
constexpr double radius = 12;

QFont titleFont() {
    return interfaceFont(13, QFont::DemiBold);
}

} // namespace

DetailSheet::DetailSheet(QString title, QString keys, QWidget* parent)
    : QWidget(parent), m_title(std::move(title)), m_keys(std::move(keys)) {
    setAccessibleName(m_title);
}

void DetailSheet::setScreen(QWidget& screen, Padding padding) {
    m_screen = &screen;
    m_padding = padding;
}

void DetailSheet::setTheme(const ShelfTheme& theme) {
    updateOnChange(*this, m_theme, theme);
}

QRect DetailSheet::titleLine() const {
    return {sidePadding, topPadding, width() - 2 * sidePadding, QFontMetrics(titleFont()).height()};
}

void DetailSheet::resizeEvent(QResizeEvent*) {
    const auto inner = rect().adjusted(0, titleLine().bottom() + gap, 0, 0);
    m_screen->setGeometry(inner.adjusted(m_padding.left, m_padding.top, -m_padding.right, -m_padding.bottom));
}

void DetailSheet::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(m_theme.card);
    painter.setPen(QPen(m_theme.separator, 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.setFont(titleFont());
    painter.setPen(m_theme.secondaryText);
    painter.drawText(titleLine(), Qt::AlignVCenter | Qt::AlignLeft, m_title);
    painter.setFont(interfaceFont(11));
    painter.drawText(titleLine(), Qt::AlignVCenter | Qt::AlignRight, m_keys);
}

} // namespace kestrova
