#include "Kestrova/detail/text/TextKeys.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>

namespace kestrova {
namespace {

struct MoveKeys {
    QKeySequence::StandardKey moving;
    QKeySequence::StandardKey marking;
    TextMove move;
};

constexpr std::array moveKeys{
    MoveKeys{QKeySequence::MoveToPreviousChar, QKeySequence::SelectPreviousChar, TextMove::left},
    MoveKeys{QKeySequence::MoveToNextChar, QKeySequence::SelectNextChar, TextMove::right},
    MoveKeys{QKeySequence::MoveToPreviousWord, QKeySequence::SelectPreviousWord, TextMove::wordLeft},
    MoveKeys{QKeySequence::MoveToNextWord, QKeySequence::SelectNextWord, TextMove::wordRight},
    MoveKeys{QKeySequence::MoveToStartOfLine, QKeySequence::SelectStartOfLine, TextMove::lineStart},
    MoveKeys{QKeySequence::MoveToEndOfLine, QKeySequence::SelectEndOfLine, TextMove::lineEnd},
    MoveKeys{QKeySequence::MoveToPreviousLine, QKeySequence::SelectPreviousLine, TextMove::lineUp},
    MoveKeys{QKeySequence::MoveToNextLine, QKeySequence::SelectNextLine, TextMove::lineDown},
    MoveKeys{QKeySequence::MoveToPreviousPage, QKeySequence::SelectPreviousPage, TextMove::pageUp},
    MoveKeys{QKeySequence::MoveToNextPage, QKeySequence::SelectNextPage, TextMove::pageDown},
    MoveKeys{QKeySequence::MoveToStartOfBlock, QKeySequence::SelectStartOfBlock, TextMove::paragraphStart},
    MoveKeys{QKeySequence::MoveToEndOfBlock, QKeySequence::SelectEndOfBlock, TextMove::paragraphEnd},
    MoveKeys{QKeySequence::MoveToStartOfDocument, QKeySequence::SelectStartOfDocument,
             TextMove::documentStart},
    MoveKeys{QKeySequence::MoveToEndOfDocument, QKeySequence::SelectEndOfDocument, TextMove::documentEnd}};

struct CommandKey {
    QKeySequence::StandardKey key;
    TextCommand command;
};

constexpr std::array commandKeys{CommandKey{QKeySequence::Copy, TextCommand::copy},
                                 CommandKey{QKeySequence::SelectAll, TextCommand::selectAll},
                                 CommandKey{QKeySequence::Cut, TextCommand::cut},
                                 CommandKey{QKeySequence::Paste, TextCommand::paste},
                                 CommandKey{QKeySequence::Undo, TextCommand::undo},
                                 CommandKey{QKeySequence::Redo, TextCommand::redo},
                                 CommandKey{QKeySequence::Delete, TextCommand::deleteForward},
                                 CommandKey{QKeySequence::DeleteStartOfWord, TextCommand::deleteWordBack},
                                 CommandKey{QKeySequence::DeleteEndOfWord, TextCommand::deleteWordForward},
                                 CommandKey{QKeySequence::DeleteEndOfLine, TextCommand::deleteToLineEnd},
                                 CommandKey{QKeySequence::InsertParagraphSeparator, TextCommand::newLine},
                                 CommandKey{QKeySequence::InsertLineSeparator, TextCommand::newLine}};

} // namespace

std::optional<TextKeyMove> textMoveOf(const QKeyEvent& key) {
    for (const auto& keys : moveKeys) {
        if (key.matches(keys.moving))
            return TextKeyMove{keys.move, false};
        if (key.matches(keys.marking))
            return TextKeyMove{keys.move, true};
    }
    return {};
}

std::optional<TextCommand> textCommandOf(const QKeyEvent& key) {
    const auto found = std::ranges::find_if(
        commandKeys, [&](const CommandKey& command) { return key.matches(command.key); });
    if (found != commandKeys.end())
        return found->command;
    // The toolkit has a standard key for it, but no key on this desktop. Whoever still holds Shift from the
    // letter before means to delete all the same.
    const auto modifiers = key.modifiers() & ~Qt::KeypadModifier;
    const bool deletes =
        key.key() == Qt::Key_Backspace && (modifiers == Qt::NoModifier || modifiers == Qt::ShiftModifier);
    return deletes ? std::optional{TextCommand::deleteBack} : std::nullopt;
}

bool isTyping(const QKeyEvent& key) {
    const auto text = key.text();
    if (text.isEmpty() || (key.modifiers() & Qt::MetaModifier))
        return false;
    const auto first = text.front();
    if (first.category() == QChar::Other_Format)
        return true;
    // Control alone makes chords; with Alt it is how some layouts reach a third level of signs.
    const auto chord = key.modifiers() & (Qt::ControlModifier | Qt::AltModifier);
    if (chord == Qt::ControlModifier || chord == Qt::AltModifier)
        return false;
    return first.isPrint() || first == u'\t' || first.isHighSurrogate() ||
           first.category() == QChar::Other_PrivateUse;
}

} // namespace kestrova
