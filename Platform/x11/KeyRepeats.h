#pragma once

#include <cstdint>
#include <optional>
#include <utility>

namespace kestrova {

/// Tells the repeats of a held key from presses. The server sends a repeat as a release and a press of the
/// same moment, and the toolkit takes them for a new press when they arrive one by one.
class KeyRepeats {
public:
    void noteRelease(std::uint32_t key, std::uint64_t time) { m_lastRelease = Release{key, time}; }
    /// Whether the press follows on the key's release, which it does but once.
    bool isRepeat(std::uint32_t key, std::uint64_t time) {
        return std::exchange(m_lastRelease, std::nullopt) == Release{key, time};
    }

private:
    struct Release {
        std::uint32_t key = 0;
        std::uint64_t time = 0;

        bool operator==(const Release&) const = default;
    };
    std::optional<Release> m_lastRelease;
};

} // namespace kestrova
