#pragma once

#include <QMargins>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <cstddef>
#include <optional>

namespace kestrova {

/// Where cells of one size lie, in rows from the top left, within content that scrolls. Points. Everything is
/// plain arithmetic, so a hundred thousand cells cost what ten do.
struct ItemLayout {
    /// Neighbours in the order of the items; half-open.
    struct Range {
        std::size_t begin = 0;
        std::size_t end = 0;
        bool operator==(const Range&) const = default;
    };

    std::size_t count = 0;
    /// At least 1.
    std::size_t columns = 1;
    QSize cell;
    int spacing = 0;
    QMargins padding;

    /// Of all cells, with the padding; never less than the padding.
    int height() const;
    /// `index` may lie beyond the last cell.
    QRect cellRect(std::size_t index) const;
    /// Absent between the cells and around them.
    std::optional<std::size_t> indexAt(QPoint place) const;
    /// The cells of the rows that have a part in `top` to `bottom`; the second lies outside.
    Range cellsBetween(int top, int bottom) const;

    bool operator==(const ItemLayout&) const = default;

private:
    std::size_t rows() const;
    int rowStep() const { return cell.height() + spacing; }
};

/// One column of rows as wide as `width`, that many points high.
ItemLayout listLayout(std::size_t count, int width, int rowHeight);

/// How many columns of cards the grid has in an area of `width` points.
std::size_t gridColumnCount(int width);
/// As many columns as `gridColumnCount` says. The cards share the width up to their greatest one; what is
/// left then lies half on each side.
ItemLayout gridLayout(std::size_t count, int width, int cardHeight);

} // namespace kestrova
