#pragma once

#include "KestrovaCore/PersistentIdentifier.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <variant>

namespace kestrova {

/// Where the picture of an item is, so that another thread can wait for the disk. A value; it stays valid
/// whatever becomes of the item.
class StoredImageData {
public:
    /// Bytes that are in memory anyway.
    explicit StoredImageData(std::optional<QByteArray> bytes) : m_place(std::move(bytes)) {}
    /// The bytes of a saved item in the store at `path`.
    StoredImageData(const QString& path, ItemID id) : m_place(Saved{path, id}) {}

    /// PNG bytes as they are on disk now; absent if the row has gone or has no picture and, with a log line,
    /// if the disk fails. Any thread; it never waits for a writer.
    std::optional<QByteArray> read() const;

private:
    struct Saved {
        QString path;
        ItemID id;
    };

    std::variant<std::optional<QByteArray>, Saved> m_place;
};

} // namespace kestrova
