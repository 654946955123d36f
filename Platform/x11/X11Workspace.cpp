#include "Platform/x11/X11Workspace.h"

#include "Platform/x11/FrontmostApplication.h"
#include "Platform/x11/InstalledApplications.h"
#include "Platform/x11/ToolkitConnection.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QMimeDatabase>

#include <utility>

namespace kestrova {

namespace {

Q_LOGGING_CATEGORY(lcWorkspace, "kestrova.workspace")

} // namespace

X11Workspace::X11Workspace(DesktopEntries& entries, QString bundleIdentifier)
    : m_entries(entries), m_bundleIdentifier(std::move(bundleIdentifier)) {
    if (auto* const connection = toolkitConnection())
        m_windows.emplace(connection);
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

std::optional<ApplicationDescription> X11Workspace::describe(const QString& bundleIdentifier) const {
    const auto application = installedApplication(bundleIdentifier);
    if (!application)
        return std::nullopt;
    return ApplicationDescription{application->name(), application->icon()};
}

void X11Workspace::fileIcon(const QString& path, std::function<void(const QIcon&)> done) {
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [done = std::move(done),
         name = QMimeDatabase().mimeTypeForFile(path, QMimeDatabase::MatchExtension).iconName()] {
            done(QIcon::fromTheme(name));
        },
        Qt::QueuedConnection);
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
