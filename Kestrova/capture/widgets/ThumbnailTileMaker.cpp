#include "Kestrova/capture/widgets/ThumbnailTileMaker.h"

#include "Kestrova/capture/widgets/ThumbnailTile.h"
#include "Platform/MainQueue.h"

#include <chrono>
#include <utility>

namespace kestrova {
namespace {

// The next capture comes much later than a thread takes to start.
constexpr std::chrono::milliseconds threadExpiry{100};

} // namespace

ThumbnailTileMaker::ThumbnailTileMaker(MainQueue& mainQueue) : m_mainQueue(mainQueue) {
    m_pool.setMaxThreadCount(1);
    m_pool.setExpiryTimeout(static_cast<int>(threadExpiry.count()));
}

ThumbnailTileMaker::~ThumbnailTileMaker() {
    m_pool.clear();
    m_pool.waitForDone();
}

void ThumbnailTileMaker::make(const CapturedPicture& picture, double scale,
                              std::function<void(const QImage&)> done) {
    m_pool.start([&queue = m_mainQueue, isAlive = std::weak_ptr(m_isAlive), picture, scale,
                  whenDone = std::move(done)]() mutable {
        auto tile = ThumbnailTile::draw(picture.pixels(), scale);
        // Moved on: what it holds belongs to the main thread and must not go on this one.
        queue.postFromAnyThread([isAlive, tile = std::move(tile), tell = std::move(whenDone)] {
            if (isAlive.lock())
                tell(tile);
        });
    });
}

} // namespace kestrova
