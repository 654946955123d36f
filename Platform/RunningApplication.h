#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace kestrova {

/// One application as it was when it was asked for: a process and, of that process, the window in front.
/// A plain value; it does not follow what becomes of the application.
struct RunningApplication {
    /// 0 where the window does not tell.
    std::int64_t processIdentifier = 0;
    /// When the process started, in the system's clock ticks since boot, so that a process identifier that
    /// was used again is not taken for the same application. 0 where it is unknown.
    std::uint64_t processStartTime = 0;
    /// The window, in the host's own numbering.
    std::uint32_t window = 0;
    /// The desktop-entry identifier (file name without ".desktop"), else the window's class; absent if it has
    /// neither.
    std::optional<QString> bundleIdentifier;
    /// The name in the person's language, else the window's class.
    QString localizedName;
    /// Theme name or absolute path of the icon; empty if there is none.
    QString iconName;

    bool operator==(const RunningApplication&) const = default;
};

} // namespace kestrova
