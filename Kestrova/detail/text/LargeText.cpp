#include "Kestrova/detail/text/LargeText.h"

#include <algorithm>
#include <utility>

namespace kestrova {
namespace {

/// Shorter texts are put together in one source, longer ones are shared with the caller.
constexpr qsizetype sourceSize = 32'768;
/// More than a person types, or deletes, at once.
constexpr qsizetype longestTyping = 64;

bool isTyping(const QString& inserted) {
    const auto isLineEnd = [](QChar character) {
        return character == u'\n' || character == u'\r' || character == QChar::LineSeparator ||
               character == QChar::ParagraphSeparator;
    };
    return !inserted.isEmpty() && inserted.size() <= longestTyping &&
           std::ranges::none_of(inserted, isLineEnd);
}

} // namespace

LargeText::LargeText(QString text) {
    const SourcePiece whole{.source = 0, .offset = 0, .length = text.size()};
    m_sources.push_back(std::move(text));
    if (whole.length > 0)
        m_pieces.replace(0, 0, {&whole, 1});
}

QChar LargeText::at(qsizetype position) const {
    const auto piece = m_pieces.from(position);
    return m_sources[piece.source].at(piece.offset);
}

QString LargeText::mid(qsizetype position, qsizetype count) const {
    const auto start = std::clamp<qsizetype>(position, 0, size());
    const auto end = std::clamp<qsizetype>(position + std::min(count, size()), start, size());
    QString text;
    text.reserve(end - start);
    while (start + text.size() < end) {
        const auto piece = m_pieces.from(start + text.size());
        const auto length = std::min(piece.length, end - start - text.size());
        text += QStringView(m_sources[piece.source]).mid(piece.offset, length);
    }
    return text;
}

QString LargeText::toString() const {
    if (m_pieces.count() == 1) {
        const auto piece = m_pieces.from(0);
        if (const auto& source = m_sources[piece.source]; piece.length == source.size())
            return source;
    }
    return mid(0, size());
}

void LargeText::replace(qsizetype position, qsizetype removed, const QString& inserted) {
    if (removed == 0 && inserted.isEmpty())
        return;
    const bool isTyped = goesOnTyping(position, removed, inserted);
    const bool isDeleted = goesOnDeleting(position, removed, inserted);
    auto taken = m_pieces.replace(position, removed, keep(inserted));
    m_undone.clear();
    if (isTyped) {
        m_done.back().present += inserted.size();
    } else if (isDeleted) {
        auto& step = m_done.back();
        const auto place = position < step.position ? step.absentPieces.begin() : step.absentPieces.end();
        step.absentPieces.insert(place, taken.begin(), taken.end());
        step.absent += removed;
        step.position = position;
    } else {
        m_done.push_back({position, inserted.size(), removed, std::move(taken)});
    }
    // What was put in, or taken out, as a whole is a step of its own.
    m_isStepOpen = inserted.isEmpty() ? removed <= longestTyping : isTyping(inserted);
}

SourcePieces LargeText::keep(const QString& inserted) {
    if (inserted.isEmpty())
        return {};
    if (inserted.size() > sourceSize) {
        m_sources.push_back(inserted);
        m_isLastSourceOpen = false;
    } else if (!m_isLastSourceOpen || m_sources.back().size() + inserted.size() > sourceSize) {
        m_sources.push_back(inserted);
        m_isLastSourceOpen = true;
    } else {
        m_sources.back() += inserted;
    }
    const auto offset = m_sources.back().size() - inserted.size();
    return {{m_sources.size() - 1, offset, inserted.size()}};
}

bool LargeText::goesOnTyping(qsizetype position, qsizetype removed, const QString& inserted) const {
    if (!m_isStepOpen || removed > 0 || !isTyping(inserted))
        return false;
    const auto& step = m_done.back();
    return step.present > 0 && position == step.position + step.present;
}

bool LargeText::goesOnDeleting(qsizetype position, qsizetype removed, const QString& inserted) const {
    if (!m_isStepOpen || removed > longestTyping || !inserted.isEmpty())
        return false;
    const auto& step = m_done.back();
    return step.present == 0 && (position == step.position || position + removed == step.position);
}

void LargeText::endStep() {
    m_isStepOpen = false;
}

std::optional<LargeText::Change> LargeText::undo() {
    return exchange(m_done, m_undone);
}

std::optional<LargeText::Change> LargeText::redo() {
    return exchange(m_undone, m_done);
}

std::optional<LargeText::Change> LargeText::exchange(Steps& from, Steps& to) {
    m_isStepOpen = false;
    if (from.empty())
        return std::nullopt;
    auto step = std::move(from.back());
    from.pop_back();
    step.absentPieces = m_pieces.replace(step.position, step.present, step.absentPieces);
    std::swap(step.present, step.absent);
    const Change change{step.position, step.absent, step.present};
    to.push_back(std::move(step));
    return change;
}

} // namespace kestrova
