#pragma once

#include <cstdint>

namespace kestrova {

/// What the desktop uses a window for.
enum class WindowKind { ordinary, desktop, panel, notification, menu };

/// Where such windows are stacked: 0 for ordinary ones, below it for the desktop's own.
constexpr int windowLayer(WindowKind kind) {
    switch (kind) {
    case WindowKind::ordinary:
        return 0;
    case WindowKind::desktop:
        return -1;
    case WindowKind::panel:
        return 1;
    case WindowKind::notification:
        return 2;
    case WindowKind::menu:
        return 3;
    }
    return 0;
}

} // namespace kestrova
