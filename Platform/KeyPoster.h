#pragma once

#include "Platform/RunningApplication.h"

#include <optional>

namespace kestrova {

/// Types for the person. Main thread only; nothing here waits.
class KeyPoster {
public:
    virtual ~KeyPoster() = default;

    /// Presses and releases the chord with which the application in front pastes. Modifiers that the person
    /// holds do not count and are held again afterwards.
    ///
    /// If `target` is given and lives but is not in front yet, the chord waits for it, 150 ms at most, and is
    /// then dropped with a log line: it goes to no other application. If it is absent or has terminated, the
    /// chord goes to whatever is in front, waiting as long for somebody to be. It never goes to a window of
    /// this program, nor to whoever holds the keyboard to itself.
    virtual void postPaste(const std::optional<RunningApplication>& target) = 0;
};

} // namespace kestrova
