#include "KestrovaCore/Schema.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <vector>

namespace kestrova::Schema {
namespace {

// Schema version 1.0.0. The number in the file counts only versions that an older program could not read.
constexpr std::int64_t fileVersion = 1;

struct Column {
    const char* name;
    const char* declaration;
    bool required;
};

struct Table {
    const char* name;
    std::span<const Column> columns;
    const char* constraint = "";
};

// AUTOINCREMENT, so that the identifier of a deleted row is never given to another one. `imageData` stands
// last: what comes before it is read without walking through the bytes of the picture.
constexpr std::array itemColumns{
    Column{"id", "INTEGER PRIMARY KEY AUTOINCREMENT", true},
    Column{"content", "TEXT NOT NULL", true},
    Column{"rawType", "TEXT", false},
    Column{"width", "INTEGER", false},
    Column{"height", "INTEGER", false},
    Column{"fileURLString", "TEXT", false},
    Column{"fileSize", "INTEGER", false},
    Column{"createdAt", "INTEGER NOT NULL", true},
    Column{"sourceApp", "TEXT", false},
    Column{"pinned", "INTEGER NOT NULL", true},
    Column{"ocrText", "TEXT", false},
    Column{"rawSource", "TEXT", false},
    Column{"imageData", "BLOB", false},
};

constexpr std::array collectionColumns{
    Column{"id", "INTEGER PRIMARY KEY AUTOINCREMENT", true},
    Column{"name", "TEXT NOT NULL", true},
    Column{"createdAt", "INTEGER NOT NULL", true},
    Column{"sortOrder", "INTEGER NOT NULL", true},
    Column{"icon", "TEXT", false},
    Column{"colorHex", "TEXT", false},
};

constexpr std::array membershipColumns{
    Column{"item", "INTEGER NOT NULL REFERENCES ClipboardItem(id) ON DELETE CASCADE", true},
    Column{"collection", "INTEGER NOT NULL REFERENCES KovaCollection(id) ON DELETE CASCADE", true},
};

constexpr std::array tables{
    Table{"ClipboardItem", itemColumns},
    Table{"KovaCollection", collectionColumns},
    Table{"ClipboardItem_collections", membershipColumns, ", UNIQUE (item, collection)"},
};

struct FoundColumn {
    QString name;
    bool notNull = false;
    bool hasDefault = false;
};

std::vector<FoundColumn> columnsIn(const sqlite::Connection& connection, const char* table) {
    sqlite::Statement statement(connection, "SELECT name, \"notnull\", dflt_value IS NOT NULL, pk "
                                            "FROM pragma_table_info(?)");
    statement.bind(QString::fromLatin1(table));
    std::vector<FoundColumn> found;
    while (statement.step()) {
        const bool isKey = statement.integer(3) != 0;
        found.push_back({statement.text(0), statement.integer(1) != 0, isKey || statement.integer(2) != 0});
    }
    return found;
}

[[noreturn]] void refuse(const QString& reason) {
    throw sqlite::SqliteError{{StoreError::Kind::unusable, reason}};
}

std::int64_t tableCount(const sqlite::Connection& connection) {
    sqlite::Statement statement(connection,
                                "SELECT count(*) FROM sqlite_schema WHERE name NOT LIKE 'sqlite\\_%' "
                                "ESCAPE '\\'");
    statement.step();
    return statement.integer(0);
}

std::int64_t versionOf(const sqlite::Connection& connection) {
    sqlite::Statement statement(connection, "PRAGMA user_version");
    statement.step();
    return statement.integer(0);
}

/// The statements that give an existing file the columns that it lacks.
std::vector<std::string> adaptations(const sqlite::Connection& connection) {
    if (versionOf(connection) != fileVersion)
        refuse(QStringLiteral("the schema is of another program or of a newer version"));
    std::vector<std::string> statements;
    for (const auto& table : tables) {
        const auto found = columnsIn(connection, table.name);
        for (const auto& column : table.columns) {
            const bool present = std::ranges::any_of(
                found, [&](const FoundColumn& each) { return each.name == QLatin1StringView(column.name); });
            if (!present && column.required)
                refuse(QStringLiteral("a required column is missing"));
            if (!present)
                statements.push_back(std::string("ALTER TABLE ") + table.name + " ADD COLUMN " + column.name +
                                     ' ' + column.declaration);
        }
        for (const auto& each : found) {
            const bool ours = std::ranges::any_of(table.columns, [&](const Column& column) {
                return each.name == QLatin1StringView(column.name);
            });
            if (!ours && each.notNull && !each.hasDefault)
                refuse(QStringLiteral("a column of another program must be filled"));
        }
    }
    return statements;
}

std::vector<std::string> creations() {
    std::vector<std::string> statements;
    for (const auto& table : tables) {
        std::string sql = std::string("CREATE TABLE ") + table.name + " (";
        for (const auto& column : table.columns)
            sql += (&column == table.columns.data() ? "" : ", ") + (std::string(column.name) + ' ') +
                   column.declaration;
        statements.push_back(sql + table.constraint + ')');
    }
    auto& version = statements.emplace_back("PRAGMA user_version = ");
    version += std::to_string(fileVersion);
    return statements;
}

std::vector<std::string> missing(const sqlite::Connection& connection) {
    return tableCount(connection) == 0 ? creations() : adaptations(connection);
}

} // namespace

void prepare(sqlite::Connection& connection) {
    // Looked at before anything is written, so that a file that is not ours is moved aside as it was.
    missing(connection);
    if (connection.isReadOnly())
        refuse(QStringLiteral("the file is of a format that can only be read"));

    sqlite::Statement(connection, "PRAGMA journal_mode = WAL").step();
    connection.execute("PRAGMA synchronous = FULL");
    connection.execute("PRAGMA secure_delete = ON");
    connection.execute("PRAGMA foreign_keys = ON");
    // Pictures swell the log; the space comes back once it has been carried over.
    connection.execute("PRAGMA journal_size_limit = 16777216");
    // Rows are read once and kept by us; pages that the database keeps as well would only take room. In KiB.
    connection.execute("PRAGMA cache_size = -256");

    if (!missing(connection).empty()) {
        sqlite::Transaction transaction(connection);
        // Again, now that no other process can be in between.
        for (const auto& statement : missing(connection))
            connection.execute(statement.c_str());
        transaction.commit();
    }
}

} // namespace kestrova::Schema
