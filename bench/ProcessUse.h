#pragma once

#include <QtGlobal>

namespace kestrova::bench {

/// What memory a process costs, in megabytes (10^6).
struct MemoryUse {
    /// Own pages, and the share of those that others use too. Other programs of the same toolkit, the
    /// measuring one among them, are left out of account: what only such programs share counts in full.
    double proportional = 0;
    /// As the kernel tells it, those programs counted.
    double proportionalAsTold = 0;
    double resident = 0;
    /// Own pages that no file backs.
    double anonymous = 0;
};

/// Throws std::runtime_error if the process cannot be looked at.
MemoryUse memoryUseOf(qint64 pid);

/// Processor time that all its threads have used so far. Throws std::runtime_error likewise.
double processorMillisecondsOf(qint64 pid);

} // namespace kestrova::bench
