#include "Kestrova/detail/text/TextScroll.h"

#include "Kestrova/detail/text/TextLineHeight.h"

#include <algorithm>
#include <cmath>

namespace kestrova {

void TextScroll::setHeight(int height) {
    if (m_height == height)
        return;
    m_height = height;
    relaid();
}

int TextScroll::lineHeight() const {
    return textLineHeight(m_layouts.style().font);
}

TextScroll::Place TextScroll::last() {
    if (!m_last) {
        const auto& piece = m_layouts.at(m_text.size());
        const int lastLine = piece.lineCount() - 1;
        m_last = moved({piece.lineStart(lastLine), piece.lineHeight(lastLine)}, -m_height);
    }
    return *m_last;
}

void TextScroll::moveTo(const Place& place) {
    m_place = std::min(normalized(place), last());
}

void TextScroll::scrollBy(int pixels) {
    moveTo(moved(m_place, pixels));
}

void TextScroll::reveal(qsizetype position) {
    const auto line = lineAt(position);
    const Place top{line.piece.lineStart(line.number), 0};
    const int height = line.piece.lineHeight(line.number);
    if (top <= m_place) {
        moveTo(top);
        return;
    }
    const auto bottom = moved({top.line, height}, -m_height);
    if (bottom > m_place)
        moveTo(std::min(bottom, top));
}

qsizetype TextScroll::unitsAbove(const Place& place) {
    const auto line = lineAt(place.line);
    const auto length = line.piece.lineEnd(line.number) - line.piece.lineStart(line.number);
    return place.line + length * place.above / line.piece.lineHeight(line.number);
}

void TextScroll::moveToUnits(qsizetype units) {
    const auto line = lineAt(units);
    const auto start = line.piece.lineStart(line.number);
    const auto length = line.piece.lineEnd(line.number) - start;
    const auto height = qsizetype{line.piece.lineHeight(line.number)};
    // Rounded up, so that the same units are above.
    const auto above = length > 0 ? ((units - start) * height + length - 1) / length : 0;
    moveTo({start, static_cast<int>(std::min(above, height - 1))});
}

void TextScroll::relaid() {
    m_last.reset();
    moveTo(m_place);
}

void TextScroll::edited(const LargeText::Change& change) {
    const auto end = change.position + change.removed;
    if (m_place.line >= end)
        m_place.line += change.inserted - change.removed;
    else if (m_place.line > change.position)
        m_place.line = change.position;
    relaid();
}

void TextScroll::forEachVisible(const std::function<void(const PieceLayout&, int)>& visit) {
    const auto first = lineAt(m_place.line);
    const PieceLayout* piece = &first.piece;
    int top = -piece->lineTop(first.number) - m_place.above;
    for (;;) {
        const auto bounds = piece->piece();
        const int bottom = top + piece->height();
        visit(*piece, top);
        const bool isLast = bounds.end >= m_text.size() && !bounds.endsParagraph();
        if (bottom >= m_height || isLast)
            return;
        top = bottom;
        piece = &m_layouts.at(bounds.end);
    }
}

qsizetype TextScroll::visibleEnd() {
    qsizetype end = 0;
    forEachVisible([&](const PieceLayout& piece, int) { end = piece.piece().end; });
    return end;
}

qsizetype TextScroll::positionAt(QPointF point) {
    const int y = std::clamp(static_cast<int>(std::floor(point.y())), 0, std::max(0, m_height - 1));
    qsizetype position = m_place.line;
    forEachVisible([&](const PieceLayout& piece, int top) {
        if (top <= y)
            position = piece.positionAt(piece.lineAt(y - top), point.x());
    });
    return position;
}

std::optional<QRectF> TextScroll::caretRect(qsizetype position, int composedUnits) {
    const auto of = m_layouts.pieces().at(position).start;
    std::optional<QRectF> rect;
    forEachVisible([&](const PieceLayout& piece, int top) {
        if (piece.piece().start != of)
            return;
        const int place = piece.inLayout(position) + composedUnits;
        const int line = piece.lineOfPlace(place);
        const QRectF found(piece.layout().lineAt(line).cursorToX(place), top + piece.lineTop(line), 1,
                           piece.lineHeight(line));
        if (found.bottom() > 0 && found.top() < m_height)
            rect = found;
    });
    return rect;
}

TextScroll::Line TextScroll::lineAt(qsizetype position) {
    const auto& piece = m_layouts.at(position);
    return {piece, piece.lineOf(position)};
}

TextScroll::Place TextScroll::normalized(const Place& place) {
    const auto line = lineAt(std::clamp(place.line, qsizetype{0}, m_text.size()));
    const int height = line.piece.lineHeight(line.number);
    return {line.piece.lineStart(line.number), std::clamp(place.above, 0, height - 1)};
}

TextScroll::Place TextScroll::moved(const Place& place, int pixels) {
    const auto start = lineAt(place.line);
    const PieceLayout* piece = &start.piece;
    int y = piece->lineTop(start.number) + place.above + pixels;
    while (y < 0 && piece->piece().start > 0) {
        piece = &m_layouts.at(piece->piece().start - 1);
        y += piece->height();
    }
    while (y >= piece->height()) {
        const auto bounds = piece->piece();
        if (bounds.end >= m_text.size() && !bounds.endsParagraph())
            break;
        y -= piece->height();
        piece = &m_layouts.at(bounds.end);
    }
    y = std::clamp(y, 0, piece->height() - 1);
    const int line = piece->lineAt(y);
    return {piece->lineStart(line), y - piece->lineTop(line)};
}

} // namespace kestrova
