#pragma once

#include "Platform/Screens.h"
#include "Platform/x11/ScreenGeometry.h"
#include "Platform/x11/X11Windows.h"

#include <optional>

class QScreen;

namespace kestrova {

/// The displays as the toolkit reads them from the X server, looked at anew with each question.
class X11Screens final : public Screens {
public:
    X11Screens();

    std::vector<Screen> screens() const override;
    std::optional<Screen> mainScreen() const override;
    QPointF mouseLocation() const override;

    /// The displays as they are now.
    static ScreenGeometry geometry();
    /// Null if it has gone.
    static QScreen* toolkitScreen(std::uint32_t identifier);

private:
    std::optional<X11Windows> m_windows;
};

} // namespace kestrova
