#pragma once

#include "KestrovaCore/RecordValues.h"

#include <cstddef>
#include <functional>
#include <limits>

namespace kestrova {

/// Which items a fetch gives: those that satisfy the predicate, newest first; of these, `limit` after the
/// first `offset`.
struct FetchDescriptor {
    static constexpr std::size_t noLimit = std::numeric_limits<std::size_t>::max();

    /// Empty takes every item.
    std::function<bool(const ClipboardItemValues&)> predicate = {};
    std::size_t offset = 0;
    std::size_t limit = noLimit;
};

} // namespace kestrova
