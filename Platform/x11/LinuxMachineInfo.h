#pragma once

#include "Platform/MachineInfo.h"

namespace kestrova {

/// What the build says of the program.
class LinuxMachineInfo final : public MachineInfo {
public:
    QString bundleIdentifier() const override;
    QString shortVersionString() const override;
};

} // namespace kestrova
