#include "Platform/x11/X11Workspace.h"

#include "Platform/x11/DesktopEntries.h"
#include "Platform/x11/DesktopIcons.h"
#include "Platform/x11/FrontmostApplication.h"
#include "Platform/x11/InstalledApplications.h"
#include "Platform/x11/ToolkitConnection.h"

#include <QFileInfo>
#include <QLoggingCategory>

#include <utility>

namespace kestrova {

namespace {

Q_LOGGING_CATEGORY(lcWorkspace, "kestrova.workspace")

} // namespace

X11Workspace::X11Workspace(MainQueue& mainQueue, DesktopEntries& entries, QString bundleIdentifier)
    : m_entries(entries), m_bundleIdentifier(std::move(bundleIdentifier)), m_fileTypes(mainQueue) {
    chooseFallbackIconTheme();
    if (auto* const connection = toolkitConnection())
        m_windows.emplace(connection);
    else
        qCWarning(lcWorkspace, "[Workspace] No X11 display: no application is known to be in front");
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() const {
    return m_windows ? kestrova::frontmostApplication(*m_windows, m_entries, m_bundleIdentifier)
                     : std::nullopt;
}

std::unique_ptr<ActivationObserver> X11Workspace::observeActivations(std::function<void()> onDidActivate) {
    return m_activations.observe(std::move(onDidActivate));
}

QIcon X11Workspace::icon(const RunningApplication& application) const {
    return iconNamed(application.iconName);
}

std::optional<ApplicationDescription> X11Workspace::describe(const QString& bundleIdentifier) const {
    const auto entry = m_entries.entryNamed(bundleIdentifier);
    if (!entry || entry->name.isEmpty())
        return std::nullopt;
    return ApplicationDescription{.name = entry->name, .icon = iconNamed(entry->iconName)};
}

void X11Workspace::fileIcon(const QString& path, std::function<void(const QIcon&)> done) {
    m_fileTypes.find(
        path, [done = std::move(done)](const QMimeType& type) { done(firstThemeIcon(iconNamesOf(type))); });
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
    if (const auto window = m_windows->windowOf(application); window != XCB_NONE)
        m_windows->bringToFront(window);
}

void X11Workspace::activateOwnWindow(std::uint64_t window) {
    if (m_windows)
        m_windows->bringToFront(static_cast<xcb_window_t>(window));
}

void X11Workspace::open(const QUrl& url) {
    if (const auto application = defaultApplicationFor(url))
        application->open(url);
}

void X11Workspace::reveal(const QUrl& file) {
    const auto folder = file.adjusted(QUrl::StripTrailingSlash).adjusted(QUrl::RemoveFilename);
    if (file.isLocalFile() && !QFileInfo::exists(file.toLocalFile()))
        open(folder);
    else
        m_fileManager.show(file, [this, folder] { open(folder); });
}

} // namespace kestrova
