#pragma once

#include "Platform/Screens.h"

#include <QCoroTask>
#include <QImage>
#include <QRectF>
#include <QSize>
#include <QString>

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace kestrova {

/// A display whose pixels can be taken.
struct ShareableDisplay {
    std::uint32_t displayID = 0;
    /// In global points.
    ScreenRect frame;

    bool operator==(const ShareableDisplay&) const = default;
};

/// The application that shows a window.
struct SharingApplication {
    /// The desktop-entry identifier, else the window's class; empty if it has neither.
    QString bundleIdentifier;
    /// The name in the person's language, else the window's class.
    QString applicationName;

    bool operator==(const SharingApplication&) const = default;
};

/// A window whose pixels can be taken. A plain value; it does not follow what becomes of the window.
struct ShareableWindow {
    /// The number that the application's own window has, whatever the desktop draws around it.
    std::uint32_t windowID = 0;
    /// 0 for the windows that people work in; above it for panels, menus and notes, below it for the desktop.
    int windowLayer = 0;
    /// Neither minimised nor on another desktop.
    bool isOnScreen = false;
    /// With its decoration, without the shadow that it draws itself. In points, y downwards from the upper
    /// left corner of the primary display. Its width and its height, times the scale of the display that
    /// shows most of it and cut off to whole numbers, are the window's pixels.
    QRectF frame;
    /// As the desktop shows it.
    std::optional<QString> title;
    std::optional<SharingApplication> owningApplication;

    bool operator==(const ShareableWindow&) const = default;
};

/// What there is to take pictures of.
struct ShareableContent {
    std::vector<ShareableDisplay> displays;
    /// In no particular order.
    std::vector<ShareableWindow> windows;
};

/// A display, without some windows: they are not in the picture, and what they cover is.
struct DisplayFilter {
    std::uint32_t displayID = 0;
    std::vector<std::uint32_t> excludedWindowIDs;

    bool operator==(const DisplayFilter&) const = default;
};
/// One window, whatever covers it, with its own transparency.
struct WindowFilter {
    std::uint32_t windowID = 0;

    bool operator==(const WindowFilter&) const = default;
};
using ContentFilter = std::variant<DisplayFilter, WindowFilter>;

struct PictureConfiguration {
    /// The part of a display to take, in points, y downwards from the display's upper left corner; all of it
    /// if absent.
    std::optional<QRectF> sourceRect;
    /// The size of the picture. Nothing is scaled: what is smaller is filled up with transparency, what is
    /// larger is cut off, both at the right and at the bottom. But a window's picture has the window's own
    /// pixels, no more and no less, if its frame at the scale of any display gives this size.
    QSize pixels;

    bool operator==(const PictureConfiguration&) const = default;
};

struct ContentInfo {
    /// What a picture of it shows, in global points. It divides the display's pixels exactly.
    ScreenRect contentRect;
    /// Pixels per point.
    double pointPixelScale = 1;
};

/// Why the host gave no picture.
class ScreenContentError : public std::runtime_error {
public:
    enum class Code { displayGone, windowGone, windowNotReadable, noPicture };

    ScreenContentError(Code code, const std::string& description)
        : std::runtime_error(description), m_code(code) {}

    Code code() const { return m_code; }

private:
    Code m_code;
};

/// The pixels of displays and windows. Main thread only; the work is done elsewhere, and what is awaited goes
/// on on the main thread. No picture shows the mouse pointer.
class ScreenContent {
public:
    virtual ~ScreenContent() = default;

    /// Whether this program may take pictures of the screen; asks nobody.
    virtual bool preflightAccess() const = 0;
    /// Lets the host ask the person for the permission.
    virtual void requestAccess() = 0;

    /// Throws ScreenContentError.
    virtual QCoro::Task<ShareableContent> shareableContent() = 0;
    /// The numbers of the windows on the screen, the desktop's own left out, from the front to the back.
    virtual std::vector<std::uint32_t> windowOrder() const = 0;
    /// Of a display that is there; empty if it has gone.
    virtual ContentInfo info(const DisplayFilter& filter) const = 0;
    /// In the screen's own colours, opaque for a display. Throws ScreenContentError.
    virtual QCoro::Task<QImage> captureImage(ContentFilter filter, PictureConfiguration configuration) = 0;
};

} // namespace kestrova
