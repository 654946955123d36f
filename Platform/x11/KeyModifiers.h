#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace kestrova {

/// What the server's modifiers mean, which differs from keyboard to keyboard. Masks of an X state; 0 where
/// there is no such modifier.
struct ModifierMap {
    std::uint16_t super = 0;
    std::uint16_t alt = 0;
    std::uint16_t numLock = 0;
    /// The mask that each key sets while it is held or, of a lock, when it locks; 0 for all other keys.
    std::array<std::uint16_t, 256> maskOfKey{};

    bool operator==(const ModifierMap&) const = default;
};

/// `keyCodes` as the server lists them: `keysPerModifier` for each of the eight modifiers, 0 for none.
/// `keysymsOf` answers what a key may give.
ModifierMap modifierMap(std::span<const xcb_keycode_t> keyCodes, std::size_t keysPerModifier,
                        const std::function<std::vector<xcb_keysym_t>(xcb_keycode_t)>& keysymsOf);
/// Asks the server. All is empty if it does not answer.
ModifierMap readModifierMap(xcb_connection_t* connection);

/// The X state of a global shortcut on that key: Super is command, Alt option, Control and Shift themselves.
/// Absent if the keyboard has not all of the modifiers. The function modifier is no modifier of these
/// keyboards: it is taken on keys that carry it by themselves.
std::optional<std::uint16_t> stateOfCarbonModifiers(std::uint32_t carbonModifiers, std::uint32_t virtualKey,
                                                    const ModifierMap& map);
/// The event flags of a key in the sense of global shortcuts.
std::uint32_t globalEventFlags(std::uint16_t state, std::uint32_t virtualKey, const ModifierMap& map);

/// The event flags of a key in one of this program's own windows: Control and Super both are command, except
/// that Control and Shift with a digit are control alone.
std::uint32_t localEventFlags(std::uint16_t state, std::uint32_t virtualKey, const ModifierMap& map);
/// The event flags while modifiers are held there and no other key. Control and Shift together are control
/// alone, as before a digit.
std::uint32_t localHeldFlags(std::uint16_t state, const ModifierMap& map);

} // namespace kestrova
