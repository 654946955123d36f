#pragma once

#include "Platform/HotKeys.h"
#include "Platform/x11/HotKeyThread.h"
#include "Platform/x11/OwnMenuKeys.h"

#include <memory>

namespace kestrova {

class MainQueue;
class X11Keymap;

/// Hot keys as passive grabs of the X server's keyboard. Main thread only.
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

private:
    /// Main thread only. Events that are on their way when the object goes find it gone.
    struct Delivery {
        Handler handler;
        bool deliversHotKeys = false;
    };

    const std::shared_ptr<Delivery> m_delivery;
    std::uint64_t m_lastReference = 0;
    OwnMenuKeys m_menuKeys;
    HotKeyThread m_thread;
};

} // namespace kestrova
