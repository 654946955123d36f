#include "Platform/HuffmanDeflate.h"

#include "Platform/DeflateEnd.h"
#include "tests/Platform/Inflation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

using namespace kestrova;

namespace {

using Bytes = std::vector<std::uint8_t>;

/// The smaller a value, the more often it occurs.
Bytes skewedBytes(std::size_t size, double skew, unsigned seed) {
    std::minstd_rand random(seed);
    std::geometric_distribution<int> value(skew);
    Bytes bytes(size);
    for (auto& byte : bytes)
        byte = static_cast<std::uint8_t>(value(random));
    return bytes;
}

TEST(HuffmanDeflate, givesBackWhatWentIn) {
    unsigned seed = 0;
    // Around the number of bytes that go into a word, and into a block.
    for (const std::size_t size : {0, 1, 2, 3, 4, 5, 7, 8, 9, 100, 65'535, 65'536, 65'537, 300'000})
        for (const double skew : {0.01, 0.1, 0.5, 0.9}) {
            const auto bytes = skewedBytes(size, skew, ++seed);
            ASSERT_EQ(inflated(huffmanDeflated(bytes, DeflatePart::Last), size), bytes)
                << size << " bytes, skew " << skew;
        }
}

TEST(HuffmanDeflate, knowsBytesThatAreAllTheSame) {
    for (const int value : {0, 7, 255}) {
        const Bytes bytes(70'000, static_cast<std::uint8_t>(value));
        EXPECT_EQ(inflated(huffmanDeflated(bytes, DeflatePart::Last), bytes.size()), bytes);
    }
}

TEST(HuffmanDeflate, limitsTheCodesOfWhatIsRare) {
    // Counts like Fibonacci's numbers have the longest codes that there can be, here of twenty bits.
    Bytes bytes;
    std::size_t count = 1;
    std::size_t before = 1;
    for (int value = 0; bytes.size() + count <= 65'536; ++value) {
        bytes.insert(bytes.end(), count, static_cast<std::uint8_t>(value));
        before = std::exchange(count, count + before);
    }
    ASSERT_GT(*std::ranges::max_element(bytes), 18);
    EXPECT_EQ(inflated(huffmanDeflated(bytes, DeflatePart::Last), bytes.size()), bytes);
}

TEST(HuffmanDeflate, isContinuedByAnotherPart) {
    const auto first = skewedBytes(1'001, 0.2, 1);
    const auto second = skewedBytes(2'003, 0.4, 2);
    auto stream = huffmanDeflated(first, DeflatePart::Continued);
    EXPECT_FALSE(findDeflateEnd(stream));
    const auto rest = huffmanDeflated(second, DeflatePart::Last);
    stream.insert(stream.end(), rest.begin(), rest.end());
    auto both = first;
    both.insert(both.end(), second.begin(), second.end());
    EXPECT_EQ(inflated(stream, both.size()), both);
}

TEST(HuffmanDeflate, comesCloseToTheEntropy) {
    const auto bytes = skewedBytes(200'000, 0.2, 3);
    std::vector<double> counts(256);
    for (const auto byte : bytes)
        ++counts[byte];
    double bits = 0;
    for (const auto count : counts)
        if (count > 0)
            bits -= count * std::log2(count / static_cast<double>(bytes.size()));
    EXPECT_LT(static_cast<double>(huffmanDeflated(bytes, DeflatePart::Last).size()), 1.02 * bits / 8);
}

TEST(HuffmanDeflate, ofChanceIsHardlyLarger) {
    std::minstd_rand random(4);
    Bytes bytes(200'000);
    for (auto& byte : bytes)
        byte = static_cast<std::uint8_t>(random() >> 8);
    EXPECT_LT(huffmanDeflated(bytes, DeflatePart::Last).size(), bytes.size() + bytes.size() / 200);
}

} // namespace
