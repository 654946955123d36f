#pragma once

#include "Platform/RunningApplication.h"

#include <QIcon>
#include <QUrl>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace kestrova {

/// What the desktop says of an application that is installed.
struct ApplicationDescription {
    /// In the person's language; not empty.
    QString name;
    /// Null if there is none that can be read.
    QIcon icon;
};

/// Keeps an observer of activations told for as long as it lives.
class ActivationObserver {
public:
    virtual ~ActivationObserver() = default;
};

/// The applications of the desktop. Main thread only.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// The application in front now; absent if no window has the focus.
    virtual std::optional<RunningApplication> frontmostApplication() const = 0;
    /// Tells each time another window has come to the front, of whichever application, this program's own
    /// left out.
    [[nodiscard]] virtual std::unique_ptr<ActivationObserver>
    observeActivations(std::function<void()> onDidActivate) = 0;
    /// The application's icon; a null icon if it has none that can be read.
    virtual QIcon icon(const RunningApplication& application) const = 0;
    /// The installed application with that identifier, as `RunningApplication` names it, running or not;
    /// absent if there is none. Answers from what has been read before where it can.
    virtual std::optional<ApplicationDescription> describe(const QString& bundleIdentifier) const = 0;
    /// What files of that kind look like on this desktop. The file is looked at beside the main thread;
    /// `done` is called in a later turn, with a null icon if the desktop has none. Nothing is called once the
    /// workspace has gone.
    virtual void fileIcon(const QString& path, std::function<void(const QIcon&)> done) = 0;
    /// Whether the process has ended; an identifier that was used again does not count as the same process.
    virtual bool isTerminated(const RunningApplication& application) const = 0;
    /// Asks for the application's remembered window to be in front; if that has gone, for its newest window;
    /// if it has none, nothing happens. The answer comes from the window manager, later or never.
    virtual void activate(const RunningApplication& application) = 0;
    /// Asks for a window of this program, in the host's own numbering, to have the keyboard, whatever other
    /// applications do.
    virtual void activateOwnWindow(std::uint64_t window) = 0;
    /// Opens it with the application that the person has chosen for such things. Where there is none, or it
    /// does not start, one line is logged.
    virtual void open(const QUrl& url) = 0;
    /// Shows the file in its folder, selected. Where no file manager can do that, opens the folder; so too if
    /// the file has gone. Comes back at once; a failure is logged.
    virtual void reveal(const QUrl& file) = 0;
};

} // namespace kestrova
