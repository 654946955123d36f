#include "Platform/x11/SessionBus.h"

#include <QByteArray>
#include <QFileInfo>
#include <QString>

namespace kestrova {
namespace {

constexpr const char* addressVariable = "DBUS_SESSION_BUS_ADDRESS";
// No transport has this name, so a connection fails at once.
constexpr const char* noBus = "disabled:";

} // namespace

bool hasSessionBus() {
    const QByteArray address = qgetenv(addressVariable);
    if (!address.isEmpty())
        return address != noBus;
    const QString runtimeDirectory = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtimeDirectory.isEmpty() && QFileInfo::exists(runtimeDirectory + QStringLiteral("/bus"));
}

void keepSessionBusFromBeingStarted() {
    if (!hasSessionBus())
        qputenv(addressVariable, noBus);
}

} // namespace kestrova
