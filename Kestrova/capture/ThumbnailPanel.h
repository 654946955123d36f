#pragma once

#include "Kestrova/capture/ThumbnailEntry.h"
#include "Platform/Animation.h"
#include "Platform/Screens.h"

#include <QUuid>

#include <cstdint>
#include <functional>
#include <vector>

namespace kestrova {

/// What the window shows, and whom it tells.
struct ThumbnailColumn {
    /// From the top to the bottom.
    std::vector<ThumbnailEntry> entries;
    std::function<void(QUuid)> onEntryClick;
    std::function<void(QUuid)> onEntryEdit;
    std::function<void(QUuid)> onEntryClose;
};

/// The window of the previews: borderless, above the others, on every workspace. It never takes the keyboard.
/// Main thread only; rectangles in global points.
class ThumbnailPanel {
public:
    virtual ~ThumbnailPanel() = default;

    /// Replaces what is shown. Once it is visible, the change is animated.
    virtual void setContent(ThumbnailColumn column) = 0;
    /// As pictures of the screen know it.
    virtual std::uint32_t windowNumber() const = 0;

    /// Ordered in, whatever its alpha.
    virtual bool isVisible() const = 0;
    /// Of the column, without the shadows. `largest` is what it may become while it stays there; both have
    /// the same lower corners.
    virtual void setFrame(const ScreenRect& frame, const ScreenRect& largest) = 0;
    /// A value that is set takes over from an animation.
    virtual void setAlpha(double alpha) = 0;
    virtual void animateAlpha(double alpha, AnimationDuration duration, AnimationTiming timing) = 0;
    /// Does nothing while a screen locker hides everything.
    virtual void orderFrontRegardless() = 0;
    virtual void orderOut() = 0;

    /// The displays have changed, and none holds the whole column any more.
    std::function<void()> onPlaceLost;
};

} // namespace kestrova
