#pragma once

#include "Platform/Workspace.h"
#include "Platform/x11/MonitorList.h"
#include "Platform/x11/OwnWindows.h"
#include "Platform/x11/X11Windows.h"

#include <QAbstractNativeEventFilter>

#include <functional>
#include <memory>
#include <optional>

namespace kestrova {

/// Tells when the window manager has put another window to the front, by the toolkit's own events. Where the
/// toolkit does not run on X11 nothing is told. Main thread only.
class ActivationNotices final : public QAbstractNativeEventFilter {
public:
    ActivationNotices();

    /// Of windows of other programs. Observers may outlive the object.
    std::unique_ptr<ActivationObserver> observe(std::function<void()> onDidActivate);

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    void onActiveWindowSet();

    xcb_connection_t* const m_connection;
    const OwnWindows m_own;
    std::optional<X11Windows> m_windows;
    xcb_atom_t m_activeWindowAtom = XCB_NONE;
    xcb_window_t m_last = XCB_NONE;
    MonitorList<std::function<void()>> m_observers;
};

} // namespace kestrova
