#include "Kestrova/detail/text/PieceLayout.h"

#include "Kestrova/detail/text/TextLineHeight.h"

#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace kestrova {
namespace {

/// As wide as in the toolkit's own text controls.
constexpr double tabWidth = 80;

} // namespace

PieceLayout::PieceLayout(const TextPiece& piece, const QString& text, const Style& style,
                         const Composition& composed)
    : m_piece(piece), m_composed(composed), m_layout(std::make_unique<QTextLayout>(text, style.font)) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTabStopDistance(tabWidth);
    m_layout->setTextOption(option);
    m_layout->setCacheEnabled(true);
    if (!composed.text.isEmpty()) {
        const auto place = static_cast<int>(composed.position - piece.start);
        m_layout->setPreeditArea(place, composed.text);
        auto formats = composed.formats;
        for (auto& format : formats)
            format.start += place;
        m_layout->setFormats(formats);
    }
    lay(style);
}

void PieceLayout::lay(const Style& style) {
    const int slot = textLineHeight(style.font);
    int top = 0;
    m_tops.push_back(top);
    m_layout->beginLayout();
    for (auto line = m_layout->createLine(); line.isValid(); line = m_layout->createLine()) {
        line.setLineWidth(style.width);
        const int height = std::max(slot, static_cast<int>(std::ceil(line.height())));
        line.setPosition({0, top + std::floor((height - line.height()) / 2)});
        top += height;
        m_tops.push_back(top);
    }
    m_layout->endLayout();
}

bool PieceLayout::isRightToLeft() const {
    return m_layout->text().isRightToLeft();
}

qsizetype PieceLayout::lineStart(int line) const {
    return inText(m_layout->lineAt(line).textStart());
}

qsizetype PieceLayout::lineEnd(int line) const {
    const auto textLine = m_layout->lineAt(line);
    return inText(textLine.textStart() + textLine.textLength());
}

int PieceLayout::lineOfPlace(int place) const {
    const auto line = m_layout->lineForTextPosition(place);
    return line.isValid() ? line.lineNumber() : lineCount() - 1;
}

int PieceLayout::lineAt(int y) const {
    const auto below = std::upper_bound(m_tops.begin(), m_tops.end(), y);
    const auto line = static_cast<int>(below - m_tops.begin()) - 1;
    return std::clamp(line, 0, lineCount() - 1);
}

qsizetype PieceLayout::positionAt(int line, double x) const {
    const auto textLine = m_layout->lineAt(line);
    int position = textLine.xToCursor(x);
    const bool isOnNext = line + 1 < lineCount() && position >= textLine.textStart() + textLine.textLength();
    if (isOnNext)
        position = std::max(textLine.textStart(), m_layout->previousCursorPosition(position));
    return inText(position);
}

double PieceLayout::xOf(qsizetype position) const {
    return m_layout->lineAt(lineOf(position)).cursorToX(inLayout(position));
}

int PieceLayout::inLayout(qsizetype position) const {
    const auto place = std::clamp(position, m_piece.start, m_piece.textEnd) - m_piece.start;
    const auto composed = position > m_composed.position ? m_composed.text.size() : 0;
    return static_cast<int>(place + composed);
}

qsizetype PieceLayout::inText(int layoutPosition) const {
    auto position = m_piece.start + layoutPosition;
    if (position > m_composed.position)
        position = std::max(m_composed.position, position - m_composed.text.size());
    return std::min(position, m_piece.textEnd);
}

void PieceLayout::shift(qsizetype by) {
    m_piece.start += by;
    m_piece.textEnd += by;
    m_piece.end += by;
    if (!m_composed.text.isEmpty())
        m_composed.position += by;
}

} // namespace kestrova
