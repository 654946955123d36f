#include "Kestrova/shelf/ItemOperations.h"

#include "Kestrova/capture/HUD.h"
#include "Kestrova/clipboard/OwnWrite.h"
#include "Kestrova/clipboard/PasteService.h"
#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/CollectionMembership.h"
#include "KestrovaCore/KovaCollection.h"
#include "KestrovaCore/ModelContext.h"
#include "Platform/Pasteboard.h"

#include <QFileInfo>

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

void ItemOperations::copyText(const std::shared_ptr<ClipboardItem>& item, const QString& text) {
    const auto held = item;
    m_pasteboard.write(PlainText{text});
    ownWriteChangeCount = m_pasteboard.changeCount();
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

Result<Done, StoreError> ItemOperations::saveEdit(ClipboardItem& item, const QString& content) {
    if (!item.isDeleted())
        item.setContent(content);
    else if (content != item.content())
        // Nothing that was typed is lost.
        m_context.insert(std::make_shared<ClipboardItem>(content, item.type(), std::nullopt,
                                                         currentTimestamp(), false, ItemSource::clipboard));
    return m_context.save();
}

std::shared_ptr<ClipboardItem> ItemOperations::itemOf(const QUrl& url) {
    const bool isFile = url.isLocalFile();
    const auto absolute = url.toString(QUrl::FullyEncoded);
    auto item =
        std::make_shared<ClipboardItem>(isFile ? url.path(QUrl::FullyEncoded) : absolute,
                                        isFile ? ClipboardItemType::file : ClipboardItemType::url,
                                        std::nullopt, currentTimestamp(), false, ItemSource::clipboard);
    if (isFile) {
        item->setFileURLString(absolute);
        if (const QFileInfo file(url.toLocalFile()); file.exists())
            item->setFileSize(file.size());
    }
    return item;
}

Result<Done, StoreError> ItemOperations::insert(const std::vector<std::shared_ptr<ClipboardItem>>& items) {
    for (const auto& item : items)
        m_context.insert(item);
    return m_context.save();
}

Result<Done, StoreError> ItemOperations::deleteItem(ClipboardItem& item) {
    m_context.remove(item);
    return m_context.save();
}

} // namespace kestrova
