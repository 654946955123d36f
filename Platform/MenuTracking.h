#pragma once

#include <functional>

namespace kestrova {

/// Tells when a menu of this program is open, the status item's included where this program draws it. Main
/// thread only.
class MenuTracking {
public:
    virtual ~MenuTracking() = default;

    /// The first menu has opened.
    std::function<void()> onDidBegin;
    /// The last menu has closed.
    std::function<void()> onDidEnd;
};

} // namespace kestrova
