#pragma once

#include <QChar>
#include <QString>

#include <optional>

namespace kestrova {

/// A text that is edited in place, whatever its length: an edit of fifty megabytes costs no more than one of
/// a line. Positions and counts are in UTF-16 units; the text is kept unit by unit, line ends of every kind
/// included. A plain value holder without a thread of its own.
class LargeText {
public:
    /// What an edit, an undo or a redo did to the text.
    struct Change {
        qsizetype position = 0;
        qsizetype removed = 0;
        qsizetype inserted = 0;

        bool operator==(const Change&) const = default;
    };

    /// Shares the text with the caller.
    explicit LargeText(QString text = {});

    qsizetype size() const;
    bool isEmpty() const { return size() == 0; }
    /// Within the text.
    QChar at(qsizetype position) const;
    /// What of the range lies within the text.
    QString mid(qsizetype position, qsizetype count) const;
    /// Copies the text, unless nothing has been edited.
    QString toString() const;

    /// Puts `inserted` in the place of `removed` units. It is one step to undo, together with the step before
    /// it if it goes on with that one's typing or deleting.
    void replace(qsizetype position, qsizetype removed, const QString& inserted);
    /// What is edited from here on is another step, as after the caret was moved.
    void endStep();
    /// Absent if there is nothing to undo; so too in `redo`.
    std::optional<Change> undo();
    std::optional<Change> redo();
    bool canUndo() const;
    bool canRedo() const;
    /// Whether the text is another than at first, as told by the steps that stand.
    bool isModified() const;
};

} // namespace kestrova
