#pragma once

#include <functional>
#include <memory>
#include <string>

namespace kestrova {

/// What makes a file audible. Made, used and destroyed on one thread, which it may keep waiting.
class SoundBackend {
public:
    virtual ~SoundBackend() = default;

    /// Begins to play the file at `path` and may return before its end. Whoever fails says so in the log.
    virtual void play(const std::string& path) = 0;
};

using MakeSoundBackend = std::function<std::unique_ptr<SoundBackend>()>;

} // namespace kestrova
