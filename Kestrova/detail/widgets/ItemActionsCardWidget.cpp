#include "Kestrova/detail/widgets/ItemActionsCardWidget.h"

#include "Kestrova/detail/widgets/ActionRowButton.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "Kestrova/shelf/controls/ThinScrollBar.h"

#include <QCursor>
#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollArea>

#include <algorithm>
#include <utility>

namespace kestrova {
namespace {

constexpr int padding = 12;
// The title stands above the labels' symbols, which lie within the ground of their row.
constexpr int titleInset = 8;
constexpr int titleGap = 8;
constexpr double radius = 12;

QFont titleFont() {
    return interfaceFont(12, QFont::DemiBold);
}

} // namespace

ItemActionsCardWidget::ItemActionsCardWidget(std::unique_ptr<ItemActionsCard> card, QString title,
                                             QWidget* parent)
    : QWidget(parent),
      m_card(std::move(card)),
      m_title(std::move(title)),
      m_scrollArea(new QScrollArea(this)),
      m_scrollBar(new ThinScrollBar),
      m_list(new QWidget) {
    setAccessibleRole(*m_list, QAccessible::PopupMenu);
    m_list->setAccessibleName(QStringLiteral("액션"));
    m_list->setAccessibleDescription(m_title);
    m_scrollArea->setFrameShape(QFrame::NoFrame);
    m_scrollArea->setFocusPolicy(Qt::NoFocus);
    m_scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scrollArea->setVerticalScrollBar(m_scrollBar);
    m_scrollArea->setWidget(m_list);
    m_scrollArea->viewport()->setAutoFillBackground(false);
    // The area has given it a ground.
    m_list->setAutoFillBackground(false);
    m_card->onRender = [this] { render(); };
}

ItemActionsCardWidget::~ItemActionsCardWidget() {
    m_card->onRender = nullptr;
}

void ItemActionsCardWidget::setTheme(const ShelfTheme& theme) {
    m_theme = theme;
    m_scrollBar->setThumbColor(theme.scrollThumb);
    update();
    render();
    // The desktop may have another font.
    arrange();
}

void ItemActionsCardWidget::render() {
    const auto rows = m_card->rows();
    const bool isNewCount = rows.size() != m_rows.size();
    makeRows(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i)
        m_rows[i]->render(rows[i], static_cast<std::ptrdiff_t>(i) == m_card->highlightedIndex(), m_theme);
    if (isNewCount)
        arrange();
    if (isNewCount && onHeightChange)
        onHeightChange();
    focusSelectedRow();
    const std::pair selected(m_card->screen, m_card->selectedIndex);
    if (std::exchange(m_shown, selected) != selected)
        m_scrollArea->ensureWidgetVisible(m_rows[static_cast<std::size_t>(m_card->selectedIndex)], 0, 0);
}

void ItemActionsCardWidget::makeRows(std::size_t count) {
    while (m_rows.size() > count) {
        m_rows.back()->hide();
        // Later: a press on it may have led here.
        m_rows.back()->deleteLater();
        m_rows.pop_back();
    }
    while (m_rows.size() < count) {
        auto* const row = new ActionRowButton(m_list);
        const auto index = std::ssize(m_rows);
        row->onTap = [this, index] { m_card->rowClicked(index); };
        row->onPointerMove = [this, index](QPoint place) { pointerMoved(index, place); };
        row->onPointerLeave = [this] { m_card->pointerLeft(); };
        row->show();
        m_rows.push_back(row);
    }
}

void ItemActionsCardWidget::pointerMoved(std::ptrdiff_t row, QPoint globalPosition) {
    // Rows that come to lie below a pointer at rest are told of it too.
    if (std::exchange(m_pointer, globalPosition) != globalPosition)
        m_card->pointerMoved(row);
}

void ItemActionsCardWidget::focusSelectedRow() {
    auto* const focused = window()->focusWidget();
    if (focused != this && !(focused && m_list->isAncestorOf(focused)))
        return;
    auto* const row = m_rows[static_cast<std::size_t>(m_card->selectedIndex)];
    QWidget* const wanted = row->isEnabled() ? static_cast<QWidget*>(row) : this;
    if (focused != wanted)
        wanted->setFocus(Qt::OtherFocusReason);
}

QRect ItemActionsCardWidget::titleLine() const {
    constexpr int left = padding + titleInset;
    return {left, padding, QWidget::width() - 2 * left, QFontMetrics(titleFont()).height()};
}

int ItemActionsCardWidget::listTop() const {
    return padding + titleLine().height() + titleGap;
}

int ItemActionsCardWidget::heightForContent() const {
    return listTop() + static_cast<int>(m_rows.size()) * ActionRowButton::rowHeight() + padding;
}

void ItemActionsCardWidget::arrange() {
    const int rowHeight = ActionRowButton::rowHeight();
    const int rowWidth = QWidget::width() - 2 * padding;
    m_scrollArea->setGeometry(padding, listTop(), QWidget::width() - padding, height() - listTop() - padding);
    for (std::size_t i = 0; i < m_rows.size(); ++i)
        m_rows[i]->setGeometry(0, static_cast<int>(i) * rowHeight, rowWidth, rowHeight);
    m_list->resize(rowWidth, static_cast<int>(m_rows.size()) * rowHeight);
}

QPoint ItemActionsCardWidget::placeOfMenu() const {
    const auto index = static_cast<std::size_t>(m_card->highlightedIndex());
    const auto* const row = m_rows[std::min(index, m_rows.size() - 1)];
    return row->mapToGlobal(QPoint(row->width() / 2, row->height()));
}

void ItemActionsCardWidget::showEvent(QShowEvent*) {
    m_pointer = QCursor::pos();
    m_card->appears();
}

void ItemActionsCardWidget::hideEvent(QHideEvent*) {
    m_card->disappears();
}

void ItemActionsCardWidget::resizeEvent(QResizeEvent*) {
    arrange();
}

void ItemActionsCardWidget::mousePressEvent(QMouseEvent* event) {
    // Beside the rows nothing is to be hit.
    event->accept();
}

void ItemActionsCardWidget::focusInEvent(QFocusEvent*) {
    focusSelectedRow();
}

void ItemActionsCardWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_theme.separator, 1));
    painter.setBrush(m_theme.card);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    const auto font = titleFont();
    painter.setFont(font);
    painter.setPen(m_theme.secondaryText);
    painter.drawText(titleLine(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     QFontMetrics(font).elidedText(m_title, Qt::ElideRight, titleLine().width()));
}

} // namespace kestrova
