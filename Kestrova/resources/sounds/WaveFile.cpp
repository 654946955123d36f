#include "Kestrova/resources/sounds/WaveFile.h"

#include <type_traits>

namespace kestrova::sounds {

namespace {

/// Byte by byte, the lowest first, whatever the machine's own order.
template<typename Integer>
void append(std::string& bytes, Integer value) {
    const auto bits = static_cast<std::make_unsigned_t<Integer>>(value);
    for (unsigned shift = 0; shift < 8 * sizeof(Integer); shift += 8)
        bytes += static_cast<char>(static_cast<unsigned char>(bits >> shift));
}

} // namespace

std::string waveFile(std::span<const std::int16_t> samples, std::uint32_t samplesPerSecond) {
    constexpr std::uint16_t pulseCodeModulation = 1;
    constexpr std::uint16_t channels = 1;
    constexpr std::uint16_t bytesPerSample = sizeof(std::int16_t);
    constexpr std::uint32_t formatSize = 16;
    const auto dataSize = static_cast<std::uint32_t>(samples.size_bytes());

    std::string bytes = "RIFF";
    append(bytes, std::uint32_t{4 + 8 + formatSize + 8} + dataSize);
    bytes += "WAVEfmt ";
    append(bytes, formatSize);
    append(bytes, pulseCodeModulation);
    append(bytes, channels);
    append(bytes, samplesPerSecond);
    append(bytes, samplesPerSecond * channels * bytesPerSample);
    append(bytes, std::uint16_t{channels * bytesPerSample});
    append(bytes, std::uint16_t{8 * bytesPerSample});
    bytes += "data";
    append(bytes, dataSize);
    for (const std::int16_t sample : samples)
        append(bytes, sample);
    return bytes;
}

} // namespace kestrova::sounds
