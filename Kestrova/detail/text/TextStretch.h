#pragma once

#include <QAccessible>

namespace kestrova {

class LargeText;
class PieceLayouts;

struct TextStretch {
    qsizetype start = 0;
    qsizetype end = 0;

    bool operator==(const TextStretch&) const = default;
};

/// The character, word, sentence, line or paragraph that `position` is in. Words and sentences end with the
/// piece that is laid out at the latest; so does a text that is asked for without any boundary.
TextStretch textStretchAt(const LargeText& text, PieceLayouts& layouts, qsizetype position,
                          QAccessible::TextBoundaryType boundary);

} // namespace kestrova
