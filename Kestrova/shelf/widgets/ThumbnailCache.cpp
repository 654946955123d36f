#include "Kestrova/shelf/widgets/ThumbnailCache.h"

#include "Kestrova/shelf/controls/PictureDecoder.h"
#include "KestrovaCore/ClipboardItem.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr qsizetype leastCapacity = 256 * 1024;
// Longer than a frame of a pane that opens or closes.
constexpr auto settleTime = 60ms;
// A picture that is none takes room too, or they would never go.
constexpr qsizetype emptyCost = 64;

bool hasGone(const std::weak_ptr<ClipboardItem>& item) {
    const auto held = item.lock();
    return !held || held->isDeleted();
}

} // namespace

ThumbnailCache::ThumbnailCache(MainQueue& mainQueue, PictureDecoder& decoder)
    : m_mainQueue(mainQueue), m_decoder(decoder), m_thumbnails(leastCapacity) {}

std::optional<QImage> ThumbnailCache::thumbnail(const std::shared_ptr<ClipboardItem>& item, QSize pixels) {
    const auto* const kept = m_thumbnails.object({Key::Kind::item, item->id().value});
    if (!kept || kept->pixels != pixels || kept->byteCount != item->values().imageByteCount)
        wish(item, pixels);
    return kept ? std::optional{kept->picture} : std::nullopt;
}

QImage ThumbnailCache::filled(const QImage& picture, QSize pixels) {
    const Key key{Key::Kind::picture, picture.cacheKey()};
    if (const auto* const kept = m_thumbnails.object(key); kept && (kept->pixels == pixels || m_isUnsettled))
        return kept->picture;
    const auto scaled = filling(picture, pixels);
    keep(key, {{}, pixels, scaled});
    return scaled;
}

void ThumbnailCache::wish(const std::shared_ptr<ClipboardItem>& item, QSize pixels) {
    const auto known = std::ranges::find(m_wishes, item->id(), &Wish::id);
    if (known == m_wishes.end())
        m_wishes.push_back({item, item->id(), pixels});
    else
        known->pixels = pixels;
    scheduleNext();
}

void ThumbnailCache::awaitSettledSizes() {
    m_isUnsettled = true;
    m_next.cancel();
    m_next = m_mainQueue.afterUnlessCancelled(settleTime, [this] {
        m_isUnsettled = false;
        if (onSettled)
            onSettled();
        readNext();
    });
}

void ThumbnailCache::forgetWishes() {
    m_wishes.clear();
    m_next.cancel();
    m_isUnsettled = false;
}

void ThumbnailCache::clear() {
    forgetWishes();
    m_thumbnails.clear();
    m_owners.clear();
}

void ThumbnailCache::forgetDeleted() {
    std::erase_if(m_wishes, [](const Wish& wish) { return hasGone(wish.item); });
    std::erase_if(m_owners, [this](const auto& owner) {
        const Key key{Key::Kind::item, owner.first.value};
        if (hasGone(owner.second))
            m_thumbnails.remove(key);
        return !m_thumbnails.contains(key);
    });
}

void ThumbnailCache::setCapacity(qsizetype bytes) {
    m_thumbnails.setMaxCost(std::max(bytes, leastCapacity));
}

void ThumbnailCache::scheduleNext() {
    if (!m_next && !m_isDecoding && !m_wishes.empty())
        m_next = m_mainQueue.afterUnlessCancelled(MainQueue::Duration::zero(), [this] { readNext(); });
}

void ThumbnailCache::readNext() {
    m_next = {};
    const auto place = [this](const Wish& wish) { return placeInSight(wish.id); };
    std::erase_if(m_wishes, [&](const Wish& wish) { return hasGone(wish.item) || !place(wish); });
    if (m_isDecoding || m_wishes.empty())
        return;
    const auto next = *std::ranges::min_element(m_wishes, {}, place);
    const auto item = next.item.lock();
    const auto byteCount = item->values().imageByteCount;
    m_isDecoding = true;
    m_decoder.decode(item->storedImageData(), next.pixels, PictureDecoder::Fit::filling,
                     [this, next, byteCount](const QImage& picture) {
                         m_isDecoding = false;
                         arrived(next, byteCount, picture);
                         scheduleNext();
                     });
}

void ThumbnailCache::arrived(const Wish& wish, std::optional<std::int64_t> byteCount, const QImage& picture) {
    const auto item = wish.item.lock();
    if (!item || item->isDeleted())
        return;
    // A read that fails is remembered like a picture that is none: it is not tried again at every painting.
    keep({Key::Kind::item, wish.id.value}, {byteCount, wish.pixels, picture});
    m_owners[wish.id] = wish.item;
    std::erase_if(m_wishes, [&](const Wish& other) {
        return other.id == wish.id && other.pixels == wish.pixels &&
               byteCount == item->values().imageByteCount;
    });
    if (onArrival)
        onArrival(wish.id);
}

void ThumbnailCache::keep(const Key& key, Thumbnail thumbnail) {
    const auto cost = std::max<qsizetype>(emptyCost, thumbnail.picture.sizeInBytes());
    m_thumbnails.insert(key, new Thumbnail(std::move(thumbnail)), cost);
}

} // namespace kestrova
