#pragma once

#include "Kestrova/detail/text/PieceSequence.h"

#include <QChar>
#include <QString>

#include <cstddef>
#include <optional>
#include <vector>

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

    qsizetype size() const { return m_pieces.size(); }
    bool isEmpty() const { return size() == 0; }
    /// Within the text.
    QChar at(qsizetype position) const;
    /// What of the range lies within the text.
    QString mid(qsizetype position, qsizetype count) const;
    /// Copies the text, unless nothing has been edited.
    QString toString() const;

    /// Puts `inserted` in the place of `removed` units. It is one step to undo, together with the step before
    /// it if it goes on with that one's typing or deleting: by a few units, within a line.
    void replace(qsizetype position, qsizetype removed, const QString& inserted);
    /// What is edited from here on is another step, as after the caret was moved.
    void endStep();
    /// Absent if there is nothing to undo; so too in `redo`.
    std::optional<Change> undo();
    std::optional<Change> redo();
    bool canUndo() const { return !m_done.empty(); }
    bool canRedo() const { return !m_undone.empty(); }
    /// Whether the text is another than at first, as told by the steps that stand.
    bool isModified() const { return canUndo(); }

private:
    /// What stands at a place, and what stood there before, or stands there again after a redo.
    struct Step {
        qsizetype position = 0;
        qsizetype present = 0;
        qsizetype absent = 0;
        SourcePieces absentPieces;
    };
    using Steps = std::vector<Step>;

    SourcePieces keep(const QString& inserted);
    bool goesOnTyping(qsizetype position, qsizetype removed, const QString& inserted) const;
    bool goesOnDeleting(qsizetype position, qsizetype removed, const QString& inserted) const;
    std::optional<Change> exchange(Steps& from, Steps& to);

    /// The text at first, then all that was put in. Nothing in them ever changes; only the last one grows.
    std::vector<QString> m_sources;
    PieceSequence m_pieces;
    Steps m_done;
    Steps m_undone;
    bool m_isStepOpen = false;
    bool m_isLastSourceOpen = false;
};

} // namespace kestrova
