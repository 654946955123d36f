#include "KestrovaCore/ModelContainer.h"

#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaCollection.h"
#include "KestrovaCore/ModelContext.h"
#include "KestrovaCore/Schema.h"
#include "KestrovaCore/Sqlite.h"
#include "KestrovaCore/StoreWriter.h"

#include <QLoggingCategory>
#include <QSet>

#include <sqlite3.h>

#include <algorithm>
#include <tuple>
#include <utility>

namespace kestrova {
namespace {

Q_LOGGING_CATEGORY(lcStore, "kestrova.store")

using namespace std::chrono_literals;

// At start another process may be busy with a long carry-over of its log.
constexpr auto openingTimeout = 10s;
// Later a save that waits holds up the person; it is tried again with the next one.
constexpr auto runningTimeout = 1s;

struct OlderFirst {
    bool operator()(const ModelContainer::SavedItem& a, const ModelContainer::SavedItem& b) const {
        return std::tie(a.values->createdAt, a.id) < std::tie(b.values->createdAt, b.id);
    }
};

/// Thousands of rows repeat a handful of kinds and applications; each is kept in memory once.
class SharedTexts {
public:
    std::optional<QString> shared(std::optional<QString> text) {
        return text ? std::optional{*m_texts.insert(*text)} : text;
    }

private:
    QSet<QString> m_texts;
};

Timestamp timestamp(std::int64_t milliseconds) {
    return Timestamp{std::chrono::milliseconds{milliseconds}};
}

std::vector<ModelContainer::SavedItem> readItems(const sqlite::Connection& connection) {
    sqlite::Statement rows(
        connection,
        "SELECT id, content, rawType, width, height, fileURLString, fileSize, createdAt, sourceApp, "
        "pinned, ocrText, rawSource, length(imageData) FROM ClipboardItem ORDER BY id");
    std::vector<std::pair<ItemID, std::shared_ptr<ClipboardItemValues>>> read;
    SharedTexts sharedTexts;
    while (rows.step()) {
        auto values = std::make_shared<ClipboardItemValues>();
        values->content = rows.text(1);
        values->rawType = sharedTexts.shared(rows.optionalText(2));
        values->width = rows.optionalInteger(3);
        values->height = rows.optionalInteger(4);
        values->fileURLString = rows.optionalText(5);
        values->fileSize = rows.optionalInteger(6);
        values->createdAt = timestamp(rows.integer(7));
        values->sourceApp = sharedTexts.shared(rows.optionalText(8));
        values->pinned = rows.integer(9) != 0;
        values->ocrText = rows.optionalText(10);
        values->rawSource = sharedTexts.shared(rows.optionalText(11));
        values->imageByteCount = rows.optionalInteger(12);
        read.emplace_back(ItemID{rows.integer(0)}, std::move(values));
    }
    sqlite::Statement memberships(connection,
                                  "SELECT item, collection FROM ClipboardItem_collections ORDER BY rowid");
    while (memberships.step()) {
        const auto item = std::ranges::lower_bound(read, ItemID{memberships.integer(0)}, {},
                                                   [](const auto& each) { return each.first; });
        if (item == read.end() || item->first.value != memberships.integer(0))
            continue;
        auto& collections = item->second->collections;
        (collections ? *collections : collections.emplace()).push_back({memberships.integer(1)});
    }
    std::vector<ModelContainer::SavedItem> items;
    items.reserve(read.size());
    for (auto& [id, values] : read)
        items.push_back({id, std::move(values)});
    std::ranges::sort(items, OlderFirst{});
    return items;
}

ModelContainer::SavedCollections readCollections(const sqlite::Connection& connection) {
    sqlite::Statement rows(connection,
                           "SELECT id, name, createdAt, sortOrder, icon, colorHex FROM KovaCollection");
    ModelContainer::SavedCollections collections;
    while (rows.step())
        collections.emplace(CollectionID{rows.integer(0)},
                            std::make_shared<const KovaCollectionValues>(KovaCollectionValues{
                                rows.text(1), timestamp(rows.integer(2)), rows.integer(3),
                                rows.optionalText(4), rows.optionalText(5)}));
    return collections;
}

/// What turns `before` into `after`; both map identifiers to shared values.
template<typename Record, typename Map>
RecordChanges<Record> difference(const Map& before, const Map& after) {
    RecordChanges<Record> changes;
    for (const auto& [id, values] : after) {
        const auto old = before.find(id);
        if (old == before.end())
            changes.inserted.push_back(id);
        else if (!(*old->second == *values))
            changes.updated.push_back(id);
    }
    for (const auto& [id, values] : before)
        if (!after.contains(id))
            changes.deleted.push_back(id);
    // Maps by hash have no order; rows are told in the order in which they were made.
    std::ranges::sort(changes.inserted);
    return changes;
}

} // namespace

struct ModelContainer::Database {
    explicit Database(const QString& path) : connection(opened(path)) {}

    static sqlite::Connection opened(const QString& path) {
        sqlite::Connection connection(path, openingTimeout);
        Schema::prepare(connection);
        connection.setBusyTimeout(runningTimeout);
        return connection;
    }

    sqlite::Connection connection;
    sqlite::Statement dataVersion{connection, "PRAGMA data_version"};
    sqlite::Statement imageData{connection, "SELECT imageData FROM ClipboardItem WHERE id = ?"};
    StoreWriter writer{connection};
};

Result<std::unique_ptr<ModelContainer>, StoreError> ModelContainer::open(const QString& path) {
    try {
        return std::unique_ptr<ModelContainer>(new ModelContainer(path));
    } catch (const sqlite::SqliteError& failure) {
        auto error = failure.error;
        // No call of ours is wrong in itself: the file has a format or a schema that only resembles ours.
        if (failure.code == SQLITE_ERROR)
            error.kind = StoreError::Kind::unusable;
        return error;
    }
}

ModelContainer::ModelContainer(const QString& path)
    : m_path(path), m_database(std::make_unique<Database>(path)) {
    otherProcessesHaveSaved();
    load();
}

ModelContainer::~ModelContainer() {
    Q_ASSERT(m_contexts.empty());
}

std::shared_ptr<const ClipboardItemValues> ModelContainer::item(ItemID id) const {
    const auto found = m_itemsByID.find(id);
    return found == m_itemsByID.end() ? nullptr : found->second;
}

void ModelContainer::add(ModelContext& context) {
    m_contexts.push_back(&context);
}

void ModelContainer::remove(ModelContext& context) {
    std::erase(m_contexts, &context);
}

bool ModelContainer::otherProcessesHaveSaved() {
    auto& statement = m_database->dataVersion.reset();
    statement.step();
    const auto version = statement.integer(0);
    statement.reset();
    return std::exchange(m_dataVersion, version) != version;
}

void ModelContainer::load() {
    auto items = readItems(m_database->connection);
    auto collections = readCollections(m_database->connection);
    m_items = std::move(items);
    m_collections = std::move(collections);
    m_itemsByID.clear();
    m_itemsByID.reserve(m_items.size());
    for (const auto& [id, values] : m_items)
        m_itemsByID.emplace(id, values);
}

void ModelContainer::reload() {
    const auto itemsBefore = m_itemsByID;
    const auto collectionsBefore = m_collections;
    load();
    tell({difference<ClipboardItem>(itemsBefore, m_itemsByID),
          difference<KovaCollection>(collectionsBefore, m_collections)},
         nullptr);
}

Result<Done, StoreError> ModelContainer::refresh() {
    const auto versionBefore = m_dataVersion;
    try {
        if (otherProcessesHaveSaved())
            reload();
        return Done{};
    } catch (const sqlite::SqliteError& failure) {
        // Looked at again at the next chance.
        m_dataVersion = versionBefore;
        return failure.error;
    }
}

Result<Done, StoreError> ModelContainer::save(ModelContext& author, const UnsavedChanges& changes) {
    const auto versionBefore = m_dataVersion;
    // Handles that somebody still holds keep their pictures when the rows go.
    std::vector<std::shared_ptr<ClipboardItem>> keepers;
    try {
        for (const auto& item : changes.items.deleted)
            for (auto* const context : m_contexts)
                if (auto keeper = context->keepImageData(item->id()))
                    keepers.push_back(std::move(keeper));

        sqlite::Transaction transaction(m_database->connection);
        const bool others = otherProcessesHaveSaved();
        const auto assigned = m_database->writer.write(changes);
        transaction.commit();

        author.adopt(changes, assigned);
        const auto change = apply(changes);
        const bool rowsHaveGone = !change.items.deleted.empty() || !change.collections.deleted.empty();
        author.m_unsaved = {};
        tell(change, &author);
        if (rowsHaveGone && onRowsDeleted)
            onRowsDeleted();
        if (others)
            m_dataVersion = versionBefore;
    } catch (const sqlite::SqliteError& failure) {
        m_dataVersion = versionBefore;
        for (const auto& keeper : keepers)
            keeper->m_heldImageData.reset();
        qCWarning(lcStore).noquote().nospace()
            << "[KovaStore] save failed (" << failure.error.message << ").";
        return failure.error;
    }
    // The rows of other processes are wanted, but they are no part of this save: a failure is met again
    // later.
    if (const auto refreshed = refresh(); !refreshed)
        qCWarning(lcStore).noquote().nospace()
            << "[KovaStore] refresh failed (" << refreshed.error().message << ").";
    return Done{};
}

StoreChange ModelContainer::apply(const UnsavedChanges& changes) {
    StoreChange change;
    for (const auto& collection : changes.collections.inserted) {
        m_collections[collection->id()] = collection->m_values;
        change.collections.inserted.push_back(collection->id());
    }
    for (const auto& collection : changes.collections.changed) {
        m_collections[collection->id()] = collection->m_values;
        change.collections.updated.push_back(collection->id());
    }
    for (const auto& item : changes.items.inserted) {
        put(item->id(), item->m_values);
        change.items.inserted.push_back(item->id());
    }
    for (const auto& item : changes.items.changed) {
        take(item->id());
        put(item->id(), item->m_values);
        change.items.updated.push_back(item->id());
    }
    for (const auto& item : changes.items.deleted) {
        take(item->id());
        change.items.deleted.push_back(item->id());
    }
    for (const auto& collection : changes.collections.deleted) {
        m_collections.erase(collection->id());
        change.collections.deleted.push_back(collection->id());
        for (const auto id : dropMemberships(collection->id()))
            change.items.updated.push_back(id);
    }
    return change;
}

std::vector<ItemID> ModelContainer::dropMemberships(CollectionID collection) {
    std::vector<ItemID> dropped;
    for (auto& [id, values] : m_items) {
        auto without = withoutMembership(values, collection);
        if (without == values)
            continue;
        values = std::move(without);
        m_itemsByID[id] = values;
        dropped.push_back(id);
    }
    return dropped;
}

void ModelContainer::put(ItemID id, std::shared_ptr<const ClipboardItemValues> values) {
    SavedItem saved{id, std::move(values)};
    m_itemsByID[id] = saved.values;
    m_items.insert(std::ranges::upper_bound(m_items, saved, OlderFirst{}), std::move(saved));
}

void ModelContainer::take(ItemID id) {
    const auto known = m_itemsByID.find(id);
    if (known == m_itemsByID.end())
        return;
    const auto [first, last] =
        std::equal_range(m_items.begin(), m_items.end(), SavedItem{id, known->second}, OlderFirst{});
    m_items.erase(first, last);
    m_itemsByID.erase(known);
}

std::optional<QByteArray> ModelContainer::readImageData(ItemID id) {
    try {
        auto& statement = m_database->imageData.reset().bind(id.value);
        std::optional<QByteArray> bytes;
        if (statement.step() && !statement.isNull(0))
            bytes = statement.bytes(0);
        statement.reset();
        return bytes;
    } catch (const sqlite::SqliteError& failure) {
        qCWarning(lcStore).noquote().nospace()
            << "[KovaStore] picture cannot be read (" << failure.error.message << ").";
        return std::nullopt;
    }
}

bool ModelContainer::foldForSearch(std::size_t from, std::size_t count) const {
    const auto end = std::min(m_items.size(), from + count);
    for (auto i = from; i < end; ++i) {
        const auto& values = *m_items[i].values;
        values.foldedContent.of(values.content);
        values.foldedOcrText.of(values.ocrText.value_or(QString()));
    }
    return from < end;
}

bool ModelContainer::scrub() {
    auto& connection = m_database->connection;
    bool isCleared = false;
    // Readers come and go; whoever asks comes again.
    connection.setBusyTimeout({});
    try {
        sqlite::Statement checkpoint(connection, "PRAGMA wal_checkpoint(TRUNCATE)");
        // That others stood in the way is no error, but the first number of its answer.
        isCleared = checkpoint.step() && checkpoint.integer(0) == 0;
    } catch (const sqlite::SqliteError& failure) {
        qCWarning(lcStore).noquote().nospace()
            << "[KovaStore] log not cleared (" << failure.error.message << ").";
    }
    connection.setBusyTimeout(runningTimeout);
    return isCleared;
}

void ModelContainer::tell(const StoreChange& change, const ModelContext* author) {
    // A context may come or go while others are told.
    const auto contexts = m_contexts;
    for (auto* const context : contexts)
        if (context != author && std::ranges::find(m_contexts, context) != m_contexts.end())
            context->merge(change);
}

} // namespace kestrova
