#pragma once

#include "Platform/EventMonitors.h"
#include "Platform/HotKeys.h"
#include "Platform/x11/HotKeyThread.h"
#include "Platform/x11/MonitorList.h"
#include "Platform/x11/OwnMenuKeys.h"

#include <map>
#include <memory>
#include <set>

namespace kestrova {

class MainQueue;
class X11Keymap;

/// Hot keys as passive grabs of the X server's keyboard, and all other keys for who looks at them. Main
/// thread only.
class X11HotKeys final : public HotKeys {
public:
    /// `queue` and `keymap` outlive the object.
    X11HotKeys(MainQueue& queue, X11Keymap& keymap);

    bool installHandler(Handler handler) override;
    HotKeyRegistration registerHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers,
                                      HotKeyIdentifier identifier) override;
    void unregisterHotKey(HotKeyReference reference) override;
    void deliverHotKeys(bool deliver) override;
    void deliverRawKeys(bool deliver) override { m_menuKeys.setEnabled(deliver); }

    /// As in `EventMonitors`.
    std::unique_ptr<EventMonitor> tapKeyDowns(EventMonitors::KeyDownHandler handler);
    std::unique_ptr<EventMonitor> addGlobalKeyDownMonitor(EventMonitors::KeyDownHandler handler);
    /// As in `WindowManagement`.
    void handOverKeyboard(std::uint64_t window);

private:
    /// Main thread only. Events that are on their way when the object goes find it gone.
    struct Delivery {
        Handler handler;
        bool deliversHotKeys = false;
        std::map<HotKeyGrabs::Onlooker, MonitorList<EventMonitors::KeyDownHandler>> onlookers;
    };

    HotKeyGrabs::Listener makeListener(MainQueue& queue) const;
    std::unique_ptr<EventMonitor> add(HotKeyGrabs::Onlooker onlooker, EventMonitors::KeyDownHandler handler);

    const std::shared_ptr<Delivery> m_delivery;
    std::uint64_t m_lastReference = 0;
    /// Those whom the server lets look.
    std::set<HotKeyGrabs::Onlooker> m_granted;
    OwnMenuKeys m_menuKeys;
    HotKeyThread m_thread;
};

} // namespace kestrova
