#include "Platform/DeflateEnd.h"

#include "tests/Platform/Inflation.h"

#include <gtest/gtest.h>

#include <libdeflate.h>

#include <random>
#include <string>
#include <vector>

using namespace kestrova;

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes deflated(const Bytes& bytes, int level) {
    auto* compressor = libdeflate_alloc_compressor(level);
    Bytes stream(libdeflate_deflate_compress_bound(compressor, bytes.size()));
    stream.resize(
        libdeflate_deflate_compress(compressor, bytes.data(), bytes.size(), stream.data(), stream.size()));
    libdeflate_free_compressor(compressor);
    return stream;
}

/// From one value over and over, at 1, to pure chance, at 256.
Bytes sample(std::size_t size, unsigned values, unsigned seed) {
    std::minstd_rand random(seed);
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = i > 64 && random() % 8 != 0 ? bytes[i - 64] : static_cast<std::uint8_t>(random() % values);
    return bytes;
}

TEST(DeflateEnd, ofTheShortestStream) {
    // One block of the fixed codes with nothing but its end: 3 bits and 7.
    const Bytes stream{0x03, 0x00};
    EXPECT_EQ(findDeflateEnd(stream), (DeflateEnd{.lastBlock = 0, .end = 10}));
}

TEST(DeflateEnd, ofAStoredBlock) {
    const Bytes stream{0x01, 0x02, 0x00, 0xfd, 0xff, 'a', 'b'};
    EXPECT_EQ(findDeflateEnd(stream), (DeflateEnd{.lastBlock = 0, .end = 56}));
}

TEST(DeflateEnd, isThatOfTheLastOfSeveralBlocks) {
    // An empty stored block, then the shortest last one.
    const Bytes stream{0x00, 0x00, 0x00, 0xff, 0xff, 0x03, 0x00};
    EXPECT_EQ(findDeflateEnd(stream), (DeflateEnd{.lastBlock = 40, .end = 50}));
}

class DeflateEndAtLevel : public testing::TestWithParam<int> {};

TEST_P(DeflateEndAtLevel, letsAnotherStreamFollow) {
    for (const std::size_t size : {0, 1, 100, 5'000, 400'000, 1'200'000})
        for (const unsigned values : {1u, 3u, 40u, 256u}) {
            const auto first = sample(size, values, 1);
            const auto second = sample(300, 20, 2);
            auto stream = deflated(first, GetParam());
            const auto end = findDeflateEnd(stream);
            ASSERT_TRUE(end) << size << " of " << values;
            // Nothing but zeros up to the byte lies behind it.
            EXPECT_EQ((end->end + 7) / 8, stream.size());
            EXPECT_TRUE(stream[end->lastBlock / 8] >> (end->lastBlock % 8) & 1);

            stream[end->lastBlock / 8] ^= static_cast<std::uint8_t>(1 << (end->lastBlock % 8));
            EXPECT_FALSE(findDeflateEnd(stream)) << "it has no last block now";
            stream.resize((end->end + 3 + 7) / 8);
            stream.insert(stream.end(), {0x00, 0x00, 0xff, 0xff});
            const auto rest = deflated(second, GetParam());
            stream.insert(stream.end(), rest.begin(), rest.end());
            auto both = first;
            both.insert(both.end(), second.begin(), second.end());
            EXPECT_EQ(inflated(stream, both.size()), both) << size << " of " << values;
        }
}

INSTANTIATE_TEST_SUITE_P(Levels, DeflateEndAtLevel, testing::Values(0, 1, 4, 6, 9, 12));

TEST(DeflateEnd, isAbsentFromEveryPartOfAStream) {
    const auto stream = deflated(sample(3'000, 40, 3), 6);
    for (std::size_t size = 0; size < stream.size(); ++size)
        EXPECT_FALSE(findDeflateEnd(std::span(stream).first(size))) << size;
}

TEST(DeflateEnd, isAbsentFromABlockOfNoKind) {
    EXPECT_FALSE(findDeflateEnd(Bytes{0x07, 0x00}));
}

TEST(DeflateEnd, isAbsentFromAStoredBlockOfDoubtfulLength) {
    EXPECT_FALSE(findDeflateEnd(Bytes{0x01, 0x01, 0x00, 0xfd, 0xff, 'a'}));
}

TEST(DeflateEnd, isFoundOrAbsentInAnyBytesWhatever) {
    std::minstd_rand random(4);
    std::size_t found = 0;
    constexpr std::size_t rounds = 2'000;
    for (std::size_t round = 0; round < rounds; ++round) {
        Bytes bytes(random() % 300);
        for (auto& byte : bytes)
            byte = static_cast<std::uint8_t>(random() >> 8);
        if (const auto end = findDeflateEnd(bytes)) {
            ++found;
            EXPECT_LE(end->end, bytes.size() * 8);
            EXPECT_LT(end->lastBlock, end->end);
        }
    }
    EXPECT_LT(found, rounds);
}

TEST(DeflateEnd, isFoundOrAbsentInASpoiltStream) {
    const auto sound = deflated(sample(4'000, 60, 5), 6);
    std::minstd_rand random(6);
    for (int round = 0; round < 3'000; ++round) {
        auto stream = sound;
        stream[random() % stream.size()] ^= static_cast<std::uint8_t>(1 << random() % 8);
        const auto end = findDeflateEnd(stream);
        EXPECT_TRUE(!end || end->end <= stream.size() * 8);
    }
}

} // namespace
