#include "Platform/PngScanlines.h"

#include <QtEndian>

#include <algorithm>
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

/// How far a difference of bytes, which wraps around, is from 0. In bytes throughout, so that the compiler
/// computes many at once.
std::uint8_t distance(std::uint8_t difference) {
    return std::min(difference, static_cast<std::uint8_t>(-difference));
}

std::size_t sumOfDistances(const std::uint8_t* differences, std::size_t size) {
    // Enough for rows of many times the pixels that a picture may have.
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < size; ++i)
        sum += distance(differences[i]);
    return sum;
}

enum class RowKind : std::uint8_t { Drawn, Gradient, Grainy };

// Text and flat colours repeat whole runs of bytes, which every difference would break up; those compress
// best as they are. A gradient repeats nothing but its steps. What a camera saw has grain: next to no byte
// repeats, but each differs little from its neighbour.
RowKind kindOf(const std::uint8_t* row, std::size_t size, std::size_t channels) {
    constexpr std::uint8_t edge = 8;
    std::uint32_t edges = 0;
    std::uint32_t changes = 0;
    for (std::size_t i = channels; i < size; ++i) {
        const auto difference = distance(static_cast<std::uint8_t>(row[i] - row[i - channels]));
        changes += difference != 0;
        edges += difference >= edge;
    }
    if (changes - edges > size / 8)
        return RowKind::Grainy;
    return edges == 0 && changes > 0 ? RowKind::Gradient : RowKind::Drawn;
}

/// What a byte is expected to be, by those to the left of it, above it, and to the left of that one. In 16
/// bits, which hold all sums, so that the compiler computes eight at once.
template<Filter filter>
std::uint8_t predicted(std::int16_t left, std::int16_t above, std::int16_t corner) {
    if constexpr (filter == Filter::Sub)
        return static_cast<std::uint8_t>(left);
    else if constexpr (filter == Filter::Up)
        return static_cast<std::uint8_t>(above);
    else if constexpr (filter == Filter::Average)
        return static_cast<std::uint8_t>((left + above) >> 1);
    else {
        const auto magnitude = [](std::int16_t value) {
            return static_cast<std::int16_t>(value < 0 ? -value : value);
        };
        const auto fromCornerToAbove = static_cast<std::int16_t>(above - corner);
        const auto fromCornerToLeft = static_cast<std::int16_t>(left - corner);
        const auto toLeft = magnitude(fromCornerToAbove);
        const auto toAbove = magnitude(fromCornerToLeft);
        const auto toCorner = magnitude(static_cast<std::int16_t>(fromCornerToAbove + fromCornerToLeft));
        const std::int16_t other = toAbove <= toCorner ? above : corner;
        return static_cast<std::uint8_t>(toLeft <= std::min(toAbove, toCorner) ? left : other);
    }
}

/// The row as differences from what was expected.
template<Filter filter>
void filterInto(std::uint8_t* differences, const std::uint8_t* row, const std::uint8_t* above,
                std::size_t size, std::size_t channels) {
    for (std::size_t i = 0; i < channels; ++i)
        differences[i] = static_cast<std::uint8_t>(row[i] - predicted<filter>(0, above[i], 0));
    for (std::size_t i = channels; i < size; ++i)
        differences[i] = static_cast<std::uint8_t>(
            row[i] - predicted<filter>(row[i - channels], above[i], above[i - channels]));
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

    /// Whether it is grainy.
    bool write(std::uint8_t* out) {
        const auto kind = kindOf(m_row.data(), m_row.size(), m_channels);
        if (kind != RowKind::Drawn)
            chooseFilter();
        *out = static_cast<std::uint8_t>(kind == RowKind::Drawn ? Filter::None : m_chosen);
        const auto& bytes = kind == RowKind::Drawn ? m_row : m_best;
        std::memcpy(out + 1, bytes.data(), bytes.size());
        return kind == RowKind::Grainy;
    }

private:
    // What is near 0 throughout has short codes.
    void chooseFilter() {
        m_smallest = std::numeric_limits<std::size_t>::max();
        for (const auto attempt : {&RowFilter::attempt<Filter::Sub>, &RowFilter::attempt<Filter::Up>,
                                   &RowFilter::attempt<Filter::Average>, &RowFilter::attempt<Filter::Paeth>})
            (this->*attempt)();
    }
    template<Filter filter>
    void attempt() {
        filterInto<filter>(m_tried.data(), m_row.data(), m_above.data(), m_row.size(), m_channels);
        const auto sum = sumOfDistances(m_tried.data(), m_tried.size());
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
