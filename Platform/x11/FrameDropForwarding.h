#pragma once

#include <QAbstractNativeEventFilter>

#include <xcb/xcb.h>

namespace kestrova {

/// Lets drags that are under way reach own windows that are shown meanwhile. Some programs note the windows
/// of the display when a drag of theirs begins, and lose a window that is put into a window manager's frame
/// after that; the frame itself they find. So the frame tells them where to send the drop. Nothing of that is
/// left once the window is hidden, as its frame goes with it. Main thread only; for the time of its life.
class FrameDropForwarding final : public QAbstractNativeEventFilter {
public:
    /// The toolkit may or may not run on X11; if not, there is nothing to do.
    FrameDropForwarding();
    FrameDropForwarding(const FrameDropForwarding&) = delete;
    FrameDropForwarding& operator=(const FrameDropForwarding&) = delete;
    ~FrameDropForwarding() override;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    void forwardTo(xcb_window_t window, xcb_window_t parent) const;
    void tellShapes(xcb_window_t window) const;
    bool takesDrops(xcb_window_t window) const;
    /// The root's child that `window` lies in; XCB_NONE if it has gone.
    xcb_window_t topmost(xcb_window_t window) const;

    xcb_connection_t* m_connection = nullptr;
    xcb_window_t m_root = XCB_NONE;
    xcb_atom_t m_aware = XCB_ATOM_NONE;
    xcb_atom_t m_proxy = XCB_ATOM_NONE;
};

} // namespace kestrova
