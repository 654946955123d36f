#pragma once

#include "Platform/WindowManagement.h"

#include <xcb/xcb.h>

namespace kestrova {

/// Speaks to the window manager of the toolkit's own connection.
class X11WindowManagement final : public WindowManagement {
public:
    /// The toolkit runs on X11.
    X11WindowManagement();

    bool isCompositing() const override;
    bool isScreenCovered() const override;
    void standApart(std::uint64_t window) override;
    void limitPresses(std::uint64_t window, const QRegion& pixels) override;

private:
    void send(xcb_window_t window, xcb_atom_t type, const std::uint32_t (&data)[5]) const;

    xcb_connection_t* m_connection = nullptr;
    xcb_window_t m_root = XCB_NONE;
    xcb_atom_t m_compositorSelection = XCB_ATOM_NONE;
    xcb_atom_t m_state = XCB_ATOM_NONE;
    xcb_atom_t m_stateSkipTaskbar = XCB_ATOM_NONE;
    xcb_atom_t m_stateSkipPager = XCB_ATOM_NONE;
    xcb_atom_t m_stateAbove = XCB_ATOM_NONE;
    xcb_atom_t m_stateSticky = XCB_ATOM_NONE;
    xcb_atom_t m_desktop = XCB_ATOM_NONE;
};

} // namespace kestrova
