#include "Kestrova/detail/widgets/InfoSectionView.h"

#include "Kestrova/detail/widgets/ContentView.h"
#include "Kestrova/detail/widgets/InfoRow.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"

#include <QFontMetrics>
#include <QPainter>

namespace kestrova {
namespace {

constexpr int sidePadding = ContentView::padding;
constexpr int bottomPadding = 6;
constexpr int headingGap = 4;
constexpr int dividerWidth = 1;
constexpr double dividerOpacity = 0.4;

QFont headingFont() {
    return interfaceFont(12, QFont::DemiBold);
}

QString heading() {
    return QStringLiteral("Information");
}

} // namespace

InfoSectionView::InfoSectionView(QWidget* parent) : QWidget(parent) {
    setAccessibleRole(*this, QAccessible::Grouping);
    setSpokenName(*this, heading());
}

void InfoSectionView::render(const std::vector<InfoRowData>& rows, const ShelfTheme& theme) {
    while (m_rows.size() < rows.size())
        m_rows.push_back(new InfoRow(this));
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        // A row that is not shown keeps nothing of the item of before.
        m_rows[i]->render(i < rows.size() ? rows[i] : InfoRowData(), theme);
        m_rows[i]->setVisible(i < rows.size());
    }
    m_count = rows.size();
    m_theme = theme;
    arrange();
    update();
}

int InfoSectionView::headingHeight() const {
    return QFontMetrics(headingFont()).height() + headingGap;
}

int InfoSectionView::heightForWidth(int width) const {
    int height = headingHeight() + bottomPadding;
    for (std::size_t i = 0; i < m_count; ++i)
        height += m_rows[i]->heightForWidth(width - 2 * sidePadding) + (i > 0 ? dividerWidth : 0);
    return height;
}

void InfoSectionView::arrange() {
    const int rowWidth = width() - 2 * sidePadding;
    int top = headingHeight();
    for (std::size_t i = 0; i < m_count; ++i) {
        const int rowHeight = m_rows[i]->heightForWidth(rowWidth);
        m_rows[i]->setGeometry(sidePadding, top, rowWidth, rowHeight);
        top += rowHeight + dividerWidth;
    }
}

void InfoSectionView::resizeEvent(QResizeEvent*) {
    arrange();
}

void InfoSectionView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setFont(headingFont());
    painter.setPen(m_theme.text);
    painter.drawText(QRect(sidePadding, 0, width() - 2 * sidePadding, headingHeight() - headingGap),
                     Qt::AlignLeft | Qt::AlignVCenter, heading());
    painter.setOpacity(dividerOpacity);
    for (std::size_t i = 1; i < m_count; ++i)
        painter.fillRect(
            QRect(sidePadding, m_rows[i]->y() - dividerWidth, width() - 2 * sidePadding, dividerWidth),
            m_theme.separator);
}

} // namespace kestrova
