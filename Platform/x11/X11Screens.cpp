#include "Platform/x11/X11Screens.h"

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

NativeDisplay nativeDisplay(const QScreen& screen) {
    const auto geometry = screen.geometry();
    return {.identifier = identifierOf(screen),
            .origin = geometry.topLeft(),
            .size = geometry.size(),
            .available = screen.availableGeometry().translated(-geometry.topLeft()),
            .scale = screen.devicePixelRatio()};
}

} // namespace

X11Screens::X11Screens() {
    if (auto* const connection = toolkitConnection())
        m_windows.emplace(connection);
}

ScreenGeometry X11Screens::geometry() {
    std::vector<NativeDisplay> displays;
    const auto screens = QGuiApplication::screens();
    for (const auto* const screen : screens)
        displays.push_back(nativeDisplay(*screen));
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
