#pragma once

#include "tests/desktop/XConnection.h"

#include <QImage>

#include <xcb/shm.h>

namespace kestrova::bench {

/// All pixels of a display by shared memory, with nothing around it: the floor of every picture of it. Throws
/// std::runtime_error.
class BareGrab {
public:
    explicit BareGrab(const QByteArray& display);
    BareGrab(const BareGrab&) = delete;
    BareGrab& operator=(const BareGrab&) = delete;
    ~BareGrab();

    /// RGB32, of memory that the next one overwrites.
    QImage grab() const;
    /// Puts a picture behind all windows, and returns when it is there.
    void showBehindAll(const QImage& picture) const;

private:
    test::XConnection m_x;
    QSize m_size;
    std::size_t m_bytes = 0;
    void* m_memory = nullptr;
    xcb_shm_seg_t m_segment = 0;
};

} // namespace kestrova::bench
