#include "Kestrova/shelf/CollectionReorderPayload.h"

#include "Kestrova/shelf/EncodedIdentifier.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace kestrova {
namespace {

constexpr QLatin1StringView idKey("id");

} // namespace

QByteArray CollectionReorderPayload::encoded() const {
    return QJsonDocument(QJsonObject{{idKey, encodedIdentifier(id)}}).toJson(QJsonDocument::Compact);
}

std::optional<CollectionReorderPayload> CollectionReorderPayload::decoded(const QByteArray& json) {
    const auto id = decodedIdentifier<KovaCollection>(QJsonDocument::fromJson(json).object()[idKey]);
    return id ? std::optional(CollectionReorderPayload{*id}) : std::nullopt;
}

} // namespace kestrova
