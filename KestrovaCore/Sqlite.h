#pragma once

#include "KestrovaCore/StoreError.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

struct sqlite3;
struct sqlite3_stmt;

/// A thin layer over SQLite's C interface. Failures are thrown as SqliteError within the store and never
/// leave it: ModelContainer turns them into a StoreError.
namespace kestrova::sqlite {

struct SqliteError {
    StoreError error;
    /// SQLite's extended result code.
    int code = 0;
};

class Connection {
public:
    /// Opens or creates the file, which must be writable. `busyTimeout` is how long each step waits for
    /// others.
    Connection(const QString& path, std::chrono::milliseconds busyTimeout);
    /// Opens an existing file that this connection will never write.
    static Connection forReading(const QString& path);

    sqlite3* handle() const { return m_handle.get(); }
    void setBusyTimeout(std::chrono::milliseconds timeout);
    /// Runs statements that give no rows.
    void execute(const char* sql);
    std::int64_t lastInsertedRow() const;
    bool isInTransaction() const;
    /// Whether the file cannot be written, for lack of rights or, once it has been read, for its format.
    bool isReadOnly() const;

private:
    struct Close {
        void operator()(sqlite3* handle) const;
    };
    Connection(const QString& path, int flags);

    std::unique_ptr<sqlite3, Close> m_handle;
};

/// A compiled statement. Columns count from 0, parameters from 1 in the order of the calls to `bind`.
class Statement {
public:
    Statement(const Connection& connection, const char* sql);

    /// Starts anew: no parameter is bound, and the statement's hold on the database ends.
    Statement& reset();
    Statement& bind(std::int64_t value);
    Statement& bind(const QString& value);
    /// Not copied: `value` must live until the next `reset`.
    Statement& bind(const QByteArray& value);
    template<typename Value>
    Statement& bind(const std::optional<Value>& value) {
        return value ? bind(*value) : bindNull();
    }
    /// True if there is a row to read.
    bool step();
    /// For statements that give no rows.
    void run();

    bool isNull(int column) const;
    std::int64_t integer(int column) const;
    QString text(int column) const;
    QByteArray bytes(int column) const;
    std::optional<std::int64_t> optionalInteger(int column) const;
    std::optional<QString> optionalText(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt* handle) const;
    };
    Statement& bindNull();
    void check(int code) const;

    std::unique_ptr<sqlite3_stmt, Finalize> m_handle;
    int m_bound = 0;
};

/// BEGIN IMMEDIATE now; ROLLBACK at the end of the scope unless `commit` was reached.
class Transaction {
public:
    explicit Transaction(Connection& connection);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();
    void commit();

private:
    Connection& m_connection;
};

} // namespace kestrova::sqlite
