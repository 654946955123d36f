#include "Kestrova/detail/text/TextStretch.h"

#include "Kestrova/detail/text/PieceLayouts.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace kestrova {
namespace {

TextStretch between(QTextBoundaryFinder::BoundaryType type, const LargeText& text, const TextPiece& piece,
                    qsizetype position) {
    const auto local = text.mid(piece.start, piece.end - piece.start);
    QTextBoundaryFinder boundaries(type, local);
    const auto place = std::clamp(position - piece.start, qsizetype{0}, local.size());
    boundaries.setPosition(place);
    const auto start = boundaries.isAtBoundary() ? place : boundaries.toPreviousBoundary();
    boundaries.setPosition(place);
    const auto end = boundaries.toNextBoundary();
    return {piece.start + std::max(qsizetype{0}, start), end < 0 ? piece.end : piece.start + end};
}

} // namespace

TextStretch textStretchAt(const LargeText& text, PieceLayouts& layouts, qsizetype position,
                          QAccessible::TextBoundaryType boundary) {
    const auto& layout = layouts.at(position);
    const auto& piece = layout.piece();
    switch (boundary) {
    case QAccessible::CharBoundary:
        return between(QTextBoundaryFinder::Grapheme, text, piece, position);
    case QAccessible::WordBoundary:
        return between(QTextBoundaryFinder::Word, text, piece, position);
    case QAccessible::SentenceBoundary:
        return between(QTextBoundaryFinder::Sentence, text, piece, position);
    case QAccessible::LineBoundary: {
        const int line = layout.lineOf(position);
        const bool isLast = line == layout.lineCount() - 1;
        return {layout.lineStart(line), isLast ? piece.end : layout.lineEnd(line)};
    }
    case QAccessible::ParagraphBoundary: {
        const auto paragraph = layouts.pieces().paragraph(position);
        return {paragraph.start, std::max(paragraph.end, piece.end)};
    }
    case QAccessible::NoBoundary:
        break;
    }
    return {piece.start, piece.end};
}

} // namespace kestrova
