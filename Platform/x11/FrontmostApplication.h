#pragma once

#include "Platform/RunningApplication.h"

#include <QString>

#include <optional>

namespace kestrova {

class DesktopEntries;
class X11Windows;

/// The application that shows `window`; absent if the window has gone. The process that asks is
/// `ownBundleIdentifier`, whatever its windows say.
std::optional<RunningApplication> applicationOfWindow(const X11Windows& windows, std::uint32_t window,
                                                      DesktopEntries& entries,
                                                      const QString& ownBundleIdentifier);

/// The application in front now; absent if no window is. On the thread that owns the connection of `windows`.
std::optional<RunningApplication> frontmostApplication(const X11Windows& windows, DesktopEntries& entries,
                                                       const QString& ownBundleIdentifier);

} // namespace kestrova
