#pragma once

#include "Kestrova/capture/CapturedPicture.h"

#include <QImage>
#include <QThreadPool>

#include <functional>
#include <memory>

namespace kestrova {

class MainQueue;

/// Draws tiles on a thread of its own, one after the other: scaling a large picture takes longer than a
/// frame. Main thread only.
class ThumbnailTileMaker {
public:
    /// `mainQueue` outlives it.
    explicit ThumbnailTileMaker(MainQueue& mainQueue);
    ThumbnailTileMaker(const ThumbnailTileMaker&) = delete;
    ThumbnailTileMaker& operator=(const ThumbnailTileMaker&) = delete;
    /// Waits for the tile that is being drawn.
    ~ThumbnailTileMaker();

    /// `done` gets the tile in a later turn; nothing is called once the maker has gone.
    void make(const CapturedPicture& picture, double scale, std::function<void(const QImage&)> done);

private:
    MainQueue& m_mainQueue;
    std::shared_ptr<bool> m_isAlive = std::make_shared<bool>(true);
    QThreadPool m_pool;
};

} // namespace kestrova
