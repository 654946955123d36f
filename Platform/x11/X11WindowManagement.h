#pragma once

#include "Platform/WindowManagement.h"
#include "Platform/x11/CompositingNotices.h"

#include <xcb/shape.h>

#include <utility>

namespace kestrova {

class X11HotKeys;

/// Speaks to the window manager of the toolkit's own connection.
class X11WindowManagement final : public WindowManagement {
public:
    /// The toolkit runs on X11. `hotKeys` outlives the object.
    explicit X11WindowManagement(X11HotKeys& hotKeys);

    bool isCompositing() const override { return m_compositing.isCompositing(); }
    std::unique_ptr<CompositingObserver> observeCompositing(std::function<void()> onDidChange) override {
        return m_compositing.observe(std::move(onDidChange));
    }
    bool isScreenCovered() const override;
    void standApart(std::uint64_t window) override;
    void limitPresses(std::uint64_t window, const QRegion& pixels) override;
    void cutOff(std::uint64_t window, const QRect& pixels) override;
    void handOverKeyboard(std::uint64_t window) override;

private:
    void setShape(xcb_shape_sk_t kind, std::uint64_t window, const QRegion& pixels) const;
    void send(xcb_window_t window, xcb_atom_t type, const std::uint32_t (&data)[5]) const;

    X11HotKeys& m_hotKeys;
    CompositingNotices m_compositing;
    xcb_connection_t* m_connection = nullptr;
    xcb_window_t m_root = XCB_NONE;
    xcb_atom_t m_state = XCB_ATOM_NONE;
    xcb_atom_t m_stateSkipTaskbar = XCB_ATOM_NONE;
    xcb_atom_t m_stateSkipPager = XCB_ATOM_NONE;
    xcb_atom_t m_stateAbove = XCB_ATOM_NONE;
    xcb_atom_t m_stateSticky = XCB_ATOM_NONE;
    xcb_atom_t m_desktop = XCB_ATOM_NONE;
};

} // namespace kestrova
