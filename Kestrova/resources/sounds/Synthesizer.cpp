#include "Kestrova/resources/sounds/Synthesizer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace kestrova::sounds {

namespace {

constexpr double twoPi = 2 * std::numbers::pi;
constexpr double secondsPerSample = 1.0 / samplesPerSecond;
/// At least this long is a voice faded out: ended between two samples it would click.
constexpr double shortestRelease = 0.012;
constexpr double peakDecibels = -9;
constexpr double fullScale = 32767;

std::size_t sampleCount(double seconds) {
    return static_cast<std::size_t>(std::lround(seconds * samplesPerSecond));
}

/// From 0 to 1 without a corner at either end.
double smooth(double fraction) {
    return 0.5 - 0.5 * std::cos(std::numbers::pi * std::clamp(fraction, 0.0, 1.0));
}

double loudness(const Envelope& envelope, double decay, double time) {
    const double release = std::min(envelope.length / 2, std::max(shortestRelease, envelope.length / 4));
    return envelope.level * smooth(time / envelope.attack) *
           std::exp(-std::max(0.0, time - envelope.attack) / decay) *
           smooth((envelope.length - time) / release);
}

double strength(const Tremolo& tremolo, double time) {
    return 1 - tremolo.depth * (0.5 - 0.5 * std::cos(twoPi * tremolo.hertz * time));
}

template<typename Pitched>
double pitch(const Pitched& voice, double time) {
    return voice.to + (voice.from - voice.to) * std::exp(-time / voice.glide);
}

/// The same noise in every build, so that the same sources give the same files.
class WhiteNoise {
public:
    double next() {
        m_state ^= m_state << 13;
        m_state ^= m_state >> 17;
        m_state ^= m_state << 5;
        return m_state / 2147483648.0 - 1;
    }

private:
    std::uint32_t m_state = 2463534242;
};

/// A state-variable filter, which stays calm while its pitch moves.
class BandPass {
public:
    double filtered(double sample, double hertz, double width) {
        const double g = std::tan(std::numbers::pi * hertz * secondsPerSample);
        const double band = (m_band + g * (sample - m_low)) / (1 + g * (g + width));
        const double low = m_low + g * band;
        m_band = 2 * band - m_band;
        m_low = 2 * low - m_low;
        return width * band;
    }

private:
    double m_band = 0;
    double m_low = 0;
};

void add(const Tone& tone, std::vector<double>& mix) {
    const std::size_t first = sampleCount(tone.envelope.start);
    double phase = 0;
    for (std::size_t i = 0; i < sampleCount(tone.envelope.length); ++i) {
        const double time = static_cast<double>(i) * secondsPerSample;
        const double hertz = pitch(tone, time);
        double sample = loudness(tone.envelope, tone.envelope.decay, time) * std::sin(phase);
        for (std::size_t k = 0; k < tone.overtones.size(); ++k) {
            const double order = static_cast<double>(k) + 2;
            const double decay = tone.envelope.decay / (1 + tone.damping * (order - 1));
            sample += tone.overtones[k] * loudness(tone.envelope, decay, time) * std::sin(order * phase);
        }
        mix[first + i] += strength(tone.tremolo, time) * sample;
        phase = std::fmod(phase + twoPi * hertz * secondsPerSample, twoPi);
    }
}

void add(const Noise& noise, std::vector<double>& mix) {
    const std::size_t first = sampleCount(noise.envelope.start);
    WhiteNoise source;
    BandPass filter;
    for (std::size_t i = 0; i < sampleCount(noise.envelope.length); ++i) {
        const double time = static_cast<double>(i) * secondsPerSample;
        // Noise has its power all over; what a narrow band keeps of it is lifted to a tone's loudness.
        const double sample = filter.filtered(source.next(), pitch(noise, time), noise.width) * 3;
        mix[first + i] +=
            loudness(noise.envelope, noise.envelope.decay, time) * strength(noise.tremolo, time) * sample;
    }
}

const Envelope& envelope(const Voice& voice) {
    return std::visit([](const auto& kind) -> const Envelope& { return kind.envelope; }, voice);
}

} // namespace

std::vector<std::int16_t> synthesized(const Recipe& recipe) {
    std::size_t length = 0;
    for (const Voice& voice : recipe.voices)
        length = std::max(length, sampleCount(envelope(voice).start) + sampleCount(envelope(voice).length));
    // The last sample belongs to silence.
    std::vector<double> mix(length + 1, 0.0);
    for (const Voice& voice : recipe.voices)
        std::visit([&mix](const auto& kind) { add(kind, mix); }, voice);

    double peak = 0;
    for (const double sample : mix)
        peak = std::max(peak, std::abs(sample));
    const double gain = fullScale * std::pow(10, peakDecibels / 20) / peak;
    std::vector<std::int16_t> samples;
    samples.reserve(mix.size());
    for (const double sample : mix)
        samples.push_back(static_cast<std::int16_t>(std::lround(sample * gain)));
    return samples;
}

} // namespace kestrova::sounds
