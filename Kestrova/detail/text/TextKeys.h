#pragma once

#include "Kestrova/detail/text/TextMoves.h"

#include <optional>

class QKeyEvent;

namespace kestrova {

struct TextKeyMove {
    TextMove move = TextMove::right;
    bool marks = false;
};

enum class TextCommand {
    copy,
    selectAll,
    cut,
    paste,
    undo,
    redo,
    deleteBack,
    deleteForward,
    deleteWordBack,
    deleteWordForward,
    deleteToLineEnd,
    newLine,
};

/// What a key means in a text control, as the desktop has it.
std::optional<TextKeyMove> textMoveOf(const QKeyEvent& key);
std::optional<TextCommand> textCommandOf(const QKeyEvent& key);
/// Whether the key puts in its text.
bool isTyping(const QKeyEvent& key);

} // namespace kestrova
