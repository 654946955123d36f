#include "Kestrova/detail/text/TextMarking.h"

#include <algorithm>

namespace kestrova {

void TextMarking::begin(qsizetype position, By by) {
    m_by = by;
    m_first = unitAt(position);
    m_text.select(m_first.start, m_first.end);
}

void TextMarking::extend(qsizetype position) {
    const auto anchor = m_text.selection().anchor;
    m_by = By::characters;
    m_first = {anchor, anchor, anchor};
    dragTo(position);
}

void TextMarking::dragTo(qsizetype position) {
    const auto unit = unitAt(position);
    if (unit.start < m_first.start)
        m_text.select(m_first.end, unit.start);
    else
        m_text.select(m_first.start, std::max(m_first.end, unit.end));
}

TextPiece TextMarking::unitAt(qsizetype position) {
    switch (m_by) {
    case By::characters:
        break;
    case By::words:
        return m_moves.wordAt(position);
    case By::paragraphs:
        return m_pieces.paragraph(position);
    }
    return {position, position, position};
}

} // namespace kestrova
