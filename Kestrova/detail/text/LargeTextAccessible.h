#pragma once

#include "Kestrova/detail/text/LargeText.h"

namespace kestrova {

class LargeTextEdit;

/// Lets programs for people who cannot see read such a text, by the stretch that they ask for. May be called
/// again.
void installLargeTextAccessibility();

/// Nothing while there is no such program.
void tellReadersOfEdit(LargeTextEdit& edit, const LargeText::Change& change, const QString& removed);
void tellReadersOfSelection(LargeTextEdit& edit);

} // namespace kestrova
