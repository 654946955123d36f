#include "KestrovaCore/Timestamp.h"

#include <QDateTime>
#include <QTimeZone>

namespace kestrova {

Timestamp currentTimestamp() {
    return std::chrono::time_point_cast<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

QString iso8601(Timestamp moment) {
    return QDateTime::fromMSecsSinceEpoch(moment.time_since_epoch().count(), Qt::UTC)
        .toString(Qt::ISODateWithMs);
}

} // namespace kestrova
