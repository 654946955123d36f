#pragma once

#include "Platform/Screens.h"

#include <QPoint>
#include <QRect>
#include <QRectF>
#include <QSize>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace kestrova {

/// One display as the desktop tells it.
struct NativeDisplay {
    std::uint32_t identifier = 0;
    /// Upper left corner in pixels of the whole desktop, y downwards. In the toolkit's coordinates the corner
    /// has the same numbers, whatever the scales are.
    QPoint origin;
    QSize pixels;
    /// The part without panels, in points from the display's upper left corner.
    QRectF available;
    /// Pixels per point.
    double scale = 1;

    bool operator==(const NativeDisplay&) const = default;
};

/// Where the toolkit is to put a window.
struct WindowPlace {
    std::uint32_t screen = 0;
    /// In the toolkit's coordinates.
    QRect geometry;

    bool operator==(const WindowPlace&) const = default;
};

/// Turns places on the displays over, from the desktop's coordinates into global points and back. Each
/// display is mapped on its own: its corner stays at its pixel, and what lies within is divided by its scale,
/// which need not give whole points.
/// A pixel stands for its centre, so that the outermost ones lie within the display after y was turned over.
class ScreenGeometry {
public:
    /// `primary`: index of the display whose lower left corner is the origin; the first if there is no such
    /// one.
    explicit ScreenGeometry(std::vector<NativeDisplay> displays, std::size_t primary = 0);

    /// In the order given; empty if there is none.
    std::vector<Screen> screens() const;
    std::optional<Screen> primaryScreen() const;
    /// The one on which most of a rectangle in pixels of the desktop lies, else the nearest; absent if there
    /// is no display.
    std::optional<Screen> screenOfPixels(const QRect& pixels) const;

    /// The pixels of a display on the desktop; absent if it is not there.
    std::optional<QRect> pixelsOf(std::uint32_t identifier) const;
    /// Where on the desktop the pixels of a picture of `size` lie that shows a display from the upper left
    /// corner of `sourceRect` on, in points, y downwards from the display's; from its own corner if that is
    /// absent. Absent if the display is not there.
    std::optional<QRect> pixelsOfPicture(std::uint32_t identifier, const std::optional<QRectF>& sourceRect,
                                         QSize size) const;
    /// A window of the desktop in points, y downwards from the primary display's upper left corner, divided
    /// by the scale of the display on which most of it lies, else of the nearest one: multiplied by that
    /// scale, its size is its pixels exactly or a hair more.
    QRectF windowFrame(const QRect& pixels) const;
    /// Whether a picture of that size is meant to show the whole window: the size of its frame by the scale
    /// of any display, as one who knows the frame alone cannot tell whose it is.
    bool isSizeOfWindow(const QRect& pixels, QSize size) const;

    /// The centre of a pixel of the desktop. One on no display counts for the nearest display.
    QPointF pointOfPixel(QPoint pixel) const;
    /// The upper left corner of a pixel of the desktop, for a line between pixels, by the scale of one
    /// display also beyond it, so that what is drawn there does not jump when the mouse leaves it. An
    /// outermost pixel of the desktop stands for the outer edge, which the mouse cannot reach. A display that
    /// is not there is the nearest one.
    QPointF cornerOfPixel(std::uint32_t identifier, QPoint pixel) const;
    /// The pixel that a global point lies in, on the nearest display.
    QPoint pixelOfPoint(QPointF point) const;
    /// The centre of a point in the toolkit's whole coordinates, which round a pixel on a display's edge to
    /// beyond it.
    QPointF pointOfToolkit(QPoint position) const;

    /// A rectangle in the toolkit's coordinates; unchanged if there is no display.
    ScreenRect rectOfToolkit(const QRectF& rect) const;
    /// The display on which most of the rectangle lies, else the nearest, and the rectangle in the toolkit's
    /// coordinates, which are whole; absent if there is no display.
    std::optional<WindowPlace> windowPlace(const ScreenRect& rect) const;

private:
    ScreenRect frame(const NativeDisplay& display) const;
    ScreenRect turnedOver(const QRectF& toolkitRect) const;
    Screen screen(const NativeDisplay& display) const;

    std::vector<NativeDisplay> m_displays;
    std::size_t m_primary = 0;
};

} // namespace kestrova
