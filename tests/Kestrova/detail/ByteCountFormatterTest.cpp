#include "Kestrova/detail/ByteCountFormatter.h"

#include <gtest/gtest.h>

#include <limits>

namespace kestrova {
namespace {

struct ByteCountSample {
    std::int64_t bytes;
    const char16_t* text;

    friend void PrintTo(const ByteCountSample& sample, std::ostream* stream) { *stream << sample.bytes; }
};

class ByteCountFormatterTest : public testing::TestWithParam<ByteCountSample> {};

TEST_P(ByteCountFormatterTest, Writes) {
    const ByteCountFormatter formatter(QLocale::c());
    EXPECT_EQ(formatter.string(GetParam().bytes), QString::fromUtf16(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(Nothing, ByteCountFormatterTest,
                         testing::Values(ByteCountSample{0, u"Zero KB"}, ByteCountSample{-1, u"Zero KB"},
                                         ByteCountSample{std::numeric_limits<std::int64_t>::min(),
                                                         u"Zero KB"}));
INSTANTIATE_TEST_SUITE_P(WholeKilobytes, ByteCountFormatterTest,
                         testing::Values(ByteCountSample{1, u"1 KB"}, ByteCountSample{499, u"1 KB"},
                                         ByteCountSample{999, u"1 KB"}, ByteCountSample{1000, u"1 KB"},
                                         ByteCountSample{1499, u"1 KB"}, ByteCountSample{1500, u"2 KB"},
                                         ByteCountSample{12'345, u"12 KB"},
                                         ByteCountSample{999'499, u"999 KB"}));
INSTANTIATE_TEST_SUITE_P(
    MegabytesWithOneDecimal, ByteCountFormatterTest,
    testing::Values(ByteCountSample{999'500, u"1 MB"}, ByteCountSample{1'000'000, u"1 MB"},
                    ByteCountSample{1'049'999, u"1 MB"}, ByteCountSample{1'234'567, u"1.2 MB"},
                    ByteCountSample{10'000'000, u"10 MB"}, ByteCountSample{999'940'000, u"999.9 MB"}));
INSTANTIATE_TEST_SUITE_P(
    GigabytesWithTwoDecimals, ByteCountFormatterTest,
    testing::Values(ByteCountSample{999'950'000, u"1 GB"}, ByteCountSample{1'234'567'890, u"1.23 GB"},
                    ByteCountSample{1'200'000'000, u"1.2 GB"},
                    ByteCountSample{std::numeric_limits<std::int64_t>::max(), u"9223372036.85 GB"}));

TEST(ByteCountFormatterLocaleTest, NumbersAreWrittenAsTheLocaleWritesThem) {
    EXPECT_EQ(ByteCountFormatter(QLocale(QLocale::German)).string(1'234'567), u"1,2 MB");
    EXPECT_EQ(ByteCountFormatter(QLocale(QLocale::German)).string(1'000'000), u"1 MB");
    EXPECT_EQ(ByteCountFormatter(QLocale(QLocale::Korean)).string(1'234'567), u"1.2 MB");
    EXPECT_EQ(ByteCountFormatter(QLocale(QLocale::English)).string(5'000'000'000'000), u"5,000 GB");
}

} // namespace
} // namespace kestrova
