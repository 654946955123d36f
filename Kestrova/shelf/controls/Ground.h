#pragma once

namespace kestrova {

/// How far what lies behind a window is let through.
enum class Ground { translucent, opaque };

} // namespace kestrova
