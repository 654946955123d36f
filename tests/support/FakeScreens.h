#pragma once

#include "Platform/Screens.h"

#include <optional>
#include <vector>

namespace kestrova {

/// Displays as a test sets them.
class FakeScreens final : public Screens {
public:
    std::vector<Screen> screens() const override { return all; }
    std::optional<Screen> mainScreen() const override { return main; }
    QPointF mouseLocation() const override { return mouse; }

    std::vector<Screen> all{
        Screen{.identifier = 1, .frame = {0, 0, 1920, 1080}, .visibleFrame = {0, 0, 1920, 1000}, .scale = 1}};
    std::optional<Screen> main;
    // A screen whose points are the toolkit's.
    static QRect toolkitRect(const ScreenRect& frame) {
        return QRectF(frame.x, frame.y, frame.width, frame.height).toRect();
    }
    static ScreenRect screenRect(const QRect& rect) {
        return {double(rect.x()), double(rect.y()), double(rect.width()), double(rect.height())};
    }

    QPointF mouse{100, 100};
};

} // namespace kestrova
