#include "Platform/x11/FrontmostApplication.h"

#include "Platform/x11/DesktopEntries.h"
#include "Platform/x11/X11Windows.h"

#include <QCoreApplication>

namespace kestrova {

std::optional<RunningApplication> applicationOfWindow(const X11Windows& windows, std::uint32_t window,
                                                      DesktopEntries& entries,
                                                      const QString& ownBundleIdentifier) {
    const auto facts = windows.facts(window);
    if (!facts)
        return {};
    const auto& windowClass = facts->windowClass;
    RunningApplication application;
    application.window = window;
    application.processIdentifier = facts->processIdentifier;
    application.localizedName = windowClass.name.isEmpty() ? windowClass.instance : windowClass.name;
    if (!application.localizedName.isEmpty())
        application.bundleIdentifier = application.localizedName;
    QString executable;
    if (facts->processIdentifier != 0) {
        application.processStartTime = processStartTime(facts->processIdentifier);
        executable = executableName(facts->processIdentifier);
    }
    if (const auto entry = entries.entryFor(windowClass, executable)) {
        application.bundleIdentifier = entry->identifier;
        if (!entry->name.isEmpty())
            application.localizedName = entry->name;
        application.iconName = entry->iconName;
    }
    if (facts->processIdentifier == QCoreApplication::applicationPid())
        application.bundleIdentifier = ownBundleIdentifier;
    return application;
}

std::optional<RunningApplication> frontmostApplication(const X11Windows& windows, DesktopEntries& entries,
                                                       const QString& ownBundleIdentifier) {
    const auto window = windows.activeWindow();
    if (window == XCB_NONE)
        return {};
    return applicationOfWindow(windows, window, entries, ownBundleIdentifier);
}

} // namespace kestrova
