#include "Kestrova/shelf/ItemDragPayload.h"

#include "Kestrova/shelf/EncodedIdentifier.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace kestrova {
namespace {

constexpr QLatin1StringView idKey("id");
constexpr QLatin1StringView exportTextKey("exportText");

} // namespace

QByteArray ItemDragPayload::encoded() const {
    return QJsonDocument(QJsonObject{{idKey, encodedIdentifier(id)}, {exportTextKey, exportText}})
        .toJson(QJsonDocument::Compact);
}

std::optional<ItemDragPayload> ItemDragPayload::decoded(const QByteArray& json) {
    const auto object = QJsonDocument::fromJson(json).object();
    const auto id = decodedIdentifier<ClipboardItem>(object[idKey]);
    const auto text = object[exportTextKey];
    if (!id || !text.isString())
        return std::nullopt;
    return ItemDragPayload{*id, text.toString()};
}

} // namespace kestrova
