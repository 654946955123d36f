#include "Kestrova/capture/CapturedPicture.h"

#include <utility>

namespace kestrova {

CapturedPicture::CapturedPicture(QImage pixels, QByteArray pngData)
    : m_pixels(std::move(pixels)), m_pngData(std::move(pngData)) {}

QImage CapturedPicture::pixels() const {
    return holdsPixels() ? m_pixels : QImage::fromData(m_pngData, "PNG");
}

void CapturedPicture::letGoOfPixels() {
    if (!m_pngData.isEmpty())
        m_pixels = {};
}

} // namespace kestrova
