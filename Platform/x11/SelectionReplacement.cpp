#include "Platform/x11/SelectionReplacement.h"

#include "Platform/x11/AccessibilityLog.h"

#include <algorithm>

namespace kestrova {

namespace {

std::u32string replaced(const std::u32string& text, TextRange range, const std::u32string& by) {
    auto result = text;
    result.replace(static_cast<std::size_t>(range.start), static_cast<std::size_t>(range.end - range.start),
                   by);
    return result;
}

/// Takes back whatever has become of `before`, however much the element made of the insertion.
bool restore(EditableElement& element, const std::u32string& before, TextRange selection) {
    const auto now = element.characters();
    if (!now)
        return false;
    if (*now != before) {
        const auto first = std::ranges::mismatch(before, *now);
        const auto start = first.in1 - before.begin();
        const auto common = std::min(before.size(), now->size()) - static_cast<std::size_t>(start);
        std::size_t tail = 0;
        while (tail < common && before[before.size() - 1 - tail] == (*now)[now->size() - 1 - tail])
            ++tail;
        const TextRange surplus{static_cast<int>(start), static_cast<int>(now->size() - tail)};
        if (!surplus.isEmpty() && element.deleteText(surplus) != Outcome::Done)
            return false;
        const auto missing =
            std::u32string_view(before).substr(static_cast<std::size_t>(start), before.size() - tail - start);
        if (!missing.empty() &&
            element.insertText(surplus.start, textOf(missing, element.offsetUnit())) != Outcome::Done)
            return false;
        if (element.characters() != before)
            return false;
    }
    element.select(selection);
    return true;
}

/// The answer after something went wrong with a change: false only if nothing of it is left. A caller that is
/// told false pastes by keys, and the text would stand there twice.
bool answerAfterFailure(EditableElement& element, const std::u32string& before, TextRange selection) {
    if (restore(element, before, selection))
        return false;
    qCWarning(lcAccessibility, "[Accessibility] An application took a text in part, and it cannot be undone");
    return true;
}

/// The answer after a change was sent and is not answered: it is in the program's queue and will be carried
/// out as soon as the program gets to it, before any key would. Asking it to be undone would be answered just
/// as late.
bool answerAfterSilence() {
    qCWarning(lcAccessibility, "[Accessibility] An application has not yet said that it took a text");
    return true;
}

} // namespace

bool replaceSelection(EditableElement& element, const QString& text, const std::function<bool()>& mayWrite) {
    const auto selection = element.selection();
    const auto before = element.characters();
    if (!selection || !before || selection->start < 0 || selection->start > selection->end ||
        static_cast<std::size_t>(selection->end) > before->size())
        return false;
    if (!mayWrite())
        return false;

    // First in, then out: a program that does not take the text keeps what was selected all along.
    const auto inserted = characters(text, element.offsetUnit());
    const auto afterInsertion = replaced(*before, {selection->end, selection->end}, inserted);
    if (element.insertText(selection->end, text) == Outcome::Silent)
        return answerAfterSilence();
    // What it says does not count: some answer yes and take half of it.
    if (element.characters() != afterInsertion)
        return answerAfterFailure(element, *before, *selection);

    if (!selection->isEmpty()) {
        if (element.deleteText(*selection) == Outcome::Silent)
            return answerAfterSilence();
        if (element.characters() != replaced(*before, *selection, inserted))
            return answerAfterFailure(element, *before, *selection);
    }
    const int caret = selection->start + static_cast<int>(inserted.size());
    element.select({caret, caret});
    return true;
}

} // namespace kestrova
