#include "Kestrova/shelf/widgets/ItemLayout.h"

#include <algorithm>

namespace kestrova {
namespace {

constexpr int listPadding = 8;

constexpr int gridPadding = 12;
constexpr int gridSpacing = 10;
constexpr int leastCardWidth = 150;
constexpr int greatestCardWidth = 200;

} // namespace

std::size_t ItemLayout::rows() const {
    return (count + columns - 1) / columns;
}

int ItemLayout::height() const {
    const int between = padding.top() + padding.bottom();
    return count == 0 ? between : between + static_cast<int>(rows()) * rowStep() - spacing;
}

QRect ItemLayout::cellRect(std::size_t index) const {
    const auto row = static_cast<int>(index / columns);
    const auto column = static_cast<int>(index % columns);
    return {QPoint(padding.left() + column * (cell.width() + spacing), padding.top() + row * rowStep()),
            cell};
}

std::optional<std::size_t> ItemLayout::indexAt(QPoint place) const {
    const auto inside = place - QPoint(padding.left(), padding.top());
    if (inside.x() < 0 || inside.y() < 0 || cell.isEmpty())
        return std::nullopt;
    const auto column = static_cast<std::size_t>(inside.x() / (cell.width() + spacing));
    const auto row = static_cast<std::size_t>(inside.y() / rowStep());
    const auto index = row * columns + column;
    if (column >= columns || index >= count || !cellRect(index).contains(place))
        return std::nullopt;
    return index;
}

ItemLayout::Range ItemLayout::cellsBetween(int top, int bottom) const {
    if (bottom <= top || cell.isEmpty())
        return {};
    const auto rowAt = [this](int y) {
        return static_cast<std::size_t>(std::max(0, y - padding.top()) / rowStep());
    };
    // A row's share of the spacing below it shows nothing.
    const auto first = rowAt(top) + (top >= cellRect(rowAt(top) * columns).bottom() + 1 ? 1 : 0);
    const auto pastLast = bottom <= padding.top() ? 0 : rowAt(bottom - 1) + 1;
    const Range range{std::min(first * columns, count), std::min(pastLast * columns, count)};
    return range.begin < range.end ? range : Range{};
}

ItemLayout listLayout(std::size_t count, int width, int rowHeight) {
    return {.count = count, .cell = {width, rowHeight}, .padding = {0, listPadding, 0, listPadding}};
}

std::size_t gridColumnCount(int width) {
    const int available = std::max(width - 2 * gridPadding, 0);
    return static_cast<std::size_t>(std::max(1, (available + gridSpacing) / (leastCardWidth + gridSpacing)));
}

ItemLayout gridLayout(std::size_t count, int width, int cardHeight) {
    const auto columns = gridColumnCount(width);
    const int gaps = static_cast<int>(columns - 1) * gridSpacing;
    const int available = std::max(width - 2 * gridPadding, 0);
    const int cardWidth = std::clamp((available - gaps) / static_cast<int>(columns), 1, greatestCardWidth);
    const int used = static_cast<int>(columns) * cardWidth + gaps;
    const int left = gridPadding + std::max(0, available - used) / 2;
    return {.count = count,
            .columns = columns,
            .cell = {cardWidth, cardHeight},
            .spacing = gridSpacing,
            .padding = {left, gridPadding, gridPadding, gridPadding}};
}

} // namespace kestrova
