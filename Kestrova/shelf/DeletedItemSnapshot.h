#pragma once

#include "KestrovaCore/ClipboardItemType.h"
#include "KestrovaCore/PersistentIdentifier.h"
#include "KestrovaCore/Timestamp.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace kestrova {

class ClipboardItem;
class KovaCollection;

/// What is kept of a deleted item so that it can come back. Its source is not kept: whatever comes back
/// counts as copied.
struct DeletedItemSnapshot {
    QString content;
    ClipboardItemType type = ClipboardItemType::text;
    std::optional<QByteArray> imageData;
    std::optional<std::int64_t> width;
    std::optional<std::int64_t> height;
    std::optional<QString> fileURLString;
    std::optional<std::int64_t> fileSize;
    Timestamp createdAt;
    std::optional<QString> sourceApp;
    bool pinned = false;
    std::optional<QString> ocrText;
    std::vector<CollectionID> collectionIDs;

    static DeletedItemSnapshot of(const ClipboardItem& item);
    /// A new item with these values, in no context yet, in those of its collections that are among
    /// `collections`.
    std::shared_ptr<ClipboardItem>
    restored(const std::vector<std::shared_ptr<KovaCollection>>& collections) const;
};

} // namespace kestrova
