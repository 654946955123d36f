#pragma once

#include "KestrovaCore/PersistentIdentifier.h"
#include "Platform/MainQueue.h"

#include <QCache>
#include <QImage>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace kestrova {

class ClipboardItem;
class PictureDecoder;

/// Small pictures for what rows and cards show. Painting never waits for one: it asks, draws something else,
/// and is told when there is more to draw. One picture at a time is read and decoded elsewhere: the first
/// that is still in sight, as the eye reads. Main thread only.
class ThumbnailCache {
public:
    /// Both outlive it.
    ThumbnailCache(MainQueue& mainQueue, PictureDecoder& decoder);

    /// The item's picture, filling `pixels`. Absent while there is none, null if the item has no sound one.
    /// While another size or an older picture of the item is all there is, that.
    std::optional<QImage> thumbnail(const std::shared_ptr<ClipboardItem>& item, QSize pixels);
    /// `picture`, filling `pixels`; made at once and kept like the others. While sizes are unsettled, the one
    /// of another size that there is.
    QImage filled(const QImage& picture, QSize pixels);

    /// Sizes are about to change again: decoding and scaling wait a moment.
    void awaitSettledSizes();
    /// Drops all that is asked for and not yet there.
    void forgetWishes();
    /// Drops all.
    void clear();
    /// Drops what belongs to items that have been deleted.
    void forgetDeleted();

    /// At most so many bytes of pixels are kept; what was shown longest ago goes first.
    void setCapacity(qsizetype bytes);
    qsizetype capacity() const { return m_thumbnails.maxCost(); }
    /// Bytes of pixels that are kept.
    qsizetype size() const { return m_thumbnails.totalCost(); }

    /// Where the item stands among those that can be seen now; absent for the others.
    std::function<std::optional<std::size_t>(ItemID)> placeInSight;
    /// A thumbnail of the item has come.
    std::function<void(ItemID)> onArrival;
    /// Sizes have settled: what stood in for another size can be asked for anew.
    std::function<void()> onSettled;

private:
    struct Key {
        enum class Kind { item, picture };
        Kind kind;
        std::int64_t value;
        bool operator==(const Key&) const = default;
        friend std::size_t qHash(const Key& key, std::size_t seed) {
            return qHashMulti(seed, static_cast<int>(key.kind), key.value);
        }
    };
    struct Thumbnail {
        std::optional<std::int64_t> byteCount;
        QSize pixels;
        QImage picture;
    };
    struct Wish {
        // An item that is deleted goes at once; nobody waits for its picture.
        std::weak_ptr<ClipboardItem> item;
        ItemID id;
        QSize pixels;
    };

    void wish(const std::shared_ptr<ClipboardItem>& item, QSize pixels);
    void scheduleNext();
    void readNext();
    void arrived(const Wish& wish, std::optional<std::int64_t> byteCount, const QImage& picture);
    void keep(const Key& key, Thumbnail thumbnail);

    MainQueue& m_mainQueue;
    PictureDecoder& m_decoder;
    QCache<Key, Thumbnail> m_thumbnails;
    // Whose thumbnails there are.
    std::map<ItemID, std::weak_ptr<ClipboardItem>> m_owners;
    std::vector<Wish> m_wishes;
    ScheduledBlock m_next;
    bool m_isDecoding = false;
    bool m_isUnsettled = false;
};

} // namespace kestrova
