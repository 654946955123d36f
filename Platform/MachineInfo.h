#pragma once

#include <QString>

namespace kestrova {

/// What the program knows of itself and of the machine. Main thread only.
class MachineInfo {
public:
    virtual ~MachineInfo() = default;

    /// This program's own identifier; it names the directories and the bus name too.
    virtual QString bundleIdentifier() const = 0;
    /// The program's version as people write it, such as "1.4.2".
    virtual QString shortVersionString() const = 0;
};

} // namespace kestrova
