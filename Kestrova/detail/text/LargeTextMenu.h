#pragma once

class QMenu;

namespace kestrova {

class LargeTextEdit;

/// What a person can do with the text now, in the words of the toolkit's own text controls. Belongs to the
/// control.
QMenu* makeLargeTextMenu(LargeTextEdit& edit);

} // namespace kestrova
