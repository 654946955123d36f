#pragma once

#include "Platform/x11/KeyModifiers.h"

#include <cstdint>
#include <set>

namespace kestrova {

/// Follows the modifier keys through the events of this program's own windows. An event carries the state
/// from before its key; this tells the one after it.
class HeldModifiers {
public:
    /// The X state after the press or the release of a key that has a mask in `map`.
    std::uint16_t afterPress(xcb_keycode_t key, std::uint16_t stateBefore, const ModifierMap& map);
    std::uint16_t afterRelease(xcb_keycode_t key, std::uint16_t stateBefore, const ModifierMap& map);
    /// The keyboard has gone elsewhere; what is let go there is not seen.
    void clear() { m_held.clear(); }

private:
    std::set<xcb_keycode_t> m_held;
    bool m_releaseUnlocks = false;
};

} // namespace kestrova
