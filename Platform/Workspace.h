#pragma once

#include "Platform/RunningApplication.h"

#include <QIcon>

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
};

} // namespace kestrova
