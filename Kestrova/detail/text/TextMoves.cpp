#include "Kestrova/detail/text/TextMoves.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace kestrova {

bool isVertical(TextMove move) {
    return move == TextMove::lineUp || move == TextMove::lineDown || move == TextMove::pageUp ||
           move == TextMove::pageDown;
}

bool TextMoves::isLast(const TextPiece& piece) const {
    return piece.end >= m_text.size() && !piece.endsParagraph();
}

qsizetype TextMoves::next(qsizetype position) {
    const auto& piece = m_layouts.at(position);
    if (position >= piece.piece().textEnd)
        return piece.piece().end;
    return std::max(position + 1, piece.inText(piece.layout().nextCursorPosition(piece.inLayout(position))));
}

qsizetype TextMoves::previous(qsizetype position) {
    if (position <= 0)
        return 0;
    const auto& piece = m_layouts.at(position);
    if (position > piece.piece().start)
        return piece.inText(piece.layout().previousCursorPosition(piece.inLayout(position)));
    const auto& before = m_layouts.at(position - 1);
    if (before.piece().endsParagraph())
        return before.piece().textEnd;
    return before.inText(before.layout().previousCursorPosition(before.inLayout(before.piece().textEnd)));
}

qsizetype TextMoves::previousToDelete(qsizetype position) {
    // The longest signs that are written at once, as families are, take about half of that.
    constexpr qsizetype longestAtOnce = 32;
    const auto start = previous(position);
    if (position - start <= longestAtOnce)
        return start;
    const bool isPair = m_text.at(position - 1).isLowSurrogate() && m_text.at(position - 2).isHighSurrogate();
    return position - (isPair ? 2 : 1);
}

qsizetype TextMoves::nextWord(qsizetype position) {
    const auto& piece = m_layouts.at(position);
    if (position >= piece.piece().textEnd)
        return piece.piece().end;
    const int end = piece.layout().nextCursorPosition(piece.inLayout(position), QTextLayout::SkipWords);
    return std::max(position + 1, piece.inText(end));
}

qsizetype TextMoves::previousWord(qsizetype position) {
    if (position <= 0)
        return 0;
    const auto& piece = m_layouts.at(position);
    if (position == piece.piece().start)
        return previous(position);
    return piece.inText(
        piece.layout().previousCursorPosition(piece.inLayout(position), QTextLayout::SkipWords));
}

qsizetype TextMoves::moved(qsizetype position, TextMove move, double x, int page) {
    const auto& piece = m_layouts.at(position);
    const bool isMirrored = piece.isRightToLeft();
    const int line = piece.lineOf(position);
    switch (move) {
    case TextMove::left:
        return isMirrored ? next(position) : previous(position);
    case TextMove::right:
        return isMirrored ? previous(position) : next(position);
    case TextMove::wordLeft:
        return isMirrored ? nextWord(position) : previousWord(position);
    case TextMove::wordRight:
        return isMirrored ? previousWord(position) : nextWord(position);
    case TextMove::lineStart:
        return piece.lineStart(line);
    case TextMove::lineEnd:
        // What lies between two lines is on the later one.
        return line + 1 < piece.lineCount() || !(piece.piece().endsParagraph() || isLast(piece.piece()))
                   ? std::max(piece.lineStart(line), previous(piece.lineEnd(line)))
                   : piece.lineEnd(line);
    case TextMove::lineUp:
        return byLines(position, -1, x);
    case TextMove::lineDown:
        return byLines(position, piece.lineHeight(line), x);
    case TextMove::pageUp:
        return byLines(position, -page, x);
    case TextMove::pageDown:
        return byLines(position, page, x);
    case TextMove::paragraphStart: {
        const auto start = m_layouts.pieces().paragraph(position).start;
        return start < position ? start : m_layouts.pieces().paragraph(previous(position)).start;
    }
    case TextMove::paragraphEnd: {
        const auto end = m_layouts.pieces().paragraph(position).textEnd;
        return end > position ? end : m_layouts.pieces().paragraph(next(position)).textEnd;
    }
    case TextMove::documentStart:
        return 0;
    case TextMove::documentEnd:
        return m_text.size();
    }
    return position;
}

qsizetype TextMoves::byLines(qsizetype position, int pixels, double x) {
    const auto* piece = &m_layouts.at(position);
    int y = piece->lineTop(piece->lineOf(position)) + pixels;
    while (y < 0 && piece->piece().start > 0) {
        piece = &m_layouts.at(piece->piece().start - 1);
        y += piece->height();
    }
    while (y >= piece->height() && !isLast(piece->piece())) {
        y -= piece->height();
        piece = &m_layouts.at(piece->piece().end);
    }
    const bool isBeyondText = y < 0 || y >= piece->height();
    if (isBeyondText && pixels < 0)
        return 0;
    if (isBeyondText)
        return m_text.size();
    return piece->positionAt(piece->lineAt(y), x);
}

TextPiece TextMoves::wordAt(qsizetype position) {
    const auto& piece = m_layouts.at(position);
    const auto bounds = piece.piece();
    const auto text = m_text.mid(bounds.start, bounds.textEnd - bounds.start);
    if (text.isEmpty())
        return {bounds.start, bounds.start, bounds.start};
    const auto place = std::min(position - bounds.start, text.size() - 1);
    QTextBoundaryFinder words(QTextBoundaryFinder::Word, text);
    words.setPosition(place);
    auto start = words.isAtBoundary() ? place : words.toPreviousBoundary();
    start = std::max(qsizetype{0}, start);
    words.setPosition(place);
    auto end = words.toNextBoundary();
    if (end < 0)
        end = text.size();
    return {bounds.start + start, bounds.start + end, bounds.start + end};
}

} // namespace kestrova
