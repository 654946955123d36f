#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace kestrova::sounds {

/// The bytes of a WAV file with one channel of 16-bit samples.
std::string waveFile(std::span<const std::int16_t> samples, std::uint32_t samplesPerSecond);

} // namespace kestrova::sounds
