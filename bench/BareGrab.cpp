#include "bench/BareGrab.h"

#include <algorithm>
#include <fcntl.h>
#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

namespace kestrova::bench {

using test::XReply;

BareGrab::BareGrab(const QByteArray& display) : m_x(display) {
    const auto& screen = *xcb_setup_roots_iterator(xcb_get_setup(m_x.get())).data;
    m_size = {screen.width_in_pixels, screen.height_in_pixels};
    m_bytes = static_cast<std::size_t>(m_size.width()) * static_cast<std::size_t>(m_size.height()) * 4;
    const int descriptor = ::memfd_create("grab", MFD_CLOEXEC);
    if (descriptor < 0 || ::ftruncate(descriptor, static_cast<off_t>(m_bytes)) != 0)
        throw std::runtime_error("no memory to share with the X server");
    m_memory = ::mmap(nullptr, m_bytes, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    if (m_memory == MAP_FAILED)
        throw std::runtime_error("no memory to share with the X server");
    m_segment = xcb_generate_id(m_x.get());
    // The descriptor is the connection's from here on.
    const XReply<xcb_generic_error_t> error(
        xcb_request_check(m_x.get(), xcb_shm_attach_fd_checked(m_x.get(), m_segment, descriptor, 0)));
    if (error)
        throw std::runtime_error("the X server shares no memory");
}

BareGrab::~BareGrab() {
    ::munmap(m_memory, m_bytes);
}

QImage BareGrab::grab() const {
    const XReply<xcb_shm_get_image_reply_t> reply(xcb_shm_get_image_reply(
        m_x.get(),
        xcb_shm_get_image(m_x.get(), m_x.root(), 0, 0, static_cast<std::uint16_t>(m_size.width()),
                          static_cast<std::uint16_t>(m_size.height()), ~0u, XCB_IMAGE_FORMAT_Z_PIXMAP,
                          m_segment, 0),
        nullptr));
    if (!reply)
        throw std::runtime_error("the screen cannot be read");
    return {static_cast<const uchar*>(m_memory), m_size.width(), m_size.height(), QImage::Format_RGB32};
}

void BareGrab::showBehindAll(const QImage& picture) const {
    auto* const x = m_x.get();
    const auto width = static_cast<std::uint16_t>(picture.width());
    const auto height = static_cast<std::uint16_t>(picture.height());
    std::copy_n(picture.constBits(), std::min(m_bytes, static_cast<std::size_t>(picture.sizeInBytes())),
                static_cast<uchar*>(m_memory));
    const auto pixmap = xcb_generate_id(x);
    const auto context = xcb_generate_id(x);
    constexpr std::uint8_t depth = 24;
    xcb_create_pixmap(x, depth, pixmap, m_x.root(), width, height);
    xcb_create_gc(x, context, pixmap, 0, nullptr);
    xcb_shm_put_image(x, pixmap, context, width, height, 0, 0, width, height, 0, 0, depth,
                      XCB_IMAGE_FORMAT_Z_PIXMAP, 0, m_segment, 0);
    xcb_change_window_attributes(x, m_x.root(), XCB_CW_BACK_PIXMAP, &pixmap);
    xcb_clear_area(x, 0, m_x.root(), 0, 0, width, height);
    xcb_free_gc(x, context);
    xcb_free_pixmap(x, pixmap);
    // What the program shows of itself stands at the edges.
    const QRect middle(width / 4, height / 4, width / 2, height / 2);
    if (grab().copy(middle) != picture.copy(middle))
        throw std::runtime_error("the display does not show its picture");
}

} // namespace kestrova::bench
