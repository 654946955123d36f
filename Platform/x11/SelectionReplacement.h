#pragma once

#include "Platform/x11/TextUnits.h"

#include <QString>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kestrova {

/// A range of offsets; empty where it stands for a caret.
struct TextRange {
    int start = 0;
    int end = 0;

    constexpr bool isEmpty() const { return start == end; }
    bool operator==(const TextRange&) const = default;
};

/// What became of one request to another program.
enum class Outcome {
    Done,
    Refused,
    /// No answer in time: the program may still do it once it gets to it.
    Silent,
};

/// The text of one element of another program.
class EditableElement {
public:
    virtual ~EditableElement() = default;

    virtual TextUnit offsetUnit() const = 0;
    /// One element an offset; absent if the program does not tell in time.
    virtual std::optional<std::u32string> characters() = 0;
    /// The selection, or the caret if nothing is selected; absent if the program does not tell in time.
    virtual std::optional<TextRange> selection() = 0;
    virtual Outcome insertText(int offset, const QString& text) = 0;
    virtual Outcome deleteText(TextRange range) = 0;
    /// Selects the range, or puts the caret there if it is empty. It is only asked for.
    virtual void select(TextRange range) = 0;
};

/// Puts `text` in place of the selection of `element` and the caret after it. False if the element did not
/// take the whole text; it is then as it was before. `mayWrite` is asked once, before the first change.
bool replaceSelection(EditableElement& element, const QString& text, const std::function<bool()>& mayWrite);

} // namespace kestrova
