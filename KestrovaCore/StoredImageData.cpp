#include "KestrovaCore/StoredImageData.h"

#include "KestrovaCore/Sqlite.h"

#include <QLoggingCategory>

namespace kestrova {
namespace {

Q_LOGGING_CATEGORY(lcStore, "kestrova.store")

} // namespace

std::optional<QByteArray> StoredImageData::read() const {
    const auto* const saved = std::get_if<Saved>(&m_place);
    if (!saved)
        return std::get<std::optional<QByteArray>>(m_place);
    try {
        // A connection for this one read: it costs a fraction of the read, and one that stays would keep its
        // pages in memory.
        const auto connection = sqlite::Connection::forReading(saved->path);
        sqlite::Statement row(connection, "SELECT imageData FROM ClipboardItem WHERE id = ?");
        row.bind(saved->id.value);
        return row.step() && !row.isNull(0) ? std::optional{row.bytes(0)} : std::nullopt;
    } catch (const sqlite::SqliteError& failure) {
        qCWarning(lcStore).noquote().nospace()
            << "[KovaStore] picture cannot be read (" << failure.error.message << ").";
        return std::nullopt;
    }
}

} // namespace kestrova
