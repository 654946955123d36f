#include "Platform/x11/PasteboardLog.h"

namespace kestrova {

Q_LOGGING_CATEGORY(lcPasteboard, "kestrova.pasteboard")

} // namespace kestrova
