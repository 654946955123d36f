#pragma once

#include "Platform/WindowManagement.h"
#include "Platform/x11/MonitorList.h"

#include <QAbstractNativeEventFilter>

#include <functional>
#include <memory>
#include <xcb/xcb.h>

namespace kestrova {

/// Whether there is a compositor, and when that changes, by the toolkit's own events. Where the toolkit does
/// not run on X11 there is none, and nothing is told. Main thread only.
class CompositingNotices final : public QAbstractNativeEventFilter {
public:
    CompositingNotices();

    /// Now. Waits for the X server.
    bool isCompositing() const;
    /// Observers may outlive the object.
    std::unique_ptr<CompositingObserver> observe(std::function<void()> onDidChange);

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    void setWatching(bool watches);

    xcb_connection_t* const m_connection;
    xcb_window_t m_root = XCB_NONE;
    /// Whoever owns it blends the windows.
    xcb_atom_t m_selection = XCB_ATOM_NONE;
    std::uint8_t m_firstFixesEvent = 0;
    MonitorList<std::function<void()>> m_observers;
};

} // namespace kestrova
