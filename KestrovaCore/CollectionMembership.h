#pragma once

#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaCollection.h"

#include <algorithm>

namespace kestrova {

inline bool isInCollection(const ClipboardItem& item, const KovaCollection& collection) {
    const auto& ids = item.values().collections;
    return ids && std::ranges::find(*ids, collection.id()) != ids->end();
}

} // namespace kestrova
