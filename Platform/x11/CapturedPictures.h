#pragma once

#include <QImage>
#include <QRect>

#include <xcb/xcb.h>

#include <span>

namespace kestrova {

class CaptureConnection;

/// What the screen shows in `area`, in pixels of the desktop, as if the windows `excluded` were not there.
/// Throws ScreenContentError.
QImage screenPicture(CaptureConnection& connection, const QRect& area,
                     std::span<const xcb_window_t> excluded);

struct WindowPicture {
    QImage image;
    /// What it shows, in pixels of the desktop.
    QRect pixels;
};

/// What a window shows, with its decoration, without the shadow that it draws itself, whatever covers it.
/// Throws ScreenContentError.
WindowPicture windowPicture(CaptureConnection& connection, xcb_window_t window);

} // namespace kestrova
