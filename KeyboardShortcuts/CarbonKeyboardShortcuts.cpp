#include "KeyboardShortcuts/CarbonKeyboardShortcuts.h"

#include "KeyboardShortcuts/KeyText.h"
#include "KeyboardShortcuts/Modifiers.h"

#include <QLoggingCategory>

#include <algorithm>
#include <functional>
#include <utility>

namespace kestrova {
namespace {

Q_LOGGING_CATEGORY(lcShortcuts, "kestrova.shortcuts")

constexpr int handled = 0;

void press(const CarbonKeyboardShortcuts::HotKey& hotKey, const CarbonKeyboardShortcuts::Action& action) {
    // A copy of the action, which may unregister the shortcut that calls it.
    std::invoke(CarbonKeyboardShortcuts::Action{action}, hotKey.shortcut());
}

} // namespace

CarbonKeyboardShortcuts::~CarbonKeyboardShortcuts() {
    if (!m_hasEventHandler)
        return;
    m_host.deliverHotKeys(false);
    m_host.deliverRawKeys(false);
}

void CarbonKeyboardShortcuts::registerShortcut(const Shortcut& shortcut, Action onKeyDown, Action onKeyUp) {
    const auto id = ++m_hotKeyId;
    const auto reference = registerAtHost(shortcut, id);
    if (!reference)
        return;
    m_hotKeys.emplace(id, HotKey{shortcut.carbonKeyCode, shortcut.carbonModifiers, id, reference,
                                 std::move(onKeyDown), std::move(onKeyUp)});
    if (!m_hasEventHandler)
        m_hasEventHandler = m_host.installHandler([this](const HotKeyEvent& event) { return handle(event); });
    updateEventHandler();
}

void CarbonKeyboardShortcuts::unregisterShortcut(const Shortcut& shortcut) {
    std::erase_if(m_hotKeys, [&](const auto& entry) {
        const auto& hotKey = entry.second;
        if (hotKey.shortcut() != shortcut)
            return false;
        if (hotKey.carbonHotKey)
            m_host.unregisterHotKey(*hotKey.carbonHotKey);
        return true;
    });
    m_refusals.remove(shortcut);
}

void CarbonKeyboardShortcuts::setListening(Listening listening) {
    m_listening = listening;
    updateEventHandler();
}

std::optional<HotKeyReference> CarbonKeyboardShortcuts::registerAtHost(const Shortcut& shortcut,
                                                                       std::uint32_t hotKeyId) {
    // A stored shortcut may hold any number; the host knows only those of 32 bits.
    HotKeyRegistration registration{.status = HotKeys::noSuchKey, .reference = std::nullopt};
    if (std::in_range<std::uint32_t>(shortcut.carbonKeyCode) &&
        std::in_range<std::uint32_t>(shortcut.carbonModifiers))
        registration = m_host.registerHotKey(static_cast<std::uint32_t>(shortcut.carbonKeyCode),
                                             static_cast<std::uint32_t>(shortcut.carbonModifiers),
                                             {signature, hotKeyId});
    if (registration.status == 0 && registration.reference) {
        m_refusals.remove(shortcut);
        return registration.reference;
    }
    qCWarning(lcShortcuts).noquote().nospace()
        << "Error registering hotkey " << m_keyText.description(shortcut) << ":" << registration.status;
    m_refusals.insert(shortcut, registration.status);
    return std::nullopt;
}

void CarbonKeyboardShortcuts::updateEventHandler() {
    if (!m_hasEventHandler)
        return;
    const bool hotKeysAreWanted = m_listening == Listening::hotKeys;
    if (hotKeysAreWanted)
        softRegisterAll();
    else
        softUnregisterAll();
    m_host.deliverHotKeys(hotKeysAreWanted);
    m_host.deliverRawKeys(m_listening == Listening::rawKeys);
}

void CarbonKeyboardShortcuts::softUnregisterAll() {
    for (auto& [id, hotKey] : m_hotKeys)
        if (const auto reference = std::exchange(hotKey.carbonHotKey, std::nullopt))
            m_host.unregisterHotKey(*reference);
}

void CarbonKeyboardShortcuts::softRegisterAll() {
    for (auto& [id, hotKey] : m_hotKeys)
        if (!hotKey.carbonHotKey)
            hotKey.carbonHotKey = registerAtHost(hotKey.shortcut(), id);
    std::erase_if(m_hotKeys, [](const auto& entry) { return !entry.second.carbonHotKey; });
}

int CarbonKeyboardShortcuts::handle(const HotKeyEvent& event) const {
    switch (event.kind) {
    case HotKeyEvent::Kind::hotKeyPressed:
    case HotKeyEvent::Kind::hotKeyReleased:
        return handleHotKey(event);
    case HotKeyEvent::Kind::rawKeyDown:
    case HotKeyEvent::Kind::rawKeyUp:
        return handleRawKey(event);
    }
    return HotKeys::eventNotHandled;
}

int CarbonKeyboardShortcuts::handleHotKey(const HotKeyEvent& event) const {
    if (event.identifier.signature != signature)
        return HotKeys::eventNotHandled;
    const auto found = m_hotKeys.find(event.identifier.number);
    if (found == m_hotKeys.end())
        return HotKeys::eventNotHandled;
    const auto& hotKey = found->second;
    press(hotKey, event.kind == HotKeyEvent::Kind::hotKeyPressed ? hotKey.onKeyDown : hotKey.onKeyUp);
    return handled;
}

int CarbonKeyboardShortcuts::handleRawKey(const HotKeyEvent& event) const {
    const Shortcut pressed{event.keyCode, carbonModifiers(event.modifierFlags)};
    const auto found = std::ranges::find_if(
        m_hotKeys, [&](const auto& entry) { return entry.second.shortcut() == pressed; });
    if (found == m_hotKeys.end())
        return HotKeys::eventNotHandled;
    const auto& hotKey = found->second;
    press(hotKey, event.kind == HotKeyEvent::Kind::rawKeyDown ? hotKey.onKeyDown : hotKey.onKeyUp);
    return handled;
}

} // namespace kestrova
