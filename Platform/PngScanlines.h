#pragma once

#include <QImage>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kestrova {

/// The rows of a picture as PNG stores them before compression: 8 bits a channel, red, green and blue, and
/// alpha only if some pixel is not opaque. Rows may be written by several threads at once.
class PngScanlines {
public:
    /// Any picture but a null one. Throws std::bad_alloc.
    explicit PngScanlines(const QImage& image);

    int width() const { return m_image.width(); }
    int height() const { return m_image.height(); }
    bool hasAlpha() const { return m_channels == 4; }
    /// Of one row with its filter's byte.
    std::size_t bytesPerRow() const { return rowBytes() + 1; }
    /// Rows from `first` to before `end`, one behind the other, into `out`, which has room for them. How many
    /// of them are grainy like a photograph.
    int write(int first, int end, std::uint8_t* out) const;

private:
    std::size_t rowBytes() const { return static_cast<std::size_t>(m_image.width()) * m_channels; }
    void pack(int row, std::uint8_t* out) const;

    QImage m_image;
    std::size_t m_channels = 3;
};

} // namespace kestrova
