#include "Kestrova/shelf/widgets/ActionsCard.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/ItemRow.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/widgets/ActionRow.h"
#include "KestrovaCore/ClipboardItem.h"

#include <QFontMetrics>
#include <QPainter>

#include <utility>

namespace kestrova {
namespace {

constexpr int padding = 12;
constexpr int titleGap = 8;
constexpr double radius = 12;

QFont titleFont() {
    return interfaceFont(12, QFont::DemiBold);
}

} // namespace

ActionsCard::ActionsCard(ShelfPanelView& view, const std::shared_ptr<ClipboardItem>& item, QWidget* parent)
    : QWidget(parent), m_view(view), m_item(item) {
    setAccessibleName(QStringLiteral("액션"));
    add(QStringLiteral("복사"), [this] {
        m_view.copy(m_item);
        m_view.popRoute();
    });
    add(item->pinned() ? QStringLiteral("핀 해제") : QStringLiteral("Pin"), [this] {
        m_view.togglePin(*m_item);
        m_view.popRoute();
    });
    if (ShelfPanelView::isEditable(*item))
        add(QStringLiteral("편집"), [this] {
            // The card is what closing the editor comes back to.
            m_view._suspendedRoute = m_view._route;
            m_view.edit(m_item);
        });
    add(QStringLiteral("미리보기"), [this] {
        m_view._suspendedRoute = m_view._route;
        m_view.preview(m_item);
    });
    add(QStringLiteral("삭제"), [this] {
        m_view.deleteItem(*m_item);
        m_view.popRoute();
    });
    setFocusPolicy(Qt::NoFocus);
}

template<typename Act>
void ActionsCard::add(const QString& title, Act act) {
    auto* const row = new ActionRow(title, this);
    row->onTap = [this, act] { m_view.perform(act); };
    m_rows.push_back(row);
}

void ActionsCard::setTheme(const ShelfTheme& theme) {
    m_theme = theme;
    for (auto* const row : m_rows)
        row->setTheme(theme);
    update();
}

int ActionsCard::heightForContent() const {
    return 2 * padding + QFontMetrics(titleFont()).height() + titleGap +
           static_cast<int>(m_rows.size()) * ActionRow::rowHeight();
}

void ActionsCard::resizeEvent(QResizeEvent*) {
    int y = padding + QFontMetrics(titleFont()).height() + titleGap;
    for (auto* const row : m_rows) {
        row->setGeometry(padding, y, QWidget::width() - 2 * padding, ActionRow::rowHeight());
        y += ActionRow::rowHeight();
    }
}

void ActionsCard::focusInEvent(QFocusEvent*) {
    m_rows.front()->setFocus(Qt::OtherFocusReason);
}

void ActionsCard::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_theme.separator, 1));
    painter.setBrush(m_theme.card);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    const auto font = titleFont();
    const QRect title(padding + 10, padding, QWidget::width() - 2 * padding - 20,
                      QFontMetrics(font).height());
    painter.setFont(font);
    painter.setPen(m_theme.secondaryText);
    painter.drawText(title, Qt::AlignVCenter | Qt::AlignLeft,
                     QFontMetrics(font).elidedText(primaryText(*m_item), Qt::ElideRight, title.width()));
}

} // namespace kestrova
