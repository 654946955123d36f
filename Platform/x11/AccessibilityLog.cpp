#include "Platform/x11/AccessibilityLog.h"

namespace kestrova {

Q_LOGGING_CATEGORY(lcAccessibility, "kestrova.accessibility")

} // namespace kestrova
