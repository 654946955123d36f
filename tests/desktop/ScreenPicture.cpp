#include "tests/desktop/ScreenPicture.h"

#include <algorithm>

namespace kestrova::test {

QImage ScreenPicture::of(const QRect& area) const {
    constexpr std::uint32_t kAllPlanes = 0xFFFFFFFF;
    const XReply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
        m_x.get(),
        xcb_get_image(m_x.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_x.root(), static_cast<std::int16_t>(area.x()),
                      static_cast<std::int16_t>(area.y()), static_cast<std::uint16_t>(area.width()),
                      static_cast<std::uint16_t>(area.height()), kAllPlanes),
        nullptr));
    QImage picture(area.size(), QImage::Format_RGB32);
    if (!reply || xcb_get_image_data_length(reply.get()) != picture.sizeInBytes())
        return {};
    std::copy_n(xcb_get_image_data(reply.get()), picture.sizeInBytes(), picture.bits());
    return picture;
}

} // namespace kestrova::test
