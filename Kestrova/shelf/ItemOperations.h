#pragma once

#include <memory>

namespace kestrova {

class ClipboardItem;
class HUDController;
class ModelContext;
class Pasteboard;

/// What a person can do to one item of the history, from whichever surface. Each change is saved; a save that
/// fails is ignored, and the change stands in memory. Main thread only.
class ItemOperations {
public:
    /// The items are those of `context`.
    ItemOperations(ModelContext& context, Pasteboard& pasteboard, HUDController& hud)
        : m_context(context), m_pasteboard(pasteboard), m_hud(hud) {}

    /// Puts the item on the pasteboard, marks that as an own write, and shows the toast.
    void copy(const std::shared_ptr<ClipboardItem>& item);
    void togglePin(ClipboardItem& item);
    /// The row goes at once; there is no confirmation.
    void deleteItem(ClipboardItem& item);

private:
    void save();

    ModelContext& m_context;
    Pasteboard& m_pasteboard;
    HUDController& m_hud;
};

} // namespace kestrova
