#pragma once

#include "KestrovaCore/Result.h"
#include "KestrovaCore/StoreError.h"

#include <QString>
#include <QUrl>

#include <memory>
#include <vector>

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
    /// The same of a text that was made of the item.
    void copyText(const std::shared_ptr<ClipboardItem>& item, const QString& text);
    Result<Done, StoreError> togglePin(ClipboardItem& item);
    /// An item that is in the collection stays there once.
    Result<Done, StoreError> addToCollection(ClipboardItem& item,
                                             const std::shared_ptr<KovaCollection>& collection);
    Result<Done, StoreError> removeFromCollection(ClipboardItem& item, const KovaCollection& collection);
    /// Of an item that has been deleted meanwhile, what was typed becomes a new one.
    Result<Done, StoreError> saveEdit(ClipboardItem& item, const QString& content);
    /// A new item, in no history yet, of an address or a file.
    static std::shared_ptr<ClipboardItem> itemOf(const QUrl& url);
    Result<Done, StoreError> insert(const std::vector<std::shared_ptr<ClipboardItem>>& items);
    /// The row goes at once; there is no confirmation.
    Result<Done, StoreError> deleteItem(ClipboardItem& item);

private:
    ModelContext& m_context;
    Pasteboard& m_pasteboard;
    HUD& m_hud;
};

} // namespace kestrova
