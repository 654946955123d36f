#pragma once

#include "Platform/Workspace.h"
#include "Platform/x11/ActivationNotices.h"
#include "Platform/x11/FileManager.h"
#include "Platform/x11/FileTypeFinder.h"
#include "Platform/x11/X11Windows.h"

#include <QString>

#include <optional>

namespace kestrova {

class DesktopEntries;

/// The applications as the window manager and the desktop entries tell them, on the toolkit's own connection.
/// Where the toolkit does not run on X11 no application is ever in front.
class X11Workspace final : public Workspace {
public:
    /// `mainQueue` and `entries` outlive the object.
    X11Workspace(MainQueue& mainQueue, DesktopEntries& entries, QString bundleIdentifier);

    std::optional<RunningApplication> frontmostApplication() const override;
    std::unique_ptr<ActivationObserver> observeActivations(std::function<void()> onDidActivate) override;
    QIcon icon(const RunningApplication& application) const override;
    std::optional<ApplicationDescription> describe(const QString& bundleIdentifier) const override;
    void fileIcon(const QString& path, std::function<void(const QIcon&)> done) override;
    bool isTerminated(const RunningApplication& application) const override;
    void activate(const RunningApplication& application) override;
    void activateOwnWindow(std::uint64_t window) override;
    void open(const QUrl& url) override;
    void reveal(const QUrl& file) override;

private:
    DesktopEntries& m_entries;
    const QString m_bundleIdentifier;
    std::optional<X11Windows> m_windows;
    ActivationNotices m_activations;
    FileManager m_fileManager;
    FileTypeFinder m_fileTypes;
};

} // namespace kestrova
