#pragma once

#include "Platform/SoundPlayer.h"
#include "Platform/x11/SoundFiles.h"
#include "Platform/x11/SoundThread.h"

namespace kestrova {

/// Plays the program's own sounds through the desktop's sound server, with the loudness that the person gave
/// to such sounds. Nothing is loaded, opened or started before the first one. Without a server or a device,
/// nothing plays.
class CanberraSoundPlayer : public SoundPlayer {
public:
    /// `programDirectory`: see `SoundFiles`; `QCoreApplication::applicationDirPath()` for the running
    /// program. `bundleIdentifier`: what the sound server shows the program as.
    CanberraSoundPlayer(const QString& programDirectory, const QString& bundleIdentifier);
    CanberraSoundPlayer(const QString& programDirectory, MakeSoundBackend makeBackend);

    void play(const QString& name) override;

private:
    const SoundFiles m_files;
    SoundThread m_thread;
};

} // namespace kestrova
