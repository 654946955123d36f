#include "Kestrova/resources/sounds/Recipes.h"

#include "Kestrova/resources/sounds/Synthesizer.h"
#include "Kestrova/resources/sounds/WaveFile.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>

namespace kestrova::sounds {
namespace {

using Samples = std::vector<std::int16_t>;

double milliseconds(const Samples& samples) {
    return 1000.0 * static_cast<double>(samples.size()) / samplesPerSecond;
}

int peak(const Samples& samples) {
    int highest = 0;
    for (const int sample : samples)
        highest = std::max(highest, std::abs(sample));
    return highest;
}

int greatestDifference(Samples one, Samples other) {
    const std::size_t length = std::max(one.size(), other.size());
    one.resize(length);
    other.resize(length);
    int greatest = 0;
    for (std::size_t i = 0; i < length; ++i)
        greatest = std::max(greatest, std::abs(one[i] - other[i]));
    return greatest;
}

TEST(RecipesTest, TheFourteenSoundsComeInTheOrderOfThePicker) {
    QStringList names;
    for (const Recipe& recipe : recipes())
        names.append(QString::fromStdString(recipe.name));
    EXPECT_EQ(
        names.join(u' '),
        QStringLiteral("Basso Blow Bottle Frog Funk Glass Hero Morse Ping Pop Purr Sosumi Submarine Tink"));
}

TEST(RecipesTest, NoTwoSoundsAreAlike) {
    const auto all = recipes();
    for (std::size_t i = 0; i < all.size(); ++i)
        for (std::size_t j = i + 1; j < all.size(); ++j) {
            const Samples one = synthesized(all[i]);
            EXPECT_GT(greatestDifference(one, synthesized(all[j])), peak(one) / 2)
                << all[i].name << " and " << all[j].name;
        }
}

class RecipeTest : public ::testing::TestWithParam<Recipe> {
protected:
    const Samples samples = synthesized(GetParam());
};

TEST_P(RecipeTest, ItIsShort) {
    EXPECT_GE(milliseconds(samples), 100);
    EXPECT_LE(milliseconds(samples), 801);
}

TEST_P(RecipeTest, ItsPeakIsNineDecibelsBelowFullScale) {
    EXPECT_NEAR(20 * std::log10(peak(samples) / 32767.0), -9, 0.1);
}

TEST_P(RecipeTest, ItBeginsAndEndsInSilence) {
    EXPECT_EQ(samples.front(), 0);
    EXPECT_EQ(samples.back(), 0);
    // What lies next to the silence is hardly louder, or it would click.
    const std::size_t halfAMillisecond = samplesPerSecond / 2000;
    for (std::size_t i = 0; i < halfAMillisecond; ++i)
        EXPECT_LT(std::abs(samples[samples.size() - 1 - i]), 100) << i << " before the end";
    EXPECT_LT(std::abs(samples[1]), 300);
}

TEST_P(RecipeTest, ItKeepsTheLoudspeakerCentred) {
    const double sum = std::accumulate(samples.begin(), samples.end(), 0.0);
    EXPECT_LT(std::abs(sum / static_cast<double>(samples.size())), 33);
}

TEST_P(RecipeTest, ItIsTheSameEachTime) {
    EXPECT_EQ(synthesized(GetParam()), samples);
}

TEST_P(RecipeTest, TheBuildMadeItsFile) {
    QFile file(QStringLiteral(SOUNDS_FOLDER "/%1.wav").arg(QString::fromStdString(GetParam().name)));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.fileName());
    EXPECT_EQ(file.readAll().toStdString(), waveFile(samples, samplesPerSecond));
}

INSTANTIATE_TEST_SUITE_P(All, RecipeTest, ::testing::ValuesIn(recipes()),
                         [](const auto& row) { return row.param.name; });

TEST(RecipesTest, TheBuildMadeNoOtherFile) {
    const QDir folder(QStringLiteral(SOUNDS_FOLDER));
    EXPECT_EQ(folder.entryList(QDir::Files).size(), static_cast<qsizetype>(recipes().size()));
}

} // namespace
} // namespace kestrova::sounds
