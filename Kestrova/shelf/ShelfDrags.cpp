#include "Kestrova/shelf/ShelfDrags.h"

#include "Kestrova/shelf/CollectionOperations.h"
#include "Kestrova/shelf/ShelfPanel.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaCollection.h"
#include "Platform/Screens.h"

#include <QLoggingCategory>

#include <algorithm>

namespace kestrova {
namespace {

Q_LOGGING_CATEGORY(lcDrag, "kestrova.drag")

using namespace std::chrono_literals;

constexpr auto pollInterval = 50ms;

} // namespace

ShelfDrags::ShelfDrags(ShelfPanelView& view, const Surroundings& surroundings)
    : m_view(view), m_surroundings(surroundings), m_self(std::make_shared<ShelfDrags*>(this)) {}

ShelfDrags::~ShelfDrags() = default;

// From the shelf

ItemDragPayload ShelfDrags::beginItem(const ClipboardItem& item) {
    qCInfo(lcDrag, "[Drag] start id=%lld", static_cast<long long>(item.id().value));
    m_isUnderWay = true;
    return {.id = item.id(), .exportText = item.content()};
}

CollectionReorderPayload ShelfDrags::beginCollection(const KovaCollection& collection) {
    m_isUnderWay = true;
    m_view._draggingCollectionID = collection.id();
    return {.id = collection.id()};
}

void ShelfDrags::end() {
    m_isUnderWay = false;
    forget();
}

void ShelfDrags::forget() {
    itemsLeft();
    collectionLeft();
    m_view._draggingCollectionID.reset();
}

// Items over the shelf

void ShelfDrags::itemsEntered() {
    m_view._hoverPollTimer = poll(m_view._hoverPollTimer, &ShelfDrags::updateHoveredTarget);
    updateHoveredTarget();
}

void ShelfDrags::itemsLeft() {
    m_view._hoverPollTimer.cancel();
    m_view._hoveredDropTarget.reset();
}

bool ShelfDrags::dropItems(const std::vector<ItemDragPayload>& payloads, QPointF point) {
    const auto target = m_view.dropTargetAt(point);
    if (!target)
        return false;
    const auto& collections = m_view.allCollections();
    const auto found = std::ranges::find(collections, target->collection, &KovaCollection::id);
    if (found == collections.end())
        return false;
    const auto collection = *found;
    for (const auto& payload : payloads) {
        const auto& items = m_view.items();
        const auto item = std::ranges::find(items, payload.id, &ClipboardItem::id);
        if (item != items.end())
            m_view.addToCollection(*std::shared_ptr(*item), collection);
    }
    return !payloads.empty();
}

void ShelfDrags::updateHoveredTarget() {
    if (const auto pointer = pointerInWindow())
        m_view._hoveredDropTarget =
            m_view.dropTargetAt({pointer->x(), m_surroundings.panel.frame().height - pointer->y()});
}

// Collections over the shelf

void ShelfDrags::collectionEntered() {
    m_view._dragReorderPollTimer = poll(m_view._dragReorderPollTimer, &ShelfDrags::updateReorderHover);
    updateReorderHover();
}

void ShelfDrags::collectionLeft() {
    m_view._dragReorderPollTimer.cancel();
    m_view._dragReorderHoverX.reset();
}

void ShelfDrags::updateReorderHover() {
    if (const auto pointer = pointerInWindow())
        m_view._dragReorderHoverX = pointer->x();
}

bool ShelfDrags::dropCollections(const std::vector<CollectionReorderPayload>& payloads, QPointF point) {
    if (!payloads.empty())
        if (const auto order = reordered(payloads.front().id, point.y())) {
            m_surroundings.collections.setOrder(*order);
            ++m_reorderings;
        }
    collectionLeft();
    m_view._draggingCollectionID.reset();
    return !payloads.empty();
}

std::optional<ShelfDrags::Collections> ShelfDrags::reordered(CollectionID dragged, double y) const {
    auto order = m_view.allCollections();
    const auto from = std::ranges::find(order, dragged, &KovaCollection::id);
    if (from == order.end())
        return std::nullopt;
    const auto moved = *from;
    order.erase(from);
    const auto to = std::ranges::find_if(order, [&](const auto& collection) {
        const auto frame = m_view._tabFrames.find({collection->id()});
        return frame != m_view._tabFrames.end() && y < frame->second.center().y();
    });
    order.insert(to, moved);
    return order == m_view.allCollections() ? std::nullopt : std::optional(order);
}

// The pointer

ScheduledBlock ShelfDrags::poll(ScheduledBlock& timer, void (ShelfDrags::*update)()) {
    timer.cancel();
    return m_surroundings.mainQueue.every(pollInterval, [this, &timer, update] {
        m_surroundings.mainQueue.post([self = std::weak_ptr(m_self), &timer, update] {
            // The drag may have left since the tick.
            if (const auto drags = self.lock(); drags && timer)
                (*drags)->m_view.perform([&] { ((*drags)->*update)(); });
        });
    });
}

std::optional<QPointF> ShelfDrags::pointerInWindow() const {
    if (!m_surroundings.panel.isVisible())
        return std::nullopt;
    const auto frame = m_surroundings.panel.frame();
    return m_surroundings.screens.mouseLocation() - QPointF(frame.x, frame.y);
}

} // namespace kestrova
