#pragma once

#include <functional>
#include <memory>
#include <optional>

namespace kestrova {

class ClipboardItem;

/// What the toast can tell of.
enum class HUDEvent { copied, pasted, captured, edited };

/// The toast: tells for a moment what has just happened to an item. Main thread only.
class HUDController {
public:
    virtual ~HUDController() = default;
    virtual void show(HUDEvent event, const std::shared_ptr<ClipboardItem>& item) = 0;

    /// Where the shelf's lower edge stands, or would stand, on the screen under the mouse, in global points.
    /// Absent once the shelf has gone.
    std::function<std::optional<double>()> shelfPanelBottomY;
};

/// Stands where there is no toast to show: nothing on the screen belongs to the program.
class NoHUD final : public HUDController {
public:
    void show(HUDEvent, const std::shared_ptr<ClipboardItem>&) override {}
};

} // namespace kestrova
