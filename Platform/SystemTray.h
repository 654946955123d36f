#pragma once

#include <functional>

namespace kestrova {

/// The place of the desktop for status items, which may come long after the program. Main thread only.
class SystemTray {
public:
    virtual ~SystemTray() = default;

    /// Looks for a tray, and waits for one for as long as it takes. Never blocks; without a session bus or a
    /// panel it merely never tells of any.
    virtual void await() = 0;

    /// There is a tray. Called once, on a later turn; an icon that is then shown follows the tray by itself.
    std::function<void()> onDidAppear;
};

} // namespace kestrova
