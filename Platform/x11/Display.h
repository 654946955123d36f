#pragma once

#include <QString>

#include <optional>

namespace kestrova {

/// Why no window can be shown, for a person at a terminal; absent if all is well. To be asked before the
/// toolkit starts, which would end the process without a word of ours.
std::optional<QString> whyDisplayIsOutOfReach();

/// The number of the X screen that DISPLAY names; 0 if it names none.
int screenNumber();

/// Makes the toolkit talk to the X server, also where it would prefer another display. Before the toolkit
/// starts.
void chooseDisplayPlugin();

} // namespace kestrova
