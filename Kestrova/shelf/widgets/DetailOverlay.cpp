#include "Kestrova/shelf/widgets/DetailOverlay.h"

#include "Kestrova/detail/widgets/ItemEditor.h"
#include "Kestrova/look/Easing.h"
#include "Kestrova/look/Opacity.h"
#include "Kestrova/shelf/ItemRow.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "Kestrova/shelf/controls/TabStops.h"
#include "Kestrova/shelf/widgets/ActionsCard.h"
#include "Kestrova/shelf/widgets/DetailSheet.h"
#include "Kestrova/shelf/widgets/ItemContentView.h"
#include "KestrovaCore/ClipboardItem.h"

#include <QMouseEvent>
#include <QPainter>

#include <cmath>
#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr auto routeDuration = 240ms;
constexpr auto routeTiming = AnimationTiming::easeInEaseOut;
constexpr int sheetMargin = 24;
constexpr int actionsMargin = 12;

QString spokenName(DetailRoute::Kind kind) {
    switch (kind) {
    case DetailRoute::Kind::preview:
        return QStringLiteral("미리보기");
    case DetailRoute::Kind::edit:
        return QStringLiteral("편집");
    case DetailRoute::Kind::actions:
        return QStringLiteral("액션");
    }
    Q_UNREACHABLE();
}

} // namespace

DetailOverlay::DetailOverlay(ShelfPanelView& view, MainQueue& mainQueue, PictureDecoder& decoder,
                             QWidget* parent)
    : QWidget(parent),
      m_view(view),
      m_mainQueue(mainQueue),
      m_decoder(decoder),
      m_entrance(routeDuration, easing(routeTiming), [this] { step(); }),
      m_exit(routeDuration, easing(routeTiming), [this] { step(); }),
      m_dim(routeDuration, easing(routeTiming), [this] { step(); }) {
    setAccessibleRole(*this, QAccessible::Dialog);
    hide();
}

void DetailOverlay::render(const ShelfTheme& theme) {
    const bool isNewTheme = std::exchange(m_theme, theme) != theme;
    if (isNewTheme)
        update();
    if (m_route == m_view._route) {
        if (isNewTheme && m_route)
            m_screen.setTheme(theme);
        return;
    }
    if (m_route)
        close();
    if (m_view._route)
        open(*m_view._route);
    // What goes must not keep the pointer from what is below it.
    setAttribute(Qt::WA_TransparentForMouseEvents, !m_route);
    const bool isDimmed = m_route && m_screen.edge == Edge::trailing;
    if (!parentWidget()->isVisible()) {
        m_entrance.finish();
        m_exit.finish();
        m_dim.jumpTo(isDimmed);
    } else {
        m_dim.glideTo(isDimmed);
    }
    step();
}

void DetailOverlay::open(const DetailRoute& route) {
    m_route = route;
    setAccessibleName(spokenName(route.kind));
    setAccessibleDescription(primaryText(*route.item));
    switch (route.kind) {
    case DetailRoute::Kind::preview:
        m_screen = makePreview(route);
        break;
    case DetailRoute::Kind::edit:
        m_screen = makeEditor(route);
        break;
    case DetailRoute::Kind::actions:
        m_screen = makeActions(route);
        break;
    }
    m_screen.setTheme(m_theme);
    m_entrance.jumpTo(false);
    m_screen.widget->show();
    show();
    raise();
    m_screen.focus->setFocus(Qt::OtherFocusReason);
    m_entrance.glideTo(true);
}

void DetailOverlay::close() {
    if (parentWidget()->isVisible()) {
        m_leaving = {m_screen.widget->grab(), m_screen.widget->geometry(), m_screen.edge};
        m_exit.jumpTo(false);
        m_exit.glideTo(true);
    }
    m_route.reset();
    // Later: what the person did in it may have led here.
    m_screen.widget->hide();
    m_screen.widget->deleteLater();
    m_screen = {};
}

DetailOverlay::Screen DetailOverlay::makePreview(const DetailRoute& route) {
    auto* const sheet = new DetailSheet(QStringLiteral("미리보기"), QStringLiteral("Esc 닫기"), this);
    auto* const content = new ItemContentView(m_mainQueue, m_decoder, sheet);
    sheet->setScreen(*content, {});
    return {.widget = sheet,
            .focus = this,
            .setTheme =
                [sheet, content, item = route.item](const ShelfTheme& theme) {
                    sheet->setTheme(theme);
                    content->render(item, theme);
                },
            .edge = Edge::trailing};
}

DetailOverlay::Screen DetailOverlay::makeEditor(const DetailRoute& route) {
    auto* const sheet = new DetailSheet(QStringLiteral("편집"), QStringLiteral("⌘S 저장   Esc 취소"), this);
    auto* const editor = new ItemEditor(route.item->content(), sheet);
    editor->onSave = [this, editor, item = route.item] {
        m_view.perform([&] { m_view.saveEdit(*item, editor->content()); });
    };
    sheet->setScreen(*editor, {.left = 16, .top = 8, .right = 6, .bottom = 16});
    return {.widget = sheet,
            .focus = editor,
            .setTheme =
                [sheet, editor](const ShelfTheme& theme) {
                    sheet->setTheme(theme);
                    editor->setTheme(theme);
                },
            .edge = Edge::trailing};
}

DetailOverlay::Screen DetailOverlay::makeActions(const DetailRoute& route) {
    auto* const card = new ActionsCard(m_view, route.item, this);
    return {.widget = card,
            .focus = card,
            .setTheme = [card](const ShelfTheme& theme) { card->setTheme(theme); },
            .edge = Edge::bottom};
}

QRect DetailOverlay::placeOfScreen() const {
    if (m_screen.edge == Edge::trailing)
        return rect().adjusted(sheetMargin, sheetMargin, -sheetMargin, -sheetMargin);
    const int cardHeight = static_cast<ActionsCard*>(m_screen.widget)->heightForContent();
    return {(width() - ActionsCard::width) / 2, height() - cardHeight - actionsMargin, ActionsCard::width,
            cardHeight};
}

QPoint DetailOverlay::onItsWay(const QRect& place, Edge edge, double shown) const {
    const auto rest = [shown](int way) { return static_cast<int>(std::lround((1 - shown) * way)); };
    return edge == Edge::trailing ? place.topLeft() + QPoint(rest(width() - place.left()), 0)
                                  : place.topLeft() + QPoint(0, rest(height() - place.top()));
}

void DetailOverlay::step() {
    if (m_screen.widget) {
        const auto place = placeOfScreen();
        m_screen.widget->setGeometry({onItsWay(place, m_screen.edge, m_entrance.value()), place.size()});
        setOpacity(*m_screen.widget, m_entrance.value());
    }
    if (m_exit.value() >= 1)
        m_leaving = {};
    setVisible(m_route || !m_leaving.picture.isNull() || m_dim.value() > 0);
    update();
}

bool DetailOverlay::focusNextPrevChild(bool next) {
    // What lies below cannot be reached.
    return focusNextIn(*this, next);
}

void DetailOverlay::resizeEvent(QResizeEvent*) {
    step();
}

void DetailOverlay::mousePressEvent(QMouseEvent* event) {
    // Nothing below it is to be hit.
    event->accept();
}

void DetailOverlay::hideEvent(QHideEvent*) {
    m_entrance.finish();
    m_exit.finish();
    m_dim.finish();
}

void DetailOverlay::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(m_dim.value());
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_theme.dim);
    painter.drawRoundedRect(rect(), ShelfFrame::cornerRadius, ShelfFrame::cornerRadius);
    if (m_leaving.picture.isNull())
        return;
    const double shown = 1 - m_exit.value();
    painter.setOpacity(shown);
    painter.drawPixmap(onItsWay(m_leaving.place, m_leaving.edge, shown), m_leaving.picture);
}

} // namespace kestrova
