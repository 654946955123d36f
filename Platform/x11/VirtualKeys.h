#pragma once

#include <cstdint>
#include <optional>

namespace kestrova {

/// The virtual key code of the position with that X key code; absent if the position has none.
std::optional<std::uint16_t> virtualKeyOfX11Key(std::uint32_t x11Key);
/// The X key code of the position with that virtual key code; absent if no keyboard here has it.
std::optional<std::uint8_t> x11KeyOfVirtualKey(std::uint32_t virtualKey);

/// The bits of `ModifierFlags` that an event of this key carries whatever is held: those of arrows, keypad
/// keys and function keys.
std::uint32_t inherentFlags(std::uint32_t virtualKey);
/// A digit of the main row or of the keypad.
bool isDigitKey(std::uint32_t virtualKey);
bool isKeypadKey(std::uint32_t virtualKey);

} // namespace kestrova
