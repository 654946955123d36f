#include "Platform/x11/HeldModifiers.h"

namespace kestrova {

std::uint16_t HeldModifiers::afterPress(xcb_keycode_t key, std::uint16_t stateBefore,
                                        const ModifierMap& map) {
    m_held.insert(key);
    // A lock locks with its press and unlocks with the release of the next one.
    if (map.maskOfKey[key] & XCB_MOD_MASK_LOCK)
        m_releaseUnlocks = (stateBefore & XCB_MOD_MASK_LOCK) != 0;
    return static_cast<std::uint16_t>(stateBefore | map.maskOfKey[key]);
}

std::uint16_t HeldModifiers::afterRelease(xcb_keycode_t key, std::uint16_t stateBefore,
                                          const ModifierMap& map) {
    m_held.erase(key);
    auto released = static_cast<std::uint16_t>(map.maskOfKey[key]);
    if ((released & XCB_MOD_MASK_LOCK) && !m_releaseUnlocks)
        released = static_cast<std::uint16_t>(released & ~XCB_MOD_MASK_LOCK);
    // Its twin on the other side may still be held.
    for (const auto other : m_held)
        released = static_cast<std::uint16_t>(released & ~map.maskOfKey[other]);
    return static_cast<std::uint16_t>(stateBefore & ~released);
}

} // namespace kestrova
