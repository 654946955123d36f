#pragma once

#include "Platform/HotKeys.h"

#include <xcb/xcb.h>

#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace kestrova {

/// Sees to it that one press of a hot key is told of once. The same press may show as the event of a grab, as
/// a raw event and, while it lasts, as any number of repeats; only the raw events tell when the key itself
/// went down and up.
class HotKeyPresses {
public:
    void onRawPress(xcb_keycode_t key, xcb_timestamp_t time);
    /// The hot key whose press ends with it, if one was told of.
    std::optional<HotKeyIdentifier> onRawRelease(xcb_keycode_t key);

    /// Whether the event of that time is the key's last press itself, and nobody was told of it yet. Repeats
    /// have times of their own.
    bool isNew(xcb_keycode_t key, xcb_timestamp_t time) const;
    /// Notes that the last press was told of. False if the key is up again, so that its release is due now.
    bool noteTold(xcb_keycode_t key, HotKeyIdentifier identifier);

    /// Ends the presses of all keys that are not `isDown`, in case a keyboard has gone with its keys held;
    /// answers the hot keys among them.
    std::vector<HotKeyIdentifier> endUnless(const std::function<bool(xcb_keycode_t)>& isDown);
    void clear() { m_presses.clear(); }

private:
    struct Press {
        xcb_timestamp_t time = 0;
        bool isDown = false;
        bool isTold = false;
        /// Whose release is due.
        std::optional<HotKeyIdentifier> identifier;
    };
    std::map<xcb_keycode_t, Press> m_presses;
};

} // namespace kestrova
