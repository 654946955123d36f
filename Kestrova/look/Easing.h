#pragma once

#include "Platform/Animation.h"

#include <QEasingCurve>

namespace kestrova {

/// The toolkit's curve for a timing.
QEasingCurve::Type easing(AnimationTiming timing);

} // namespace kestrova
