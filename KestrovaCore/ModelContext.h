#pragma once

#include "KestrovaCore/FetchDescriptor.h"
#include "KestrovaCore/LiveQuery.h"
#include "KestrovaCore/PersistentIdentifier.h"
#include "KestrovaCore/Result.h"
#include "KestrovaCore/StoreChange.h"
#include "KestrovaCore/StoreError.h"
#include "KestrovaCore/StoreWriter.h"

#include <QByteArray>

#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace kestrova {

class ClipboardItem;
class KovaCollection;
class ModelContainer;

/// A unit of work on the store. One handle stands for one row here, however often it is fetched. Its fetches
/// and live queries include what it has not saved yet; others see that when `save` has written it.
///
/// Rows do not pass between contexts. The container must outlive it. Main thread only.
class ModelContext {
public:
    explicit ModelContext(ModelContainer& container);
    ModelContext(const ModelContext&) = delete;
    ModelContext& operator=(const ModelContext&) = delete;
    /// Unsaved changes are dropped.
    ~ModelContext();

    /// Takes a new record in; it has a temporary identifier until it is saved.
    void insert(const std::shared_ptr<ClipboardItem>& item);
    void insert(const std::shared_ptr<KovaCollection>& collection);
    /// The record leaves fetches and live queries at once, and the store with the next save. Removing a
    /// collection leaves its items.
    void remove(ClipboardItem& item);
    void remove(KovaCollection& collection);

    bool hasChanges() const { return !m_unsaved.isEmpty(); }
    /// Writes all unsaved changes in one transaction. On failure they stay, and the next save tries them
    /// again. A new item that is larger than the store can take is dropped with a log line.
    Result<Done, StoreError> save();

    /// The items that `descriptor` asks for, other processes' saves included.
    Result<std::vector<std::shared_ptr<ClipboardItem>>, StoreError> fetch(const FetchDescriptor& descriptor);
    /// How many items satisfy the predicate; offset and limit do not count.
    Result<std::size_t, StoreError> fetchCount(const FetchDescriptor& descriptor);

    /// The record with that identifier, or null if there is none.
    std::shared_ptr<ClipboardItem> item(ItemID id);
    std::shared_ptr<KovaCollection> collection(CollectionID id);
    /// The members of a collection, in the order of the history.
    std::vector<std::shared_ptr<ClipboardItem>> itemsOf(CollectionID id);

private:
    friend class ClipboardItem;
    friend class KovaCollection;
    friend class ModelContainer;
    template<typename Record>
    friend class LiveQuery;

    template<typename Record>
    using Handles = std::unordered_map<PersistentIdentifier<Record>, std::weak_ptr<Record>>;

    // Called by the records.
    void itemChanged(ClipboardItem& item);
    void collectionChanged(KovaCollection& collection);
    void forget(const ClipboardItem& item);
    void forget(const KovaCollection& collection);
    std::optional<QByteArray> readImageData(ItemID id) const;
    const QString& storePath() const;

    // Called by the live queries.
    template<typename Record>
    std::vector<std::shared_ptr<Record>> all();
    template<typename Record>
    std::vector<LiveQuery<Record>*>& queries();

    // Called by the container.
    /// If somebody beside the store holds the item, reads its picture into the handle, which is the result.
    std::shared_ptr<ClipboardItem> keepImageData(ItemID id);
    void adopt(const UnsavedChanges& changes, const AssignedIdentifiers& assigned);
    void merge(const StoreChange& change);
    template<typename Record>
    void merge(const RecordChanges<Record>& changes);

    std::shared_ptr<ClipboardItem> handle(ItemID id, const std::shared_ptr<const ClipboardItemValues>& saved);
    std::shared_ptr<KovaCollection> handle(CollectionID id,
                                           const std::shared_ptr<const KovaCollectionValues>& saved);
    template<typename Record>
    std::shared_ptr<Record> liveHandle(PersistentIdentifier<Record> id) const;
    template<typename Record>
    Handles<Record>& handles();
    template<typename Record>
    UnsavedChanges::Of<Record>& unsaved();
    template<typename Record>
    void take(const std::shared_ptr<Record>& record);
    template<typename Record>
    void removeRecord(Record& record);
    template<typename Record>
    void recordChanged(Record& record);
    template<typename Record>
    void forgetRecord(const Record& record);
    template<typename Record>
    void tellQueries();
    void dropMemberships(CollectionID collection);
    void refuseWhatCannotBeStored();
    /// Newest first, unsaved changes included, until `visit` answers false.
    void forEachItem(
        const std::function<bool(ItemID, const std::shared_ptr<const ClipboardItemValues>&)>& visit) const;

    ModelContainer& m_container;
    Handles<ClipboardItem> m_itemHandles;
    Handles<KovaCollection> m_collectionHandles;
    UnsavedChanges m_unsaved;
    std::vector<ItemQuery*> m_itemQueries;
    std::vector<CollectionQuery*> m_collectionQueries;
};

} // namespace kestrova
