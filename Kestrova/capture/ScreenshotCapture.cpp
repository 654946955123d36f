#include "Kestrova/capture/ScreenshotCapture.h"

#include "Kestrova/capture/DisplayCoordinates.h"

#include <QRect>

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>
#include <vector>

namespace kestrova::ScreenshotCapture {

namespace {

constexpr double scaleWithoutScreens = 2;

int rounded(double pixels) {
    return static_cast<int>(std::round(pixels));
}

/// The host's lengths in points never fall below the whole pixels that they stand for.
int truncated(double pixels) {
    return static_cast<int>(pixels);
}

QSize atLeastOne(QSize pixels) {
    return pixels.expandedTo(QSize(1, 1));
}

PictureConfiguration everything(QSize pixels) {
    return {.sourceRect = std::nullopt, .pixels = pixels};
}

/// A part of a display, from the display's upper left corner, y downwards.
QRectF localRect(const ScreenRect& part, const ScreenRect& display) {
    return {part.x - display.x, display.maxY() - part.maxY(), part.width, part.height};
}

Screen screenOf(const ScreenRect& rect, const Screens& screens) {
    if (const auto touched = firstScreenTouching(rect, screens))
        return *touched;
    if (const auto main = screens.mainScreen())
        return *main;
    throw CaptureError(CaptureError::Case::noDisplay);
}

bool shows(const ShareableContent& content, const Screen& screen) {
    return std::ranges::find(content.displays, screen.identifier, &ShareableDisplay::displayID) !=
           content.displays.end();
}

std::vector<std::uint32_t> ownWindows(const ShareableContent& content) {
    std::vector<std::uint32_t> own;
    for (const auto& window : content.windows) {
        if (excludedWindowIDs.contains(window.windowID))
            own.push_back(window.windowID);
    }
    return own;
}

DisplayFilter displayFilter(const ShareableContent& content, const Screen& screen) {
    if (!shows(content, screen))
        throw CaptureError(CaptureError::Case::noDisplay);
    return {screen.identifier, ownWindows(content)};
}

struct DisplayExtent {
    ScreenRect rect;
    double scale = 1;
};

/// The host knows better than the screen what its picture shows; what it does not know comes from the screen.
DisplayExtent extent(const ContentInfo& info, const Screen& screen) {
    return {isEmpty(info.contentRect) ? screen.frame : info.contentRect,
            info.pointPixelScale > 0 ? info.pointPixelScale : screen.scale};
}

/// What the pictures of several displays come to.
struct Snapshots {
    std::map<std::uint32_t, QImage> images;
    std::exception_ptr firstError;
};

QCoro::Task<> snapshot(ScreenContent& content, DisplayFilter filter, PictureConfiguration configuration,
                       std::shared_ptr<Snapshots> into) {
    const auto displayID = filter.displayID;
    try {
        auto image = co_await content.captureImage(std::move(filter), configuration);
        into->images.insert_or_assign(displayID, std::move(image));
    } catch (const ScreenContentError&) {
        if (!into->firstError)
            into->firstError = std::current_exception();
    }
}

} // namespace

const char* CaptureError::what() const noexcept {
    switch (m_error) {
    case Case::noDisplay:
        return "There is no display to take a picture of";
    case Case::emptyRect:
        return "The rectangle shows nothing of a display";
    case Case::permissionDenied:
        return "This program may not take pictures of the screen";
    }
    return "Unknown capture error";
}

std::optional<CropPlan> cropPlan(const ScreenRect& rect, const ScreenRect& displayRect, double scale) {
    if (!(scale > 0))
        return std::nullopt;
    const auto part = intersection(rect, displayRect);
    if (!part)
        return std::nullopt;
    return CropPlan{localRect(*part, displayRect),
                    atLeastOne({rounded(scale * part->width), rounded(scale * part->height)})};
}

double windowScale(const ShareableWindow& window, const Screens& screens) {
    if (!primaryDisplay(screens))
        return scaleWithoutScreens;
    if (const auto shown = firstScreenTouching(globalToAppKit(window.frame, screens), screens))
        return shown->scale;
    const auto main = screens.mainScreen();
    return main ? main->scale : scaleWithoutScreens;
}

QCoro::Task<std::map<std::uint32_t, QImage>> captureAllDisplays(ScreenContent& content,
                                                                const Screens& screens) {
    const auto shareable = co_await content.shareableContent();
    const auto excluded = ownWindows(shareable);
    const auto snapshots = std::make_shared<Snapshots>();
    std::vector<QCoro::Task<>> running;
    for (const auto& screen : screens.screens()) {
        if (!shows(shareable, screen))
            continue;
        const auto configuration = everything(
            {truncated(screen.scale * screen.frame.width), truncated(screen.scale * screen.frame.height)});
        running.push_back(snapshot(content, {screen.identifier, excluded}, configuration, snapshots));
    }
    for (auto& each : running)
        co_await each;
    if (snapshots->firstError)
        std::rethrow_exception(snapshots->firstError);
    co_return std::move(snapshots->images);
}

QCoro::Task<QImage> captureArea(ScreenContent& content, const Screens& screens, ScreenRect rect) {
    const auto shareable = co_await content.shareableContent();
    const auto screen = screenOf(rect, screens);
    auto filter = displayFilter(shareable, screen);
    const auto display = extent(content.info(filter), screen);
    const auto plan = cropPlan(rect, display.rect, display.scale);
    if (!plan)
        throw CaptureError(CaptureError::Case::emptyRect);
    const PictureConfiguration configuration{.sourceRect = plan->sourceRect, .pixels = plan->pixels};
    co_return co_await content.captureImage(std::move(filter), configuration);
}

QCoro::Task<QImage> captureWindow(ScreenContent& content, const Screens& screens, ShareableWindow window) {
    const double scale = windowScale(window, screens);
    const auto configuration =
        everything({truncated(scale * window.frame.width()), truncated(scale * window.frame.height())});
    co_return co_await content.captureImage(WindowFilter{window.windowID}, configuration);
}

QCoro::Task<QImage> captureDisplay(ScreenContent& content, Screen screen) {
    const auto shareable = co_await content.shareableContent();
    auto filter = displayFilter(shareable, screen);
    const auto display = extent(content.info(filter), screen);
    const auto configuration = everything(atLeastOne(
        {rounded(display.scale * display.rect.width), rounded(display.scale * display.rect.height)}));
    co_return co_await content.captureImage(std::move(filter), configuration);
}

QImage cropFrozen(const QImage& image, const ScreenRect& rect, const Screens& screens) {
    const auto screen = screenOf(rect, screens);
    const auto part = intersection(rect, screen.frame);
    if (!part)
        throw CaptureError(CaptureError::Case::emptyRect);
    const auto local = localRect(*part, screen.frame);
    const auto pixels = QRect(rounded(screen.scale * local.x()), rounded(screen.scale * local.y()),
                              rounded(screen.scale * local.width()), rounded(screen.scale * local.height()))
                            .intersected(image.rect());
    auto cut = pixels.isEmpty() ? QImage() : image.copy(pixels);
    // A part without pixels, or no memory for them.
    if (cut.isNull())
        throw CaptureError(CaptureError::Case::emptyRect);
    return cut;
}

} // namespace kestrova::ScreenshotCapture
