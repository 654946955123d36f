#include "KestrovaCore/StoreWriter.h"

#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaCollection.h"

#include <algorithm>
#include <array>
#include <string>

namespace kestrova {
namespace {

std::int64_t milliseconds(Timestamp moment) {
    return moment.time_since_epoch().count();
}

/// One stored column of a record: the bit that marks it as changed, its name, and how its value is bound.
template<typename Record>
struct Column {
    std::uint32_t field;
    const char* name;
    void (*bind)(sqlite::Statement&, const Record&);
};

/// Updates just the changed columns: one that another process changed meanwhile keeps its value.
template<typename Record, std::size_t count>
void updateColumns(const sqlite::Connection& connection, const char* table,
                   const std::array<Column<Record>, count>& columns, std::uint32_t changedFields,
                   const Record& record) {
    std::string assignments;
    for (const auto& column : columns)
        if (changedFields & column.field)
            assignments += std::string(assignments.empty() ? "" : ", ") + column.name + " = ?";
    if (assignments.empty())
        return;
    sqlite::Statement statement(
        connection, (std::string("UPDATE ") + table + " SET " + assignments + " WHERE id = ?").c_str());
    for (const auto& column : columns)
        if (changedFields & column.field)
            column.bind(statement, record);
    statement.bind(record.id().value).run();
}

} // namespace

std::vector<CollectionID> savedCollections(const ClipboardItemValues& values,
                                           const AssignedIdentifiers& assigned,
                                           const UnsavedChanges& changes) {
    auto ids = values.collections.value_or(std::vector<CollectionID>{});
    for (auto& id : ids) {
        const auto& inserted = changes.collections.inserted;
        const auto found = std::ranges::find(inserted, id, &KovaCollection::id);
        if (found != inserted.end())
            id = assigned.collections[static_cast<std::size_t>(found - inserted.begin())];
    }
    return ids;
}

StoreWriter::StoreWriter(const sqlite::Connection& connection)
    : m_connection(connection),
      m_insertItem(connection,
                   "INSERT INTO ClipboardItem (content, rawType, width, height, fileURLString, fileSize, "
                   "createdAt, sourceApp, pinned, ocrText, rawSource, imageData) "
                   "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
      m_deleteItem(connection, "DELETE FROM ClipboardItem WHERE id = ?"),
      m_insertCollection(connection,
                         "INSERT INTO KovaCollection (name, createdAt, sortOrder, icon, colorHex) "
                         "VALUES (?, ?, ?, ?, ?)"),
      m_deleteCollection(connection, "DELETE FROM KovaCollection WHERE id = ?"),
      // Another process may have deleted either of them meanwhile; that must not cost the rest of the save.
      m_insertMembership(connection,
                         "INSERT OR IGNORE INTO ClipboardItem_collections (item, collection) "
                         "SELECT ClipboardItem.id, KovaCollection.id FROM ClipboardItem, KovaCollection "
                         "WHERE ClipboardItem.id = ? AND KovaCollection.id = ?"),
      m_deleteMemberships(connection, "DELETE FROM ClipboardItem_collections WHERE item = ?") {}

AssignedIdentifiers StoreWriter::write(const UnsavedChanges& changes) {
    AssignedIdentifiers assigned;
    for (const auto& collection : changes.collections.inserted)
        assigned.collections.push_back(insert(*collection));
    for (const auto& collection : changes.collections.changed)
        update(*collection);
    for (const auto& item : changes.items.inserted)
        assigned.items.push_back(insert(*item, assigned, changes));
    for (const auto& item : changes.items.changed)
        update(*item, assigned, changes);
    for (const auto& item : changes.items.deleted)
        m_deleteItem.reset().bind(item->id().value).run();
    for (const auto& collection : changes.collections.deleted)
        m_deleteCollection.reset().bind(collection->id().value).run();
    return assigned;
}

ItemID StoreWriter::insert(const ClipboardItem& item, const AssignedIdentifiers& assigned,
                           const UnsavedChanges& changes) {
    const auto& values = item.values();
    m_insertItem.reset()
        .bind(values.content)
        .bind(values.rawType)
        .bind(values.width)
        .bind(values.height)
        .bind(values.fileURLString)
        .bind(values.fileSize)
        .bind(milliseconds(values.createdAt))
        .bind(values.sourceApp)
        .bind(std::int64_t{values.pinned})
        .bind(values.ocrText)
        .bind(values.rawSource)
        .bind(item.m_heldImageData)
        .run();
    const ItemID id{m_connection.lastInsertedRow()};
    writeMemberships(id, savedCollections(values, assigned, changes));
    return id;
}

void StoreWriter::update(const ClipboardItem& item, const AssignedIdentifiers& assigned,
                         const UnsavedChanges& changes) {
    using Item = ClipboardItem;
    using Statement = sqlite::Statement;
    static constexpr std::array columns{
        Column<Item>{Item::Content, "content", [](Statement& s, const Item& i) { s.bind(i.content()); }},
        Column<Item>{Item::RawType, "rawType", [](Statement& s, const Item& i) { s.bind(i.rawType()); }},
        Column<Item>{Item::Width, "width", [](Statement& s, const Item& i) { s.bind(i.width()); }},
        Column<Item>{Item::Height, "height", [](Statement& s, const Item& i) { s.bind(i.height()); }},
        Column<Item>{Item::FileURLString, "fileURLString",
                     [](Statement& s, const Item& i) { s.bind(i.fileURLString()); }},
        Column<Item>{Item::FileSize, "fileSize", [](Statement& s, const Item& i) { s.bind(i.fileSize()); }},
        Column<Item>{Item::CreatedAt, "createdAt",
                     [](Statement& s, const Item& i) { s.bind(milliseconds(i.createdAt())); }},
        Column<Item>{Item::SourceApp, "sourceApp",
                     [](Statement& s, const Item& i) { s.bind(i.sourceApp()); }},
        Column<Item>{Item::Pinned, "pinned",
                     [](Statement& s, const Item& i) { s.bind(std::int64_t{i.pinned()}); }},
        Column<Item>{Item::OcrText, "ocrText", [](Statement& s, const Item& i) { s.bind(i.ocrText()); }},
        Column<Item>{Item::RawSource, "rawSource",
                     [](Statement& s, const Item& i) { s.bind(i.rawSource()); }},
        Column<Item>{Item::ImageData, "imageData",
                     [](Statement& s, const Item& i) { s.bind(i.m_heldImageData); }},
    };
    updateColumns(m_connection, "ClipboardItem", columns, item.m_changedFields, item);
    if (item.m_changedFields & Item::Collections) {
        m_deleteMemberships.reset().bind(item.id().value).run();
        writeMemberships(item.id(), savedCollections(item.values(), assigned, changes));
    }
}

void StoreWriter::writeMemberships(ItemID item, const std::vector<CollectionID>& collections) {
    for (const auto collection : collections)
        m_insertMembership.reset().bind(item.value).bind(collection.value).run();
}

CollectionID StoreWriter::insert(const KovaCollection& collection) {
    const auto& values = collection.values();
    m_insertCollection.reset()
        .bind(values.name)
        .bind(milliseconds(values.createdAt))
        .bind(values.sortOrder)
        .bind(values.icon)
        .bind(values.colorHex)
        .run();
    return {m_connection.lastInsertedRow()};
}

void StoreWriter::update(const KovaCollection& collection) {
    using Collection = KovaCollection;
    using Statement = sqlite::Statement;
    static constexpr std::array columns{
        Column<Collection>{Collection::Name, "name",
                           [](Statement& s, const Collection& c) { s.bind(c.name()); }},
        Column<Collection>{Collection::SortOrder, "sortOrder",
                           [](Statement& s, const Collection& c) { s.bind(c.sortOrder()); }},
        Column<Collection>{Collection::Icon, "icon",
                           [](Statement& s, const Collection& c) { s.bind(c.icon()); }},
        Column<Collection>{Collection::ColorHex, "colorHex",
                           [](Statement& s, const Collection& c) { s.bind(c.colorHex()); }},
    };
    updateColumns(m_connection, "KovaCollection", columns, collection.m_changedFields, collection);
}

} // namespace kestrova
