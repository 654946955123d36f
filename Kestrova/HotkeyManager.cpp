#include "Kestrova/HotkeyManager.h"

namespace kestrova {
namespace {

constexpr std::uint32_t commandShift = ModifierFlags::command | ModifierFlags::shift;

KeyboardShortcuts::Name commandShiftName(KeyboardShortcuts& shortcuts, const QString& rawValue, Key key) {
    return shortcuts.name(rawValue, Shortcut::of(key, commandShift));
}

} // namespace

HotkeyNames::HotkeyNames(KeyboardShortcuts& shortcuts)
    : togglePanel(commandShiftName(shortcuts, QStringLiteral("togglePanel"), Key::v)),
      captureArea(commandShiftName(shortcuts, QStringLiteral("captureArea"), Key::four)),
      captureFullScreen(commandShiftName(shortcuts, QStringLiteral("captureFullScreen"), Key::three)),
      captureWindow(commandShiftName(shortcuts, QStringLiteral("captureWindow"), Key::six)) {}

HotkeyManager::HotkeyManager(KeyboardShortcuts& shortcuts) : m_names(shortcuts) {
    call(shortcuts, m_names.togglePanel, &HotkeyManager::onTogglePanel);
    call(shortcuts, m_names.captureArea, &HotkeyManager::onCaptureArea);
    call(shortcuts, m_names.captureFullScreen, &HotkeyManager::onCaptureFullScreen);
    call(shortcuts, m_names.captureWindow, &HotkeyManager::onCaptureWindow);
}

void HotkeyManager::call(KeyboardShortcuts& shortcuts, const KeyboardShortcuts::Name& name,
                         Action HotkeyManager::*action) {
    shortcuts.onKeyDown(name, [weakSelf = std::weak_ptr(m_self), action] {
        const auto self = weakSelf.lock();
        if (self && (*self)->*action)
            // A copy: it may be replaced while it runs.
            Action((*self)->*action)();
    });
}

} // namespace kestrova
