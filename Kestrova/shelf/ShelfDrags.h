#pragma once

#include "Kestrova/shelf/CollectionReorderPayload.h"
#include "Kestrova/shelf/ItemDragPayload.h"
#include "Platform/MainQueue.h"

#include <QPointF>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace kestrova {

class ClipboardItem;
class CollectionOperations;
class KovaCollection;
class Screens;
class ShelfPanel;
class ShelfPanelView;

/// The drags that start in the shelf, and those of items and of collections that come over it. What is under
/// the pointer is kept in the fields of the view.
///
/// Operations are to be called inside the view's `perform`. Points are those of `_tabFrames`. Main thread
/// only.
class ShelfDrags {
public:
    /// All of it outlives the object.
    struct Surroundings {
        MainQueue& mainQueue;
        const Screens& screens;
        const ShelfPanel& panel;
        CollectionOperations& collections;
    };

    /// `view` outlives the object.
    ShelfDrags(ShelfPanelView& view, const Surroundings& surroundings);
    ShelfDrags(const ShelfDrags&) = delete;
    ShelfDrags& operator=(const ShelfDrags&) = delete;
    ~ShelfDrags();

    ItemDragPayload beginItem(const ClipboardItem& item);
    CollectionReorderPayload beginCollection(const KovaCollection& collection);
    /// However it ended.
    void end();
    /// Between the begin and the end of a drag. The shelf does not go by itself meanwhile.
    bool isUnderWay() const { return m_isUnderWay; }

    // A drag of items over the shelf.
    void itemsEntered();
    void itemsLeft();
    /// Answers whether the drop is taken.
    bool dropItems(const std::vector<ItemDragPayload>& payloads, QPointF point);

    // A drag of a collection over the shelf.
    void collectionEntered();
    void collectionLeft();
    /// Answers whether the drop is taken. Of several payloads the first one counts.
    bool dropCollections(const std::vector<CollectionReorderPayload>& payloads, QPointF point);
    /// Moves on with each drop that has changed the order.
    std::uint64_t reorderings() const { return m_reorderings; }

    /// The view disappears: no drag is over it any more.
    void forget();

private:
    using Collections = std::vector<std::shared_ptr<KovaCollection>>;

    ScheduledBlock poll(ScheduledBlock& timer, void (ShelfDrags::*update)());
    void updateHoveredTarget();
    void updateReorderHover();
    /// In the window's coordinates, y upwards; absent while there is no window in sight.
    std::optional<QPointF> pointerInWindow() const;
    std::optional<Collections> reordered(CollectionID dragged, double y) const;

    ShelfPanelView& m_view;
    Surroundings m_surroundings;
    std::shared_ptr<ShelfDrags*> m_self;
    std::uint64_t m_reorderings = 0;
    bool m_isUnderWay = false;
};

} // namespace kestrova
