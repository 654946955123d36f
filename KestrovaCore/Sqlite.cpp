#include "KestrovaCore/Sqlite.h"

#include <QFile>

#include <sqlite3.h>

#include <cerrno>

namespace kestrova::sqlite {
namespace {

StoreError::Kind kindOf(int code, int systemError) {
    switch (code & 0xff) {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
        return StoreError::Kind::unusable;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return StoreError::Kind::busy;
    case SQLITE_FULL:
        return StoreError::Kind::full;
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return StoreError::Kind::denied;
    case SQLITE_CANTOPEN:
    case SQLITE_IOERR:
        // SQLite reports many causes as one; the operating system's own word tells them apart.
        if (systemError == ENOSPC || systemError == EDQUOT)
            return StoreError::Kind::full;
        if (systemError == EACCES || systemError == EPERM || systemError == EROFS)
            return StoreError::Kind::denied;
        return StoreError::Kind::failed;
    default:
        return StoreError::Kind::failed;
    }
}

SqliteError errorOf(sqlite3* handle, int code) {
    const int extended = handle ? sqlite3_extended_errcode(handle) : code;
    const int systemError = handle ? sqlite3_system_errno(handle) : 0;
    return {{kindOf(extended, systemError),
             QString::fromUtf8(handle ? sqlite3_errmsg(handle) : sqlite3_errstr(code))},
            extended};
}

} // namespace

void Connection::Close::operator()(sqlite3* handle) const {
    sqlite3_close_v2(handle);
}

Connection::Connection(const QString& path, int flags) {
    sqlite3* handle = nullptr;
    // One thread uses the connection, so SQLite need not guard it.
    const int code =
        sqlite3_open_v2(QFile::encodeName(path).constData(), &handle, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    m_handle.reset(handle);
    if (code != SQLITE_OK)
        throw errorOf(handle, code);
    sqlite3_extended_result_codes(handle, 1);
}

Connection Connection::forReading(const QString& path) {
    return Connection(path, SQLITE_OPEN_READONLY);
}

Connection::Connection(const QString& path, std::chrono::milliseconds busyTimeout)
    : Connection(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE) {
    setBusyTimeout(busyTimeout);
    // SQLite falls back to reading alone where it may not write; a history that cannot be written is of no
    // use.
    if (isReadOnly())
        throw SqliteError{{StoreError::Kind::denied, QStringLiteral("the file is read-only")},
                          SQLITE_READONLY};
}

void Connection::setBusyTimeout(std::chrono::milliseconds timeout) {
    sqlite3_busy_timeout(handle(), static_cast<int>(timeout.count()));
}

void Connection::execute(const char* sql) {
    const int code = sqlite3_exec(handle(), sql, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK)
        throw errorOf(handle(), code);
}

std::int64_t Connection::lastInsertedRow() const {
    return sqlite3_last_insert_rowid(handle());
}

bool Connection::isInTransaction() const {
    return sqlite3_get_autocommit(handle()) == 0;
}

bool Connection::isReadOnly() const {
    return sqlite3_db_readonly(handle(), "main") == 1;
}

void Statement::Finalize::operator()(sqlite3_stmt* handle) const {
    sqlite3_finalize(handle);
}

Statement::Statement(const Connection& connection, const char* sql) {
    sqlite3_stmt* handle = nullptr;
    const int code =
        sqlite3_prepare_v3(connection.handle(), sql, -1, SQLITE_PREPARE_PERSISTENT, &handle, nullptr);
    if (code != SQLITE_OK)
        throw errorOf(connection.handle(), code);
    m_handle.reset(handle);
}

Statement& Statement::reset() {
    // The result repeats the failure of the last step, which was thrown then.
    sqlite3_reset(m_handle.get());
    sqlite3_clear_bindings(m_handle.get());
    m_bound = 0;
    return *this;
}

Statement& Statement::bind(std::int64_t value) {
    check(sqlite3_bind_int64(m_handle.get(), ++m_bound, value));
    return *this;
}

Statement& Statement::bind(const QString& value) {
    const QByteArray utf8 = value.toUtf8();
    check(sqlite3_bind_text64(m_handle.get(), ++m_bound, utf8.constData(),
                              static_cast<sqlite3_uint64>(utf8.size()), SQLITE_TRANSIENT, SQLITE_UTF8));
    return *this;
}

Statement& Statement::bind(const QByteArray& value) {
    check(sqlite3_bind_blob64(m_handle.get(), ++m_bound, value.constData(),
                              static_cast<sqlite3_uint64>(value.size()), SQLITE_STATIC));
    return *this;
}

Statement& Statement::bindNull() {
    check(sqlite3_bind_null(m_handle.get(), ++m_bound));
    return *this;
}

bool Statement::step() {
    const int code = sqlite3_step(m_handle.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE) {
        const auto error = errorOf(sqlite3_db_handle(m_handle.get()), code);
        // A statement that is left half-way would keep its hold on the database.
        reset();
        throw error;
    }
    return code == SQLITE_ROW;
}

void Statement::run() {
    step();
    reset();
}

bool Statement::isNull(int column) const {
    return sqlite3_column_type(m_handle.get(), column) == SQLITE_NULL;
}

std::int64_t Statement::integer(int column) const {
    return sqlite3_column_int64(m_handle.get(), column);
}

QString Statement::text(int column) const {
    const auto* const utf8 = reinterpret_cast<const char*>(sqlite3_column_text(m_handle.get(), column));
    QString text = QString::fromUtf8(utf8, sqlite3_column_bytes(m_handle.get(), column));
    // The conversion leaves room for a text without a single character of several bytes; rows stay in memory.
    text.squeeze();
    return text;
}

QByteArray Statement::bytes(int column) const {
    const auto* const blob = static_cast<const char*>(sqlite3_column_blob(m_handle.get(), column));
    return {blob, sqlite3_column_bytes(m_handle.get(), column)};
}

std::optional<std::int64_t> Statement::optionalInteger(int column) const {
    return isNull(column) ? std::nullopt : std::optional{integer(column)};
}

std::optional<QString> Statement::optionalText(int column) const {
    return isNull(column) ? std::nullopt : std::optional{text(column)};
}

void Statement::check(int code) const {
    if (code != SQLITE_OK)
        throw errorOf(sqlite3_db_handle(m_handle.get()), code);
}

Transaction::Transaction(Connection& connection) : m_connection(connection) {
    // At once for writing: a transaction that starts as a reader could find itself behind another process's
    // commit.
    m_connection.execute("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
    // Some failures have rolled back already.
    if (m_connection.isInTransaction())
        sqlite3_exec(m_connection.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::commit() {
    m_connection.execute("COMMIT");
}

} // namespace kestrova::sqlite
