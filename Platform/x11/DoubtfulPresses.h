#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <vector>

namespace kestrova {

/// One press of a button of the mouse, as the server counts them.
struct ButtonPress {
    std::uint32_t button = 0;
    xcb_timestamp_t time = 0;

    bool operator==(const ButtonPress&) const = default;
};

/// Presses of which nobody knows yet where they went. When a busy program comes to look, the pointer may have
/// left its window since the press. A press on a window of the program has its
/// own event, which is on its way already. So each press waits until everything that the server had sent by
/// then has been seen. Main thread only.
class DoubtfulPresses {
public:
    /// `onNotSeen` is told of each press whose own event has not come. `connection` outlives the object.
    DoubtfulPresses(xcb_connection_t* connection, std::function<void(const ButtonPress&)> onNotSeen);
    DoubtfulPresses(const DoubtfulPresses&) = delete;
    DoubtfulPresses& operator=(const DoubtfulPresses&) = delete;
    ~DoubtfulPresses();

    void add(const ButtonPress& press);
    /// The press has come to one of the program's windows.
    void noteOwn(const ButtonPress& press);
    /// Each event of the connection in its order; whether it was meant for this object alone.
    bool take(const xcb_generic_event_t& event);
    /// Nothing is told of the presses so far.
    void clear() { m_presses.clear(); }

private:
    struct Doubtful {
        ButtonPress press;
        std::uint32_t mark;
    };

    xcb_connection_t* const m_connection;
    const std::function<void(const ButtonPress&)> m_onNotSeen;
    // Never shown; marks are sent to it.
    const xcb_window_t m_window;
    std::vector<Doubtful> m_presses;
    std::uint32_t m_lastMark = 0;
};

} // namespace kestrova
