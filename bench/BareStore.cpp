#include "bench/BareStore.h"

#include <QByteArrayView>
#include <QFile>

#include <sqlite3.h>

#include <stdexcept>

namespace kestrova::bench {

void BareStore::Close::operator()(sqlite3* handle) const {
    sqlite3_close_v2(handle);
}
void BareStore::Close::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

BareStore::BareStore(const QString& file) {
    sqlite3* handle = nullptr;
    const int code = sqlite3_open(QFile::encodeName(file).constData(), &handle);
    m_handle.reset(handle);
    if (code != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(handle));
    sqlite3_busy_timeout(handle, 10'000);
    // As the program sets them.
    execute("PRAGMA journal_mode = WAL");
    execute("PRAGMA synchronous = FULL");
    execute("PRAGMA secure_delete = ON");
    execute("PRAGMA foreign_keys = ON");
    execute("PRAGMA journal_size_limit = 16777216");
    m_insert =
        prepared("INSERT INTO ClipboardItem (content, rawType, createdAt, sourceApp, pinned, rawSource) "
                 "VALUES (?, 'text', 1900000000000, 'org.example.editor', 0, 'clipboard')");
    m_dataVersion = prepared("PRAGMA data_version");
    m_newest = prepared("SELECT content FROM ClipboardItem ORDER BY id DESC LIMIT 1");
}

void BareStore::execute(const char* sql) {
    if (sqlite3_exec(m_handle.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(m_handle.get()));
}

BareStore::Statement BareStore::prepared(const char* sql) const {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(m_handle.get(), sql, -1, &statement, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(m_handle.get()));
    return Statement(statement);
}

void BareStore::insert(const QByteArray& text) {
    sqlite3_bind_text(m_insert.get(), 1, text.constData(), static_cast<int>(text.size()), SQLITE_STATIC);
    const int code = sqlite3_step(m_insert.get());
    sqlite3_reset(m_insert.get());
    if (code != SQLITE_DONE)
        throw std::runtime_error(sqlite3_errmsg(m_handle.get()));
}

std::int64_t BareStore::dataVersion() {
    if (sqlite3_step(m_dataVersion.get()) != SQLITE_ROW)
        throw std::runtime_error(sqlite3_errmsg(m_handle.get()));
    const auto version = sqlite3_column_int64(m_dataVersion.get(), 0);
    sqlite3_reset(m_dataVersion.get());
    return version;
}

bool BareStore::newestIs(const QByteArray& text) {
    const int code = sqlite3_step(m_newest.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        throw std::runtime_error(sqlite3_errmsg(m_handle.get()));
    const auto* const found = reinterpret_cast<const char*>(sqlite3_column_text(m_newest.get(), 0));
    const bool same = code == SQLITE_ROW &&
                      QByteArrayView(found, sqlite3_column_bytes(m_newest.get(), 0)) == QByteArrayView(text);
    sqlite3_reset(m_newest.get());
    return same;
}

} // namespace kestrova::bench
