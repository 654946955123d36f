#pragma once

#include <cstdint>

namespace kestrova {

/// The pasteboard's change counter after this program's last write. Every writer stores it right after its
/// write, so that the monitor does not record what comes from the history anyway. Main thread only.
inline std::int64_t ownWriteChangeCount = 0;

} // namespace kestrova
