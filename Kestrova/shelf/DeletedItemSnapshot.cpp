#include "Kestrova/shelf/DeletedItemSnapshot.h"

#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaCollection.h"

#include <algorithm>

namespace kestrova {

DeletedItemSnapshot DeletedItemSnapshot::of(const ClipboardItem& item) {
    DeletedItemSnapshot snapshot{.content = item.content(),
                                 .type = item.type(),
                                 .imageData = item.imageData(),
                                 .width = item.width(),
                                 .height = item.height(),
                                 .fileURLString = item.fileURLString(),
                                 .fileSize = item.fileSize(),
                                 .createdAt = item.createdAt(),
                                 .sourceApp = item.sourceApp(),
                                 .pinned = item.pinned(),
                                 .ocrText = item.ocrText(),
                                 .collectionIDs = {}};
    if (const auto collections = item.collections())
        for (const auto& collection : *collections)
            snapshot.collectionIDs.push_back(collection->id());
    return snapshot;
}

std::shared_ptr<ClipboardItem>
DeletedItemSnapshot::restored(const std::vector<std::shared_ptr<KovaCollection>>& collections) const {
    auto item =
        std::make_shared<ClipboardItem>(content, type, sourceApp, createdAt, pinned, ItemSource::clipboard);
    item->setImageData(imageData);
    item->setWidth(width);
    item->setHeight(height);
    item->setFileURLString(fileURLString);
    item->setFileSize(fileSize);
    item->setOcrText(ocrText);
    std::vector<std::shared_ptr<KovaCollection>> remaining;
    for (const auto id : collectionIDs)
        if (const auto found = std::ranges::find(collections, id, &KovaCollection::id);
            found != collections.end())
            remaining.push_back(*found);
    if (!remaining.empty())
        item->setCollections(std::move(remaining));
    return item;
}

} // namespace kestrova
