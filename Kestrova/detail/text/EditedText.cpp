#include "Kestrova/detail/text/EditedText.h"

namespace kestrova {
namespace {

bool isWithinPair(const LargeText& text, qsizetype position) {
    if (position <= 0 || position >= text.size())
        return false;
    const auto before = text.at(position - 1);
    const auto behind = text.at(position);
    return (before == u'\r' && behind == u'\n') || (before.isHighSurrogate() && behind.isLowSurrogate());
}

qsizetype edgeBefore(const LargeText& text, qsizetype position) {
    return isWithinPair(text, position) ? position - 1 : position;
}

qsizetype edgeBehind(const LargeText& text, qsizetype position) {
    return isWithinPair(text, position) ? position + 1 : position;
}

} // namespace

QString EditedText::selectedText() const {
    const bool isAll = m_selection.start() == 0 && m_selection.end() == m_text.size();
    return isAll ? m_text.toString()
                 : m_text.mid(m_selection.start(), m_selection.end() - m_selection.start());
}

void EditedText::setText(const QString& text) {
    m_text = LargeText(text);
    m_selection = {};
}

void EditedText::select(qsizetype anchor, qsizetype caret) {
    TextSelection selection{std::clamp(anchor, qsizetype{0}, m_text.size()),
                            std::clamp(caret, qsizetype{0}, m_text.size())};
    auto& first = selection.caret < selection.anchor ? selection.caret : selection.anchor;
    auto& last = selection.caret < selection.anchor ? selection.anchor : selection.caret;
    last = first == last ? edgeBefore(m_text, last) : edgeBehind(m_text, last);
    first = edgeBefore(m_text, first);
    if (selection == m_selection)
        return;
    m_text.endStep();
    m_selection = selection;
    if (onSelect)
        onSelect();
}

void EditedText::insert(const QString& inserted) {
    replace(m_selection.start(), m_selection.end() - m_selection.start(), inserted);
}

void EditedText::replace(qsizetype position, qsizetype removed, const QString& inserted) {
    const auto start = std::clamp(position, qsizetype{0}, m_text.size());
    const auto end = std::clamp(position + removed, start, m_text.size());
    if (start == end && inserted.isEmpty())
        return;
    const auto taken = m_text.mid(start, std::min(end - start, longestTold));
    m_text.replace(start, end - start, inserted);
    const LargeText::Change change{start, end - start, inserted.size()};
    standBehind(change);
    if (onEdit)
        onEdit(change, taken);
}

bool EditedText::undo() {
    return follow(m_text.undo());
}

bool EditedText::redo() {
    return follow(m_text.redo());
}

bool EditedText::follow(const std::optional<LargeText::Change>& change) {
    if (!change)
        return false;
    standBehind(*change);
    if (onEdit)
        onEdit(*change, {});
    return true;
}

void EditedText::standBehind(const LargeText::Change& change) {
    const auto caret = edgeBehind(m_text, change.position + change.inserted);
    m_selection = {caret, caret};
}

} // namespace kestrova
