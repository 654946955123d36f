#pragma once

#include "Platform/ScreenContent.h"
#include "Platform/Screens.h"

#include <QImage>

#include <optional>
#include <variant>

namespace kestrova {

/// A rectangle that was chosen.
struct AreaSelection {
    /// In global points.
    ScreenRect rect;
    /// The picture of the display as it was when the selection began, if the person chose in that.
    std::optional<QImage> frozen;
};
/// A window that was chosen.
struct WindowSelection {
    ShareableWindow window;
};
/// What a capture session ends in.
using CaptureSelection = std::variant<AreaSelection, WindowSelection>;

} // namespace kestrova
