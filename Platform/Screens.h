#pragma once

#include <QPointF>
#include <QRectF>

#include <cstdint>
#include <optional>
#include <vector>

namespace kestrova {

/// A rectangle in global coordinates: points, y upwards from the lower left of the primary display, origin at
/// the rectangle's lower left.
struct ScreenRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    constexpr double midX() const { return x + width / 2; }
    constexpr double maxX() const { return x + width; }
    constexpr double maxY() const { return y + height; }
    /// The left and the lower edge belong to it, the others do not.
    constexpr bool contains(QPointF point) const {
        return point.x() >= x && point.x() < maxX() && point.y() >= y && point.y() < maxY();
    }
    bool operator==(const ScreenRect&) const = default;
};

/// One display.
struct Screen {
    std::uint32_t identifier = 0;
    /// Its width and its height, times `scale` and cut off to whole numbers, are the display's pixels.
    ScreenRect frame;
    /// Without the desktop's panels.
    ScreenRect visibleFrame;
    /// Pixels per point.
    double scale = 1;

    bool operator==(const Screen&) const = default;
};

/// The displays. Main thread only.
class Screens {
public:
    virtual ~Screens() = default;

    /// In the host's order; empty if there is none.
    virtual std::vector<Screen> screens() const = 0;
    /// The one with the keyboard focus, else the primary one; absent if there is no screen.
    virtual std::optional<Screen> mainScreen() const = 0;
    /// In global points.
    virtual QPointF mouseLocation() const = 0;
};

} // namespace kestrova
