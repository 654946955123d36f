#pragma once

#include <QtGlobal>

namespace kestrova {

class LargeText;

/// A stretch of text that is laid out by itself: a paragraph, or a part of a long one. `textEnd` is where its
/// line end begins, `end` lies behind that; they are the same where there is none.
struct TextPiece {
    qsizetype start = 0;
    qsizetype textEnd = 0;
    qsizetype end = 0;

    bool endsParagraph() const { return textEnd != end; }
    bool operator==(const TextPiece&) const = default;
};

/// Where the pieces of a text lie. They depend on the text alone, not on where one began to look, and looking
/// for one reads no more than some thousand units. Lines end at \n, \r\n, \r, U+2028 and U+2029.
class TextPieces {
public:
    /// The text outlives this.
    explicit TextPieces(const LargeText& text) : m_text(text) {}

    /// The piece that `position` lies in. What lies between two pieces belongs to the later one; behind a
    /// line end at the end of the text there is an empty piece.
    TextPiece at(qsizetype position) const;

    /// The paragraph around `position` without its line end, but no more than `longestParagraph` units in
    /// each direction: it may be all of the text.
    TextPiece paragraph(qsizetype position) const;

    /// Parts of long paragraphs are about as long as this, and never more than three times as long.
    static constexpr qsizetype partLength = 2048;
    static constexpr qsizetype longestParagraph = 1'000'000;

private:
    qsizetype cut(qsizetype window) const;
    qsizetype startOfPart(qsizetype position, qsizetype paragraphStart, qsizetype paragraphEnd) const;
    qsizetype endOfPart(qsizetype position, qsizetype paragraphStart, qsizetype paragraphEnd) const;
    qsizetype besideLineEnd(qsizetype position) const;
    qsizetype lineEndBefore(qsizetype position, qsizetype limit) const;
    qsizetype lineEndFrom(qsizetype position, qsizetype limit) const;

    const LargeText& m_text;
};

} // namespace kestrova
