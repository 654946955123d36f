#pragma once

#include "Platform/x11/SoundBackend.h"

#include <chrono>
#include <memory>
#include <string>

namespace kestrova {

/// Plays files on a thread of its own, since a sound server may keep its clients waiting. One thread may use
/// it.
class SoundThread {
public:
    /// Long enough for a server that is well, too short for anyone to notice.
    static constexpr std::chrono::milliseconds usualTimeToEnd{200};

    explicit SoundThread(MakeSoundBackend makeBackend, std::chrono::milliseconds timeToEnd = usualTimeToEnd);
    SoundThread(const SoundThread&) = delete;
    SoundThread& operator=(const SoundThread&) = delete;
    /// Lets go of a backend that still waits after `timeToEnd`; its thread then ends by itself or with the
    /// process.
    ~SoundThread();

    /// Returns at once. The thread and its backend begin with the first file. While the backend waits, only
    /// the last file is kept: a sound that comes late tells nothing. Nothing plays where the system refuses
    /// the thread; the log tells it once.
    void play(std::string path);

private:
    struct State;

    static void run(State& state);

    const std::shared_ptr<State> m_state;
    const std::chrono::milliseconds m_timeToEnd;
    bool m_hasReported = false;
};

} // namespace kestrova
