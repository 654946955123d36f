#include "Kestrova/shelf/widgets/DetailOverlay.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/ItemRow.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/widgets/ActionsCard.h"
#include "Kestrova/shelf/widgets/ItemContentView.h"
#include "Kestrova/shelf/widgets/ItemEditor.h"
#include "KestrovaCore/ClipboardItem.h"

#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr auto entranceDuration = 240ms;
constexpr double entranceWay = 40;
constexpr int margin = 24;
constexpr int padding = 16;
constexpr int actionsMargin = 12;
constexpr double radius = 12;

template<typename Widget>
void drop(Widget*& widget) {
    if (auto* const dropped = std::exchange(widget, nullptr)) {
        // Later: what the person did in it may have led here.
        dropped->hide();
        dropped->deleteLater();
    }
}

QFont titleFont() {
    return interfaceFont(13, QFont::DemiBold);
}

} // namespace

DetailOverlay::DetailOverlay(ShelfPanelView& view, MainQueue& mainQueue, PictureDecoder& decoder,
                             QWidget* parent)
    : QWidget(parent),
      m_view(view),
      m_mainQueue(mainQueue),
      m_decoder(decoder),
      m_entrance(entranceDuration, QEasingCurve::InOutQuad, [this] {
          arrange();
          update();
      }) {
    hide();
}

void DetailOverlay::render(const ShelfTheme& theme) {
    const bool isNewTheme = std::exchange(m_theme, theme) != theme;
    if (m_route == m_view._route) {
        if (isNewTheme)
            themeScreen();
        return;
    }
    close();
    if (m_view._route)
        open(*m_view._route);
}

void DetailOverlay::open(const DetailRoute& route) {
    m_route = route;
    QWidget* focus = this;
    switch (route.kind) {
    case DetailRoute::Kind::preview:
        m_preview = new ItemContentView(m_mainQueue, m_decoder, this);
        break;
    case DetailRoute::Kind::edit:
        m_editor = new ItemEditor(route.item->content(), this);
        m_editor->onSave = [this] {
            m_view.perform([this] { m_view.saveEdit(*m_route->item, m_editor->content()); });
        };
        focus = m_editor;
        break;
    case DetailRoute::Kind::actions:
        m_actions = new ActionsCard(m_view, route.item, this);
        focus = m_actions;
        break;
    }
    themeScreen();
    const bool isSeen = parentWidget()->isVisible();
    m_entrance.jumpTo(!isSeen);
    arrange();
    for (auto* const child : findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        child->show();
    show();
    raise();
    focus->setFocus(Qt::OtherFocusReason);
    m_entrance.glideTo(true);
}

void DetailOverlay::close() {
    m_route.reset();
    drop(m_preview);
    drop(m_editor);
    drop(m_actions);
    hide();
}

void DetailOverlay::themeScreen() {
    if (m_preview)
        m_preview->render(m_route->item, m_theme);
    if (m_editor)
        m_editor->setTheme(m_theme);
    if (m_actions)
        m_actions->setTheme(m_theme);
    update();
}

QRect DetailOverlay::sheet() const {
    const int way = static_cast<int>((1 - m_entrance.value()) * entranceWay);
    return rect().adjusted(margin, margin, -margin, -margin).translated(way, 0);
}

QRect DetailOverlay::hint() const {
    const auto frame = sheet();
    const int lineHeight = QFontMetrics(titleFont()).height();
    return {frame.left() + padding, frame.top() + padding - 4, frame.width() - 2 * padding, lineHeight};
}

void DetailOverlay::arrange() {
    const auto inner = QRect(QPoint(sheet().left(), hint().bottom() + padding / 2), sheet().bottomRight());
    if (m_preview)
        m_preview->setGeometry(inner);
    if (m_editor)
        m_editor->setGeometry(inner.adjusted(padding, padding / 2, -6, -padding));
    if (m_actions) {
        const int cardHeight = m_actions->heightForContent();
        const int way = static_cast<int>((1 - m_entrance.value()) * entranceWay);
        m_actions->setGeometry((width() - ActionsCard::width) / 2,
                               height() - cardHeight - actionsMargin + way, ActionsCard::width, cardHeight);
    }
}

void DetailOverlay::resizeEvent(QResizeEvent*) {
    arrange();
}

void DetailOverlay::mousePressEvent(QMouseEvent* event) {
    // Nothing below it is to be hit.
    event->accept();
}

void DetailOverlay::paintEvent(QPaintEvent*) {
    if (!m_route)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(m_entrance.value());
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_theme.dim);
    painter.drawRoundedRect(rect(), radius, radius);
    if (m_actions)
        return;
    painter.setBrush(m_theme.card);
    painter.setPen(QPen(m_theme.border, 1));
    painter.drawRoundedRect(QRectF(sheet()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.setFont(titleFont());
    painter.setPen(m_theme.secondaryText);
    painter.drawText(hint(), Qt::AlignVCenter | Qt::AlignLeft,
                     m_editor ? QStringLiteral("편집") : QStringLiteral("미리보기"));
    painter.setFont(interfaceFont(11));
    painter.drawText(hint(), Qt::AlignVCenter | Qt::AlignRight,
                     m_editor ? QStringLiteral("⌘S 저장   Esc 취소") : QStringLiteral("Esc 닫기"));
}

} // namespace kestrova
