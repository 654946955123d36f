#pragma once

#include "KestrovaCore/PersistentIdentifier.h"
#include "KestrovaCore/Sqlite.h"

#include <memory>
#include <utility>
#include <vector>

namespace kestrova {

class ClipboardItem;
class KovaCollection;
struct ClipboardItemValues;

/// What a context has changed and not yet saved.
struct UnsavedChanges {
    template<typename Record>
    struct Of {
        std::vector<std::shared_ptr<Record>> inserted;
        std::vector<std::shared_ptr<Record>> changed;
        std::vector<std::shared_ptr<Record>> deleted;

        bool isEmpty() const { return inserted.empty() && changed.empty() && deleted.empty(); }
    };
    Of<ClipboardItem> items;
    Of<KovaCollection> collections;

    bool isEmpty() const { return items.isEmpty() && collections.isEmpty(); }
};

/// The row numbers that a write gave to inserted records, in their order.
struct AssignedIdentifiers {
    std::vector<ItemID> items;
    std::vector<CollectionID> collections;
};

/// Writes the unsaved changes of a context as rows. Within a transaction of the caller; throws SqliteError.
class StoreWriter {
public:
    explicit StoreWriter(const sqlite::Connection& connection);

    AssignedIdentifiers write(const UnsavedChanges& changes);

private:
    ItemID insert(const ClipboardItem& item, const AssignedIdentifiers& assigned,
                  const UnsavedChanges& changes);
    void update(const ClipboardItem& item, const AssignedIdentifiers& assigned,
                const UnsavedChanges& changes);
    CollectionID insert(const KovaCollection& collection);
    void update(const KovaCollection& collection);
    void writeMemberships(ItemID item, const std::vector<CollectionID>& collections);

    const sqlite::Connection& m_connection;
    sqlite::Statement m_insertItem;
    sqlite::Statement m_deleteItem;
    sqlite::Statement m_insertCollection;
    sqlite::Statement m_deleteCollection;
    sqlite::Statement m_insertMembership;
    sqlite::Statement m_deleteMemberships;
};

/// `values.collections` with the identifiers that inserted collections have got.
std::vector<CollectionID> savedCollections(const ClipboardItemValues& values,
                                           const AssignedIdentifiers& assigned,
                                           const UnsavedChanges& changes);

} // namespace kestrova
