#include "Kestrova/capture/widgets/CapturedThumbnailStackView.h"

#include "Kestrova/capture/widgets/CapturedThumbnailItemView.h"
#include "Kestrova/capture/widgets/ThumbnailTile.h"

#include <QCursor>
#include <QPainter>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace kestrova {
namespace {

constexpr int padding = 8;
constexpr int spacing = 8;

constexpr Spring::Traits heightTraits{
    .response = std::chrono::duration<double>(0.32), .dampingFraction = 0.82, .precision = 0.25};
constexpr Spring::Traits presenceTraits{
    .response = std::chrono::duration<double>(0.32), .dampingFraction = 0.82, .precision = 0.002};
constexpr double scaleOfGone = 0.92;

double opacity(const Spring& presence) {
    return std::clamp(presence.value(), 0.0, 1.0);
}

} // namespace

CapturedThumbnailStackView::CapturedThumbnailStackView(MainQueue& mainQueue, QWidget* parent)
    : QWidget(parent),
      m_maker(mainQueue),
      m_shadow(QPixmap::fromImage(ThumbnailShadow::draw())),
      m_clock([this](std::chrono::milliseconds time) { advance(time); }) {
    setFocusPolicy(Qt::NoFocus);
}

CapturedThumbnailStackView::~CapturedThumbnailStackView() = default;

QMargins CapturedThumbnailStackView::shadowRoom() {
    constexpr int beside = ThumbnailShadow::reach - padding;
    return {beside, beside - ThumbnailShadow::offset, beside, beside + ThumbnailShadow::offset};
}

CapturedThumbnailItemView* CapturedThumbnailStackView::item(QUuid id) const {
    const auto found =
        std::ranges::find_if(m_items, [id](const Item& each) { return each.view->entry().id == id; });
    return found == m_items.end() ? nullptr : found->view;
}

bool CapturedThumbnailStackView::isAnimated() const {
    return isVisible() && m_ground == Ground::translucent;
}

void CapturedThumbnailStackView::setEntries(const std::vector<ThumbnailEntry>& entries) {
    m_entries = entries;
    auto before = std::exchange(m_items, {});
    double height = static_cast<double>(entries.size()) * (ThumbnailTile::size.height() + spacing);
    for (const auto& entry : entries) {
        height -= ThumbnailTile::size.height() + spacing;
        const auto found =
            std::ranges::find_if(before, [&](const Item& each) { return each.view->entry().id == entry.id; });
        if (found != before.end()) {
            m_items.push_back(std::move(*found));
            before.erase(found);
            m_items.back().height.setTarget(height);
        } else {
            m_items.push_back(makeItem(entry));
            m_items.back().height = Spring(heightTraits, height);
        }
    }
    for (auto& gone : before)
        remove(gone);
    if (!isAnimated())
        finish();
    layOut();
    if (isAtRest())
        m_clock.stop();
    else
        m_clock.run();
}

bool CapturedThumbnailStackView::isAtRest() const {
    return m_leaving.empty() && std::ranges::all_of(m_items, [](const Item& each) {
               return each.height.isAtRest() && each.presence.isAtRest();
           });
}

CapturedThumbnailStackView::Item CapturedThumbnailStackView::makeItem(const ThumbnailEntry& entry) {
    auto* const view = new CapturedThumbnailItemView(entry, this);
    const auto id = entry.id;
    const auto tells = [id](const std::function<void(QUuid)>& callback) {
        if (const auto told = callback)
            told(id);
    };
    view->onClick = [this, tells] { tells(onEntryClick); };
    view->onEdit = [this, tells] { tells(onEntryEdit); };
    view->onClose = [this, tells] { tells(onEntryClose); };
    view->onDrag = [this, view](QPoint pressedAt) {
        // The mouse belongs to the drag now, and whether it comes back nobody tells.
        m_isMouseInside = false;
        setHovered(nullptr);
        if (onEntryDrag)
            onEntryDrag(view->entry(), view->tile(), pressedAt);
    };
    view->onMouse = [this, view](QPoint mouse) {
        m_isMouseInside = true;
        setHovered(view, mouse);
    };
    view->onMouseLeft = [this, view] {
        if (m_hovered == view)
            setHovered(nullptr);
    };
    view->show();
    Item made{.view = view, .height = Spring(heightTraits, 0), .presence = Spring(presenceTraits, 0)};
    made.presence.setTarget(1);
    if (m_scale > 0)
        requestTile(made);
    return made;
}

void CapturedThumbnailStackView::remove(Item& item) {
    if (isAnimated()) {
        LeavingItem leaving{.picture = item.view->grab(), .height = item.height, .presence = item.presence};
        leaving.presence.setTarget(0);
        m_leaving.push_back(std::move(leaving));
    }
    if (m_hovered == item.view)
        setHovered(nullptr);
    item.view->hide();
    // It may be one of its own buttons that has been pressed.
    item.view->deleteLater();
}

void CapturedThumbnailStackView::setGround(Ground ground) {
    m_ground = ground;
    update();
}

void CapturedThumbnailStackView::setScale(double scale) {
    m_scale = scale;
    for (auto& each : m_items)
        requestTile(each);
}

void CapturedThumbnailStackView::requestTile(Item& item) {
    if (std::exchange(item.scale, m_scale) == m_scale)
        return;
    if (item.view->tile().isNull())
        item.view->setTile(QPixmap::fromImage(ThumbnailTile::draw({}, m_scale)));
    const auto id = item.view->entry().id;
    m_maker.make(*item.view->entry().image, m_scale,
                 [this, id, scale = m_scale](const QImage& tile) { showTile(id, scale, tile); });
}

void CapturedThumbnailStackView::showTile(QUuid id, double scale, const QImage& tile) {
    const auto found =
        std::ranges::find_if(m_items, [id](const Item& each) { return each.view->entry().id == id; });
    if (found == m_items.end() || found->scale != scale)
        return;
    found->view->setTile(QPixmap::fromImage(tile));
    // From now on the PNG is enough.
    found->view->entry().image->letGoOfPixels();
}

void CapturedThumbnailStackView::advance(std::chrono::duration<double> time) {
    for (auto& each : m_items) {
        each.height.advance(time);
        each.presence.advance(time);
    }
    for (auto& each : m_leaving)
        each.presence.advance(time);
    std::erase_if(m_leaving, [](const LeavingItem& each) { return each.presence.isAtRest(); });
    layOut();
    if (isAtRest())
        m_clock.stop();
}

void CapturedThumbnailStackView::finish() {
    for (auto& each : m_items) {
        each.height.finish();
        each.presence.finish();
    }
    m_leaving.clear();
}

void CapturedThumbnailStackView::setHovered(CapturedThumbnailItemView* view, QPoint mouse) {
    auto* const before = std::exchange(m_hovered, view);
    if (before && before != view)
        before->endHover();
    if (view)
        view->hover(mouse);
}

void CapturedThumbnailStackView::hoverUnderMouse() {
    if (!isVisible() || !m_isMouseInside)
        return;
    const auto mouse = mapFromGlobal(QCursor::pos());
    const auto found = std::ranges::find_if(
        m_items, [mouse](const Item& each) { return each.view->geometry().contains(mouse); });
    if (found == m_items.end())
        setHovered(nullptr);
    else
        setHovered(found->view, mouse - found->view->pos());
}

QRectF CapturedThumbnailStackView::tileAt(double height) const {
    const auto room = shadowRoom();
    const double bottom = this->height() - room.bottom() - padding - height;
    return {QPointF(room.left() + padding, bottom - ThumbnailTile::size.height()), ThumbnailTile::size};
}

std::vector<QRect> CapturedThumbnailStackView::restingTiles() const {
    std::vector<QRect> tiles;
    for (const auto& each : m_items)
        tiles.push_back(tileAt(each.height.target()).toRect());
    return tiles;
}

void CapturedThumbnailStackView::layOut() {
    for (const auto& each : m_items) {
        // One that comes moves in from its upper edge.
        const double above = (1 - each.presence.value()) * ThumbnailTile::size.height();
        each.view->move(tileAt(each.height.value() + above).topLeft().toPoint());
        each.view->setOpacity(opacity(each.presence));
        each.view->setResting(each.height.isAtRest() && each.presence.isAtRest());
    }
    hoverUnderMouse();
    update();
}

void CapturedThumbnailStackView::paintShadow(QPainter& painter, const QRectF& tile) const {
    constexpr double reach = ThumbnailShadow::reach;
    painter.drawPixmap(tile.adjusted(-reach, -reach, reach, reach).translated(0, ThumbnailShadow::offset),
                       m_shadow, QRectF(m_shadow.rect()));
}

void CapturedThumbnailStackView::paintEvent(QPaintEvent*) {
    if (m_ground == Ground::opaque)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (const auto& each : m_items) {
        painter.setOpacity(opacity(each.presence));
        paintShadow(painter, each.view->geometry());
    }
    for (const auto& each : m_leaving) {
        painter.setOpacity(opacity(each.presence));
        const auto tile = tileAt(each.height.value());
        const double scale = scaleOfGone + (1 - scaleOfGone) * each.presence.value();
        painter.save();
        painter.translate(tile.center());
        painter.scale(scale, scale);
        painter.translate(-tile.center());
        paintShadow(painter, tile);
        painter.drawPixmap(tile, each.picture, QRectF(each.picture.rect()));
        painter.restore();
    }
}

void CapturedThumbnailStackView::resizeEvent(QResizeEvent*) {
    layOut();
}

void CapturedThumbnailStackView::showEvent(QShowEvent*) {
    window()->windowHandle()->installEventFilter(this);
}

bool CapturedThumbnailStackView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Enter) {
        m_isMouseInside = true;
    } else if (event->type() == QEvent::Leave) {
        m_isMouseInside = false;
        setHovered(nullptr);
    }
    return QWidget::eventFilter(watched, event);
}

void CapturedThumbnailStackView::hideEvent(QHideEvent*) {
    m_isMouseInside = false;
    setHovered(nullptr);
    m_clock.stop();
    finish();
    layOut();
}

} // namespace kestrova
