#pragma once

#include <QString>

namespace kestrova {

/// The system's short sounds, by name. Main thread only; never waits for the sound.
class SoundPlayer {
public:
    virtual ~SoundPlayer() = default;

    /// Plays nothing if there is no sound of that name, or nothing to play it on.
    virtual void play(const QString& name) = 0;
};

} // namespace kestrova
