#include "Platform/PngScanlines.h"

#include <QtEndian>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace kestrova {
namespace {

enum class Filter : std::uint8_t { None, Sub, Up, Average, Paeth };

bool isOpaque(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        const auto* pixels = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        QRgb all = 0xff000000;
        for (int x = 0; x < image.width(); ++x)
            all &= pixels[x];
        if (qAlpha(all) != 255)
            return false;
    }
    return true;
}

QImage converted(const QImage& image, QImage::Format format) {
    if (image.format() == format)
        return image;
    auto result = image.convertToFormat(format);
    if (result.isNull())
        throw std::bad_alloc();
    return result;
}

bool isArgb(QImage::Format format) {
    return format == QImage::Format_ARGB32 || format == QImage::Format_ARGB32_Premultiplied;
}

/// A picture whose pixels can be packed as they lie there.
struct Packable {
    /// RGBA8888 if it has alpha, else RGB32 or something like it, of which nobody looks at the alpha.
    QImage image;
    bool hasAlpha = false;
};

Packable packable(const QImage& image) {
    if (!image.hasAlphaChannel())
        return {converted(image, QImage::Format_RGB32), false};
    const auto argb = isArgb(image.format()) ? image : converted(image, QImage::Format_ARGB32);
    // To tell the image that it is opaque would copy all of it.
    if (isOpaque(argb))
        return {argb, false};
    return {converted(argb, QImage::Format_RGBA8888), true};
}

// Text, flat colours and gradients repeat whole runs of bytes, which every difference would break up; those
// compress best as they are. What a camera saw has grain: next to no byte repeats, but each differs little
// from its neighbour.
bool isGrainy(const std::uint8_t* row, std::size_t size, std::size_t channels) {
    constexpr int grain = 8;
    std::size_t grains = 0;
    for (std::size_t i = channels; i < size; ++i) {
        const int difference = row[i] - row[i - channels];
        grains += difference != 0 && difference < grain && difference > -grain;
    }
    return grains > size / 8;
}

/// What a byte is expected to be, by those to the left of it, above it, and to the left of that one.
template<Filter filter>
int predicted(int left, int above, int corner) {
    if constexpr (filter == Filter::Sub)
        return left;
    else if constexpr (filter == Filter::Up)
        return above;
    else if constexpr (filter == Filter::Average)
        return (left + above) / 2;
    else {
        const int toLeft = std::abs(above - corner);
        const int toAbove = std::abs(left - corner);
        const int toCorner = std::abs(left + above - 2 * corner);
        const int nearest = toAbove <= toCorner ? above : corner;
        return toLeft <= toAbove && toLeft <= toCorner ? left : nearest;
    }
}

/// The row as differences from what was expected, and how far they are from 0 in sum.
template<Filter filter>
std::size_t filterInto(std::vector<std::uint8_t>& out, const std::vector<std::uint8_t>& row,
                       const std::vector<std::uint8_t>& above, std::size_t channels) {
    const auto* bytes = row.data();
    const auto* bytesAbove = above.data();
    auto* differences = out.data();
    for (std::size_t i = 0; i < channels; ++i)
        differences[i] = static_cast<std::uint8_t>(bytes[i] - predicted<filter>(0, bytesAbove[i], 0));
    for (std::size_t i = channels; i < row.size(); ++i)
        differences[i] = static_cast<std::uint8_t>(
            bytes[i] - predicted<filter>(bytes[i - channels], bytesAbove[i], bytesAbove[i - channels]));
    std::size_t sum = 0;
    for (std::size_t i = 0; i < row.size(); ++i)
        sum += static_cast<std::size_t>(std::min<int>(differences[i], 256 - differences[i]));
    return sum;
}

/// A few rows and what is made of them; for one thread.
class RowFilter {
public:
    RowFilter(std::size_t size, std::size_t channels)
        : m_channels(channels), m_row(size), m_above(size), m_best(size), m_tried(size) {}

    /// The row that is written next; what it was becomes the one above.
    std::uint8_t* nextRow() {
        std::swap(m_row, m_above);
        return m_row.data();
    }

    /// Whether as differences.
    bool write(std::uint8_t* out) {
        auto filter = Filter::None;
        if (isGrainy(m_row.data(), m_row.size(), m_channels))
            filter = chooseFilter();
        *out = static_cast<std::uint8_t>(filter);
        const auto& bytes = filter == Filter::None ? m_row : m_best;
        std::memcpy(out + 1, bytes.data(), bytes.size());
        return filter != Filter::None;
    }

private:
    // What is near 0 throughout has short codes.
    Filter chooseFilter() {
        m_smallest = std::numeric_limits<std::size_t>::max();
        for (const auto attempt : {&RowFilter::attempt<Filter::Sub>, &RowFilter::attempt<Filter::Up>,
                                   &RowFilter::attempt<Filter::Average>, &RowFilter::attempt<Filter::Paeth>})
            (this->*attempt)();
        return m_chosen;
    }
    template<Filter filter>
    void attempt() {
        const auto sum = filterInto<filter>(m_tried, m_row, m_above, m_channels);
        if (sum >= m_smallest)
            return;
        m_smallest = sum;
        m_chosen = filter;
        std::swap(m_best, m_tried);
    }

    std::size_t m_channels;
    std::vector<std::uint8_t> m_row;
    std::vector<std::uint8_t> m_above;
    std::vector<std::uint8_t> m_best;
    std::vector<std::uint8_t> m_tried;
    std::size_t m_smallest = 0;
    Filter m_chosen = Filter::None;
};

} // namespace

PngScanlines::PngScanlines(const QImage& image) {
    auto made = packable(image);
    m_image = std::move(made.image);
    m_channels = made.hasAlpha ? 4 : 3;
}

int PngScanlines::write(int first, int end, std::uint8_t* out) const {
    RowFilter filter(rowBytes(), m_channels);
    if (first > 0)
        pack(first - 1, filter.nextRow());
    int grainyRows = 0;
    for (int y = first; y < end; ++y) {
        pack(y, filter.nextRow());
        grainyRows += filter.write(out) ? 1 : 0;
        out += bytesPerRow();
    }
    return grainyRows;
}

void PngScanlines::pack(int row, std::uint8_t* out) const {
    const auto* line = m_image.constScanLine(row);
    if (hasAlpha()) {
        std::memcpy(out, line, rowBytes());
        return;
    }
    const auto* pixels = reinterpret_cast<const QRgb*>(line);
    const auto width = static_cast<std::size_t>(m_image.width());
    // Four bytes at once; the next pixel takes back the one too many, but behind the last there is no room.
    const std::size_t last = width - 1;
    for (std::size_t x = 0; x < last; ++x) {
        const auto bytes = qToBigEndian(pixels[x] << 8);
        std::memcpy(out + 3 * x, &bytes, sizeof bytes);
    }
    const auto bytes = qToBigEndian(pixels[last] << 8);
    std::memcpy(out + 3 * last, &bytes, 3);
}

} // namespace kestrova
