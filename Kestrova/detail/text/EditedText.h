#pragma once

#include "Kestrova/detail/text/LargeText.h"

#include <algorithm>
#include <functional>

namespace kestrova {

/// What is marked: from where the marking began to the caret, which may come first.
struct TextSelection {
    qsizetype anchor = 0;
    qsizetype caret = 0;

    qsizetype start() const { return std::min(anchor, caret); }
    qsizetype end() const { return std::max(anchor, caret); }
    bool isEmpty() const { return anchor == caret; }
    bool operator==(const TextSelection&) const = default;
};

/// A text, and the selection in it that editing goes by. No widget; main thread only.
class EditedText {
public:
    const LargeText& text() const { return m_text; }
    const TextSelection& selection() const { return m_selection; }
    QString selectedText() const;

    /// Another text, with the caret before it and nothing to undo.
    void setText(const QString& text);

    /// Ends what is undone as one step, unless the selection is that already. Two units that are one
    /// character or one line end are never parted: what is marked holds both, and a caret stands before them.
    void select(qsizetype anchor, qsizetype caret);
    void selectAll() { select(0, m_text.size()); }

    /// In the place of what is marked.
    void insert(const QString& inserted);
    /// The caret is behind what is put in, and behind what that has become one character or line end with. So
    /// too in `undo` and `redo`. Does nothing if nothing would change.
    void replace(qsizetype position, qsizetype removed, const QString& inserted);
    /// Answer whether there was anything.
    bool undo();
    bool redo();

    /// After each edit, with the selection already where it belongs. `removed` is what was taken out, but
    /// empty in undo and redo.
    std::function<void(const LargeText::Change& change, const QString& removed)> onEdit;
    std::function<void()> onSelect;

    /// No more than that of removed text is told of.
    static constexpr qsizetype longestTold = 4096;

private:
    void standBehind(const LargeText::Change& change);
    bool follow(const std::optional<LargeText::Change>& change);

    LargeText m_text;
    TextSelection m_selection;
};

} // namespace kestrova
