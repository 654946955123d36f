#pragma once

#include "Platform/Animation.h"
#include "Platform/Screens.h"
#include "Platform/Sharing.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace kestrova {

class ShelfPanelView;

/// The shelf's window: borderless, above all others, on every workspace, able to take keys and to give them
/// back. Main thread only; rectangles in global points.
class ShelfPanel {
public:
    using Duration = AnimationDuration;

    virtual ~ShelfPanel() = default;

    /// Fills the window with what paints `view`, which outlives the panel's use of it. Called once.
    virtual void setContent(ShelfPanelView& view) = 0;

    /// Ordered in, whatever its alpha.
    virtual bool isVisible() const = 0;
    /// The host's number of the window.
    virtual std::uint64_t windowNumber() const = 0;

    /// Where it stands now, on its way elsewhere too.
    virtual ScreenRect frame() const = 0;
    virtual void setFrame(const ScreenRect& frame) = 0;
    virtual void animateFrame(const ScreenRect& frame, Duration duration, AnimationTiming timing) = 0;
    virtual void setAlpha(double alpha) = 0;
    virtual void animateAlpha(double alpha, Duration duration, AnimationTiming timing) = 0;
    virtual void orderFrontRegardless() = 0;
    virtual void orderOut() = 0;
    virtual void setIgnoresMouseEvents(bool ignores) = 0;

    /// Ends the editing of whichever text control has the focus, and gives the focus to the window's content,
    /// so that keys no longer reach the control.
    virtual void endEditing() = 0;

    /// Lets the person choose one of the ways to share; without any it says so. `done` is told of the choice
    /// and of nothing else.
    virtual void pickShareTarget(const std::vector<ShareTarget>& targets,
                                 std::function<void(const ShareTarget&)> done) = 0;
};

} // namespace kestrova
