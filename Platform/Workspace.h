#pragma once

#include "Platform/RunningApplication.h"

#include <QIcon>
#include <QUrl>

#include <cstdint>
#include <optional>

namespace kestrova {

/// The applications of the desktop. Main thread only.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// The application in front now; absent if no window has the focus.
    virtual std::optional<RunningApplication> frontmostApplication() const = 0;
    /// The application's icon; a null icon if it has none that can be read.
    virtual QIcon icon(const RunningApplication& application) const = 0;
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
