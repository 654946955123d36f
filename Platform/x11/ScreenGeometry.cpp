#include "Platform/x11/ScreenGeometry.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrova {

namespace {

QRectF toolkitRect(const NativeDisplay& display) {
    return {display.origin, display.size};
}

QRectF pixelRect(const NativeDisplay& display) {
    return {display.origin, QSizeF(display.size) * display.scale};
}

/// Squared distance of two rectangles; 0 if they touch.
double distance(const QRectF& one, const QRectF& other) {
    const double dx = std::max({0.0, one.left() - other.right(), other.left() - one.right()});
    const double dy = std::max({0.0, one.top() - other.bottom(), other.top() - one.bottom()});
    return dx * dx + dy * dy;
}

double sharedArea(const QRectF& one, const QRectF& other) {
    const QRectF shared = one.intersected(other);
    return shared.width() * shared.height();
}

/// The display whose `rectOf` shares most with `rect`, else the nearest one. There is one at least.
template<typename RectOf>
const NativeDisplay& displayNearest(const std::vector<NativeDisplay>& displays, const QRectF& rect,
                                    RectOf rectOf) {
    const auto rank = [&](const NativeDisplay& display) {
        const QRectF area = rectOf(display);
        return std::pair{-sharedArea(area, rect), distance(area, rect)};
    };
    return *std::ranges::min_element(displays, {}, rank);
}

double clampedCentre(double position, double origin, double length) {
    return std::clamp(position + 0.5, origin + 0.5, std::max(origin + length, origin + 1) - 0.5);
}

} // namespace

ScreenGeometry::ScreenGeometry(std::vector<NativeDisplay> displays, std::size_t primary)
    : m_displays(std::move(displays)), m_primary(primary < m_displays.size() ? primary : 0) {}

ScreenRect ScreenGeometry::turnedOver(const QRectF& rect) const {
    const auto& primary = m_displays[m_primary];
    return {.x = rect.x() - primary.origin.x(),
            .y = primary.size.height() - (rect.bottom() - primary.origin.y()),
            .width = rect.width(),
            .height = rect.height()};
}

ScreenRect ScreenGeometry::frame(const NativeDisplay& display) const {
    return turnedOver(toolkitRect(display));
}

Screen ScreenGeometry::screen(const NativeDisplay& display) const {
    return {.identifier = display.identifier,
            .frame = frame(display),
            .visibleFrame = turnedOver(QRectF(display.available).translated(display.origin)),
            .scale = display.scale};
}

std::vector<Screen> ScreenGeometry::screens() const {
    std::vector<Screen> screens;
    for (const auto& display : m_displays)
        screens.push_back(screen(display));
    return screens;
}

std::optional<Screen> ScreenGeometry::primaryScreen() const {
    if (m_displays.empty())
        return {};
    return screen(m_displays[m_primary]);
}

std::optional<Screen> ScreenGeometry::screenOfPixels(const QRect& pixels) const {
    if (m_displays.empty())
        return {};
    return screen(displayNearest(m_displays, pixels, pixelRect));
}

QPointF ScreenGeometry::pointOfPixel(QPoint pixel) const {
    if (m_displays.empty())
        return {};
    const auto& display = displayNearest(m_displays, QRectF(pixel, QSizeF(1, 1)), pixelRect);
    const QPointF fromCorner = (QPointF(pixel - display.origin) + QPointF(0.5, 0.5)) / display.scale;
    const auto area = frame(display);
    return {area.x + fromCorner.x(), area.maxY() - fromCorner.y()};
}

QPoint ScreenGeometry::pixelOfPoint(QPointF point) const {
    if (m_displays.empty())
        return {};
    const auto& origin = m_displays[m_primary].origin;
    const QPointF inToolkit(point.x() + origin.x(),
                            m_displays[m_primary].size.height() - point.y() + origin.y());
    // A point has no size; one beside it decides on whose side of a common edge it lies.
    const auto& display = displayNearest(m_displays, QRectF(inToolkit, QSizeF(1e-3, 1e-3)), toolkitRect);
    const QPointF fromCorner = (inToolkit - display.origin) * display.scale;
    return display.origin +
           QPoint(static_cast<int>(std::floor(fromCorner.x())), static_cast<int>(std::floor(fromCorner.y())));
}

QPointF ScreenGeometry::pointOfToolkit(QPoint position) const {
    if (m_displays.empty())
        return {};
    const auto& display = displayNearest(m_displays, QRectF(position, QSizeF(1, 1)), toolkitRect);
    const QRectF area = toolkitRect(display);
    const auto turned = turnedOver({clampedCentre(position.x(), area.x(), area.width()),
                                    clampedCentre(position.y(), area.y(), area.height()), 0, 0});
    return {turned.x, turned.y};
}

ScreenRect ScreenGeometry::rectOfToolkit(const QRectF& rect) const {
    if (m_displays.empty())
        return {.x = rect.x(), .y = rect.y(), .width = rect.width(), .height = rect.height()};
    return turnedOver(rect);
}

std::optional<WindowPlace> ScreenGeometry::windowPlace(const ScreenRect& rect) const {
    if (m_displays.empty())
        return {};
    const auto& primary = m_displays[m_primary];
    const QRectF inToolkit(rect.x + primary.origin.x(),
                           primary.size.height() - rect.maxY() + primary.origin.y(), rect.width, rect.height);
    const auto& display = displayNearest(m_displays, inToolkit, toolkitRect);
    return WindowPlace{
        .screen = display.identifier,
        .geometry = {qRound(inToolkit.x()), qRound(inToolkit.y()), qRound(rect.width), qRound(rect.height)}};
}

} // namespace kestrova
