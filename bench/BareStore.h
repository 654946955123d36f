#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace kestrova::bench {

/// The store's file with nothing between it and SQLite, at the same level of safety: the floor of what a save
/// costs, and an onlooker at what the program saves. Throws std::runtime_error.
class BareStore {
public:
    explicit BareStore(const QString& file);

    /// Inserts a row of that text and commits it to the disk.
    void insert(const QByteArray& text);
    /// Moves when another connection has committed.
    std::int64_t dataVersion();
    /// Whether the newest row has that text.
    bool newestIs(const QByteArray& text);

private:
    struct Close {
        void operator()(sqlite3* handle) const;
        void operator()(sqlite3_stmt* statement) const;
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Close>;

    void execute(const char* sql);
    Statement prepared(const char* sql) const;

    std::unique_ptr<sqlite3, Close> m_handle;
    Statement m_insert;
    Statement m_dataVersion;
    Statement m_newest;
};

} // namespace kestrova::bench
