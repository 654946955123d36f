#pragma once

#include "Platform/x11/AtspiElement.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace kestrova {

/// Whether a window with this title on the desktop is the one that the accessibility bus calls `name`:
/// toolkits add a dash
/// and the program's name to the title.
bool isWindowTitle(QStringView title, QStringView name);

/// The element of a process that has, or had last, the focus, in its window with that title; absent if the
/// process is not on the bus or has none.
std::optional<AtspiObject> focusedElement(const AtspiBus& bus, const FocusMemory& memory,
                                          std::int64_t processIdentifier, const QString& windowTitle,
                                          AtspiBus::Clock::time_point deadline);

} // namespace kestrova
