#pragma once

#include <QImage>
#include <QRect>

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>

namespace kestrova {

class CaptureConnection;

/// Fetches pixels from the X server, through shared memory where both are on one machine. It asks for parts
/// one after the other: for a picture of one moment the server is to be grabbed. `connection` outlives the
/// object.
class PixelReader {
public:
    explicit PixelReader(const CaptureConnection& connection);
    PixelReader(const PixelReader&) = delete;
    PixelReader& operator=(const PixelReader&) = delete;
    ~PixelReader();

    /// Whether the server keeps pixels of that depth in a way that is known here.
    static bool canRead(xcb_connection_t* connection, std::uint8_t depth);

    /// Gets ready for one picture of that size, which takes longer than reading it: to be done before other
    /// programs are kept from the server.
    void prepare(QSize size);
    /// `area` of a window that is on the screen, with what is within it, or of a pixmap; it must lie within
    /// both. Format_ARGB32_Premultiplied for a depth of 32, else Format_RGB32; null if the server refuses, or
    /// keeps pixels in another way.
    QImage read(xcb_drawable_t drawable, std::uint8_t depth, const QRect& area);

private:
    class AttachedMemory;

    bool readShared(xcb_drawable_t drawable, std::uint8_t depth, const QRect& area, QImage& image) const;
    bool readCopied(xcb_drawable_t drawable, std::uint8_t depth, const QRect& area, QImage& image) const;

    const CaptureConnection& m_connection;
    // Null until prepared, and where there is none.
    std::unique_ptr<AttachedMemory> m_shared;
    QImage m_prepared;
};

/// The same pixels without their transparency, in the same memory where nobody else has it.
QImage madeOpaque(QImage image);

/// A pixel of a screen with ten bits a colour, opaque, with eight.
constexpr QRgb rgbOfDeepPixel(std::uint32_t pixel) {
    return qRgb(static_cast<int>(pixel >> 22 & 0xFF), static_cast<int>(pixel >> 12 & 0xFF),
                static_cast<int>(pixel >> 2 & 0xFF));
}

} // namespace kestrova
