#include "Platform/x11/X11Workspace.h"

#include "Platform/x11/FrontmostApplication.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLoggingCategory>

#include <algorithm>

namespace kestrova {

namespace {

Q_LOGGING_CATEGORY(lcWorkspace, "kestrova.workspace")

/// The application's remembered window, else its newest one; XCB_NONE if it has none.
xcb_window_t windowToActivate(const X11Windows& windows, const RunningApplication& application) {
    // The server gives the number of a window that has gone to another one.
    const auto isOfApplication = [&](xcb_window_t window) {
        const auto facts = windows.facts(window);
        return facts && facts->processIdentifier == application.processIdentifier;
    };
    if (application.window != XCB_NONE && isOfApplication(application.window))
        return application.window;
    if (application.processIdentifier == 0)
        return XCB_NONE;
    const auto clients = windows.clientList();
    const auto newest = std::ranges::find_if(clients.rbegin(), clients.rend(), isOfApplication);
    return newest == clients.rend() ? XCB_NONE : *newest;
}

} // namespace

X11Workspace::X11Workspace(DesktopEntries& entries, QString bundleIdentifier)
    : m_entries(entries), m_bundleIdentifier(std::move(bundleIdentifier)) {
    if (const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        m_windows.emplace(x11->connection());
    else
        qCWarning(lcWorkspace, "[Workspace] No X11 display: no application is known to be in front");
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() const {
    return m_windows ? kestrova::frontmostApplication(*m_windows, m_entries, m_bundleIdentifier)
                     : std::nullopt;
}

QIcon X11Workspace::icon(const RunningApplication& application) const {
    const auto& name = application.iconName;
    if (name.isEmpty())
        return {};
    if (QDir::isAbsolutePath(name))
        return QFileInfo(name).isFile() ? QIcon(name) : QIcon();
    return QIcon::fromTheme(name);
}

bool X11Workspace::isTerminated(const RunningApplication& application) const {
    // A process of another machine or another process namespace has a number but no start time here.
    if (application.processIdentifier != 0 && application.processStartTime != 0)
        return processStartTime(application.processIdentifier) != application.processStartTime;
    return !m_windows || !m_windows->facts(application.window);
}

void X11Workspace::activate(const RunningApplication& application) {
    if (!m_windows || isTerminated(application))
        return;
    if (const auto window = windowToActivate(*m_windows, application); window != XCB_NONE)
        m_windows->bringToFront(window);
}

void X11Workspace::activateOwnWindow(std::uint64_t window) {
    if (m_windows)
        m_windows->bringToFront(static_cast<xcb_window_t>(window));
}

} // namespace kestrova
