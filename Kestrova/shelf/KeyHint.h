#pragma once

#include "Kestrova/shelf/ShelfTypes.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace kestrova {

class ClipboardItem;

/// A key and what it does, as the hint bar tells it.
struct KeyHint {
    /// Names of the symbols on the keycap; the letter follows them.
    QStringList symbols;
    /// May be empty.
    QString letter;
    QString label;

    bool operator==(const KeyHint&) const = default;
};

/// What keys do to `item` while the lists are shown in that way, in the order in which it is told.
std::vector<KeyHint> keyHints(const ClipboardItem& item, ShelfViewMode mode);

} // namespace kestrova
