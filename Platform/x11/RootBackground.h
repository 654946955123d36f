#pragma once

#include <QImage>
#include <QRect>

namespace kestrova {

class CaptureConnection;

/// What the screen shows in `area`, in pixels of the desktop, where there is no window at all. Null where the
/// server does not tell. With the server grabbed.
QImage rootBackground(const CaptureConnection& connection, const QRect& area);

} // namespace kestrova
