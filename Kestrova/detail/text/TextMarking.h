#pragma once

#include "Kestrova/detail/text/EditedText.h"
#include "Kestrova/detail/text/TextMoves.h"

namespace kestrova {

/// What a pointer marks: from where it was pressed to where it has been dragged, by characters, words or
/// paragraphs according to how often it was pressed.
class TextMarking {
public:
    enum class By { characters, words, paragraphs };

    /// Both outlive this.
    TextMarking(EditedText& text, TextMoves& moves, const TextPieces& pieces)
        : m_text(text), m_moves(moves), m_pieces(pieces) {}

    void begin(qsizetype position, By by);
    /// Goes on with what is marked already.
    void extend(qsizetype position);
    void dragTo(qsizetype position);

private:
    TextPiece unitAt(qsizetype position);

    EditedText& m_text;
    TextMoves& m_moves;
    const TextPieces& m_pieces;
    By m_by = By::characters;
    TextPiece m_first;
};

} // namespace kestrova
