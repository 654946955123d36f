#include "Platform/x11/LinuxMachineInfo.h"

namespace kestrova {

QString LinuxMachineInfo::bundleIdentifier() const {
    return QStringLiteral("com.brelvane.Kestrova");
}

QString LinuxMachineInfo::shortVersionString() const {
    return QStringLiteral(KESTROVA_VERSION);
}

} // namespace kestrova
