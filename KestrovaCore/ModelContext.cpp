#include "KestrovaCore/ModelContext.h"

#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaCollection.h"
#include "KestrovaCore/ModelContainer.h"

#include <QLoggingCategory>

#include <algorithm>
#include <utility>

namespace kestrova {
namespace {

Q_LOGGING_CATEGORY(lcStore, "kestrova.store")

// A row of SQLite takes a billion bytes; some are for its small fields. One that is larger would make this
// save and all that follow it fail.
constexpr std::int64_t mostBytesInStore = 990'000'000;

std::int64_t bytesInStore(const ClipboardItem& item) {
    const auto bytes = [](const QString& text) -> std::int64_t {
        // A unit takes three bytes at the most; only a text that could be too large is counted.
        return text.size() < mostBytesInStore / 12 ? text.size() * 3 : text.toUtf8().size();
    };
    return bytes(item.content()) + bytes(item.ocrText().value_or(QString())) +
           item.values().imageByteCount.value_or(0);
}

template<typename Record>
bool holds(const std::vector<std::shared_ptr<Record>>& records, const Record& record) {
    return std::ranges::any_of(records, [&](const auto& each) { return each.get() == &record; });
}

template<typename Record>
void erase(std::vector<std::shared_ptr<Record>>& records, const Record& record) {
    std::erase_if(records, [&](const auto& each) { return each.get() == &record; });
}

} // namespace

template<>
ModelContext::Handles<ClipboardItem>& ModelContext::handles() {
    return m_itemHandles;
}
template<>
ModelContext::Handles<KovaCollection>& ModelContext::handles() {
    return m_collectionHandles;
}
template<>
UnsavedChanges::Of<ClipboardItem>& ModelContext::unsaved() {
    return m_unsaved.items;
}
template<>
UnsavedChanges::Of<KovaCollection>& ModelContext::unsaved() {
    return m_unsaved.collections;
}
template<>
std::vector<ItemQuery*>& ModelContext::queries() {
    return m_itemQueries;
}
template<>
std::vector<CollectionQuery*>& ModelContext::queries() {
    return m_collectionQueries;
}

ModelContext::ModelContext(ModelContainer& container) : m_container(container) {
    m_container.add(*this);
}

ModelContext::~ModelContext() {
    Q_ASSERT(m_itemQueries.empty() && m_collectionQueries.empty());
    m_container.remove(*this);
    // Handles that somebody still holds read on, without a store behind them.
    const auto orphan = [](const auto& handles) {
        for (const auto& [id, weak] : handles)
            if (const auto record = weak.lock())
                record->m_context = nullptr;
    };
    orphan(m_itemHandles);
    orphan(m_collectionHandles);
}

template<typename Record>
std::shared_ptr<Record> ModelContext::liveHandle(PersistentIdentifier<Record> id) const {
    const auto& known = const_cast<ModelContext*>(this)->handles<Record>();
    const auto found = known.find(id);
    return found == known.end() ? nullptr : found->second.lock();
}

std::shared_ptr<ClipboardItem> ModelContext::handle(ItemID id,
                                                    const std::shared_ptr<const ClipboardItemValues>& saved) {
    if (auto known = liveHandle(id))
        return known;
    std::shared_ptr<ClipboardItem> made(new ClipboardItem(id, saved, *this));
    m_itemHandles[id] = made;
    return made;
}

std::shared_ptr<KovaCollection>
ModelContext::handle(CollectionID id, const std::shared_ptr<const KovaCollectionValues>& saved) {
    if (auto known = liveHandle(id))
        return known;
    std::shared_ptr<KovaCollection> made(new KovaCollection(id, saved, *this));
    m_collectionHandles[id] = made;
    return made;
}

template<typename Record>
void ModelContext::take(const std::shared_ptr<Record>& record) {
    record->m_id = {m_container.nextTemporaryIdentifier()};
    record->m_context = this;
    handles<Record>()[record->m_id] = record;
    unsaved<Record>().inserted.push_back(record);
    for (auto* const query : queries<Record>())
        query->add(record);
    tellQueries<Record>();
}

void ModelContext::insert(const std::shared_ptr<ClipboardItem>& item) {
    take(item);
}

void ModelContext::insert(const std::shared_ptr<KovaCollection>& collection) {
    take(collection);
}

template<typename Record>
void ModelContext::removeRecord(Record& record) {
    const auto handle = liveHandle(record.id());
    if (!handle || record.m_deleted)
        return;
    record.m_deleted = true;
    auto& changes = unsaved<Record>();
    const bool wasSaved = !holds(changes.inserted, record);
    erase(changes.inserted, record);
    erase(changes.changed, record);
    for (auto* const query : queries<Record>())
        query->remove(record);
    if (wasSaved)
        changes.deleted.push_back(handle);
    tellQueries<Record>();
}

void ModelContext::remove(ClipboardItem& item) {
    removeRecord(item);
}

void ModelContext::remove(KovaCollection& collection) {
    // The query that is told of it may hold the last handle.
    const auto held = liveHandle(collection.id());
    removeRecord(collection);
    dropMemberships(collection.id());
}

void ModelContext::dropMemberships(CollectionID collection) {
    bool dropped = false;
    for (const auto& [id, weak] : m_itemHandles)
        if (const auto item = weak.lock()) {
            auto without = withoutMembership(item->m_values, collection);
            dropped |= without != item->m_values;
            item->m_values = std::move(without);
        }
    if (dropped)
        tellQueries<ClipboardItem>();
}

void ModelContext::refuseWhatCannotBeStored() {
    for (const auto& item : std::vector(m_unsaved.items.inserted))
        if (bytesInStore(*item) > mostBytesInStore) {
            qCWarning(lcStore, "[KovaStore] an item is too large for the store and is not kept.");
            removeRecord(*item);
        }
}

Result<Done, StoreError> ModelContext::save() {
    refuseWhatCannotBeStored();
    if (m_unsaved.isEmpty())
        return Done{};
    return m_container.save(*this, m_unsaved);
}

void ModelContext::forEachItem(
    const std::function<bool(ItemID, const std::shared_ptr<const ClipboardItemValues>&)>& visit) const {
    // Rows whose place in the order is not that of their saved form.
    std::vector<std::shared_ptr<ClipboardItem>> placed = m_unsaved.items.inserted;
    for (const auto& item : m_unsaved.items.changed)
        if (item->m_changedFields & ClipboardItem::CreatedAt)
            placed.push_back(item);
    std::ranges::sort(placed, [](const auto& a, const auto& b) { return standsBefore(*a, *b); });

    auto next = placed.begin();
    const auto& committed = m_container.items();
    for (auto newest = committed.rbegin(); newest != committed.rend(); ++newest) {
        const auto& [id, saved] = *newest;
        while (next != placed.end() &&
               std::pair((*next)->createdAt(), (*next)->id()) > std::pair(saved->createdAt, id)) {
            if (!visit((*next)->id(), (*next)->m_values))
                return;
            ++next;
        }
        if (m_unsaved.isEmpty()) {
            if (!visit(id, saved))
                return;
            continue;
        }
        const auto item = liveHandle(id);
        if (item && (item->m_deleted || holds(placed, *item)))
            continue;
        auto values = item ? item->m_values : saved;
        for (const auto& collection : m_unsaved.collections.deleted)
            values = withoutMembership(values, collection->id());
        if (!visit(id, values))
            return;
    }
    for (; next != placed.end(); ++next)
        if (!visit((*next)->id(), (*next)->m_values))
            return;
}

Result<std::vector<std::shared_ptr<ClipboardItem>>, StoreError>
ModelContext::fetch(const FetchDescriptor& descriptor) {
    if (const auto refreshed = m_container.refresh(); !refreshed)
        return refreshed.error();
    std::vector<std::shared_ptr<ClipboardItem>> found;
    auto toSkip = descriptor.offset;
    forEachItem([&](ItemID id, const auto& values) {
        if (found.size() == descriptor.limit)
            return false;
        if (descriptor.predicate && !descriptor.predicate(*values))
            return true;
        if (toSkip > 0)
            --toSkip;
        else
            found.push_back(handle(id, values));
        return true;
    });
    return found;
}

Result<std::size_t, StoreError> ModelContext::fetchCount(const FetchDescriptor& descriptor) {
    if (const auto refreshed = m_container.refresh(); !refreshed)
        return refreshed.error();
    std::size_t count = 0;
    forEachItem([&](ItemID, const auto& values) {
        count += !descriptor.predicate || descriptor.predicate(*values) ? 1 : 0;
        return true;
    });
    return count;
}

std::shared_ptr<ClipboardItem> ModelContext::item(ItemID id) {
    if (auto known = liveHandle(id))
        return known->m_deleted ? nullptr : known;
    const auto saved = m_container.item(id);
    return saved ? handle(id, saved) : nullptr;
}

std::shared_ptr<KovaCollection> ModelContext::collection(CollectionID id) {
    if (auto known = liveHandle(id))
        return known->m_deleted ? nullptr : known;
    const auto saved = m_container.collections().find(id);
    return saved == m_container.collections().end() ? nullptr : handle(id, saved->second);
}

std::vector<std::shared_ptr<ClipboardItem>> ModelContext::itemsOf(CollectionID id) {
    std::vector<std::shared_ptr<ClipboardItem>> members;
    forEachItem([&](ItemID item, const auto& values) {
        if (values->collections && std::ranges::find(*values->collections, id) != values->collections->end())
            members.push_back(handle(item, values));
        return true;
    });
    return members;
}

template<>
std::vector<std::shared_ptr<ClipboardItem>> ModelContext::all() {
    std::vector<std::shared_ptr<ClipboardItem>> items;
    items.reserve(m_container.items().size());
    forEachItem([&](ItemID id, const auto& values) {
        items.push_back(handle(id, values));
        return true;
    });
    return items;
}

template<>
std::vector<std::shared_ptr<KovaCollection>> ModelContext::all() {
    std::vector<std::shared_ptr<KovaCollection>> collections = m_unsaved.collections.inserted;
    for (const auto& [id, saved] : m_container.collections())
        if (auto collection = handle(id, saved); !collection->m_deleted)
            collections.push_back(std::move(collection));
    std::ranges::sort(collections, [](const auto& a, const auto& b) { return standsBefore(*a, *b); });
    return collections;
}

template<typename Record>
void ModelContext::recordChanged(Record& record) {
    if (record.m_deleted)
        return;
    auto& changes = unsaved<Record>();
    if (!holds(changes.inserted, record) && !holds(changes.changed, record))
        if (auto handle = liveHandle(record.id()))
            changes.changed.push_back(std::move(handle));
    for (auto* const query : queries<Record>())
        query->move(record);
    tellQueries<Record>();
}

void ModelContext::itemChanged(ClipboardItem& item) {
    recordChanged(item);
}

void ModelContext::collectionChanged(KovaCollection& collection) {
    recordChanged(collection);
}

template<typename Record>
void ModelContext::forgetRecord(const Record& record) {
    // A newer handle may stand there by now.
    const auto known = handles<Record>().find(record.id());
    if (known != handles<Record>().end() && known->second.expired())
        handles<Record>().erase(known);
}

void ModelContext::forget(const ClipboardItem& item) {
    forgetRecord(item);
}

void ModelContext::forget(const KovaCollection& collection) {
    forgetRecord(collection);
}

std::optional<QByteArray> ModelContext::readImageData(ItemID id) const {
    return m_container.readImageData(id);
}

const QString& ModelContext::storePath() const {
    return m_container.path();
}

template<typename Record>
void ModelContext::tellQueries() {
    // Whoever is told may make and drop queries.
    for (auto* const query : std::vector(queries<Record>()))
        if (std::ranges::find(queries<Record>(), query) != queries<Record>().end())
            query->changed();
}

std::shared_ptr<ClipboardItem> ModelContext::keepImageData(ItemID id) {
    const auto item = liveHandle(id);
    if (!item || item->m_heldImageData || !item->hasImageData())
        return nullptr;
    // Held by this function, by the queries, and as a deletion that is under way: whoever else holds it will
    // want to read it after the row has gone.
    const auto queries =
        std::ranges::count_if(m_itemQueries, [&](const auto* query) { return query->holds(*item); });
    const auto ownHolds = 1 + queries + (holds(m_unsaved.items.deleted, *item) ? 1 : 0);
    if (item.use_count() <= ownHolds)
        return nullptr;
    item->m_heldImageData = m_container.readImageData(id);
    return item;
}

void ModelContext::adopt(const UnsavedChanges& written, const AssignedIdentifiers& assigned) {
    const auto settleCollections = [&](const std::vector<std::shared_ptr<ClipboardItem>>& items) {
        for (const auto& item : items) {
            if (!item->m_values->collections)
                continue;
            auto settled = std::make_shared<ClipboardItemValues>(*item->m_values);
            settled->collections = savedCollections(*item->m_values, assigned, written);
            item->m_values = std::move(settled);
        }
    };
    settleCollections(written.items.inserted);
    settleCollections(written.items.changed);
    const auto settle = [&]<typename Record>(const std::vector<std::shared_ptr<Record>>& inserted,
                                             const std::vector<PersistentIdentifier<Record>>& ids) {
        for (std::size_t i = 0; i < inserted.size(); ++i) {
            handles<Record>().erase(inserted[i]->m_id);
            inserted[i]->m_id = ids[i];
            handles<Record>()[ids[i]] = inserted[i];
        }
    };
    settle(written.items.inserted, assigned.items);
    settle(written.collections.inserted, assigned.collections);

    const auto clean = [](const auto& records) {
        for (const auto& record : records)
            record->m_changedFields = 0;
    };
    clean(written.collections.inserted);
    clean(written.collections.changed);
    clean(written.items.inserted);
    clean(written.items.changed);
    // From now on the bytes are read from disk.
    for (const auto& item : written.items.inserted)
        item->m_heldImageData.reset();
    for (const auto& item : written.items.changed)
        item->m_heldImageData.reset();
}

template<typename Record>
void ModelContext::merge(const RecordChanges<Record>& changes) {
    for (const auto id : changes.deleted) {
        const auto record = liveHandle(id);
        if (!record)
            continue;
        record->m_deleted = true;
        erase(unsaved<Record>().changed, *record);
        erase(unsaved<Record>().deleted, *record);
        for (auto* const query : queries<Record>())
            query->remove(*record);
    }
    const auto savedValues = [this](PersistentIdentifier<Record> id) {
        if constexpr (std::is_same_v<Record, ClipboardItem>)
            return m_container.item(id);
        else {
            const auto found = m_container.collections().find(id);
            return found == m_container.collections().end() ? nullptr : found->second;
        }
    };
    for (const auto id : changes.updated)
        if (const auto record = liveHandle(id)) {
            if (const auto saved = savedValues(id))
                record->mergeSaved(saved);
            for (auto* const query : queries<Record>())
                query->move(*record);
        }
    if (!queries<Record>().empty())
        for (const auto id : changes.inserted)
            if (const auto saved = savedValues(id))
                for (auto* const query : queries<Record>())
                    query->add(handle(id, saved));
    if (!changes.inserted.empty() || !changes.updated.empty() || !changes.deleted.empty())
        tellQueries<Record>();
}

void ModelContext::merge(const StoreChange& change) {
    for (const auto collection : change.collections.deleted)
        dropMemberships(collection);
    merge(change.collections);
    merge(change.items);
}

} // namespace kestrova
