#include "Platform/x11/X11Screens.h"

#include "Platform/x11/NativeMonitors.h"
#include "Platform/x11/ToolkitConnection.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace kestrova {

namespace {

/// Stays the same while the display is plugged in, whatever comes and goes beside it.
std::uint32_t identifierOf(const QScreen& screen) {
    return static_cast<std::uint32_t>(qHash(screen.name(), std::size_t{0}));
}

/// The displays in the server's pixels. The toolkit tells whole points only, which say all of it where no
/// display is scaled; then the server is not asked.
std::vector<NativeMonitor> monitorsOf(const QList<QScreen*>& screens) {
    auto* const connection = toolkitConnection();
    const auto isScaled = [](const QScreen* screen) { return screen->devicePixelRatio() != 1; };
    if (!connection || std::ranges::none_of(screens, isScaled))
        return {};
    return nativeMonitors(connection, screenOf(connection).root);
}

NativeDisplay nativeDisplay(const QScreen& screen, const NativeMonitor* monitor) {
    const auto geometry = screen.geometry();
    const auto scale = screen.devicePixelRatio();
    const auto pixels = monitor ? monitor->pixels.size() : (QSizeF(geometry.size()) * scale).toSize();
    const auto exact = QSizeF(pixels) / scale;
    QRectF available(screen.availableGeometry().translated(-geometry.topLeft()));
    // An edge without a panel is the display's own, which the toolkit has rounded.
    if (available.right() == geometry.width())
        available.setRight(exact.width());
    if (available.bottom() == geometry.height())
        available.setBottom(exact.height());
    return {.identifier = identifierOf(screen),
            .origin = geometry.topLeft(),
            .pixels = pixels,
            .available = available,
            .scale = scale};
}

} // namespace

X11Screens::X11Screens() {
    if (auto* const connection = toolkitConnection())
        m_windows.emplace(connection);
}

ScreenGeometry X11Screens::geometry() {
    std::vector<NativeDisplay> displays;
    const auto screens = QGuiApplication::screens();
    const auto monitors = monitorsOf(screens);
    for (const auto* const screen : screens) {
        const auto corner = screen->geometry().topLeft();
        displays.push_back(
            nativeDisplay(*screen, monitorOfScreen(monitors, screen->name().toUtf8(), corner)));
    }
    const auto primary = screens.indexOf(QGuiApplication::primaryScreen());
    return ScreenGeometry(std::move(displays), static_cast<std::size_t>(std::max(primary, qsizetype{0})));
}

QScreen* X11Screens::toolkitScreen(std::uint32_t identifier) {
    const auto screens = QGuiApplication::screens();
    const auto found = std::ranges::find_if(
        screens, [identifier](const QScreen* screen) { return identifierOf(*screen) == identifier; });
    return found == screens.end() ? nullptr : *found;
}

std::vector<Screen> X11Screens::screens() const {
    return geometry().screens();
}

std::optional<Screen> X11Screens::mainScreen() const {
    const auto displays = geometry();
    if (const xcb_window_t window = m_windows ? m_windows->activeWindow() : xcb_window_t{XCB_NONE};
        window != XCB_NONE) {
        if (const auto rectangle = m_windows->rectangle(window))
            return displays.screenOfPixels(*rectangle);
    }
    return displays.primaryScreen();
}

QPointF X11Screens::mouseLocation() const {
    return geometry().pointOfToolkit(QCursor::pos());
}

} // namespace kestrova
