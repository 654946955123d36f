#pragma once

#include <xcb/xcb.h>

#include <cstdint>

namespace kestrova {

/// Tells the windows that this process made through the toolkit from all others.
class OwnWindows {
public:
    /// `toolkit`: the toolkit's own connection, or null where it does not run on X11.
    explicit OwnWindows(xcb_connection_t* toolkit);

    bool contains(xcb_window_t window) const { return m_mask != 0 && (window & ~m_mask) == m_base; }

private:
    // Numbers of resources begin with the number of the client that made them.
    std::uint32_t m_base = 0;
    std::uint32_t m_mask = 0;
};

} // namespace kestrova
