#include "Platform/x11/KeyModifiers.h"

#include "Platform/HotKeys.h"
#include "Platform/KeyEvent.h"
#include "Platform/x11/VirtualKeys.h"
#include "Platform/x11/XcbReply.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>

namespace kestrova {

namespace {

constexpr std::size_t modifierCount = 8;
// Shift, Lock and Control mean what they are called; what the five others mean is up to the keyboard.
constexpr std::size_t firstFreeModifier = 3;

void assignOnce(std::uint16_t& role, std::uint16_t mask) {
    if (role == 0)
        role = mask;
}

bool holds(const std::vector<xcb_keysym_t>& keysyms, xcb_keysym_t left, xcb_keysym_t right) {
    return std::ranges::any_of(keysyms, [&](auto keysym) { return keysym == left || keysym == right; });
}

std::uint32_t plainFlags(std::uint16_t state, const ModifierMap& map) {
    return ((state & XCB_MOD_MASK_LOCK) ? ModifierFlags::capsLock : 0) |
           ((state & XCB_MOD_MASK_SHIFT) ? ModifierFlags::shift : 0) |
           ((state & map.alt) ? ModifierFlags::option : 0) |
           ((state & map.super) ? ModifierFlags::command : 0);
}

bool holdsControlAndShift(std::uint16_t state) {
    constexpr auto both = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT;
    return (state & both) == both;
}

std::uint32_t flagsWithControlAlone(std::uint16_t state, const ModifierMap& map) {
    return (plainFlags(state, map) & ~ModifierFlags::shift) | ModifierFlags::control;
}

std::uint32_t flagsWithControlAsCommand(std::uint16_t state, const ModifierMap& map) {
    return plainFlags(state, map) | ((state & XCB_MOD_MASK_CONTROL) ? ModifierFlags::command : 0);
}

} // namespace

ModifierMap modifierMap(std::span<const xcb_keycode_t> keyCodes, std::size_t keysPerModifier,
                        const std::function<std::vector<xcb_keysym_t>(xcb_keycode_t)>& keysymsOf) {
    ModifierMap map;
    std::uint16_t meta = 0;
    for (std::size_t i = 0; i < std::min(keyCodes.size(), modifierCount * keysPerModifier); ++i) {
        const auto key = keyCodes[i];
        if (key == 0)
            continue;
        const auto modifier = i / keysPerModifier;
        const auto mask = static_cast<std::uint16_t>(1u << modifier);
        map.maskOfKey[key] = static_cast<std::uint16_t>(map.maskOfKey[key] | mask);
        if (modifier < firstFreeModifier)
            continue;
        const auto keysyms = keysymsOf(key);
        if (holds(keysyms, XKB_KEY_Super_L, XKB_KEY_Super_R))
            assignOnce(map.super, mask);
        if (holds(keysyms, XKB_KEY_Alt_L, XKB_KEY_Alt_R))
            assignOnce(map.alt, mask);
        if (holds(keysyms, XKB_KEY_Meta_L, XKB_KEY_Meta_R))
            assignOnce(meta, mask);
        if (holds(keysyms, XKB_KEY_Num_Lock, XKB_KEY_Num_Lock))
            assignOnce(map.numLock, mask);
    }
    // Old keyboards call it Meta; where both exist, Meta is another key.
    if (meta != map.super)
        assignOnce(map.alt, meta);
    return map;
}

ModifierMap readModifierMap(xcb_connection_t* connection) {
    const auto* const setup = xcb_get_setup(connection);
    if (!setup)
        return {};
    const auto first = setup->min_keycode;
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - first + 1);
    const auto modifierCookie = xcb_get_modifier_mapping(connection);
    const auto keyCookie = xcb_get_keyboard_mapping(connection, first, count);
    const XcbReply<xcb_get_modifier_mapping_reply_t> modifiers{
        xcb_get_modifier_mapping_reply(connection, modifierCookie, nullptr)};
    const XcbReply<xcb_get_keyboard_mapping_reply_t> keys{
        xcb_get_keyboard_mapping_reply(connection, keyCookie, nullptr)};
    if (!modifiers || !keys)
        return {};
    const std::span keysyms{xcb_get_keyboard_mapping_keysyms(keys.get()),
                            static_cast<std::size_t>(xcb_get_keyboard_mapping_keysyms_length(keys.get()))};
    const std::size_t width = keys->keysyms_per_keycode;
    const auto keysymsOf = [&](xcb_keycode_t key) -> std::vector<xcb_keysym_t> {
        if (key < first || (key - first + 1u) * width > keysyms.size())
            return {};
        const auto own = keysyms.subspan((key - first) * width, width);
        return {own.begin(), own.end()};
    };
    return modifierMap({xcb_get_modifier_mapping_keycodes(modifiers.get()),
                        static_cast<std::size_t>(xcb_get_modifier_mapping_keycodes_length(modifiers.get()))},
                       modifiers->keycodes_per_modifier, keysymsOf);
}

std::optional<std::uint16_t> stateOfCarbonModifiers(std::uint32_t carbonModifiers, std::uint32_t virtualKey,
                                                    const ModifierMap& map) {
    struct Row {
        std::uint32_t carbon;
        std::uint16_t state;
    };
    const std::array rows{
        Row{CarbonModifier::command, map.super}, Row{CarbonModifier::shift, XCB_MOD_MASK_SHIFT},
        Row{CarbonModifier::option, map.alt}, Row{CarbonModifier::control, XCB_MOD_MASK_CONTROL}};
    std::uint16_t state = 0;
    auto unknown = carbonModifiers;
    for (const auto& row : rows) {
        if ((carbonModifiers & row.carbon) == 0)
            continue;
        if (row.state == 0)
            return {};
        state = static_cast<std::uint16_t>(state | row.state);
        unknown &= ~row.carbon;
    }
    if (inherentFlags(virtualKey) & ModifierFlags::function)
        unknown &= ~CarbonModifier::function;
    return unknown == 0 ? std::optional{state} : std::nullopt;
}

std::uint32_t globalEventFlags(std::uint16_t state, std::uint32_t virtualKey, const ModifierMap& map) {
    return plainFlags(state, map) | ((state & XCB_MOD_MASK_CONTROL) ? ModifierFlags::control : 0) |
           inherentFlags(virtualKey);
}

std::uint32_t localEventFlags(std::uint16_t state, std::uint32_t virtualKey, const ModifierMap& map) {
    const bool isControl = holdsControlAndShift(state) && isDigitKey(virtualKey);
    return (isControl ? flagsWithControlAlone(state, map) : flagsWithControlAsCommand(state, map)) |
           inherentFlags(virtualKey);
}

std::uint32_t localHeldFlags(std::uint16_t state, const ModifierMap& map) {
    return holdsControlAndShift(state) ? flagsWithControlAlone(state, map)
                                       : flagsWithControlAsCommand(state, map);
}

} // namespace kestrova
