#pragma once

#include "Platform/KeyPoster.h"
#include "Platform/MainQueue.h"
#include "Platform/x11/KeyInjection.h"
#include "Platform/x11/KeyboardFocus.h"
#include "Platform/x11/PasteChord.h"

#include <xcb/xcb.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kestrova {

class Workspace;
class X11Keymap;

/// Types through the server's test extension, on a connection of its own. The server stands still between the
/// look at the focus and the keys, so that they cannot go anywhere else.
class X11KeyPoster final : public KeyPoster {
public:
    /// `queue`, `workspace` and `keymap` outlive the object. `ownPrimarySelection` makes what is on the
    /// clipboard the primary selection as well, and tells whether it did.
    X11KeyPoster(MainQueue& queue, const Workspace& workspace, X11Keymap& keymap,
                 std::function<bool()> ownPrimarySelection);

    void postPaste(const std::optional<RunningApplication>& target) override;

private:
    struct Parts {
        explicit Parts(xcb_connection_t* connection);

        KeyboardFocus focus;
        KeyInjection injection;
    };
    /// Why the chord was not sent; null if it was.
    using Obstacle = const char*;

    void attempt(const std::optional<RunningApplication>& target, MainQueue::Duration waited);
    Obstacle send(const RunningApplication* target);
    Obstacle obstacleAt(const std::optional<FocusedWindow>& focused, const RunningApplication* target) const;
    std::vector<xcb_keycode_t> keysOf(PasteChord chord);

    MainQueue& m_queue;
    const Workspace& m_workspace;
    X11Keymap& m_keymap;
    const std::function<bool()> m_ownPrimarySelection;
    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> m_connection;
    std::optional<Parts> m_parts;
    ScheduledBlock m_nextAttempt;
};

} // namespace kestrova
