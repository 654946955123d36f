#include "Kestrova/capture/DisplayCoordinates.h"

#include <algorithm>

namespace kestrova {

namespace {

struct Span {
    double start = 0;
    double length = 0;

    double end() const { return start + length; }
    bool contains(const Span& other) const { return other.start >= start && other.end() <= end(); }
};

Span overlap(const Span& first, const Span& second) {
    // A length that nothing cuts is not computed anew: the difference of its ends is another number, and at a
    // fractional scale another number of pixels.
    if (second.contains(first))
        return first;
    if (first.contains(second))
        return second;
    const double start = std::max(first.start, second.start);
    return {start, std::min(first.end(), second.end()) - start};
}

double primaryTop(const Screens& screens) {
    const auto primary = primaryDisplay(screens);
    return primary ? primary->frame.maxY() : 0;
}

} // namespace

std::optional<Screen> primaryDisplay(const Screens& screens) {
    const auto all = screens.screens();
    const auto atOrigin = std::ranges::find_if(
        all, [](const Screen& screen) { return screen.frame.x == 0 && screen.frame.y == 0; });
    if (atOrigin != all.end())
        return *atOrigin;
    if (const auto main = screens.mainScreen())
        return main;
    return all.empty() ? std::nullopt : std::optional(all.front());
}

QPointF appKitToGlobal(QPointF point, const Screens& screens) {
    return {point.x(), primaryTop(screens) - point.y()};
}

ScreenRect globalToAppKit(const QRectF& rect, const Screens& screens) {
    return {rect.x(), primaryTop(screens) - rect.bottom(), rect.width(), rect.height()};
}

bool isEmpty(const ScreenRect& rect) {
    return !(rect.width > 0 && rect.height > 0);
}

std::optional<ScreenRect> intersection(const ScreenRect& first, const ScreenRect& second) {
    if (isEmpty(first) || isEmpty(second))
        return std::nullopt;
    const auto across = overlap({first.x, first.width}, {second.x, second.width});
    const auto upwards = overlap({first.y, first.height}, {second.y, second.height});
    const ScreenRect both{across.start, upwards.start, across.length, upwards.length};
    return isEmpty(both) ? std::nullopt : std::optional(both);
}

std::optional<Screen> firstScreenTouching(const ScreenRect& rect, const Screens& screens) {
    const auto all = screens.screens();
    const auto touched = std::ranges::find_if(
        all, [&](const Screen& screen) { return intersection(rect, screen.frame).has_value(); });
    return touched == all.end() ? std::nullopt : std::optional(*touched);
}

} // namespace kestrova
