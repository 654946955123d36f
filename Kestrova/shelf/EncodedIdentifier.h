#pragma once

#include "KestrovaCore/PersistentIdentifier.h"

#include <QJsonValue>
#include <QString>

#include <optional>

namespace kestrova {

/// An identifier as a payload carries it: decimal text, as the numbers of JSON are not exact enough for one
/// that is still temporary.
template<typename Record>
QJsonValue encodedIdentifier(PersistentIdentifier<Record> id) {
    return QString::number(id.value);
}

/// Absent if `value` is none.
template<typename Record>
std::optional<PersistentIdentifier<Record>> decodedIdentifier(const QJsonValue& value) {
    bool isNumber = false;
    const qint64 number = value.toString().toLongLong(&isNumber);
    return isNumber ? std::optional(PersistentIdentifier<Record>{number}) : std::nullopt;
}

} // namespace kestrova
