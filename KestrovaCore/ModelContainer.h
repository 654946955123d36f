#pragma once

#include "KestrovaCore/PersistentIdentifier.h"
#include "KestrovaCore/RecordValues.h"
#include "KestrovaCore/Result.h"
#include "KestrovaCore/StoreChange.h"
#include "KestrovaCore/StoreError.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace kestrova {

class ModelContext;
struct UnsavedChanges;

/// The open store: one database file, its saved rows in memory without their pictures, and the contexts that
/// work on it. Everybody works through a ModelContext of their own. Main thread only.
class ModelContainer {
public:
    struct SavedItem {
        ItemID id;
        std::shared_ptr<const ClipboardItemValues> values;
    };
    using SavedCollections = std::map<CollectionID, std::shared_ptr<const KovaCollectionValues>>;

    /// Opens or creates the file at `path`, whose folder must exist. Waits some seconds for other processes;
    /// after that, and where the file cannot be used, it fails and has not changed the file.
    static Result<std::unique_ptr<ModelContainer>, StoreError> open(const QString& path);

    ModelContainer(const ModelContainer&) = delete;
    ModelContainer& operator=(const ModelContainer&) = delete;
    /// The contexts must have gone.
    ~ModelContainer();

    const QString& path() const { return m_path; }

    /// Makes the searchable forms of up to `count` rows, beginning behind the `from` oldest ones, so that the
    /// first search need not. False if no rows are left there.
    bool foldForSearch(std::size_t from, std::size_t count) const;

    /// Clears the database's log of what has been deleted; the file itself never keeps it. Waits for the
    /// disk, so it is for a quiet moment after `onRowsDeleted`, but for nobody who reads. False if it is not
    /// cleared: then somebody reads just now, or, with a log line, the disk fails.
    [[nodiscard]] bool scrub();

    /// A save has deleted rows.
    std::function<void()> onRowsDeleted;

private:
    friend class ModelContext;

    explicit ModelContainer(const QString& path);

    /// Oldest first, so that a new row goes to the end.
    const std::vector<SavedItem>& items() const { return m_items; }
    const SavedCollections& collections() const { return m_collections; }
    std::shared_ptr<const ClipboardItemValues> item(ItemID id) const;

    std::int64_t nextTemporaryIdentifier() { return m_nextTemporary++; }
    void add(ModelContext& context);
    void remove(ModelContext& context);

    /// Takes in what other processes have saved since the last look, and tells the contexts.
    Result<Done, StoreError> refresh();
    /// Writes the changes of `author` in one transaction, gives their records their identifiers, and tells
    /// all other contexts. On failure nothing has changed, on disk or in memory.
    Result<Done, StoreError> save(ModelContext& author, const UnsavedChanges& changes);
    std::optional<QByteArray> readImageData(ItemID id);

    bool otherProcessesHaveSaved();
    void load();
    void reload();
    /// Brings the saved rows up to what was just written.
    StoreChange apply(const UnsavedChanges& changes);
    std::vector<ItemID> dropMemberships(CollectionID collection);
    void put(ItemID id, std::shared_ptr<const ClipboardItemValues> values);
    void take(ItemID id);
    void tell(const StoreChange& change, const ModelContext* author);

    struct Database;

    QString m_path;
    std::unique_ptr<Database> m_database;
    std::int64_t m_dataVersion = 0;
    std::vector<SavedItem> m_items;
    std::unordered_map<ItemID, std::shared_ptr<const ClipboardItemValues>> m_itemsByID;
    SavedCollections m_collections;
    std::vector<ModelContext*> m_contexts;
    std::int64_t m_nextTemporary = ItemID::firstTemporary;
};

} // namespace kestrova
