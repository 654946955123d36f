#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace kestrova {

/// Modifier bits as hot keys are stored and registered.
namespace CarbonModifier {
inline constexpr std::uint32_t command = 0x100;
inline constexpr std::uint32_t shift = 0x200;
inline constexpr std::uint32_t option = 0x800;
inline constexpr std::uint32_t control = 0x1000;
inline constexpr std::uint32_t function = 0x20000;
} // namespace CarbonModifier

/// How the program tells its hot keys apart.
struct HotKeyIdentifier {
    std::uint32_t signature = 0;
    std::uint32_t number = 0;

    bool operator==(const HotKeyIdentifier&) const = default;
};

/// Stands for one live hot key at the host.
struct HotKeyReference {
    std::uint64_t value = 0;

    bool operator==(const HotKeyReference&) const = default;
};

/// What the host answers to a registration.
struct HotKeyRegistration {
    /// 0 on success.
    int status = 0;
    std::optional<HotKeyReference> reference;
};

/// A press or a release that the host tells of.
struct HotKeyEvent {
    enum class Kind { rawKeyDown = 1, rawKeyUp = 3, hotKeyPressed = 5, hotKeyReleased = 6 };

    Kind kind = Kind::hotKeyPressed;
    /// Of a hot key.
    HotKeyIdentifier identifier;
    /// Of a raw key: its virtual key code and its modifiers in the event numbering.
    std::uint32_t keyCode = 0;
    std::uint32_t modifierFlags = 0;
};

/// Keys that reach the program whichever application has the focus. Key codes are virtual key codes,
/// modifiers those of `CarbonModifier`. Main thread only; the handler is called there too.
///
/// A hot key is pressed once however long it is held, in spite of Caps Lock and Num Lock, and also while
/// another program's menu holds the keyboard.
class HotKeys {
public:
    /// The answer to an event that was none of the handler's.
    static constexpr int eventNotHandled = -9874;
    /// The status of a combination that another program holds.
    static constexpr int alreadyHeld = -9878;
    /// The status of a key or a modifier that this keyboard does not have.
    static constexpr int noSuchKey = -9868;

    using Handler = std::function<int(const HotKeyEvent&)>;

    virtual ~HotKeys() = default;

    /// Sets who is told of events; false if the host cannot tell of any. Nothing is told before one of the
    /// `deliver` operations turned it on.
    virtual bool installHandler(Handler handler) = 0;
    virtual HotKeyRegistration registerHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers,
                                              HotKeyIdentifier identifier) = 0;
    virtual void unregisterHotKey(HotKeyReference reference) = 0;
    virtual void deliverHotKeys(bool deliver) = 0;
    /// Tells of every key that goes to a menu of this program while it is open. A key that the handler
    /// answers with 0 does not reach the menu.
    virtual void deliverRawKeys(bool deliver) = 0;
};

} // namespace kestrova
