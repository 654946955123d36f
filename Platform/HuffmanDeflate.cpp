#include "Platform/HuffmanDeflate.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <utility>

namespace kestrova {
namespace {

// Every byte, and the end of a block.
constexpr std::size_t symbolCount = 257;
constexpr std::size_t endOfBlock = 256;
// Four codes fit into a word behind the seven bits that may still wait there. The format allows one bit more.
constexpr int longestCode = 14;
// So that the codes follow what changes from one part of a picture to the next; the codes themselves take
// 138 bytes.
constexpr std::size_t bytesPerBlock = std::size_t{1} << 16;

using Counts = std::array<std::uint32_t, symbolCount>;
using Lengths = std::array<std::uint8_t, symbolCount>;

Counts countsOf(std::span<const std::uint8_t> bytes) {
    // Each of several tables in turn: the same byte again would wait for its count to be written.
    std::array<Counts, 4> tables{};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        ++tables[i % tables.size()][bytes[i]];
    Counts counts{};
    for (const auto& table : tables)
        for (std::size_t symbol = 0; symbol < symbolCount; ++symbol)
            counts[symbol] += table[symbol];
    counts[endOfBlock] = 1;
    return counts;
}

/// Of Huffman's code for at least two symbols that occur; 0 for those that do not.
Lengths huffmanLengths(const Counts& counts) {
    std::vector<std::size_t> symbols;
    for (std::size_t symbol = 0; symbol < symbolCount; ++symbol)
        if (counts[symbol] > 0)
            symbols.push_back(symbol);
    std::ranges::stable_sort(symbols, {}, [&](std::size_t symbol) { return counts[symbol]; });

    struct Node {
        std::uint32_t count;
        std::size_t parent;
        std::uint8_t depth;
    };
    // First the symbols, then the nodes above them: both from rare to frequent.
    std::vector<Node> nodes;
    nodes.reserve(2 * symbols.size());
    for (const auto symbol : symbols)
        nodes.push_back({counts[symbol], 0, 0});
    std::size_t nextSymbol = 0;
    std::size_t nextNode = symbols.size();
    const auto rarest = [&] {
        const bool isSymbol = nextSymbol < symbols.size() &&
                              (nextNode == nodes.size() || nodes[nextSymbol].count <= nodes[nextNode].count);
        return isSymbol ? nextSymbol++ : nextNode++;
    };
    for (std::size_t joined = 1; joined < symbols.size(); ++joined) {
        const auto first = rarest();
        const auto second = rarest();
        nodes[first].parent = nodes[second].parent = nodes.size();
        nodes.push_back({nodes[first].count + nodes[second].count, 0, 0});
    }

    Lengths lengths{};
    for (auto i = nodes.size() - 1; i-- > 0;) {
        nodes[i].depth = static_cast<std::uint8_t>(nodes[nodes[i].parent].depth + 1);
        if (i < symbols.size())
            lengths[symbols[i]] = nodes[i].depth;
    }
    return lengths;
}

Lengths limitedLengths(Counts counts) {
    for (;;) {
        const auto lengths = huffmanLengths(counts);
        if (std::ranges::max(lengths) <= longestCode)
            return lengths;
        // What is rare gets a little more than its due.
        for (auto& count : counts)
            count = (count + 1) / 2;
    }
}

struct Code {
    std::uint16_t bits = 0;
    std::uint16_t length = 0;
};

/// The canonical codes of these lengths, first bit lowest.
std::array<Code, symbolCount> codesOf(const Lengths& lengths) {
    std::array<Code, symbolCount> codes;
    std::uint32_t next = 0;
    for (int length = 1; length <= longestCode; ++length, next <<= 1)
        for (std::size_t symbol = 0; symbol < symbolCount; ++symbol) {
            if (lengths[symbol] != length)
                continue;
            std::uint32_t reversed = 0;
            for (int bit = 0; bit < length; ++bit)
                reversed |= ((next >> bit) & 1) << (length - 1 - bit);
            codes[symbol] = {static_cast<std::uint16_t>(reversed), static_cast<std::uint16_t>(length)};
            ++next;
        }
    return codes;
}

class BitWriter {
public:
    /// Room for `size` bytes more, whole words included.
    void reserve(std::size_t size) { m_bytes.resize(m_size + size + sizeof m_bits); }

    /// At most 56 bits between two calls of flush().
    void put(std::uint64_t bits, int count) {
        m_bits |= bits << m_count;
        m_count += count;
    }
    void flush() {
        const auto littleEndian = qToLittleEndian(m_bits);
        std::memcpy(m_bytes.data() + m_size, &littleEndian, sizeof littleEndian);
        m_size += static_cast<std::size_t>(m_count / 8);
        m_bits >>= m_count / 8 * 8;
        m_count %= 8;
    }
    void fillByte() {
        m_count = (m_count + 7) / 8 * 8;
        flush();
    }

    std::vector<std::uint8_t> take() {
        m_bytes.resize(m_size);
        return std::move(m_bytes);
    }

private:
    std::vector<std::uint8_t> m_bytes;
    std::size_t m_size = 0;
    std::uint64_t m_bits = 0;
    int m_count = 0;
};

// The lengths are told in a code of four bits for each of them. The format wants a code for distances too.
void putCodes(BitWriter& out, const Lengths& lengths) {
    constexpr int isLastBlock = 0;
    constexpr int ownCodes = 2;
    constexpr std::array<int, 2> distanceLengths{1, 1};
    constexpr int lengthsOfLengths = 19;
    out.put(isLastBlock, 1);
    out.put(ownCodes, 2);
    out.put(symbolCount - 257, 5);
    out.put(distanceLengths.size() - 1, 5);
    out.put(lengthsOfLengths - 4, 4);
    out.flush();
    // The first three, which are told first, mean repeats.
    for (int i = 0; i < lengthsOfLengths; ++i) {
        out.put(i < 3 ? 0 : 4, 3);
        out.flush();
    }
    const auto putLength = [&](int length) {
        out.put(static_cast<std::uint64_t>((length & 1) << 3 | (length & 2) << 1 | (length & 4) >> 1 |
                                           (length & 8) >> 3),
                4);
        out.flush();
    };
    std::ranges::for_each(lengths, putLength);
    std::ranges::for_each(distanceLengths, putLength);
}

void putBlock(BitWriter& out, std::span<const std::uint8_t> bytes) {
    const auto lengths = limitedLengths(countsOf(bytes));
    const auto codes = codesOf(lengths);
    const auto put = [&](std::size_t symbol) { out.put(codes[symbol].bits, codes[symbol].length); };
    putCodes(out, lengths);
    constexpr std::size_t atOnce = 4;
    const auto whole = bytes.size() / atOnce * atOnce;
    for (std::size_t i = 0; i < whole; i += atOnce) {
        for (std::size_t k = 0; k < atOnce; ++k)
            put(bytes[i + k]);
        out.flush();
    }
    for (const auto byte : bytes.subspan(whole)) {
        put(byte);
        out.flush();
    }
    put(endOfBlock);
    out.flush();
}

// An empty stored block, which fills up the byte before its two lengths.
void putEnd(BitWriter& out, DeflatePart part) {
    constexpr int stored = 0;
    out.put(part == DeflatePart::Last ? 1 : 0, 1);
    out.put(stored, 2);
    out.fillByte();
    out.put(0xffff0000, 32);
    out.flush();
}

} // namespace

std::vector<std::uint8_t> huffmanDeflated(std::span<const std::uint8_t> bytes, DeflatePart part) {
    constexpr std::size_t codesAndEnds = 256;
    BitWriter out;
    for (; !bytes.empty(); bytes = bytes.subspan(std::min(bytesPerBlock, bytes.size()))) {
        const auto block = bytes.first(std::min(bytesPerBlock, bytes.size()));
        out.reserve(block.size() * longestCode / 8 + codesAndEnds);
        putBlock(out, block);
    }
    out.reserve(codesAndEnds);
    putEnd(out, part);
    return out.take();
}

} // namespace kestrova
