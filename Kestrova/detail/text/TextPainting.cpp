#include "Kestrova/detail/text/TextPainting.h"

#include "Kestrova/detail/text/EditedText.h"
#include "Kestrova/detail/text/TextScroll.h"

#include <QPainter>
#include <QPalette>

#include <algorithm>

namespace kestrova {
namespace {

bool isMirrored(QChar character) {
    const auto direction = character.direction();
    // The scripts beyond the basic plane that run from right to left.
    const auto unit = character.unicode();
    const bool beginsMirrored = (unit >= 0xD802 && unit <= 0xD803) || (unit >= 0xD83A && unit <= 0xD83B);
    return beginsMirrored || direction == QChar::DirR || direction == QChar::DirAL ||
           direction == QChar::DirRLE || direction == QChar::DirRLO || direction == QChar::DirRLI;
}

void fill(QPainter& painter, double from, double to, double top, int height, const QColor& color) {
    painter.fillRect(QRectF(std::min(from, to), top, std::abs(to - from), height), color);
}

/// Where text runs in both directions, what is marked may lie in several places of a line.
bool hasMirrored(const PieceLayout& piece) {
    const auto text = piece.layout().text();
    return std::any_of(text.cbegin(), text.cend(), isMirrored);
}

/// The whole height of each line, so that what is marked has no gaps.
void fillLines(QPainter& painter, const PieceLayout& piece, int top, const TextSelection& selection,
               const QColor& color) {
    const int markedStart = piece.inLayout(selection.start());
    const int markedEnd = piece.inLayout(selection.end());
    for (int number = 0; number < piece.lineCount(); ++number) {
        const auto line = piece.layout().lineAt(number);
        const int start = std::max(markedStart, line.textStart());
        const int end = std::min(markedEnd, line.textStart() + line.textLength());
        if (start < end)
            fill(painter, line.cursorToX(start), line.cursorToX(end), top + piece.lineTop(number),
                 piece.lineHeight(number), color);
    }
}

/// A marked line end is shown as a little more of the line.
void fillLineEnd(QPainter& painter, const PieceLayout& piece, int top, const QColor& color) {
    const int number = piece.lineCount() - 1;
    const int height = piece.lineHeight(number);
    const double x = piece.xOf(piece.piece().textEnd);
    const double width = piece.isRightToLeft() ? -height / 3.0 : height / 3.0;
    fill(painter, x, x + width, top + piece.lineTop(number), height, color);
}

bool isMarked(const TextPiece& piece, const TextSelection& selection) {
    return selection.start() < std::max(piece.end, piece.start + 1) && selection.end() > piece.start;
}

} // namespace

void paintText(QPainter& painter, TextScroll& scroll, const TextSelection& selection, const QPalette& palette,
               const QRect& clip) {
    painter.setPen(palette.color(QPalette::Text));
    scroll.forEachVisible([&](const PieceLayout& piece, int top) {
        if (top > clip.bottom() || top + piece.height() < clip.top())
            return;
        QList<QTextLayout::FormatRange> marks;
        if (!selection.isEmpty() && isMarked(piece.piece(), selection)) {
            const auto ground = palette.color(QPalette::Highlight);
            QTextCharFormat format;
            format.setForeground(palette.color(QPalette::HighlightedText));
            if (hasMirrored(piece))
                format.setBackground(ground);
            else
                fillLines(painter, piece, top, selection, ground);
            const auto& bounds = piece.piece();
            if (bounds.endsParagraph() && selection.start() <= bounds.textEnd &&
                selection.end() > bounds.textEnd)
                fillLineEnd(painter, piece, top, ground);
            const int start = piece.inLayout(selection.start());
            const int length = piece.inLayout(selection.end()) - start;
            if (length > 0)
                marks.append({start, length, format});
        }
        piece.layout().draw(&painter, QPointF(0, top), marks, QRectF(clip));
    });
}

} // namespace kestrova
