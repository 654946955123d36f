#pragma once

#include "KestrovaCore/PersistentIdentifier.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace kestrova {

/// What the dragged row of a collection carries. It means nothing to other programs.
struct CollectionReorderPayload {
    /// Of the JSON.
    static QString contentType() { return QStringLiteral("com.brelvane.Kestrova.collection-reorder"); }

    CollectionID id;

    QByteArray encoded() const;
    /// Absent if `json` is no such payload.
    static std::optional<CollectionReorderPayload> decoded(const QByteArray& json);

    bool operator==(const CollectionReorderPayload&) const = default;
};

} // namespace kestrova
