#include "Kestrova/detail/widgets/ImageDetail.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "Kestrova/shelf/controls/PictureDecoder.h"
#include "KestrovaCore/ClipboardItem.h"

#include <QPainter>

#include <utility>

namespace kestrova {
namespace {

constexpr int groundMargin = 8;
constexpr int picturePadding = 8;
constexpr double radius = 8;
constexpr double leastGroundHeight = 140;
// The size may still change, as while the panel grows; a picture is made once it has settled.
constexpr std::chrono::milliseconds settleTime{30};

} // namespace

ImageDetail::ImageDetail(MainQueue& mainQueue, PictureDecoder& decoder, QWidget* parent)
    : ContentView(parent), m_mainQueue(mainQueue), m_decoder(decoder) {
    setAccessibleRole(*this, QAccessible::Graphic);
}

void ImageDetail::render(const std::shared_ptr<ClipboardItem>& item, const ShelfTheme& theme) {
    const auto byteCount = item->values().imageByteCount;
    const bool isOther = item.owner_before(m_item) || m_item.owner_before(item) || byteCount != m_byteCount;
    if (isOther || theme != m_theme)
        update();
    m_theme = theme;
    if (!isOther)
        return;
    m_item = item;
    m_byteCount = byteCount;
    m_picture = {};
    ++m_wish;
    setSpokenName(*this, QStringLiteral("이미지"));
    requestPicture();
}

void ImageDetail::forget() {
    m_item.reset();
    m_byteCount.reset();
    m_picture = {};
    ++m_wish;
    m_read.cancel();
    update();
}

int ImageDetail::leastHeight(int) const {
    return interfaceLength(leastGroundHeight) + 2 * groundMargin;
}

QRect ImageDetail::ground() const {
    return rect().adjusted(groundMargin, groundMargin, -groundMargin, -groundMargin);
}

void ImageDetail::requestPicture() {
    m_read.cancel();
    if (const auto item = m_item.lock(); item && item->hasImageData())
        m_read = m_mainQueue.afterUnlessCancelled(settleTime, [this] { readPicture(); });
}

void ImageDetail::readPicture() {
    m_read = {};
    const auto item = m_item.lock();
    const auto room = ground().size() - QSize(2 * picturePadding, 2 * picturePadding);
    if (!item || room.isEmpty())
        return;
    // One at a time: a key that repeats runs through pictures faster than they are decoded.
    if (std::exchange(m_isDecoding, true)) {
        m_isOutdated = true;
        return;
    }
    const auto pixels = (QSizeF(room) * devicePixelRatioF()).toSize();
    m_decoder.decode(item->storedImageData(), pixels, PictureDecoder::Fit::within,
                     [this, wish = m_wish](const QImage& picture) { arrived(picture, wish); });
}

void ImageDetail::arrived(const QImage& picture, std::uint64_t wish) {
    m_isDecoding = false;
    if (wish == m_wish) {
        m_picture = picture;
        m_picture.setDevicePixelRatio(devicePixelRatioF());
        update();
    }
    if (std::exchange(m_isOutdated, false) && !m_read)
        readPicture();
}

void ImageDetail::resizeEvent(QResizeEvent*) {
    requestPicture();
}

void ImageDetail::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_theme.picturePlate);
    painter.drawRoundedRect(ground(), radius, radius);
    if (m_picture.isNull())
        return;
    QRectF frame({}, m_picture.deviceIndependentSize());
    frame.moveCenter(QRectF(ground()).center());
    painter.drawImage(frame.topLeft().toPoint(), m_picture);
}

} // namespace kestrova
