#pragma once

#include <memory>

namespace kestrova {

class SelectionOverlayView;

/// What the mouse pointer looks like during a capture session.
enum class OverlayCursor { arrow, openHand, crosshair };

/// The window that covers one display during a capture session, exactly and over everything, panels and
/// full-screen windows included. It shows on every workspace, is in no task list, has no shadow, and what it
/// does not paint is transparent. Main thread only.
///
/// It turns the mouse into the handlers of its view, in the view's coordinates; a drag stays with the panel
/// that took the press, whatever display the mouse is over by then. A handler may make the panel go: whoever
/// calls one holds the view until the handler has returned, and a panel that goes within it leaves its window
/// to be dropped later. It uses nothing of its surroundings once it has gone.
class OverlayPanel {
public:
    virtual ~OverlayPanel() = default;

    /// Painted from now on, and told of the mouse. Its drawing is asked for when `setNeedsDisplay` says that
    /// it may have changed.
    virtual void setContentView(std::shared_ptr<SelectionOverlayView> view) = 0;
    virtual void orderFrontRegardless() = 0;
    /// Asks for the keyboard, without the program becoming the one in front where the host can tell the two
    /// apart.
    virtual void makeKey() = 0;
    virtual void orderOut() = 0;
    virtual void setCursor(OverlayCursor cursor) = 0;
    /// What the view draws is to be compared with what is on the screen, and the difference painted. Calls
    /// before the next turn may be dealt with together.
    virtual void setNeedsDisplay() = 0;
};

} // namespace kestrova
