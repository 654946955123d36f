#pragma once

#include <QLoggingCategory>

namespace kestrova {

/// What goes wrong around the pasteboard. Contents of entries never go there.
Q_DECLARE_LOGGING_CATEGORY(lcPasteboard)

} // namespace kestrova
