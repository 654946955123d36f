#pragma once

#include "Kestrova/detail/text/LargeText.h"
#include "Kestrova/detail/text/PieceLayout.h"
#include "Kestrova/detail/text/TextPieces.h"

#include <map>

namespace kestrova {

/// The layouts of the pieces that were looked at last. Each is made when it is asked for.
class PieceLayouts {
public:
    /// The text outlives this. Pieces are laid out with what the text is when they are asked for.
    explicit PieceLayouts(const LargeText& text) : m_text(text), m_pieces(text) {}

    const TextPieces& pieces() const { return m_pieces; }

    void setStyle(const PieceLayout::Style& style);
    const PieceLayout::Style& style() const { return m_style; }
    void setComposition(const PieceLayout::Composition& composed) { m_composed = composed; }
    const PieceLayout::Composition& composition() const { return m_composed; }

    /// Stays valid until the next edit, change of style or composition, or `keepOnly`.
    const PieceLayout& at(qsizetype position);

    /// Tells of an edit, so that what lies behind it need not be laid out again.
    void edited(const LargeText::Change& change);
    void clear() { m_layouts.clear(); }
    /// Forgets what lies wholly outside.
    void keepOnly(qsizetype from, qsizetype to);

    /// Of what is laid out now.
    qsizetype units() const;

private:
    PieceLayout::Composition compositionIn(const TextPiece& piece) const;

    const LargeText& m_text;
    TextPieces m_pieces;
    PieceLayout::Style m_style;
    PieceLayout::Composition m_composed;
    std::map<qsizetype, PieceLayout> m_layouts;
};

} // namespace kestrova
