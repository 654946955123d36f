#include "Kestrova/shelf/controls/PictureDecoder.h"

#include "Platform/MainQueue.h"

#include <QBuffer>
#include <QImageReader>

#include <chrono>
#include <utility>

namespace kestrova {
namespace {

// Scrolling asks again within moments; after that the thread is not worth its memory.
constexpr std::chrono::milliseconds threadExpiry{2000};

QSize covering(QSize picture, QSize pixels) {
    return picture.scaled(pixels, Qt::KeepAspectRatioByExpanding);
}

QSize within(QSize picture, QSize pixels) {
    return picture.scaled(pixels, Qt::KeepAspectRatio).boundedTo(picture).expandedTo({1, 1});
}

} // namespace

PictureDecoder::PictureDecoder(MainQueue& mainQueue) : m_mainQueue(mainQueue) {
    m_pool.setMaxThreadCount(1);
    m_pool.setExpiryTimeout(static_cast<int>(threadExpiry.count()));
}

PictureDecoder::~PictureDecoder() {
    m_pool.clear();
    m_pool.waitForDone();
}

void PictureDecoder::decode(const StoredImageData& bytes, QSize pixels, Fit fit, Done done) {
    m_pool.start([&queue = m_mainQueue, isAlive = std::weak_ptr(m_isAlive), bytes, pixels, fit,
                  whenDone = std::move(done)]() mutable {
        const auto read = bytes.read();
        auto picture = read ? decodedPicture(*read, pixels, fit) : QImage();
        // Moved on: what it holds belongs to the main thread and must not go on this one.
        queue.postFromAnyThread([isAlive, picture = std::move(picture), tell = std::move(whenDone)] {
            if (isAlive.lock())
                tell(picture);
        });
    });
}

QImage decodedPicture(const QByteArray& bytes, QSize pixels, PictureDecoder::Fit fit) {
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    const auto original = reader.size();
    auto wanted = original;
    if (original.isValid()) {
        wanted = fit == PictureDecoder::Fit::filling ? covering(original, pixels) : within(original, pixels);
        // Some readers can leave out most of the work then. Twice the size, so that the fine lines of a
        // screenshot are averaged and not dropped.
        if (original.width() > 2 * wanted.width() && original.height() > 2 * wanted.height())
            reader.setScaledSize(2 * wanted);
    }
    auto picture = reader.read();
    if (picture.isNull())
        return {};
    if (fit == PictureDecoder::Fit::filling)
        return filling(picture, pixels);
    if (picture.size() != wanted)
        picture = picture.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return std::move(picture).convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QImage filling(const QImage& picture, QSize pixels) {
    if (picture.isNull())
        return {};
    // The sides go first: at the scale that fills, all of a very long picture would be huge.
    QRect part({}, pixels.scaled(picture.size(), Qt::KeepAspectRatio).expandedTo({1, 1}));
    part.moveTo((picture.width() - part.width()) / 2, (picture.height() - part.height()) / 2);
    auto filled = picture.copy(part);
    if (filled.size() != pixels)
        filled = filled.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return std::move(filled).convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace kestrova
