#include "Kestrova/shelf/widgets/PictureDecoder.h"

#include "Platform/MainQueue.h"

#include <QBuffer>
#include <QImageReader>

#include <chrono>
#include <utility>

namespace kestrova {
namespace {

// Scrolling asks again within moments; after that the thread is not worth its memory.
constexpr std::chrono::milliseconds threadExpiry{2000};

} // namespace

PictureDecoder::PictureDecoder(MainQueue& mainQueue) : m_mainQueue(mainQueue) {
    m_pool.setMaxThreadCount(1);
    m_pool.setExpiryTimeout(static_cast<int>(threadExpiry.count()));
}

PictureDecoder::~PictureDecoder() {
    m_pool.clear();
    m_pool.waitForDone();
}

void PictureDecoder::decode(const QByteArray& bytes, QSize pixels, Fit fit, Done done) {
    m_pool.start([&queue = m_mainQueue, isAlive = std::weak_ptr(m_isAlive), bytes, pixels, fit,
                  whenDone = std::move(done)]() mutable {
        auto picture = decodedPicture(bytes, pixels, fit);
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
    const bool isFilling = fit == PictureDecoder::Fit::filling;
    auto wanted = original;
    if (original.isValid()) {
        wanted.scale(pixels, isFilling ? Qt::KeepAspectRatioByExpanding : Qt::KeepAspectRatio);
        wanted = isFilling ? wanted : wanted.boundedTo(original);
        wanted = wanted.expandedTo(QSize(1, 1));
        // Some readers can leave out most of the work then. Twice the size, so that the fine lines of a
        // screenshot are averaged and not dropped.
        if (original.width() > 2 * wanted.width() && original.height() > 2 * wanted.height())
            reader.setScaledSize(2 * wanted);
    }
    auto picture = reader.read();
    if (picture.isNull())
        return {};
    if (picture.size() != wanted)
        picture = picture.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (isFilling && picture.size() != pixels)
        picture = picture.copy((picture.width() - pixels.width()) / 2,
                               (picture.height() - pixels.height()) / 2, pixels.width(), pixels.height());
    return std::move(picture).convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace kestrova
