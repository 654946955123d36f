#pragma once

#include "Kestrova/detail/ByteCountFormatter.h"
#include "Kestrova/detail/DateFormatter.h"

namespace kestrova {

/// What writes numbers and moments on the detail screens. Made once and shared by all of them, since making
/// them reads the tables of the locale.
struct InfoFormatters {
    ByteCountFormatter byteCount;
    DateFormatter date;
};

} // namespace kestrova
