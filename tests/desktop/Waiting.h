#pragma once

#include <chrono>
#include <functional>

namespace kestrova::test {

/// Long enough for a loaded machine; a test that runs into it has failed.
inline constexpr std::chrono::milliseconds kGenerously{20'000};

/// Looks at `condition` again and again; true as soon as it holds, false if it did not until the deadline.
bool eventually(const std::function<bool()>& condition, std::chrono::milliseconds deadline = kGenerously);

/// Looks at `condition` for the whole of `duration`; false as soon as it does not hold.
bool throughout(std::chrono::milliseconds duration, const std::function<bool()>& condition);

} // namespace kestrova::test
