#include "Platform/x11/ScreenGeometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace kestrova {

namespace {

/// The length of whole pixels in points: multiplied by the scale it never falls below them, so that cutting
/// off to whole pixels loses none.
double points(int pixels, double scale) {
    const double divided = pixels / scale;
    return divided * scale < pixels ? std::nextafter(divided, std::numeric_limits<double>::infinity())
                                    : divided;
}

QSizeF pointSize(const NativeDisplay& display) {
    return {points(display.pixels.width(), display.scale), points(display.pixels.height(), display.scale)};
}

QRectF toolkitRect(const NativeDisplay& display) {
    return {display.origin, pointSize(display)};
}

QRectF pixelRect(const NativeDisplay& display) {
    return {display.origin, display.pixels};
}

/// The whole pixel nearest to a length in points, no further than `room` allows if it is within a pixel of
/// that: what was rounded separately may reach a pixel beyond the edge.
int pictureCorner(double length, double scale, int room) {
    const int pixel = qRound(length * scale);
    return pixel == room + 1 ? room : pixel;
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
            .y = pointSize(primary).height() - (rect.bottom() - primary.origin.y()),
            .width = rect.width(),
            .height = rect.height()};
}

ScreenRect ScreenGeometry::frame(const NativeDisplay& display) const {
    return turnedOver(toolkitRect(display));
}

Screen ScreenGeometry::screen(const NativeDisplay& display) const {
    return {.identifier = display.identifier,
            .frame = frame(display),
            .visibleFrame = turnedOver(display.available.translated(display.origin)),
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

std::optional<QRect> ScreenGeometry::pixelsOf(std::uint32_t identifier) const {
    const auto display = std::ranges::find(m_displays, identifier, &NativeDisplay::identifier);
    if (display == m_displays.end())
        return {};
    return QRect(display->origin, display->pixels);
}

std::optional<QRect> ScreenGeometry::pixelsOfPicture(std::uint32_t identifier,
                                                     const std::optional<QRectF>& sourceRect,
                                                     QSize size) const {
    const auto display = std::ranges::find(m_displays, identifier, &NativeDisplay::identifier);
    if (display == m_displays.end())
        return {};
    QPoint corner;
    if (sourceRect)
        corner = {pictureCorner(sourceRect->x(), display->scale, display->pixels.width() - size.width()),
                  pictureCorner(sourceRect->y(), display->scale, display->pixels.height() - size.height())};
    return QRect(display->origin + corner, size);
}

QRectF ScreenGeometry::windowFrame(const QRect& pixels) const {
    if (m_displays.empty())
        return pixels;
    const auto& display = displayNearest(m_displays, pixels, pixelRect);
    const QPointF corner = QPointF(display.origin - m_displays[m_primary].origin) +
                           QPointF(pixels.topLeft() - display.origin) / display.scale;
    return {corner, QSizeF(points(pixels.width(), display.scale), points(pixels.height(), display.scale))};
}

bool ScreenGeometry::isSizeOfWindow(const QRect& pixels, QSize size) const {
    const auto frame = windowFrame(pixels);
    return std::ranges::any_of(m_displays, [&](const NativeDisplay& display) {
        return QSize(static_cast<int>(frame.width() * display.scale),
                     static_cast<int>(frame.height() * display.scale)) == size;
    });
}

QPointF ScreenGeometry::pointOfPixel(QPoint pixel) const {
    if (m_displays.empty())
        return {};
    const auto& display = displayNearest(m_displays, QRectF(pixel, QSizeF(1, 1)), pixelRect);
    const QPointF fromCorner = (QPointF(pixel - display.origin) + QPointF(0.5, 0.5)) / display.scale;
    const auto area = frame(display);
    return {area.x + fromCorner.x(), area.maxY() - fromCorner.y()};
}

QPointF ScreenGeometry::cornerOfPixel(std::uint32_t identifier, QPoint pixel) const {
    if (m_displays.empty())
        return {};
    const auto isOnDisplay = [this](QPoint other) {
        return std::ranges::any_of(m_displays, [other](const NativeDisplay& display) {
            return QRect(display.origin, display.pixels).contains(other);
        });
    };
    const auto own = std::ranges::find(m_displays, identifier, &NativeDisplay::identifier);
    const auto& display =
        own == m_displays.end() ? displayNearest(m_displays, QRectF(pixel, QSizeF(1, 1)), pixelRect) : *own;
    const QPoint outer(isOnDisplay(pixel + QPoint(1, 0)) ? 0 : 1, isOnDisplay(pixel + QPoint(0, 1)) ? 0 : 1);
    const QPointF fromCorner = QPointF(pixel + outer - display.origin) / display.scale;
    const auto area = frame(display);
    return {area.x + fromCorner.x(), area.maxY() - fromCorner.y()};
}

QPoint ScreenGeometry::pixelOfPoint(QPointF point) const {
    if (m_displays.empty())
        return {};
    const auto& origin = m_displays[m_primary].origin;
    const QPointF inToolkit(point.x() + origin.x(),
                            pointSize(m_displays[m_primary]).height() - point.y() + origin.y());
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
                           pointSize(primary).height() - rect.maxY() + primary.origin.y(), rect.width,
                           rect.height);
    const auto& display = displayNearest(m_displays, inToolkit, toolkitRect);
    return WindowPlace{
        .screen = display.identifier,
        .geometry = {qRound(inToolkit.x()), qRound(inToolkit.y()), qRound(rect.width), qRound(rect.height)}};
}

} // namespace kestrova
