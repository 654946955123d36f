#pragma once

#include <QtGlobal>

#include <cstddef>
#include <span>
#include <vector>

namespace kestrova {

/// A stretch of one of the sources that a text is put together from, in UTF-16 units.
struct SourcePiece {
    std::size_t source = 0;
    qsizetype offset = 0;
    qsizetype length = 0;

    bool operator==(const SourcePiece&) const = default;
};

using SourcePieces = std::vector<SourcePiece>;

/// The pieces of a text, in order. Looking a position up costs the logarithm of their number, and so little
/// an edit near the one before it; one elsewhere moves past the pieces between the two.
class PieceSequence {
public:
    /// Of the text, in UTF-16 units.
    qsizetype size() const { return reach(m_before) + reach(m_after); }
    std::size_t count() const { return m_before.size() + m_after.size(); }
    /// The piece that holds the position, from there on. Within the text.
    SourcePiece from(qsizetype position) const;
    /// Gives back what it has taken out.
    SourcePieces replace(qsizetype position, qsizetype removed, std::span<const SourcePiece> inserted);

private:
    /// How much text there is from its end of the sequence up to here, this piece included.
    struct Placed {
        SourcePiece piece;
        qsizetype reach = 0;
    };
    using Side = std::vector<Placed>;

    static qsizetype reach(const Side& side) { return side.empty() ? 0 : side.back().reach; }
    static void push(Side& side, const SourcePiece& piece);
    void pushBefore(const SourcePiece& piece);
    void pushAfter(const SourcePiece& piece);
    SourcePiece popBefore(qsizetype atMost);
    SourcePiece popAfter(qsizetype atMost);
    void moveGap(qsizetype position);

    // The last of each lies next to the gap, which is where the last edit was. Neither side's reaches change
    // by what is edited there.
    Side m_before;
    Side m_after;
};

} // namespace kestrova
