#pragma once

#include "Platform/ScreenContent.h"
#include "tests/support/HeldAnswers.h"

#include <QColor>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <variant>
#include <vector>

namespace kestrova {

/// The pixels of displays and windows as a test sets them. Answers at once, without suspending, unless it is
/// told to hold.
class FakeScreenContent final : public ScreenContent {
public:
    struct Capture {
        ContentFilter filter;
        PictureConfiguration configuration;

        bool operator==(const Capture&) const = default;
    };

    bool preflightAccess() const override { return hasAccess; }
    void requestAccess() override { ++accessRequests; }

    QCoro::Task<ShareableContent> shareableContent() override {
        ++contentRequests;
        if (holdsContent)
            co_await heldContent.next();
        if (contentError)
            std::rethrow_exception(contentError);
        // A copy: the library moves out of what has a name.
        co_return ShareableContent(content);
    }

    std::vector<std::uint32_t> windowOrder() const override { return order; }

    ContentInfo info(const DisplayFilter& filter) const override {
        infoRequests.push_back(filter);
        if (const auto set = infos.find(filter.displayID); set != infos.end())
            return set->second;
        const auto display =
            std::ranges::find(content.displays, filter.displayID, &ShareableDisplay::displayID);
        return display == content.displays.end() ? ContentInfo{} : ContentInfo{.contentRect = display->frame};
    }

    QCoro::Task<QImage> captureImage(ContentFilter filter, PictureConfiguration configuration) override {
        captures.push_back({filter, configuration});
        if (holdsPictures)
            co_await heldPictures.next();
        if (pictureError)
            std::rethrow_exception(pictureError);
        co_return picture(filter, configuration);
    }

    static QImage filled(QSize pixels, const QColor& color = Qt::gray) {
        QImage image(pixels, QImage::Format_RGB32);
        image.fill(color);
        return image;
    }

    /// A display that shows all of its frame.
    void add(std::uint32_t displayID, const ScreenRect& frame, double scale = 1) {
        content.displays.push_back({displayID, frame});
        infos[displayID] = {frame, scale};
    }

    bool hasAccess = true;
    ShareableContent content;
    std::vector<std::uint32_t> order;
    /// Of displays whose information is not their frame at scale 1.
    std::map<std::uint32_t, ContentInfo> infos;
    std::function<QImage(const ContentFilter&, const PictureConfiguration&)> picture =
        [](const ContentFilter&, const PictureConfiguration& configuration) {
            return filled(configuration.pixels);
        };
    /// Thrown instead of every answer while set; an answer that is held can fail by itself as well.
    std::exception_ptr contentError;
    std::exception_ptr pictureError;

    bool holdsContent = false;
    bool holdsPictures = false;

    int accessRequests = 0;
    int contentRequests = 0;
    std::vector<Capture> captures;
    mutable std::vector<DisplayFilter> infoRequests;

    /// The n-th question that was held is the n-th here. They go first: what they unwind sees the rest.
    HeldAnswers heldContent;
    HeldAnswers heldPictures;
};

/// As the host throws it.
inline std::exception_ptr screenContentError(ScreenContentError::Code code) {
    return std::make_exception_ptr(ScreenContentError(code, "as the test wants it"));
}

} // namespace kestrova
