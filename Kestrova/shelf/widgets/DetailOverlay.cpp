#include "Kestrova/shelf/widgets/DetailOverlay.h"

#include "Kestrova/detail/widgets/ItemActionsCardWidget.h"
#include "Kestrova/detail/widgets/ItemEditScreen.h"
#include "Kestrova/detail/widgets/ItemPreviewScreen.h"
#include "Kestrova/look/Easing.h"
#include "Kestrova/look/Opacity.h"
#include "Kestrova/shelf/ItemRow.h"
#include "Kestrova/shelf/ShelfActionsCard.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "Kestrova/shelf/controls/TabStops.h"
#include "KestrovaCore/ClipboardItem.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr auto routeDuration = 240ms;
constexpr auto routeTiming = AnimationTiming::easeInEaseOut;
// As wide as the padding of what lies below, of which nothing then looks out half.
constexpr int sheetMargin = 16;
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

DetailOverlay::DetailOverlay(ShelfPanelView& view, const DetailSurroundings& surroundings, QWidget* parent)
    : QWidget(parent),
      m_view(view),
      m_surroundings(surroundings),
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
        if (m_route && m_screen.followState)
            m_screen.followState();
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
    m_card = nullptr;
    // Later: what the person did in it may have led here.
    m_screen.widget->hide();
    m_screen.widget->deleteLater();
    m_screen = {};
}

DetailOverlay::Screen DetailOverlay::makePreview(const DetailRoute& route) {
    return screenOf(*new ItemPreviewScreen(
        route.item, m_surroundings, [this] { leave(); }, this));
}

DetailOverlay::Screen DetailOverlay::makeEditor(const DetailRoute& route) {
    auto* const screen = new ItemEditScreen(
        route.item, m_surroundings.mainQueue,
        {.onSave = [this, item = route.item](
                       const QString& text) { m_view.perform([&] { m_view.saveEdit(*item, text); }); },
         .onCancel = [this] { leave(); }},
        this);
    return screenOf(*screen);
}

DetailOverlay::Screen DetailOverlay::screenOf(DetailScreen& screen) {
    return {.widget = &screen,
            .focus = &screen.firstFocus(),
            .setTheme = [&screen](const ShelfTheme& theme) { screen.setTheme(theme); },
            .edge = Edge::trailing};
}

void DetailOverlay::leave() {
    m_view.perform([this] { m_view.popRoute(); });
}

DetailOverlay::Screen DetailOverlay::makeActions(const DetailRoute& route) {
    m_card =
        new ItemActionsCardWidget(makeItemActionsCard(m_view, route.item), primaryText(*route.item), this);
    m_card->onHeightChange = [this] { step(); };
    return {.widget = m_card,
            .focus = m_card,
            .setTheme = [card = m_card](const ShelfTheme& theme) { card->setTheme(theme); },
            .followState =
                [this, card = m_card] {
                    followCollections(card->card(), m_view);
                    card->render();
                },
            .edge = Edge::bottom};
}

QRect DetailOverlay::placeOfScreen() const {
    if (m_screen.edge == Edge::trailing)
        return rect().adjusted(sheetMargin, sheetMargin, -sheetMargin, -sheetMargin);
    const int cardHeight = std::min(m_card->heightForContent(), height() - 2 * actionsMargin);
    return {(width() - ItemActionsCardWidget::width) / 2, height() - cardHeight - actionsMargin,
            ItemActionsCardWidget::width, cardHeight};
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
    // What lies below cannot be reached, even if there is nothing to walk on the screen.
    return focusNextIn(*this, next) || m_route;
}

void DetailOverlay::resizeEvent(QResizeEvent*) {
    step();
}

void DetailOverlay::mousePressEvent(QMouseEvent* event) {
    // Nothing below it is to be hit.
    event->accept();
    // The card has no button that closes it, and a menu goes where the person presses beside it.
    if (m_card && event->button() == Qt::LeftButton)
        leave();
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
