#pragma once

#include <QtGlobal>

#include <chrono>

namespace kestrova::test {

/// The processor time that the process has used, in the system's clock ticks; -1 once it has gone.
qint64 processorTicks(qint64 pid);

/// True as soon as the process has been quiet, using two clock ticks at most, for 300 ms on end; false if it
/// has not been by the deadline.
bool becomesQuiet(qint64 pid, std::chrono::milliseconds deadline);

} // namespace kestrova::test
