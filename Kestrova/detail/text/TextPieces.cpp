#include "Kestrova/detail/text/TextPieces.h"

#include "Kestrova/detail/text/LargeText.h"

#include <QString>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <compare>
#include <cstdint>
#include <optional>
#include <utility>

namespace kestrova {
namespace {

/// How far it is looked for a paragraph's ends. With no end in sight there is always a cut nearer than this.
constexpr qsizetype sight = 4 * TextPieces::partLength;
/// How far a cut may lie behind the place where it is due, so that it falls between words.
constexpr qsizetype slack = 256;
/// What a grapheme at a due place may begin before it.
constexpr qsizetype context = 32;
constexpr qsizetype scanLength = 512;
constexpr qsizetype outOfSight = -1;

/// The least of them is cut.
struct CutPlace {
    bool isWithinWord = false;
    std::uint32_t order = 0;
    qsizetype place = 0;

    auto operator<=>(const CutPlace&) const = default;
};

/// An order of texts that has nothing to do with where they stand; the same in every run.
std::uint32_t mixed(QStringView text) {
    std::uint32_t sum = 2'166'136'261;
    for (const auto unit : text)
        sum = (sum ^ unit.unicode()) * 16'777'619;
    return sum;
}

bool isLineEnd(QChar character) {
    return character == u'\n' || character == u'\r' || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

} // namespace

TextPiece TextPieces::at(qsizetype anyPosition) const {
    const auto position = besideLineEnd(anyPosition);
    const auto paragraphStart = lineEndBefore(position, sight);
    const auto paragraphEnd = lineEndFrom(position, sight);
    TextPiece piece;
    piece.start = startOfPart(position, paragraphStart, paragraphEnd);
    piece.end = endOfPart(position, paragraphStart, paragraphEnd);
    piece.textEnd = piece.end;
    if (piece.end == paragraphEnd && piece.end < m_text.size()) {
        const bool isPair = m_text.at(piece.end) == u'\r' && piece.end + 1 < m_text.size() &&
                            m_text.at(piece.end + 1) == u'\n';
        piece.end += isPair ? 2 : 1;
    }
    return piece;
}

TextPiece TextPieces::paragraph(qsizetype anyPosition) const {
    const auto position = besideLineEnd(anyPosition);
    auto start = lineEndBefore(position, longestParagraph);
    if (start == outOfSight)
        start = at(position - longestParagraph).start;
    auto end = lineEndFrom(position, longestParagraph);
    if (end == outOfSight)
        end = at(position + longestParagraph).start;
    return {start, end, end};
}

/// A caret never stands within \r\n.
qsizetype TextPieces::besideLineEnd(qsizetype position) const {
    position = std::clamp(position, qsizetype{0}, m_text.size());
    const bool isWithin = position > 0 && position < m_text.size() && m_text.at(position) == u'\n' &&
                          m_text.at(position - 1) == u'\r';
    return isWithin ? position - 1 : position;
}

/// Long paragraphs are cut once in each window of the text's positions, so that where the cuts lie can be
/// told without reading all that comes before. An edit moves all windows behind it; which place in a window
/// is cut depends on the words there, so that most cuts stay where they are in the text, and its lines with
/// them.
qsizetype TextPieces::cut(qsizetype window) const {
    const auto due = window * partLength;
    const auto from = due - context;
    const auto text = m_text.mid(from, context + slack + context);
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text);
    graphemes.setPosition(context);
    std::optional<CutPlace> best;
    auto place = graphemes.isAtBoundary() ? context : graphemes.toNextBoundary();
    for (; place >= 0 && place < context + slack; place = graphemes.toNextBoundary()) {
        const CutPlace found{!text.at(place - 1).isSpace(), mixed(QStringView(text).first(place).last(8)),
                             place};
        if (!best || found < *best)
            best = found;
    }
    if (best)
        return from + best->place;
    // One grapheme of hundreds of marks has to be cut somewhere.
    const bool isWithinPair = text.at(context).isLowSurrogate() && text.at(context - 1).isHighSurrogate();
    return isWithinPair ? due + 1 : due;
}

qsizetype TextPieces::startOfPart(qsizetype position, qsizetype paragraphStart,
                                  qsizetype paragraphEnd) const {
    // What remains on either side of a cut is at least as long as a part.
    const auto last = paragraphEnd == outOfSight ? position : std::min(position, paragraphEnd - partLength);
    const auto first =
        paragraphStart == outOfSight ? position - sight + partLength : paragraphStart + partLength;
    for (auto window = last / partLength; window > 0 && (window + 1) * partLength > first; --window) {
        const auto place = cut(window);
        if (place >= first && place <= last)
            return place;
    }
    return paragraphStart;
}

qsizetype TextPieces::endOfPart(qsizetype position, qsizetype paragraphStart, qsizetype paragraphEnd) const {
    const auto first = std::max(position + 1, paragraphStart == outOfSight ? 0 : paragraphStart + partLength);
    const auto last = paragraphEnd == outOfSight ? position + sight - partLength : paragraphEnd - partLength;
    for (auto window = std::max(qsizetype{1}, first / partLength); window * partLength <= last; ++window) {
        const auto place = cut(window);
        if (place >= first && place <= last)
            return place;
    }
    return paragraphEnd;
}

/// The start of the line, or nothing if it is out of sight.
qsizetype TextPieces::lineEndBefore(qsizetype position, qsizetype limit) const {
    const auto stop = std::max(qsizetype{0}, position - limit);
    for (auto end = position; end > stop;) {
        const auto start = std::max(stop, end - scanLength);
        const auto text = m_text.mid(start, end - start);
        const auto found = std::find_if(text.crbegin(), text.crend(), isLineEnd);
        if (found != text.crend())
            return end - (found - text.crbegin());
        end = start;
    }
    return stop == 0 ? 0 : outOfSight;
}

/// Where the line end begins, or the text's end, or nothing if it is out of sight.
qsizetype TextPieces::lineEndFrom(qsizetype position, qsizetype limit) const {
    const auto stop = std::min(m_text.size(), position + limit);
    for (auto start = position; start < stop;) {
        const auto text = m_text.mid(start, std::min(scanLength, stop - start));
        const auto found = std::find_if(text.cbegin(), text.cend(), isLineEnd);
        if (found != text.cend())
            return start + (found - text.cbegin());
        start += text.size();
    }
    return stop == m_text.size() ? stop : outOfSight;
}

} // namespace kestrova
