#pragma once

#include <QString>

namespace kestrova {

/// Equality that costs nothing for a text and its copy, however long it is: it is asked at each rendering.
inline bool isSameText(const QString& a, const QString& b) {
    return a.size() == b.size() && (a.constData() == b.constData() || a == b);
}

} // namespace kestrova
