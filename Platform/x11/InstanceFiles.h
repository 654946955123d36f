#pragma once

#include <QString>

namespace kestrova {

/// Where the instances of one history find each other: all of it lies in the data directory, so that programs
/// with different histories never meet, whatever session or bus they were started in.
struct InstanceFiles {
    explicit InstanceFiles(const QString& dataDirectory)
        : lock(dataDirectory + QStringLiteral("/instance.lock")),
          socket(dataDirectory + QStringLiteral("/socket")) {}

    /// Held by the running instance for as long as it lives; holds its process identifier in decimal.
    QString lock;
    QString socket;
};

/// The names under which the running instance is on the session bus.
namespace InstanceBus {
inline constexpr QLatin1StringView service{"com.brelvane.Kestrova"};
inline constexpr QLatin1StringView path{"/com/brelvane/Kestrova"};
inline constexpr QLatin1StringView interface { "com.brelvane.Kestrova.CommandLine" };
inline constexpr QLatin1StringView method{"Run"};
/// The answer is larger than the bus carries; the socket takes any size.
inline constexpr QLatin1StringView tooLarge{"com.brelvane.Kestrova.Error.TooLarge"};
} // namespace InstanceBus

} // namespace kestrova
