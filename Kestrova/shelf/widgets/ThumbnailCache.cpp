#include "Kestrova/shelf/widgets/ThumbnailCache.h"

#include "Kestrova/shelf/widgets/PictureDecoder.h"
#include "KestrovaCore/ClipboardItem.h"

#include <algorithm>

namespace kestrova {
namespace {

// Several screens of rows; less than a megabyte even at twice the scale.
constexpr qsizetype thumbnailsKept = 128;

} // namespace

ThumbnailCache::ThumbnailCache(MainQueue& mainQueue, PictureDecoder& decoder)
    : m_mainQueue(mainQueue), m_decoder(decoder), m_thumbnails(thumbnailsKept) {}

std::optional<QImage> ThumbnailCache::thumbnail(const std::shared_ptr<ClipboardItem>& item, int edge) {
    if (const auto* const kept = m_thumbnails.object(item->id().value);
        kept && kept->edge == edge && kept->byteCount == item->values().imageByteCount)
        return kept->picture;
    const auto isThisOne = [&](const auto& wish) { return wish.first == item; };
    if (std::ranges::none_of(m_wishes, isThisOne))
        m_wishes.emplace_back(item, edge);
    scheduleNext();
    return {};
}

void ThumbnailCache::forgetWishes() {
    m_wishes.clear();
    m_next.cancel();
}

void ThumbnailCache::scheduleNext() {
    if (!m_next && !m_isDecoding && !m_wishes.empty())
        m_next = m_mainQueue.afterUnlessCancelled(MainQueue::Duration::zero(), [this] { readNext(); });
}

void ThumbnailCache::readNext() {
    m_next = {};
    std::erase_if(m_wishes, [this](const auto& wish) {
        return wish.first->isDeleted() || !isInSight || !isInSight(wish.first->id());
    });
    if (m_wishes.empty())
        return;
    const auto [item, edge] = m_wishes.front();
    m_isDecoding = true;
    // A read that fails is remembered like a picture that is none: it is not tried again at every painting.
    m_decoder.decode(item->imageData().value_or(QByteArray()), QSize(edge, edge),
                     PictureDecoder::Fit::filling,
                     [this, wished = item, wishedEdge = edge](const QImage& picture) {
                         m_isDecoding = false;
                         keep(*wished, wishedEdge, picture);
                         scheduleNext();
                     });
}

void ThumbnailCache::keep(const ClipboardItem& item, int edge, const QImage& picture) {
    m_thumbnails.insert(item.id().value, new Thumbnail{item.values().imageByteCount, edge, picture});
    std::erase_if(m_wishes, [&](const auto& wish) { return *wish.first == item; });
    if (onArrival)
        onArrival();
}

} // namespace kestrova
