#pragma once

#include "KestrovaCore/Result.h"
#include "KestrovaCore/StoreError.h"

#include <memory>

namespace kestrova {

class ClipboardItem;
class HUD;
class KovaCollection;
class ModelContext;
class Pasteboard;

/// What a person can do to one item of the history, from whichever surface. Each change is saved at once;
/// where that fails it stands in memory and is saved with the next one, and who asked may tell of it or not.
/// Main thread only.
class ItemOperations {
public:
    /// The items are those of `context`.
    ItemOperations(ModelContext& context, Pasteboard& pasteboard, HUD& hud)
        : m_context(context), m_pasteboard(pasteboard), m_hud(hud) {}

    /// Puts the item on the pasteboard and marks that as an own write.
    void writeToPasteboard(const ClipboardItem& item);
    /// As `writeToPasteboard`, and shows the toast.
    void copy(const std::shared_ptr<ClipboardItem>& item);
    Result<Done, StoreError> togglePin(ClipboardItem& item);
    /// An item that is in the collection stays there once.
    Result<Done, StoreError> addToCollection(ClipboardItem& item,
                                             const std::shared_ptr<KovaCollection>& collection);
    Result<Done, StoreError> removeFromCollection(ClipboardItem& item, const KovaCollection& collection);
    /// The row goes at once; there is no confirmation.
    Result<Done, StoreError> deleteItem(ClipboardItem& item);

    static bool isInCollection(const ClipboardItem& item, const KovaCollection& collection);

private:
    ModelContext& m_context;
    Pasteboard& m_pasteboard;
    HUD& m_hud;
};

} // namespace kestrova
