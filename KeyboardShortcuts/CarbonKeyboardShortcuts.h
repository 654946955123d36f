#pragma once

#include "KeyboardShortcuts/Shortcut.h"
#include "Platform/HotKeys.h"

#include <QHash>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>

namespace kestrova {

class KeyText;

/// Keeps one hot key of the host for each shortcut and calls its closures. Main thread only.
class CarbonKeyboardShortcuts {
public:
    using Action = std::function<void(const Shortcut&)>;

    /// What is asked of the host. While a menu is open the host gives hot keys to nobody, and raw keys stand
    /// in for them.
    enum class Listening { nothing, rawKeys, hotKeys };

    struct HotKey {
        std::int64_t carbonKeyCode = 0;
        std::int64_t carbonModifiers = 0;
        std::uint32_t carbonHotKeyId = 0;
        /// Absent while the host is not to deliver it.
        std::optional<HotKeyReference> carbonHotKey;
        Action onKeyDown;
        Action onKeyUp;

        Shortcut shortcut() const { return {carbonKeyCode, carbonModifiers}; }
    };

    /// "SSKS", which marks the hot keys of this layer at the host.
    static constexpr std::uint32_t signature = 0x53534B53;

    /// The arguments outlive the object.
    CarbonKeyboardShortcuts(HotKeys& hotKeys, const KeyText& keyText) : m_host(hotKeys), m_keyText(keyText) {}
    CarbonKeyboardShortcuts(const CarbonKeyboardShortcuts&) = delete;
    CarbonKeyboardShortcuts& operator=(const CarbonKeyboardShortcuts&) = delete;
    /// Nothing is called afterwards; the hot keys themselves go with the process.
    ~CarbonKeyboardShortcuts();

    /// A refusal of the host is logged and can be read from `refusals`.
    void registerShortcut(const Shortcut& shortcut, Action onKeyDown, Action onKeyUp);
    void unregisterShortcut(const Shortcut& shortcut);
    void setListening(Listening listening);

    /// The live hot keys by identifier, those included that are only set aside.
    const std::map<std::uint32_t, HotKey>& hotKeys() const { return m_hotKeys; }
    /// The last status of every shortcut that the host would not take and that nobody has withdrawn since.
    const QHash<Shortcut, int>& refusals() const { return m_refusals; }

private:
    /// Absent, and the refusal noted, if the host does not take it.
    std::optional<HotKeyReference> registerAtHost(const Shortcut& shortcut, std::uint32_t hotKeyId);
    void updateEventHandler();
    void softUnregisterAll();
    void softRegisterAll();
    int handle(const HotKeyEvent& event) const;
    int handleHotKey(const HotKeyEvent& event) const;
    int handleRawKey(const HotKeyEvent& event) const;

    HotKeys& m_host;
    const KeyText& m_keyText;
    std::map<std::uint32_t, HotKey> m_hotKeys;
    std::uint32_t m_hotKeyId = 0;
    bool m_hasEventHandler = false;
    Listening m_listening = Listening::hotKeys;
    QHash<Shortcut, int> m_refusals;
};

} // namespace kestrova
