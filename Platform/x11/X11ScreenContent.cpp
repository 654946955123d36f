#include "Platform/x11/X11ScreenContent.h"

#include "Platform/MainQueue.h"
#include "Platform/RunningApplication.h"
#include "Platform/x11/CaptureThread.h"
#include "Platform/x11/CapturedPictures.h"
#include "Platform/x11/FrontmostApplication.h"
#include "Platform/x11/OwnWindows.h"
#include "Platform/x11/PixelReader.h"
#include "Platform/x11/SceneComposition.h"
#include "Platform/x11/ScreenCover.h"
#include "Platform/x11/ScreenGeometry.h"
#include "Platform/x11/ToolkitConnection.h"
#include "Platform/x11/X11Screens.h"
#include "Platform/x11/X11Windows.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace kestrova {

namespace {

using Code = ScreenContentError::Code;

std::optional<SharingApplication> owner(const X11Windows& windows, xcb_window_t window,
                                        DesktopEntries& entries, const QString& ownBundleIdentifier) {
    const auto application = applicationOfWindow(windows, window, entries, ownBundleIdentifier);
    if (!application)
        return {};
    return SharingApplication{.bundleIdentifier = application->bundleIdentifier.value_or(QString()),
                              .applicationName = application->localizedName};
}

std::vector<ShareableWindow> shareableWindows(const CaptureConnection& connection,
                                              const ScreenGeometry& geometry, DesktopEntries& entries,
                                              const QString& ownBundleIdentifier) {
    const X11Windows asked(connection.get());
    std::vector<ShareableWindow> windows;
    for (const auto& each : WindowList(connection.get(), connection.screen()).windows()) {
        const auto title = asked.title(each.window);
        windows.push_back({.windowID = each.window,
                           .windowLayer = each.layer,
                           .isOnScreen = each.isOnScreen,
                           .frame = geometry.windowFrame(each.pixels),
                           .title = title.isEmpty() ? std::nullopt : std::optional(title),
                           .owningApplication = owner(asked, each.window, entries, ownBundleIdentifier)});
    }
    return windows;
}

/// A picture of `area` of the desktop, which need not lie on the display; what does not is transparent.
QImage displayPicture(CaptureConnection& connection, const QRect& display, const QRect& area,
                      const std::vector<std::uint32_t>& excluded) {
    const auto part = area & display;
    if (part.isEmpty())
        return fitted({}, {}, area.size());
    return fitted(screenPicture(connection, part, excluded), part.topLeft() - area.topLeft(), area.size());
}

} // namespace

X11ScreenContent::X11ScreenContent(MainQueue& mainQueue, DesktopEntries& entries, QString bundleIdentifier)
    : m_mainQueue(mainQueue),
      m_entries(entries),
      m_bundleIdentifier(std::move(bundleIdentifier)),
      m_awaited(std::make_unique<AwaitedWork>()),
      m_thread(std::make_unique<CaptureThread>()) {
    if (auto* const connection = toolkitConnection())
        m_windows.emplace(connection, screenOf(connection));
}

X11ScreenContent::~X11ScreenContent() {
    // Frames that unwind may still ask for something.
    m_thread->stop();
    m_awaited->close();
}

bool X11ScreenContent::preflightAccess() const {
    auto* const connection = toolkitConnection();
    if (!connection)
        return false;
    const auto screen = screenOf(connection);
    return PixelReader::canRead(connection, screen.root_depth) &&
           !isScreenCovered(connection, screen.root, OwnWindows{connection});
}

template<typename T>
AwaitedWork::Result<T> X11ScreenContent::onThread(std::function<T(CaptureConnection&)> find) {
    using Settle = typename AwaitedWork::Result<T>::Settle;
    return m_awaited->result<T>(m_mainQueue, [this, find = std::move(find)](Settle settle) {
        m_thread->submit([find, settle = std::move(settle)](CaptureConnection* connection) {
            settle([&] {
                if (!connection)
                    throw ScreenContentError(Code::noPicture, "the X server cannot be reached");
                return find(*connection);
            });
        });
    });
}

QCoro::Task<ShareableContent> X11ScreenContent::shareableContent() {
    const auto geometry = X11Screens::geometry();
    ShareableContent content;
    for (const auto& screen : geometry.screens())
        content.displays.push_back({.displayID = screen.identifier, .frame = screen.frame});
    auto windows = onThread<std::vector<ShareableWindow>>(
        [geometry, &entries = m_entries, own = m_bundleIdentifier](CaptureConnection& connection) {
            return shareableWindows(connection, geometry, entries, own);
        });
    content.windows = co_await windows;
    co_return content;
}

std::vector<std::uint32_t> X11ScreenContent::windowOrder() const {
    std::vector<std::uint32_t> order;
    if (!m_windows)
        return order;
    const auto listed = m_windows->windows();
    for (const auto& window : std::views::reverse(listed)) {
        if (window.isOnScreen && window.layer >= 0)
            order.push_back(window.window);
    }
    return order;
}

ContentInfo X11ScreenContent::info(const DisplayFilter& filter) const {
    const auto screens = X11Screens::geometry().screens();
    const auto screen = std::ranges::find(screens, filter.displayID, &Screen::identifier);
    if (screen == screens.end())
        return {};
    return {.contentRect = screen->frame, .pointPixelScale = screen->scale};
}

QCoro::Task<QImage> X11ScreenContent::captureImage(ContentFilter filter, PictureConfiguration configuration) {
    if (const auto* const window = std::get_if<WindowFilter>(&filter)) {
        auto picture = onThread<QImage>([id = window->windowID, size = configuration.pixels,
                                         geometry = X11Screens::geometry()](CaptureConnection& connection) {
            const auto taken = windowPicture(connection, id);
            return geometry.isSizeOfWindow(taken.pixels, size) ? taken.image : fitted(taken.image, {}, size);
        });
        co_return co_await picture;
    }
    const auto& display = std::get<DisplayFilter>(filter);
    const auto geometry = X11Screens::geometry();
    const auto pixels = geometry.pixelsOf(display.displayID);
    const auto area =
        geometry.pixelsOfPicture(display.displayID, configuration.sourceRect, configuration.pixels);
    if (!pixels || !area)
        throw ScreenContentError(Code::displayGone, "the display is no longer there");
    // Apart from what awaits it: the compiler destroys captures of a temporary in such an expression twice.
    auto picture = onThread<QImage>([pixels = *pixels, area = *area,
                                     excluded = display.excludedWindowIDs](CaptureConnection& connection) {
        return displayPicture(connection, pixels, area, excluded);
    });
    co_return co_await picture;
}

} // namespace kestrova
