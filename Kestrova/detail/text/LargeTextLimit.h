#pragma once

#include <QStringView>

namespace kestrova {

/// Whether the toolkit's own text controls would take too long for the text: it is very long, or a paragraph
/// of it is, since they lay out a paragraph at once. Reads no more of it than they could take.
bool needsLargeTextControl(QStringView text);

} // namespace kestrova
