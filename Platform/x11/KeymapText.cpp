#include "Platform/x11/KeymapText.h"

#include <algorithm>
#include <array>

namespace kestrova {

namespace {

struct DeadKey {
    xkb_keysym_t keysym;
    char32_t accent;
};

constexpr std::array deadKeys{DeadKey{XKB_KEY_dead_grave, U'`'},
                              DeadKey{XKB_KEY_dead_acute, U'\u00B4'},
                              DeadKey{XKB_KEY_dead_circumflex, U'^'},
                              DeadKey{XKB_KEY_dead_tilde, U'~'},
                              DeadKey{XKB_KEY_dead_macron, U'\u00AF'},
                              DeadKey{XKB_KEY_dead_breve, U'\u02D8'},
                              DeadKey{XKB_KEY_dead_abovedot, U'\u02D9'},
                              DeadKey{XKB_KEY_dead_diaeresis, U'\u00A8'},
                              DeadKey{XKB_KEY_dead_abovering, U'\u02DA'},
                              DeadKey{XKB_KEY_dead_doubleacute, U'\u02DD'},
                              DeadKey{XKB_KEY_dead_caron, U'\u02C7'},
                              DeadKey{XKB_KEY_dead_cedilla, U'\u00B8'},
                              DeadKey{XKB_KEY_dead_ogonek, U'\u02DB'},
                              DeadKey{XKB_KEY_dead_iota, U'\u037A'},
                              DeadKey{XKB_KEY_dead_stroke, U'/'},
                              DeadKey{XKB_KEY_dead_currency, U'\u00A4'},
                              DeadKey{XKB_KEY_dead_voiced_sound, U'\u309B'},
                              DeadKey{XKB_KEY_dead_semivoiced_sound, U'\u309C'}};

xkb_keysym_t keysymOf(xkb_keymap* keymap, xkb_keycode_t key, xkb_layout_index_t layout,
                      std::uint32_t locked) {
    // A state does what a keyboard does where a key has fewer layouts than the keymap, or none at all.
    auto* const state = xkb_state_new(keymap);
    xkb_state_update_mask(state, 0, 0, locked, 0, 0, layout);
    const auto keysym = xkb_state_key_get_one_sym(state, key);
    xkb_state_unref(state);
    return keysym;
}

char32_t characterOf(xkb_keysym_t keysym) {
    const auto dead = std::ranges::find(deadKeys, keysym, &DeadKey::keysym);
    return dead == deadKeys.end() ? xkb_keysym_to_utf32(keysym) : dead->accent;
}

} // namespace

bool hasLatinLetters(xkb_keymap* keymap, xkb_layout_index_t layout) {
    // Some Latin layouts lack a few, which their language does not have; others show single ones.
    constexpr int enough = 13;
    int letters = 0;
    for (auto letter = xkb_keysym_t{XKB_KEY_a}; letter <= XKB_KEY_z; ++letter)
        letters += keyGiving(keymap, letter, layout) ? 1 : 0;
    return letters >= enough;
}

xkb_layout_index_t latinLayout(xkb_keymap* keymap, xkb_layout_index_t current) {
    if (hasLatinLetters(keymap, current))
        return current;
    const auto count = xkb_keymap_num_layouts(keymap);
    for (xkb_layout_index_t layout = 0; layout < count; ++layout) {
        if (hasLatinLetters(keymap, layout))
            return layout;
    }
    return current;
}

std::optional<QString> textOfKey(xkb_keymap* keymap, xkb_keycode_t key, xkb_layout_index_t layout,
                                 std::uint32_t locked) {
    const auto character = characterOf(keysymOf(keymap, key, layout, locked));
    return character == 0 ? std::nullopt : std::optional{QString::fromUcs4(&character, 1)};
}

std::optional<xkb_keycode_t> keyGiving(xkb_keymap* keymap, xkb_keysym_t keysym, xkb_layout_index_t layout) {
    const auto last = xkb_keymap_max_keycode(keymap);
    for (auto key = xkb_keymap_min_keycode(keymap); key <= last; ++key) {
        const auto layouts = xkb_keymap_num_layouts_for_key(keymap, key);
        const xkb_keysym_t* keysyms = nullptr;
        if (layouts > 0 &&
            xkb_keymap_key_get_syms_by_level(keymap, key, layout % layouts, 0, &keysyms) == 1 &&
            *keysyms == keysym)
            return key;
    }
    return {};
}

} // namespace kestrova
