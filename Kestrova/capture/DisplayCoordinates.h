#pragma once

#include "Platform/Screens.h"

#include <QPointF>
#include <QRectF>

#include <optional>

namespace kestrova {

/// Between the two spaces that captures live in: global points, y upwards from the lower left corner of the
/// primary display, and the points of windows, y downwards from its upper left corner.
///
/// The primary display is the first whose lower left corner is exactly the origin, else the main screen, else
/// the first one. Absent if there is no screen; for the conversions its height is then 0.
std::optional<Screen> primaryDisplay(const Screens& screens);

/// From global points to the points of windows.
QPointF appKitToGlobal(QPointF point, const Screens& screens);
/// From the points of windows to global points.
ScreenRect globalToAppKit(const QRectF& rect, const Screens& screens);

/// Without an area, or not a rectangle at all.
bool isEmpty(const ScreenRect& rect);
/// What both cover; absent if that is empty. A rectangle within the other comes back to the bit.
std::optional<ScreenRect> intersection(const ScreenRect& first, const ScreenRect& second);
/// The first screen that shows a part of `rect`, in global points.
std::optional<Screen> firstScreenTouching(const ScreenRect& rect, const Screens& screens);

} // namespace kestrova
