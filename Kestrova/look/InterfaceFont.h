#pragma once

#include <QFont>

namespace kestrova {

/// The desktop's font. `size` is what it would be if the desktop's ordinary text had 13 points.
QFont interfaceFont(double size, QFont::Weight weight = QFont::Normal);
/// The same of the desktop's font for code.
QFont fixedInterfaceFont(double size);
/// A length in whole points that grows with the desktop's font but never gets shorter than `points`.
int interfaceLength(double points);

} // namespace kestrova
