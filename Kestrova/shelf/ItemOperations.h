#pragma once

#include "KestrovaCore/Result.h"
#include "KestrovaCore/StoreError.h"

#include <memory>

namespace kestrova {

class ClipboardItem;
class HUDController;
class ModelContext;
class Pasteboard;

/// What a person can do to one item of the history, from whichever surface. Each change is saved at once;
/// where that fails it stands in memory and is saved with the next one, and who asked may tell of it or not.
/// Main thread only.
class ItemOperations {
public:
    /// The items are those of `context`.
    ItemOperations(ModelContext& context, Pasteboard& pasteboard, HUDController& hud)
        : m_context(context), m_pasteboard(pasteboard), m_hud(hud) {}

    /// Puts the item on the pasteboard, marks that as an own write, and shows the toast.
    void copy(const std::shared_ptr<ClipboardItem>& item);
    Result<Done, StoreError> togglePin(ClipboardItem& item);
    /// The row goes at once; there is no confirmation.
    Result<Done, StoreError> deleteItem(ClipboardItem& item);

private:
    ModelContext& m_context;
    Pasteboard& m_pasteboard;
    HUDController& m_hud;
};

} // namespace kestrova
