#pragma once

#include "KestrovaCore/PersistentIdentifier.h"
#include "Platform/MainQueue.h"

#include <QCache>
#include <QImage>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kestrova {

class ClipboardItem;
class PictureDecoder;

/// Thumbnails of the pictures that rows show. Painting never waits for one: it asks, draws something else,
/// and is told when there is more to draw. One picture is read from disk a turn, and decoded elsewhere, while
/// its row is still in sight. Main thread only.
class ThumbnailCache {
public:
    /// Both outlive it.
    ThumbnailCache(MainQueue& mainQueue, PictureDecoder& decoder);

    /// A square of `edge` pixels; absent while it is not there, null if the item has no sound picture.
    std::optional<QImage> thumbnail(const std::shared_ptr<ClipboardItem>& item, int edge);
    /// Drops all that is asked for and not yet there.
    void forgetWishes();

    /// Whether the row of the item can be seen now.
    std::function<bool(ItemID)> isInSight;
    /// A thumbnail has come.
    std::function<void()> onArrival;

private:
    struct Thumbnail {
        std::optional<std::int64_t> byteCount;
        int edge = 0;
        QImage picture;
    };

    void scheduleNext();
    void readNext();
    void keep(const ClipboardItem& item, int edge, const QImage& picture);

    MainQueue& m_mainQueue;
    PictureDecoder& m_decoder;
    QCache<std::int64_t, Thumbnail> m_thumbnails;
    std::vector<std::pair<std::shared_ptr<ClipboardItem>, int>> m_wishes;
    ScheduledBlock m_next;
    bool m_isDecoding = false;
};

} // namespace kestrova
