#pragma once

#include "Platform/SoundPlayer.h"

#include <functional>
#include <vector>

namespace kestrova {

/// Keeps the names of what it was asked to play.
class FakeSoundPlayer final : public SoundPlayer {
public:
    void play(const QString& name) override {
        played.push_back(name);
        if (onPlay)
            onPlay(name);
    }

    std::vector<QString> played;
    std::function<void(const QString& name)> onPlay;
};

} // namespace kestrova
