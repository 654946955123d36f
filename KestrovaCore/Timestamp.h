#pragma once

#include <QString>

#include <chrono>

namespace kestrova {

/// A moment, in whole milliseconds since 1970 UTC: what the store keeps and what people are shown.
using Timestamp = std::chrono::sys_time<std::chrono::milliseconds>;

Timestamp currentTimestamp();

/// ISO 8601 in UTC with milliseconds, such as "2024-02-29T23:59:59.007Z".
QString iso8601(Timestamp moment);

} // namespace kestrova
