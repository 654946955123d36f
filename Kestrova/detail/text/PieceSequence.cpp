#include "Kestrova/detail/text/PieceSequence.h"

#include <algorithm>

namespace kestrova {
namespace {

bool goesOn(const SourcePiece& first, const SourcePiece& second) {
    return first.source == second.source && first.offset + first.length == second.offset;
}

} // namespace

SourcePiece PieceSequence::from(qsizetype position) const {
    Q_ASSERT(position >= 0 && position < size());
    if (position < reach(m_before)) {
        const auto found = std::ranges::upper_bound(m_before, position, {}, &Placed::reach);
        const auto left = found->reach - position;
        return {found->piece.source, found->piece.offset + found->piece.length - left, left};
    }
    const auto toTheEnd = size() - position;
    const auto found = std::ranges::lower_bound(m_after, toTheEnd, {}, &Placed::reach);
    const auto passed = found->reach - toTheEnd;
    return {found->piece.source, found->piece.offset + passed, found->piece.length - passed};
}

SourcePieces PieceSequence::replace(qsizetype position, qsizetype removed,
                                    std::span<const SourcePiece> inserted) {
    Q_ASSERT(position >= 0 && removed >= 0 && position + removed <= size());
    moveGap(position);
    SourcePieces taken;
    while (removed > 0) {
        taken.push_back(popAfter(removed));
        removed -= taken.back().length;
    }
    for (const auto& piece : inserted)
        pushBefore(piece);
    if (!m_before.empty() && !m_after.empty() && goesOn(m_before.back().piece, m_after.back().piece))
        pushBefore(popAfter(m_after.back().piece.length));
    return taken;
}

void PieceSequence::push(Side& side, const SourcePiece& piece) {
    side.push_back({piece, reach(side) + piece.length});
}

void PieceSequence::pushBefore(const SourcePiece& piece) {
    if (m_before.empty() || !goesOn(m_before.back().piece, piece)) {
        push(m_before, piece);
        return;
    }
    m_before.back().piece.length += piece.length;
    m_before.back().reach += piece.length;
}

void PieceSequence::pushAfter(const SourcePiece& piece) {
    if (m_after.empty() || !goesOn(piece, m_after.back().piece)) {
        push(m_after, piece);
        return;
    }
    m_after.back().piece.offset -= piece.length;
    m_after.back().piece.length += piece.length;
    m_after.back().reach += piece.length;
}

SourcePiece PieceSequence::popBefore(qsizetype atMost) {
    auto& [piece, reach] = m_before.back();
    const auto length = std::min(atMost, piece.length);
    const SourcePiece popped{piece.source, piece.offset + piece.length - length, length};
    piece.length -= length;
    reach -= length;
    if (piece.length == 0)
        m_before.pop_back();
    return popped;
}

SourcePiece PieceSequence::popAfter(qsizetype atMost) {
    auto& [piece, reach] = m_after.back();
    const auto length = std::min(atMost, piece.length);
    const SourcePiece popped{piece.source, piece.offset, length};
    piece.offset += length;
    piece.length -= length;
    reach -= length;
    if (piece.length == 0)
        m_after.pop_back();
    return popped;
}

void PieceSequence::moveGap(qsizetype position) {
    while (reach(m_before) > position)
        pushAfter(popBefore(reach(m_before) - position));
    while (reach(m_before) < position)
        pushBefore(popAfter(position - reach(m_before)));
}

} // namespace kestrova
