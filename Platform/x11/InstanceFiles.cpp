#include "Platform/x11/InstanceFiles.h"

#include <QFileInfo>

namespace kestrova {

bool hasSessionBus() {
    const QString runtimeDirectory = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
           (!runtimeDirectory.isEmpty() && QFileInfo::exists(runtimeDirectory + QStringLiteral("/bus")));
}

} // namespace kestrova
