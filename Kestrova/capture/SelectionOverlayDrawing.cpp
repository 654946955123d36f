#include "Kestrova/capture/SelectionOverlayDrawing.h"

#include "Kestrova/capture/DisplayCoordinates.h"

#include <algorithm>

namespace kestrova {

namespace {

using Rects = std::vector<ScreenRect>;

ScreenRect grown(const ScreenRect& rect, double by) {
    return {rect.x - by, rect.y - by, rect.width + 2 * by, rect.height + 2 * by};
}

ScreenRect between(double left, double bottom, double right, double top) {
    return {left, bottom, right - left, top - bottom};
}

/// What of `rect` lies outside `hole`, in up to four pieces.
Rects difference(const ScreenRect& rect, const std::optional<ScreenRect>& hole) {
    const auto common = hole ? intersection(rect, *hole) : std::nullopt;
    if (!common)
        return {rect};
    return {between(rect.x, rect.y, rect.maxX(), common->y),
            between(rect.x, common->maxY(), rect.maxX(), rect.maxY()),
            between(rect.x, common->y, common->x, common->maxY()),
            between(common->maxX(), common->y, rect.maxX(), common->maxY())};
}

/// The line along the edge of `rect`, in four pieces.
Rects outline(const ScreenRect& rect, double width) {
    const auto outer = grown(rect, width / 2);
    return difference(outer, grown(rect, -width / 2));
}

bool isSameImage(const std::optional<QImage>& first, const std::optional<QImage>& second) {
    return first.has_value() == second.has_value() && (!first || first->cacheKey() == second->cacheKey());
}

void append(Rects& rects, const Rects& more) {
    rects.insert(rects.end(), more.begin(), more.end());
}

void appendBadges(Rects& rects, const std::vector<OverlayBadge>& badges,
                  const std::vector<OverlayBadge>& others) {
    for (const auto& badge : badges) {
        if (std::ranges::find(others, badge) == others.end())
            rects.push_back(badge.frame);
    }
}

} // namespace

bool OverlayDrawing::operator==(const OverlayDrawing& other) const {
    return isSameImage(background, other.background) && hole == other.hole && stroke == other.stroke &&
           badges == other.badges;
}

std::vector<ScreenRect> changedRects(const OverlayDrawing& before, const OverlayDrawing& after,
                                     const ScreenRect& bounds) {
    if (!isSameImage(before.background, after.background))
        return {bounds};
    Rects changed;
    if (before.hole != after.hole) {
        if (before.hole)
            append(changed, difference(*before.hole, after.hole));
        if (after.hole)
            append(changed, difference(*after.hole, before.hole));
    }
    if (before.stroke != after.stroke) {
        for (const auto& stroke : {before.stroke, after.stroke}) {
            if (stroke)
                append(changed, outline(*stroke, OverlayDrawing::strokeWidth));
        }
    }
    appendBadges(changed, before.badges, after.badges);
    appendBadges(changed, after.badges, before.badges);

    // Edges between pixels colour the pixels on both sides.
    constexpr double edge = 1;
    Rects visible;
    for (const auto& rect : changed) {
        if (isEmpty(rect))
            continue;
        if (const auto part = intersection(grown(rect, edge), bounds))
            visible.push_back(*part);
    }
    return visible;
}

} // namespace kestrova
