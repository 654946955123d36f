#include "Kestrova/shelf/ItemOperations.h"

#include "Kestrova/capture/HUD.h"
#include "Kestrova/clipboard/OwnWrite.h"
#include "Kestrova/clipboard/PasteService.h"
#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaCollection.h"
#include "KestrovaCore/ModelContext.h"

#include <algorithm>

namespace kestrova {

void ItemOperations::writeToPasteboard(const ClipboardItem& item) {
    PasteService::write(item, m_pasteboard);
    ownWriteChangeCount = m_pasteboard.changeCount();
}

void ItemOperations::copy(const std::shared_ptr<ClipboardItem>& item) {
    // The caller's handle may stand in a list, which the entries that are polled before the write change.
    const auto held = item;
    writeToPasteboard(*held);
    m_hud.show(held, HUDEvent::copied);
}

Result<Done, StoreError> ItemOperations::togglePin(ClipboardItem& item) {
    item.setPinned(!item.pinned());
    return m_context.save();
}

Result<Done, StoreError> ItemOperations::addToCollection(ClipboardItem& item,
                                                         const std::shared_ptr<KovaCollection>& collection) {
    if (!isInCollection(item, *collection)) {
        auto collections = item.collections().value_or(std::vector<std::shared_ptr<KovaCollection>>());
        collections.push_back(collection);
        item.setCollections(std::move(collections));
    }
    return m_context.save();
}

Result<Done, StoreError> ItemOperations::removeFromCollection(ClipboardItem& item,
                                                              const KovaCollection& collection) {
    if (isInCollection(item, collection)) {
        auto collections = *item.collections();
        std::erase_if(collections, [&](const auto& each) { return *each == collection; });
        item.setCollections(std::move(collections));
    }
    return m_context.save();
}

Result<Done, StoreError> ItemOperations::deleteItem(ClipboardItem& item) {
    m_context.remove(item);
    return m_context.save();
}

bool ItemOperations::isInCollection(const ClipboardItem& item, const KovaCollection& collection) {
    const auto& ids = item.values().collections;
    return ids && std::ranges::find(*ids, collection.id()) != ids->end();
}

} // namespace kestrova
