#pragma once

#include "Kestrova/shelf/ShelfTypes.h"
#include "KestrovaCore/ClipboardItemType.h"
#include "KestrovaCore/LiveQuery.h"

#include <QString>

#include <cstddef>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace kestrova {

class ClipboardItem;
class ModelContext;

/// The lists that the shelf makes of the history: narrowed by the lens, then by the type, then by the search.
/// Each is remembered until its inputs change, and answers as a computation from scratch would. The results
/// stay where they are until the next call that names other inputs, or `itemsChanged`. Main thread only.
class ShelfLists {
public:
    using Items = std::vector<std::shared_ptr<ClipboardItem>>;

    /// What the history is narrowed by.
    struct Filters {
        CollectionFilter lens;
        std::optional<ClipboardItemType> type;
        QString query;

        bool operator==(const Filters&) const = default;
    };

    /// `items` is a query of `context`; both outlive the object.
    ShelfLists(const ItemQuery& items, ModelContext& context) : m_items(items), m_context(context) {}

    /// To be called after each change of the query's results, of a field or of an identifier of one of them.
    void itemsChanged();

    const Items& lensItems(const CollectionFilter& lens);
    const Items& filteredItems(const Filters& filters);
    /// The types that chips can choose among the items of the lens, in the order of the chips.
    const std::vector<ClipboardItemType>& availableTypes(const CollectionFilter& lens);
    /// The place of the item in `filteredItems`. Takes no walk through the list.
    std::optional<std::size_t> indexOf(ItemID id, const Filters& filters);

private:
    /// A list and what it was made from. Where nothing is left out there is none: the list before it is the
    /// result.
    template<typename Inputs>
    struct Remembered {
        Inputs inputs;
        Items items;
    };
    struct LensAndType {
        CollectionFilter lens;
        ClipboardItemType type;
        bool operator==(const LensAndType&) const = default;
    };

    const Items& typedItems(const Filters& filters);
    void search(const Filters& filters);

    const ItemQuery& m_items;
    ModelContext& m_context;
    std::optional<Remembered<CollectionFilter>> m_ofLens;
    std::optional<Remembered<LensAndType>> m_ofType;
    std::optional<Remembered<Filters>> m_found;
    std::optional<std::pair<CollectionFilter, std::vector<ClipboardItemType>>> m_availableTypes;
};

} // namespace kestrova
