#pragma once

#include <QRegion>

#include <cstdint>
#include <functional>
#include <memory>

namespace kestrova {

/// Keeps an observer of compositing told for as long as it lives.
class CompositingObserver {
public:
    virtual ~CompositingObserver() = default;
};

/// What the program asks of the window manager, and learns of the screen, beyond what the toolkit offers.
/// Main thread only; windows are in the host's own numbering.
class WindowManagement {
public:
    virtual ~WindowManagement() = default;

    /// Whether windows are blended with what lies behind them, now. Without it a transparent pixel is black.
    virtual bool isCompositing() const = 0;
    /// Tells each time when what `isCompositing` answers may have become another.
    [[nodiscard]] virtual std::unique_ptr<CompositingObserver>
    observeCompositing(std::function<void()> onDidChange) = 0;
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
    /// From now on nothing outside `pixels`, which are counted likewise, is part of the window: it neither
    /// shows nor takes presses.
    virtual void cutOff(std::uint64_t window, const QRect& pixels) = 0;
    /// To be called right before the window, a window of this program, is hidden. If it has the keyboard,
    /// what is typed from now on is kept back, and goes in one piece to whichever window has the keyboard
    /// next, of this program or another. Where none has taken it within a quarter of a second, it goes where
    /// the host sends keys then. Nothing happens if the window does not have the keyboard, or something holds
    /// it, as an open menu or a tap does. Keys that were sent to the window before may still come to it.
    /// Returns at once.
    virtual void handOverKeyboard(std::uint64_t window) = 0;
};

} // namespace kestrova
