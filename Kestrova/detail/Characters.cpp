#include "Kestrova/detail/Characters.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace kestrova {
namespace {

/// Letters that never join one of their like before them.
bool standsAlone(QChar letter) {
    const char16_t code = letter.unicode();
    return (code < 0x300 && code != u'\r') || (code >= 0xAC00 && code <= 0xD7A3);
}

/// The beginning of a text, with no character of two units cut in half.
QStringView piece(QStringView text, qsizetype length) {
    auto start = text.first(std::min(length, text.size()));
    if (start.size() < text.size() && start.back().isHighSurrogate())
        start.chop(1);
    return start;
}

} // namespace

QStringView firstCharacters(QStringView text, qsizetype count) {
    // Rows are made at each painting, so ordinary text is not walked by the segmentation.
    const auto plain = text.first(std::min(count + 1, text.size()));
    if (std::ranges::all_of(plain, standsAlone))
        return text.first(std::min(count, text.size()));
    for (qsizetype looked = 4 * count;; looked *= 4) {
        const auto start = piece(text, looked);
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, start.data(), start.size());
        for (qsizetype passed = 0; passed < count && finder.toNextBoundary() != -1; ++passed) {
        }
        // At the piece's end the last character may be cut, unless the text ends there too.
        if (const auto end = finder.position(); end != -1 && end < start.size())
            return text.first(end);
        if (start.size() == text.size())
            return text;
    }
}

void CharacterCount::advance(qsizetype units) {
    const auto end = std::min(m_position + units, m_text.size());
    while (m_position < end) {
        if (m_known == 0)
            passPlain(end);
        if (m_position < end)
            passWoven();
    }
}

void CharacterCount::passPlain(qsizetype end) {
    const auto* const letters = m_text.constData();
    const auto size = m_text.size();
    auto position = m_position;
    // The letter behind it decides too: it may join this one.
    while (position < end && standsAlone(letters[position]) &&
           (position + 1 == size || standsAlone(letters[position + 1])))
        ++position;
    m_count += position - m_position;
    m_position = position;
}

void CharacterCount::passWoven() {
    const auto rest = QStringView(m_text).sliced(m_position);
    constexpr qsizetype ordinaryLength = 1024;
    constexpr qsizetype longestLook = 256 * ordinaryLength;
    // More than whether two letters join depends on.
    constexpr qsizetype context = 256;
    for (auto length = ordinaryLength;; length *= 4) {
        const auto start = piece(rest, length);
        const bool isLast = start.size() == rest.size();
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, start.data(), start.size());
        qsizetype passed = 0;
        // What reaches to the end of the piece may go on behind it.
        for (auto next = finder.toNextBoundary(); next != -1 && (isLast || next < start.size());
             next = finder.toNextBoundary()) {
            if (next < m_known)
                continue;
            passed = next;
            ++m_count;
        }
        m_position += passed;
        if (passed > 0) {
            m_known = 0;
            return;
        }
        if (length >= longestLook) {
            m_position += start.size() - context;
            m_known = context;
            if (m_text.at(m_position).isLowSurrogate()) {
                --m_position;
                ++m_known;
            }
            return;
        }
    }
}

qsizetype characterCount(const QString& text) {
    CharacterCount count(text);
    count.advance(text.size());
    return count.value();
}

} // namespace kestrova
