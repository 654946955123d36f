#pragma once

#include "Platform/SystemTray.h"

namespace kestrova {

/// A tray that comes when a test says so.
class FakeSystemTray final : public SystemTray {
public:
    void await() override { isAwaited = true; }
    void appear() const {
        if (onDidAppear)
            onDidAppear();
    }

    bool isAwaited = false;
};

} // namespace kestrova
