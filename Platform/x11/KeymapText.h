#pragma once

#include <QString>

#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <optional>

namespace kestrova {

/// Questions about a keymap, whose layouts are what a person switches between.

/// Whether most of the Latin letters can be typed in the layout.
bool hasLatinLetters(xkb_keymap* keymap, xkb_layout_index_t layout);
/// `current` if it has Latin letters, else the first layout that has; `current` if none has.
xkb_layout_index_t latinLayout(xkb_keymap* keymap, xkb_layout_index_t current);

/// What the key gives with nothing held but the modifiers of `locked`; a dead key gives its accent. Absent if
/// it gives no character.
std::optional<QString> textOfKey(xkb_keymap* keymap, xkb_keycode_t key, xkb_layout_index_t layout,
                                 std::uint32_t locked = 0);
/// The key that gives the character's symbol in the layout without modifiers.
std::optional<xkb_keycode_t> keyGiving(xkb_keymap* keymap, xkb_keysym_t keysym, xkb_layout_index_t layout);

} // namespace kestrova
