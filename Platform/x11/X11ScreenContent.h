#pragma once

#include "Platform/ScreenContent.h"
#include "Platform/x11/AwaitedWork.h"
#include "Platform/x11/WindowList.h"

#include <QString>

#include <memory>
#include <optional>

namespace kestrova {

class CaptureConnection;
class CaptureThread;
class DesktopEntries;

/// The screen as the X server has it. Pixels and windows are fetched on a thread and a connection of their
/// own; the order of the windows, and where displays are, on the toolkit's. Where the toolkit does not run on
/// X11 there is nothing to take pictures of.
class X11ScreenContent final : public ScreenContent {
public:
    /// `mainQueue` and `entries` outlive the object.
    X11ScreenContent(MainQueue& mainQueue, DesktopEntries& entries, QString bundleIdentifier);
    X11ScreenContent(const X11ScreenContent&) = delete;
    X11ScreenContent& operator=(const X11ScreenContent&) = delete;
    /// Frames that still wait are resumed with MainQueueClosed.
    ~X11ScreenContent() override;

    /// The X server asks nobody; but it may keep the screen's pixels in a way that is not known here. Behind
    /// a screen locker there is no access: whoever can run a command there would see what it hides.
    bool preflightAccess() const override;
    void requestAccess() override {}

    QCoro::Task<ShareableContent> shareableContent() override;
    std::vector<std::uint32_t> windowOrder() const override;
    ContentInfo info(const DisplayFilter& filter) const override;
    QCoro::Task<QImage> captureImage(ContentFilter filter, PictureConfiguration configuration) override;

private:
    /// `find` is called on the thread, and its result or exception is what `co_await` gives.
    template<typename T>
    AwaitedWork::Result<T> onThread(std::function<T(CaptureConnection&)> find);

    MainQueue& m_mainQueue;
    DesktopEntries& m_entries;
    const QString m_bundleIdentifier;
    std::optional<WindowList> m_windows;
    std::unique_ptr<AwaitedWork> m_awaited;
    std::unique_ptr<CaptureThread> m_thread;
};

} // namespace kestrova
