#pragma once

#include "KestrovaCore/PersistentIdentifier.h"

#include <cstddef>
#include <memory>
#include <unordered_map>
#include <vector>

namespace kestrova {

class ClipboardItem;

/// How many items each lens of the sidebar would show.
struct SidebarCounts {
    std::size_t all = 0;
    std::size_t pinned = 0;
    std::size_t screenshots = 0;
    /// Collections without items are left out.
    std::unordered_map<CollectionID, std::size_t> collections;

    static SidebarCounts of(const std::vector<std::shared_ptr<ClipboardItem>>& items);
    std::size_t ofCollection(CollectionID id) const;
};

} // namespace kestrova
