#pragma once

#include "Platform/x11/PixelReader.h"
#include "Platform/x11/WindowList.h"

#include <QImage>
#include <QRegion>

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>

namespace kestrova {

class CaptureConnection;

/// The contents of one child of the root as the server keeps them, whatever covers them. They stay as they
/// were even if the window goes.
class WindowContents {
public:
    /// Of no use where the server does not keep them; `connection` outlives the object.
    WindowContents(const CaptureConnection& connection, xcb_window_t window);
    WindowContents(const WindowContents&) = delete;
    WindowContents& operator=(const WindowContents&) = delete;
    ~WindowContents();

    bool areKept() const { return m_depth != 0; }
    /// With the border.
    QSize size() const { return m_size; }
    /// `area` from the upper left corner, border included; what lies beyond is left out. Null if there is
    /// nothing there.
    QImage pixels(const QRect& area, PixelReader& reader) const;

private:
    const CaptureConnection& m_connection;
    xcb_pixmap_t m_pixmap;
    QSize m_size;
    std::uint8_t m_depth = 0;
};

/// The shape of a child of the root, in pixels from its upper left corner, border included; absent if it is a
/// mere rectangle.
std::optional<QRegion> shapeOf(const CaptureConnection& connection, const RootChild& child);
/// The same on the desktop, of the rectangle too.
QRegion regionOf(const CaptureConnection& connection, const RootChild& child);
/// From 0 to 1, for what the person or the window wants the compositor to do.
double opacityOf(const CaptureConnection& connection, xcb_window_t window);

} // namespace kestrova
