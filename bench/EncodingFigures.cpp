#include "bench/Figure.h"
#include "bench/InProcessFigures.h"
#include "bench/ScreenSamples.h"
#include "bench/Stopwatch.h"

#include "Platform/PngEncoder.h"

#include <libdeflate.h>

#include <cstdint>
#include <memory>
#include <new>

namespace kestrova::bench {
namespace {

constexpr int runs = 15;

std::string inMegabytes(qsizetype bytes) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3f MB", static_cast<double>(bytes) / 1e6);
    return text;
}

/// One thread and no more than the library's work, over red, green and blue of every pixel as they are.
class BareCompression {
public:
    explicit BareCompression(const QImage& picture)
        : m_compressor(libdeflate_alloc_compressor(level)),
          m_pixels(picture.convertToFormat(QImage::Format_RGB888)),
          m_room(libdeflate_zlib_compress_bound(m_compressor.get(), size())) {
        if (!m_compressor)
            throw std::bad_alloc();
    }

    double milliseconds() {
        const Stopwatch watch;
        libdeflate_zlib_compress(m_compressor.get(), m_pixels.constBits(), size(), m_room.data(),
                                 m_room.size());
        return watch.milliseconds();
    }

private:
    // The encoder's.
    static constexpr int level = 4;

    struct Free {
        void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
    };

    std::size_t size() const { return static_cast<std::size_t>(m_pixels.sizeInBytes()); }

    std::unique_ptr<libdeflate_compressor, Free> m_compressor;
    QImage m_pixels;
    std::vector<std::uint8_t> m_room;
};

} // namespace

void measureEncoding(const QString& /*directory*/) {
    for (const QSize size : {QSize(1'920, 1'080), QSize(3'840, 2'160)})
        for (const auto& [name, picture] : screenSamples(size)) {
            std::vector<double> encodings;
            std::vector<double> compressions;
            BareCompression bare(picture);
            qsizetype bytes = 0;
            for (int run = 0; run < runs; ++run) {
                const Stopwatch watch;
                bytes = pngData(picture).size();
                encodings.push_back(watch.milliseconds());
                compressions.push_back(bare.milliseconds());
            }
            const Stopwatch watch;
            const auto toolkitBytes = toolkitPng(picture).size();
            print({.name = "picture to PNG, " + std::to_string(size.width()) + "x" +
                           std::to_string(size.height()) + ", " + name,
                   .unit = "ms",
                   .measured = median(encodings),
                   .floor = median(compressions),
                   .floorName = "the bare pixels compressed by one thread",
                   .remark = inMegabytes(bytes) + "; the toolkit's default takes " +
                             std::to_string(static_cast<int>(watch.milliseconds())) + " ms for " +
                             inMegabytes(toolkitBytes)});
        }
}

} // namespace kestrova::bench
