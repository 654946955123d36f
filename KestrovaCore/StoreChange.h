#pragma once

#include "KestrovaCore/PersistentIdentifier.h"

#include <utility>
#include <vector>

namespace kestrova {

/// Which rows of one kind a save changed, and how.
template<typename Record>
struct RecordChanges {
    using ID = PersistentIdentifier<Record>;

    std::vector<ID> inserted;
    std::vector<ID> updated;
    std::vector<ID> deleted;
};

/// What a save, of this process or of another one, did to the store.
struct StoreChange {
    RecordChanges<ClipboardItem> items;
    RecordChanges<KovaCollection> collections;
};

} // namespace kestrova
