#pragma once

#include "Kestrova/detail/text/PieceLayouts.h"

namespace kestrova {

/// Where keys take the caret. Left and right are those of the screen's direction of reading.
enum class TextMove {
    left,
    right,
    wordLeft,
    wordRight,
    lineStart,
    lineEnd,
    lineUp,
    lineDown,
    pageUp,
    pageDown,
    paragraphStart,
    paragraphEnd,
    documentStart,
    documentEnd,
};

/// Moves of a caret over a text that is laid out around it.
class TextMoves {
public:
    /// Both outlive this.
    TextMoves(const LargeText& text, PieceLayouts& layouts) : m_text(text), m_layouts(layouts) {}

    /// By what a person takes for one character; a line end is one.
    qsizetype next(qsizetype position);
    qsizetype previous(qsizetype position);
    /// Where deleting backwards goes: to `previous`, but one of so many marks that nobody could write them
    /// anew goes mark by mark.
    qsizetype previousToDelete(qsizetype position);
    qsizetype nextWord(qsizetype position);
    qsizetype previousWord(qsizetype position);

    /// `x` is where moves up and down try to stay, `page` how many pixels a page has.
    qsizetype moved(qsizetype position, TextMove move, double x, int page);

    /// The word at the place, or the blanks or the single sign; for double clicks.
    TextPiece wordAt(qsizetype position);

private:
    qsizetype byLines(qsizetype position, int pixels, double x);
    bool isLast(const TextPiece& piece) const;

    const LargeText& m_text;
    PieceLayouts& m_layouts;
};

/// Whether moves of that kind go up or down, and so keep their place in the lines.
bool isVertical(TextMove move);

} // namespace kestrova
