#pragma once

#include <QRegion>

#include <cstdint>

namespace kestrova {

/// What the program asks of the window manager, and learns of the screen, beyond what the toolkit offers.
/// Main thread only; windows are in the host's own numbering.
class WindowManagement {
public:
    virtual ~WindowManagement() = default;

    /// Whether windows are blended with what lies behind them, now. Without it a transparent pixel is black.
    virtual bool isCompositing() const = 0;
    /// Whether nothing of the desktop is seen, as behind a screen locker, now. True if the screen does not
    /// tell.
    virtual bool isScreenCovered() const = 0;
    /// Asks that the window, which has just been shown, stands on every workspace, above the others, and in
    /// no task bar or pager. A window manager that does not know such wishes ignores them, and forgets them
    /// when the window is hidden.
    virtual void standApart(std::uint64_t window) = 0;
    /// From now on a press outside `pixels`, which are counted from the window's upper left corner, goes to
    /// what lies below the window.
    virtual void limitPresses(std::uint64_t window, const QRegion& pixels) = 0;
};

} // namespace kestrova
