#include "Platform/PngEncoder.h"

#include "Platform/DeflateEnd.h"
#include "Platform/HuffmanDeflate.h"
#include "Platform/PngScanlines.h"

#include <QtEndian>

#include <libdeflate.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <memory>
#include <new>
#include <thread>
#include <vector>

namespace kestrova {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Above it, screens take about a third more time to shrink by a few per cent more, and pictures of cameras
// several times as much to shrink by nothing.
constexpr int compressionLevel = 4;
// For what is grainy only in part: a search for more takes half as long again, for a few per cent.
constexpr int levelForGrain = 2;
// Of a strip, to learn whether anything repeats there.
constexpr std::size_t samples = 4;
constexpr std::size_t bytesPerSample = std::size_t{1} << 13;
// Small enough for the caches, and large enough that it does not matter that no strip repeats what is in the
// one above.
constexpr std::size_t bytesPerStrip = std::size_t{1} << 20;

/// A run of rows, compressed, and how it is joined to the others.
struct Strip {
    Bytes deflated;
    std::uint32_t adler = 1;
    std::size_t size = 0;
};

class Compressor {
public:
    explicit Compressor(int level) : m_compressor(libdeflate_alloc_compressor(level)) {
        if (!m_compressor)
            throw std::bad_alloc();
    }

    /// A whole DEFLATE stream.
    Bytes deflate(const Bytes& bytes) {
        m_room.resize(libdeflate_deflate_compress_bound(m_compressor.get(), bytes.size()));
        const auto size = libdeflate_deflate_compress(m_compressor.get(), bytes.data(), bytes.size(),
                                                      m_room.data(), m_room.size());
        return {m_room.begin(), m_room.begin() + static_cast<std::ptrdiff_t>(size)};
    }

private:
    struct Free {
        void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
    };

    std::unique_ptr<libdeflate_compressor, Free> m_compressor;
    Bytes m_room;
};

// The last block becomes one of many, and an empty stored one behind it fills up the byte.
void continueBehind(Bytes& stream) {
    const auto [lastBlock, end] = findDeflateEnd(stream).value();
    stream[lastBlock / 8] &= static_cast<std::uint8_t>(~(1u << (lastBlock % 8)));
    constexpr std::size_t blockHeaderBits = 3;
    stream.resize((end + blockHeaderBits + 7) / 8);
    for (const int byte : {0x00, 0x00, 0xff, 0xff})
        stream.push_back(static_cast<std::uint8_t>(byte));
}

/// Parts from the first byte to the last, or all of them if they are few.
Bytes sampleOf(const Bytes& bytes) {
    if (bytes.size() <= samples * bytesPerSample)
        return bytes;
    Bytes sample;
    sample.reserve(samples * bytesPerSample);
    for (std::size_t i = 0; i < samples; ++i) {
        const auto start =
            bytes.begin() + static_cast<std::ptrdiff_t>((bytes.size() - bytesPerSample) * i / (samples - 1));
        sample.insert(sample.end(), start, start + bytesPerSample);
    }
    return sample;
}

/// Compresses strips one after the other; for one thread.
class StripCompressor {
public:
    Bytes deflate(const Bytes& rows, bool isGrainy, DeflatePart part) {
        if (isGrainy && !isWorthSearching(rows))
            return huffmanDeflated(rows, part);
        auto stream = (isGrainy ? m_forGrain : m_usual).deflate(rows);
        if (part == DeflatePart::Continued)
            continueBehind(stream);
        return stream;
    }

private:
    bool isWorthSearching(const Bytes& rows) {
        const auto sample = sampleOf(rows);
        return m_forGrain.deflate(sample).size() < huffmanDeflated(sample, DeflatePart::Last).size();
    }

    Compressor m_usual{compressionLevel};
    Compressor m_forGrain{levelForGrain};
};

/// The checksum of what `first` and then `second` sum up, `size` bytes of the latter.
std::uint32_t joinedAdler(std::uint32_t first, std::uint32_t second, std::size_t size) {
    constexpr std::uint64_t base = 65521;
    const std::uint64_t sum = first & 0xffff;
    const std::uint64_t low = (sum + (second & 0xffff) + base - 1) % base;
    const std::uint64_t high = ((first >> 16) + (second >> 16) + size % base * (sum + base - 1)) % base;
    return static_cast<std::uint32_t>(high << 16 | low);
}

/// All strips of a picture, compressed by as many threads as there are processors. What comes out does not
/// depend on them.
std::vector<Strip> compressedStrips(const PngScanlines& lines) {
    const int rowsPerStrip = static_cast<int>(std::max(bytesPerStrip / lines.bytesPerRow(), std::size_t{1}));
    std::vector<Strip> strips(static_cast<std::size_t>((lines.height() - 1) / rowsPerStrip + 1));
    std::atomic<std::size_t> next = 0;
    const auto compress = [&] {
        StripCompressor compressor;
        Bytes rows;
        for (auto i = next++; i < strips.size(); i = next++) {
            const int first = static_cast<int>(i) * rowsPerStrip;
            const int end = std::min(first + rowsPerStrip, lines.height());
            rows.resize(static_cast<std::size_t>(end - first) * lines.bytesPerRow());
            const bool isGrainy = 2 * lines.write(first, end, rows.data()) > end - first;
            auto& strip = strips[i];
            strip.adler = libdeflate_adler32(1, rows.data(), rows.size());
            strip.size = rows.size();
            strip.deflated = compressor.deflate(
                rows, isGrainy, i + 1 < strips.size() ? DeflatePart::Continued : DeflatePart::Last);
        }
    };
    // The last helper is this thread. Those that the system refuses to start find nothing left to do.
    const auto helpers = std::min<std::size_t>(std::thread::hardware_concurrency(), strips.size());
    std::vector<std::future<void>> started;
    for (std::size_t i = 1; i < helpers; ++i)
        started.push_back(std::async(compress));
    compress();
    for (auto& each : started)
        each.get();
    return strips;
}

void appendNumber(QByteArray& out, std::uint32_t number) {
    const auto bigEndian = qToBigEndian(number);
    out.append(reinterpret_cast<const char*>(&bigEndian), sizeof bigEndian);
}

/// Begins a chunk; `size` bytes are then appended to it, and the chunk is closed by its checksum.
qsizetype openChunk(QByteArray& out, QByteArrayView name, std::size_t size) {
    appendNumber(out, static_cast<std::uint32_t>(size));
    const auto start = out.size();
    out.append(name);
    return start;
}

void closeChunk(QByteArray& out, qsizetype start) {
    appendNumber(out,
                 libdeflate_crc32(0, out.constData() + start, static_cast<std::size_t>(out.size() - start)));
}

void appendHeader(QByteArray& out, const PngScanlines& lines) {
    constexpr char bitsPerChannel = 8;
    constexpr char truecolor = 2;
    constexpr char truecolorWithAlpha = 6;
    const auto chunk = openChunk(out, "IHDR", 13);
    appendNumber(out, static_cast<std::uint32_t>(lines.width()));
    appendNumber(out, static_cast<std::uint32_t>(lines.height()));
    out.append(bitsPerChannel);
    out.append(lines.hasAlpha() ? truecolorWithAlpha : truecolor);
    // Of compression, filters and interlacing the only or the usual kind.
    out.append(3, '\0');
    closeChunk(out, chunk);
}

// One zlib stream (RFC 1950), a chunk of it for each strip.
void appendPixels(QByteArray& out, const std::vector<Strip>& strips) {
    constexpr QByteArrayView zlibHeader("\x78\x5e");
    std::uint32_t adler = 1;
    for (std::size_t i = 0; i < strips.size(); ++i) {
        const auto& [deflated, stripAdler, size] = strips[i];
        const bool isFirst = i == 0;
        const bool isLast = i + 1 == strips.size();
        adler = joinedAdler(adler, stripAdler, size);
        const auto chunk = openChunk(
            out, "IDAT", deflated.size() + (isFirst ? zlibHeader.size() : 0) + (isLast ? sizeof adler : 0));
        if (isFirst)
            out.append(zlibHeader);
        out.append(reinterpret_cast<const char*>(deflated.data()), static_cast<qsizetype>(deflated.size()));
        if (isLast)
            appendNumber(out, adler);
        closeChunk(out, chunk);
    }
}

QByteArray encoded(const QImage& image) {
    const PngScanlines lines(image);
    const auto strips = compressedStrips(lines);
    constexpr std::size_t chunkOverhead = 12;
    constexpr std::size_t allElse = 128;
    std::size_t size = allElse;
    for (const auto& strip : strips)
        size += strip.deflated.size() + chunkOverhead;
    QByteArray out;
    out.reserve(static_cast<qsizetype>(size));
    out.append("\x89PNG\r\n\x1a\n");
    appendHeader(out, lines);
    appendPixels(out, strips);
    closeChunk(out, openChunk(out, "IEND", 0));
    return out;
}

} // namespace

QByteArray pngData(const QImage& image) {
    if (image.isNull())
        return {};
    try {
        return encoded(image);
    } catch (const std::bad_alloc&) {
        return {};
    }
}

} // namespace kestrova
