#pragma once

#include "Platform/Screens.h"

#include <QImage>
#include <QPointF>
#include <QSizeF>
#include <QString>

#include <array>
#include <functional>
#include <optional>
#include <vector>

namespace kestrova {

/// Everything here is in the coordinates of one overlay: points, y upwards from the lower left corner of its
/// display.

/// The interface's font in medium weight, of 12 or of 11 points; the last one with digits of one width.
enum class OverlayFont { medium12, medium11, medium11TabularDigits };

/// The size of a line of text in points.
using OverlayTextSize = std::function<QSizeF(const QString& text, OverlayFont font)>;

/// A colour of the overlay. Texts are white.
struct OverlayFill {
    enum class Color { black, systemBlue };

    Color color = Color::black;
    double alpha = 1;

    bool operator==(const OverlayFill&) const = default;
};

/// A line of text on a rounded rectangle.
struct OverlayBadge {
    ScreenRect frame;
    double cornerRadius = 0;
    OverlayFill fill;
    QString text;
    OverlayFont font = OverlayFont::medium12;
    /// The lower left corner of the text.
    QPointF textOrigin;

    bool operator==(const OverlayBadge&) const = default;
};

/// What an overlay shows, from the bottom to the top.
struct OverlayDrawing {
    static constexpr OverlayFill dimming{OverlayFill::Color::black, 0.35};
    static constexpr double strokeWidth = 1;

    /// Fills the display, under the dimming; the desktop itself shows without it.
    std::optional<QImage> background;
    /// Is not dimmed: the rectangle and the display, filled by the even-odd rule. May lie outside the display
    /// or reach beyond it.
    std::optional<ScreenRect> hole;
    /// The line along which a white stroke of `strokeWidth` runs.
    std::optional<ScreenRect> stroke;
    std::vector<OverlayBadge> badges;

    /// The same picture, whoever shares its pixels.
    bool operator==(const OverlayDrawing& other) const;
};

/// What has to be painted anew when `after` takes the place of `before`, within `bounds`. Each pixel that
/// differs lies in one of them, those along edges that fall between pixels included.
std::vector<ScreenRect> changedRects(const OverlayDrawing& before, const OverlayDrawing& after,
                                     const ScreenRect& bounds);

/// The pointer of the area mode.
namespace Crosshair {

struct Segment {
    QPointF from;
    QPointF to;
};
struct Stroke {
    /// 0 is black, 1 is white.
    double white = 0;
    double alpha = 1;
    double width = 1;
};

/// Width and height.
inline constexpr double side = 24;
inline constexpr QPointF hotSpot{12, 12};
/// They leave a gap around the hot spot. Line caps are square.
inline constexpr std::array segments{Segment{{3, 12}, {9, 12}}, Segment{{15, 12}, {21, 12}},
                                     Segment{{12, 3}, {12, 9}}, Segment{{12, 15}, {12, 21}}};
/// All segments are stroked with the first, then all with the second.
inline constexpr std::array strokes{Stroke{0, 0.85, 3}, Stroke{1, 1, 1}};

} // namespace Crosshair

} // namespace kestrova
