#include "Kestrova/shelf/widgets/SidebarCounts.h"

#include "KestrovaCore/ClipboardItem.h"

namespace kestrova {

SidebarCounts SidebarCounts::of(const std::vector<std::shared_ptr<ClipboardItem>>& items) {
    SidebarCounts counts;
    counts.all = items.size();
    for (const auto& item : items) {
        counts.pinned += item->pinned() ? 1 : 0;
        counts.screenshots += item->source() == ItemSource::screenshot ? 1 : 0;
        if (const auto& collections = item->values().collections)
            for (const auto id : *collections)
                ++counts.collections[id];
    }
    return counts;
}

std::size_t SidebarCounts::ofCollection(CollectionID id) const {
    const auto found = collections.find(id);
    return found == collections.end() ? 0 : found->second;
}

} // namespace kestrova
