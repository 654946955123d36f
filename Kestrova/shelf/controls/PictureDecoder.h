#pragma once

#include "KestrovaCore/StoredImageData.h"

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QThreadPool>

#include <functional>
#include <memory>

namespace kestrova {

class MainQueue;

/// Makes small pictures of stored ones on a thread of its own, one after the other. Main thread only.
class PictureDecoder {
public:
    /// How a picture meets the size that is asked for: all of it within, or filling it, cut at the sides.
    enum class Fit { within, filling };
    using Done = std::function<void(const QImage&)>;

    /// `mainQueue` outlives it.
    explicit PictureDecoder(MainQueue& mainQueue);
    PictureDecoder(const PictureDecoder&) = delete;
    PictureDecoder& operator=(const PictureDecoder&) = delete;
    /// Waits for the picture that is being decoded.
    ~PictureDecoder();

    /// The bytes are read on the thread too. `done` gets the picture in a later turn, a null one if the bytes
    /// are none. It is never larger than `pixels` and, within, never larger than it was. Nothing is called
    /// once the decoder has gone.
    void decode(const StoredImageData& bytes, QSize pixels, Fit fit, Done done);

private:
    MainQueue& m_mainQueue;
    std::shared_ptr<bool> m_isAlive = std::make_shared<bool>(true);
    QThreadPool m_pool;
};

/// The decoding itself; on any thread.
QImage decodedPicture(const QByteArray& bytes, QSize pixels, PictureDecoder::Fit fit);
/// A picture scaled to fill that many pixels, cut at the sides; on any thread.
QImage filling(const QImage& picture, QSize pixels);

} // namespace kestrova
