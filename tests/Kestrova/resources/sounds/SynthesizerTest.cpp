#include "Kestrova/resources/sounds/Synthesizer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <span>

namespace kestrova::sounds {
namespace {

constexpr std::size_t second = samplesPerSecond;

std::vector<std::int16_t> synthesizedVoice(Voice voice) {
    return synthesized({"A voice", {std::move(voice)}});
}

int upwardCrossings(std::span<const std::int16_t> samples) {
    int count = 0;
    for (std::size_t i = 1; i < samples.size(); ++i)
        count += samples[i - 1] < 0 && samples[i] >= 0 ? 1 : 0;
    return count;
}

int peak(std::span<const std::int16_t> samples) {
    int highest = 0;
    for (const int sample : samples)
        highest = std::max(highest, std::abs(sample));
    return highest;
}

TEST(SynthesizerTest, AToneHasItsPitch) {
    const auto samples =
        synthesizedVoice(Tone{.envelope = {.length = 1, .decay = 10}, .from = 440, .to = 440});
    EXPECT_NEAR(upwardCrossings(samples), 440, 2);
}

TEST(SynthesizerTest, AToneGlidesFromOnePitchToTheOther) {
    const auto samples = synthesizedVoice(
        Tone{.envelope = {.length = 1, .decay = 10}, .from = 2000, .to = 500, .glide = 0.05});
    const std::span all(samples);
    EXPECT_NEAR(upwardCrossings(all.subspan(0, second / 100)), 19, 2);
    EXPECT_NEAR(upwardCrossings(all.subspan(second / 2, second / 5)), 100, 2);
}

TEST(SynthesizerTest, AVoiceBeginsWhenItsTimeHasCome) {
    const auto samples = synthesizedVoice(Tone{.envelope = {.start = 0.5, .length = 0.25}});
    EXPECT_EQ(samples.size(), second * 3 / 4 + 1);
    EXPECT_EQ(peak(std::span(samples).subspan(0, second / 2)), 0);
    EXPECT_GT(peak(std::span(samples).subspan(second / 2, second / 10)), 0);
}

TEST(SynthesizerTest, AVoiceFallsToAThirdWithinEachDecay) {
    const auto samples = synthesizedVoice(Tone{.envelope = {.length = 1, .attack = 0.001, .decay = 0.1}});
    const std::span all(samples);
    const int before = peak(all.subspan(second / 10, second / 100));
    const int after = peak(all.subspan(second / 5, second / 100));
    EXPECT_NEAR(static_cast<double>(before) / after, 2.718, 0.1);
}

TEST(SynthesizerTest, DampingTakesTheOvertonesFirst) {
    // Two octaves up and as loud as the tone itself, so that it shows in the crossings.
    const auto crossingsAtTheEnd = [](double damping) {
        const auto samples = synthesizedVoice(Tone{.envelope = {.length = 1, .decay = 0.2},
                                                   .from = 200,
                                                   .to = 200,
                                                   .overtones = {0, 0, 1.5},
                                                   .damping = damping});
        return upwardCrossings(std::span(samples).subspan(second / 2, second / 10));
    };
    EXPECT_GT(crossingsAtTheEnd(0), 40);
    EXPECT_NEAR(crossingsAtTheEnd(4), 20, 1);
}

TEST(SynthesizerTest, ATremoloSwellsAndEbbs) {
    const auto samples =
        synthesizedVoice(Tone{.envelope = {.length = 1, .decay = 10}, .tremolo = {.hertz = 4, .depth = 1}});
    const std::span all(samples);
    EXPECT_LT(peak(all.subspan(second / 8 - 100, 200)), peak(all.subspan(second / 4 - 100, 200)) / 50);
}

TEST(SynthesizerTest, NoiseLiesAroundItsPitch) {
    const auto samples = synthesizedVoice(
        Noise{.envelope = {.length = 1, .decay = 10}, .from = 1000, .to = 1000, .width = 0.01});
    EXPECT_NEAR(upwardCrossings(samples), 1000, 100);
}

TEST(SynthesizerTest, NoiseDoesNotRepeat) {
    const auto samples =
        synthesizedVoice(Noise{.envelope = {.length = 1, .attack = 0.0001, .decay = 1000}, .width = 2});
    const std::span all(samples);
    const auto begin = all.subspan(second / 10, 200);
    EXPECT_EQ(std::search(all.begin() + second / 10 + 1, all.end(), begin.begin(), begin.end()), all.end());
}

} // namespace
} // namespace kestrova::sounds
