#include "Kestrova/detail/text/PieceLayouts.h"

#include <numeric>
#include <utility>

namespace kestrova {

void PieceLayouts::setStyle(const PieceLayout::Style& style) {
    if (m_style == style)
        return;
    m_style = style;
    clear();
}

PieceLayout::Composition PieceLayouts::compositionIn(const TextPiece& piece) const {
    const bool isHere = !m_composed.text.isEmpty() && m_pieces.at(m_composed.position).start == piece.start;
    return isHere ? m_composed : PieceLayout::Composition{};
}

const PieceLayout& PieceLayouts::at(qsizetype position) {
    const auto piece = m_pieces.at(position);
    const auto text = m_text.mid(piece.start, piece.textEnd - piece.start);
    const auto composed = compositionIn(piece);
    const auto known = m_layouts.find(piece.start);
    if (known != m_layouts.end()) {
        const auto& layout = known->second;
        if (layout.piece() == piece && layout.composed() == composed && layout.layout().text() == text)
            return layout;
        m_layouts.erase(known);
    }
    return m_layouts.try_emplace(piece.start, piece, text, m_style, composed).first->second;
}

void PieceLayouts::edited(const LargeText::Change& change) {
    const auto shift = change.inserted - change.removed;
    auto behind = m_layouts.lower_bound(change.position + change.removed);
    std::map<qsizetype, PieceLayout> shifted;
    while (behind != m_layouts.end()) {
        auto node = m_layouts.extract(behind++);
        node.key() += shift;
        node.mapped().shift(shift);
        shifted.insert(std::move(node));
    }
    // What the edit went through is gone; what begins before it is compared when it is asked for.
    m_layouts.erase(m_layouts.upper_bound(change.position), m_layouts.end());
    m_layouts.merge(shifted);
}

void PieceLayouts::keepOnly(qsizetype from, qsizetype to) {
    std::erase_if(m_layouts, [&](const auto& entry) {
        const auto& piece = entry.second.piece();
        return piece.end < from || piece.start > to;
    });
}

qsizetype PieceLayouts::units() const {
    return std::accumulate(m_layouts.begin(), m_layouts.end(), qsizetype{0},
                           [](qsizetype sum, const auto& entry) {
                               // An empty line costs about as much as some words.
                               constexpr qsizetype least = 32;
                               return sum + least + entry.second.piece().end - entry.second.piece().start;
                           });
}

} // namespace kestrova
