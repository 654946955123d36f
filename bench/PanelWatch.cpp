#include "bench/PanelWatch.h"

#include <vector>
#include <xcb/xtest.h>

namespace kestrova::bench {

QByteArray PanelWatch::pixels(const QRect& area) const {
    const test::XReply<xcb_get_image_reply_t> reply{xcb_get_image_reply(
        m_x.get(),
        xcb_get_image(m_x.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_x.root(), static_cast<std::int16_t>(area.x()),
                      static_cast<std::int16_t>(area.y()), static_cast<std::uint16_t>(area.width()),
                      static_cast<std::uint16_t>(area.height()), ~0u),
        nullptr)};
    if (!reply)
        throw std::runtime_error("the screen cannot be read");
    return {reinterpret_cast<const char*>(xcb_get_image_data(reply.get())),
            xcb_get_image_data_length(reply.get())};
}

QByteArray PanelWatch::settledPixels(const QRect& area) const {
    constexpr double quietMilliseconds = 330;
    auto shown = pixels(area);
    for (Stopwatch quiet; quiet.milliseconds() < quietMilliseconds;)
        if (auto now = pixels(area); now != shown) {
            shown = std::move(now);
            quiet = {};
        }
    return shown;
}

void PanelWatch::fake(std::uint8_t type, std::uint8_t detail) const {
    xcb_test_fake_input(m_x.get(), type, detail, XCB_CURRENT_TIME, m_x.root(), 0, 0, 0);
}

void PanelWatch::chord(std::initializer_list<std::uint8_t> keys) const {
    const std::vector held(keys);
    for (const auto key : held)
        fake(XCB_KEY_PRESS, key);
    for (auto key = held.rbegin(); key != held.rend(); ++key)
        fake(XCB_KEY_RELEASE, *key);
    xcb_flush(m_x.get());
}

void PanelWatch::turnWheel(bool down) const {
    constexpr std::uint8_t wheelUp = 4;
    constexpr std::uint8_t wheelDown = 5;
    fake(XCB_BUTTON_PRESS, down ? wheelDown : wheelUp);
    fake(XCB_BUTTON_RELEASE, down ? wheelDown : wheelUp);
    xcb_flush(m_x.get());
}

void PanelWatch::holdButton(bool down) const {
    constexpr std::uint8_t left = 1;
    fake(down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, left);
    xcb_flush(m_x.get());
}

void PanelWatch::movePointer(QPoint to) const {
    xcb_warp_pointer(m_x.get(), XCB_NONE, m_x.root(), 0, 0, 0, 0, static_cast<std::int16_t>(to.x()),
                     static_cast<std::int16_t>(to.y()));
    xcb_flush(m_x.get());
}

} // namespace kestrova::bench
