#pragma once

#include "KestrovaCore/PersistentIdentifier.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace kestrova {

/// What a dragged item carries. Within the shelf it travels as JSON; other programs take the text.
struct ItemDragPayload {
    /// Of the JSON.
    static QString contentType() { return QStringLiteral("public.json"); }

    ItemID id;
    /// The item's content when the drag began.
    QString exportText;

    QByteArray encoded() const;
    /// Absent if `json` is no such payload.
    static std::optional<ItemDragPayload> decoded(const QByteArray& json);

    bool operator==(const ItemDragPayload&) const = default;
};

} // namespace kestrova
