#pragma once

#include "KeyboardShortcuts/KeyboardShortcuts.h"

#include <functional>
#include <memory>

namespace kestrova {

/// The program's global shortcuts. Making the object a second time gives the same names.
struct HotkeyNames {
    /// A name that is new to the user defaults gets its default there.
    explicit HotkeyNames(KeyboardShortcuts& shortcuts);

    KeyboardShortcuts::Name togglePanel;
    KeyboardShortcuts::Name captureArea;
    KeyboardShortcuts::Name captureFullScreen;
    KeyboardShortcuts::Name captureWindow;
};

/// Turns presses of the program's global shortcuts into calls of its closures, while the modifiers are still
/// held. What they do is nothing to it. Main thread only.
class HotkeyManager {
public:
    using Action = std::function<void()>;

    explicit HotkeyManager(KeyboardShortcuts& shortcuts);
    HotkeyManager(const HotkeyManager&) = delete;
    HotkeyManager& operator=(const HotkeyManager&) = delete;

    /// A press of a shortcut whose closure is not set does nothing.
    Action onTogglePanel;
    Action onCaptureArea;
    Action onCaptureFullScreen;
    Action onCaptureWindow;

    const HotkeyNames& names() const { return m_names; }

private:
    void call(KeyboardShortcuts& shortcuts, const KeyboardShortcuts::Name& name,
              Action HotkeyManager::*action);

    const HotkeyNames m_names;
    // Handlers stay with the shortcuts for good; they reach the manager through this, and only while it
    // lives.
    const std::shared_ptr<HotkeyManager*> m_self = std::make_shared<HotkeyManager*>(this);
};

} // namespace kestrova
