#pragma once

#include "Kestrova/detail/text/TextPieces.h"

#include <QFont>
#include <QList>
#include <QString>
#include <QTextLayout>

#include <cstddef>
#include <memory>
#include <vector>

namespace kestrova {

/// A piece of text wrapped into lines. Positions are those of the text; what an input method is composing is
/// part of the layout but not of the text.
class PieceLayout {
public:
    struct Composition {
        qsizetype position = 0;
        QString text;
        /// Within the composed text.
        QList<QTextLayout::FormatRange> formats;

        bool operator==(const Composition&) const = default;
    };
    struct Style {
        QFont font;
        int width = 1;

        bool operator==(const Style&) const = default;
    };

    PieceLayout(const TextPiece& piece, const QString& text, const Style& style, const Composition& composed);

    const TextPiece& piece() const { return m_piece; }
    const QTextLayout& layout() const { return *m_layout; }
    const Composition& composed() const { return m_composed; }
    bool isRightToLeft() const;

    /// In pixels, as are all heights here: a line's slot is a little higher than its font.
    int height() const { return m_tops.back(); }
    int lineCount() const { return m_layout->lineCount(); }
    int lineTop(int line) const { return m_tops[static_cast<std::size_t>(line)]; }
    int lineHeight(int line) const { return lineTop(line + 1) - lineTop(line); }
    qsizetype lineStart(int line) const;
    /// Behind the last unit of the line, blanks included.
    qsizetype lineEnd(int line) const;
    /// A position between two lines is on the later one.
    int lineOf(qsizetype position) const { return lineOfPlace(inLayout(position)); }
    /// The same of a position in the layout.
    int lineOfPlace(int place) const;
    int lineAt(int y) const;
    /// The position nearest to that place on the line; never one that is already on the next.
    qsizetype positionAt(int line, double x) const;
    double xOf(qsizetype position) const;

    int inLayout(qsizetype position) const;
    qsizetype inText(int layoutPosition) const;

    /// An edit before it has moved it by that much.
    void shift(qsizetype by);

private:
    void lay(const Style& style);

    TextPiece m_piece;
    Composition m_composed;
    std::unique_ptr<QTextLayout> m_layout;
    std::vector<int> m_tops;
};

} // namespace kestrova
