#pragma once

#include "Kestrova/capture/HUD.h"
#include "Platform/Animation.h"
#include "Platform/Screens.h"

#include <QSizeF>

#include <functional>

namespace kestrova {

/// The toast's window: borderless, above the shelf, on every workspace. It never takes the keyboard. Main
/// thread only; rectangles in global points.
class HUDPanel {
public:
    virtual ~HUDPanel() = default;

    /// Shows the event; a tap anywhere on it calls `onTap`, which replaces the one before. Behind a screen
    /// locker a tap is none.
    virtual void setContent(HUDEvent event, std::function<void()> onTap) = 0;
    /// What the content needs, in points.
    virtual QSizeF fittingSize() const = 0;

    /// Ordered in, whatever its alpha.
    virtual bool isVisible() const = 0;
    /// Of what is seen, without its shadow; where it is now if it is on its way.
    virtual ScreenRect frame() const = 0;
    virtual void setFrame(const ScreenRect& frame) = 0;
    virtual void setAlpha(double alpha) = 0;
    /// Moves and fades to the end values. A newer animation, or a value that is set, takes over what this one
    /// was moving.
    virtual void animate(const ScreenRect& frame, double alpha, AnimationDuration duration,
                         AnimationTiming timing) = 0;
    /// Does nothing while a screen locker hides everything.
    virtual void orderFrontRegardless() = 0;
    virtual void orderOut() = 0;
};

} // namespace kestrova
