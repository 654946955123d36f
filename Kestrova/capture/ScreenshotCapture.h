#pragma once

#include "Platform/ScreenContent.h"
#include "Platform/Screens.h"

#include <QCoroTask>
#include <QImage>
#include <QRectF>
#include <QSize>

#include <cstdint>
#include <exception>
#include <map>
#include <optional>
#include <set>

namespace kestrova::ScreenshotCapture {

/// Why there is no picture, where it is not the host that refuses.
class CaptureError : public std::exception {
public:
    enum class Case { noDisplay, emptyRect, permissionDenied };

    explicit CaptureError(Case error) : m_error(error) {}
    const char* what() const noexcept override;

    Case error() const { return m_error; }

private:
    Case m_error;
};

/// Windows that must never appear in a picture of a display. Main thread only.
inline std::set<std::uint32_t> excludedWindowIDs;

/// Where a rectangle lies on a display, and how large its picture becomes.
struct CropPlan {
    /// In points, y downwards from the display's upper left corner.
    QRectF sourceRect;
    QSize pixels;

    bool operator==(const CropPlan&) const = default;
};

/// Absent if a rectangle is empty, if they do not meet, or if the scale is not above 0. Both rectangles are
/// in global points.
std::optional<CropPlan> cropPlan(const ScreenRect& rect, const ScreenRect& displayRect, double scale);
/// Pixels per point of the display on which the window lies; else of the main screen; else 2.
double windowScale(const ShareableWindow& window, const Screens& screens);

/// What follows is for the main thread; it suspends where the host is awaited, and throws ScreenContentError
/// or CaptureError. The ports outlive the task.

/// Every display that has pixels, by its identifier. One that fails makes all of it fail, once the others
/// have ended.
QCoro::Task<std::map<std::uint32_t, QImage>> captureAllDisplays(ScreenContent& content,
                                                                const Screens& screens);
/// `rect` in global points, cut to the first display that it touches.
QCoro::Task<QImage> captureArea(ScreenContent& content, const Screens& screens, ScreenRect rect);
QCoro::Task<QImage> captureWindow(ScreenContent& content, const Screens& screens, ShareableWindow window);
QCoro::Task<QImage> captureDisplay(ScreenContent& content, Screen screen);
/// `rect`, in global points, cut from the picture that was taken of the first display that it touches. Does
/// not wait.
QImage cropFrozen(const QImage& image, const ScreenRect& rect, const Screens& screens);

} // namespace kestrova::ScreenshotCapture
