#pragma once

#include <functional>
#include <memory>
#include <optional>

namespace kestrova {

class ClipboardItem;

/// What the toast can tell of.
enum class HUDEvent { copied, pasted, captured, edited };

/// The toast: tells for a moment what has just happened to an item. Main thread only.
class HUD {
public:
    virtual ~HUD() = default;
    virtual void show(const std::shared_ptr<ClipboardItem>& item, HUDEvent event) = 0;

    /// Where the shelf's lower edge stands, or would stand, on the screen under the mouse, in global points.
    /// Absent once the shelf has gone.
    std::function<std::optional<double>()> shelfPanelBottomY;
};

} // namespace kestrova
