#include "Platform/x11/X11Workspace.h"

#include "Platform/x11/FrontmostApplication.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLoggingCategory>

namespace kestrova {

namespace {
Q_LOGGING_CATEGORY(lcWorkspace, "kestrova.workspace")
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

} // namespace kestrova
