#include "Platform/DeflateEnd.h"

#include <QtEndian>

#include <algorithm>
#include <array>

namespace kestrova {
namespace {

constexpr int longestCode = 15;
constexpr std::size_t symbolsOfLengths = 288;
constexpr std::size_t symbolsOfDistances = 30;
constexpr std::size_t firstMatch = 257;
constexpr std::size_t endOfBlock = 256;
constexpr std::array<std::uint8_t, symbolsOfLengths - firstMatch> lengthExtraBits{
    0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
constexpr std::array<std::uint8_t, 32> distanceExtraBits{0, 0, 0, 0, 1, 1, 2, 2,  3,  3,  4,  4,  5,  5,  6,
                                                         6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13};

class BitReader {
public:
    explicit BitReader(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}

    std::size_t position() const { return m_position; }
    bool isBeyondEnd() const { return m_position > m_bytes.size() * 8; }
    /// At least 57 bits; zeros behind the end.
    std::uint64_t peek() const {
        const std::size_t byte = m_position / 8;
        if (byte + 8 <= m_bytes.size())
            return qFromLittleEndian<quint64>(m_bytes.data() + byte) >> (m_position % 8);
        std::uint64_t bits = 0;
        for (std::size_t i = byte; i < m_bytes.size(); ++i)
            bits |= std::uint64_t{m_bytes[i]} << (8 * (i - byte));
        return bits >> (m_position % 8);
    }
    std::uint32_t take(int count) {
        const auto bits = static_cast<std::uint32_t>(peek() & ((std::uint64_t{1} << count) - 1));
        skip(count);
        return bits;
    }
    void skip(int count) { m_position += static_cast<std::size_t>(count); }
    void skipBytes(std::size_t count) { m_position += 8 * count; }
    void alignToByte() { m_position = (m_position + 7) / 8 * 8; }

private:
    std::span<const std::uint8_t> m_bytes;
    std::size_t m_position = 0;
};

struct Code {
    /// 0 where no symbol has these bits.
    int length = 0;
    std::size_t symbol = 0;
};

/// A canonical prefix code: what the next bits mean, in one look.
class PrefixCode {
public:
    /// `lengths` has the length of each symbol's code, 0 for a symbol without one. False if there is no such
    /// code.
    bool build(std::span<const std::uint8_t> lengths) {
        std::array<std::uint32_t, longestCode + 1> count{};
        for (const auto length : lengths)
            ++count[length];
        count[0] = 0;
        m_longest = longestCode;
        while (m_longest > 1 && count[m_longest] == 0)
            --m_longest;
        std::array<std::uint32_t, longestCode + 2> next{};
        for (std::size_t length = 1; length <= longestCode; ++length) {
            next[length + 1] = (next[length] + count[length]) << 1;
            if (next[length] + count[length] > (1u << length))
                return false;
        }
        std::fill_n(m_entries.begin(), std::size_t{1} << m_longest, std::uint16_t{0});
        for (std::size_t symbol = 0; symbol < lengths.size(); ++symbol)
            if (const auto length = lengths[symbol])
                enter(symbol, length, next[length]++);
        return true;
    }

    Code at(std::uint64_t bits) const {
        const auto entry = m_entries[bits & ((std::uint64_t{1} << m_longest) - 1)];
        return {.length = entry & 15, .symbol = static_cast<std::size_t>(entry >> 4)};
    }

private:
    // Codes are packed from their highest bit, all else from the lowest.
    void enter(std::size_t symbol, std::uint8_t length, std::uint32_t code) {
        std::size_t reversed = 0;
        for (int bit = 0; bit < length; ++bit)
            reversed |= static_cast<std::size_t>((code >> bit) & 1) << (length - 1 - bit);
        const auto entry = static_cast<std::uint16_t>(symbol << 4 | length);
        for (auto bits = reversed; bits < std::size_t{1} << m_longest; bits += std::size_t{1} << length)
            m_entries[bits] = entry;
    }

    std::size_t m_longest = 1;
    std::array<std::uint16_t, std::size_t{1} << longestCode> m_entries;
};

class Walk {
public:
    explicit Walk(std::span<const std::uint8_t> stream) : m_reader(stream) {}

    std::optional<DeflateEnd> toEnd() {
        for (;;) {
            const auto block = m_reader.position();
            const bool isLast = m_reader.take(1) != 0;
            if (!passBlock(m_reader.take(2)) || m_reader.isBeyondEnd())
                return {};
            if (isLast)
                return DeflateEnd{.lastBlock = block, .end = m_reader.position()};
        }
    }

private:
    bool passBlock(std::uint32_t type) {
        switch (type) {
        case 0:
            return passStored();
        case 1:
            return buildFixedCodes() && passSymbols();
        case 2:
            return readCodes() && passSymbols();
        default:
            return false;
        }
    }

    bool passStored() {
        m_reader.alignToByte();
        const auto length = m_reader.take(16);
        const auto complement = m_reader.take(16);
        m_reader.skipBytes(length);
        return (length ^ complement) == 0xffff;
    }

    bool buildFixedCodes() {
        std::array<std::uint8_t, symbolsOfLengths> lengths;
        std::fill(lengths.begin(), lengths.begin() + 144, std::uint8_t{8});
        std::fill(lengths.begin() + 144, lengths.begin() + 256, std::uint8_t{9});
        std::fill(lengths.begin() + 256, lengths.begin() + 280, std::uint8_t{7});
        std::fill(lengths.begin() + 280, lengths.end(), std::uint8_t{8});
        std::array<std::uint8_t, symbolsOfDistances> distances;
        distances.fill(5);
        return m_lengths.build(lengths) && m_distances.build(distances);
    }

    bool readCodes() {
        constexpr std::array<std::uint8_t, 19> order{16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                     11, 4,  12, 3, 13, 2, 14, 1, 15};
        const std::size_t lengthCount = m_reader.take(5) + firstMatch;
        const std::size_t distanceCount = m_reader.take(5) + 1;
        const std::size_t orderCount = m_reader.take(4) + 4;
        std::array<std::uint8_t, order.size()> own{};
        for (std::size_t i = 0; i < orderCount; ++i)
            own[order[i]] = static_cast<std::uint8_t>(m_reader.take(3));
        // The code in which the others are told is done with before they are built.
        if (!m_lengths.build(own))
            return false;

        std::array<std::uint8_t, symbolsOfLengths + 32> all{};
        const std::size_t total = lengthCount + distanceCount;
        for (std::size_t i = 0; i < total;) {
            const auto [length, symbol] = m_lengths.at(m_reader.peek());
            if (length == 0)
                return false;
            m_reader.skip(length);
            if (symbol < 16) {
                all[i++] = static_cast<std::uint8_t>(symbol);
                continue;
            }
            if (symbol == 16 && i == 0)
                return false;
            const auto value = symbol == 16 ? all[i - 1] : std::uint8_t{0};
            const std::size_t repeats = symbol == 16   ? 3 + m_reader.take(2)
                                        : symbol == 17 ? 3 + m_reader.take(3)
                                                       : 11 + m_reader.take(7);
            if (repeats > total - i)
                return false;
            std::fill_n(all.begin() + static_cast<std::ptrdiff_t>(i), repeats, value);
            i += repeats;
        }
        const std::span told(all);
        return m_lengths.build(told.first(lengthCount)) &&
               m_distances.build(told.subspan(lengthCount, distanceCount));
    }

    bool passSymbols() {
        while (!m_reader.isBeyondEnd()) {
            // A match with all its extra bits takes at most 48.
            auto bits = m_reader.peek();
            const auto [length, symbol] = m_lengths.at(bits);
            if (length == 0)
                return false;
            m_reader.skip(length);
            if (symbol == endOfBlock)
                return true;
            if (symbol < endOfBlock)
                continue;
            const int matchBits = length + lengthExtraBits[symbol - firstMatch];
            bits >>= matchBits;
            const auto [distanceLength, distance] = m_distances.at(bits);
            if (distanceLength == 0)
                return false;
            m_reader.skip(matchBits - length + distanceLength + distanceExtraBits[distance]);
        }
        return false;
    }

    BitReader m_reader;
    PrefixCode m_lengths;
    PrefixCode m_distances;
};

} // namespace

std::optional<DeflateEnd> findDeflateEnd(std::span<const std::uint8_t> stream) {
    return Walk(stream).toEnd();
}

} // namespace kestrova
