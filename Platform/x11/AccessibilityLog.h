#pragma once

#include <QLoggingCategory>

namespace kestrova {

/// What goes wrong with the elements of other applications. Their texts never go there.
Q_DECLARE_LOGGING_CATEGORY(lcAccessibility)

} // namespace kestrova
