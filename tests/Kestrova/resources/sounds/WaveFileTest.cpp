#include "Kestrova/resources/sounds/WaveFile.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <array>

namespace kestrova::sounds {
namespace {

TEST(WaveFileTest, TheBytesAreThoseOfTheFormat) {
    const std::array<std::int16_t, 3> samples{0, 258, -2};
    const QByteArray expected = QByteArray("RIFF") + QByteArray::fromHex("2a000000") + "WAVEfmt " +
                                // 16 bytes of format: PCM, one channel, 44100 and 88200 bytes a second, 2
                                // bytes and 16 bits a sample
                                QByteArray::fromHex("10000000"
                                                    "0100"
                                                    "0100"
                                                    "44ac0000"
                                                    "88580100"
                                                    "0200"
                                                    "1000") +
                                "data" +
                                QByteArray::fromHex("06000000"
                                                    "0000"
                                                    "0201"
                                                    "feff");
    EXPECT_EQ(waveFile(samples, 44100), expected.toStdString());
}

TEST(WaveFileTest, WithoutSamplesThereIsOnlyTheHeader) {
    EXPECT_EQ(waveFile({}, 44100).size(), 44U);
}

} // namespace
} // namespace kestrova::sounds
