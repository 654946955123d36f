#pragma once

#include <QByteArray>

#include <sys/types.h>
#include <vector>

namespace kestrova::test {

/// The processes whose environment holds the line `marker` ("NAME=value"), this one left out.
std::vector<pid_t> processesMarked(const QByteArray& marker);

/// Ends every process whose environment holds the line `marker` and waits until none is left:
/// those that left their process group, such as services that the bus started. Main thread of the test only.
void endProcessesMarked(const QByteArray& marker);

} // namespace kestrova::test
