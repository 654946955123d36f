#include "Kestrova/shelf/controls/TabStops.h"

#include <QWidget>

#include <algorithm>

namespace kestrova {

std::vector<QWidget*> tabStopsIn(const QWidget& widget) {
    std::vector<QWidget*> stops;
    for (auto* const child : widget.findChildren<QWidget*>())
        if ((child->focusPolicy() & Qt::TabFocus) && child->isEnabled() && child->isVisibleTo(&widget))
            stops.push_back(child);
    const auto frame = [&](const QWidget* stop) {
        return QRect(stop->mapTo(&widget, QPoint()), stop->size());
    };
    const auto top = [&](const QWidget* stop) { return frame(stop).top(); };
    const auto left = [&](const QWidget* stop) { return frame(stop).left(); };
    std::ranges::stable_sort(stops, {}, top);
    // What overlaps in height stands in one line, however high each one is.
    for (auto line = stops.begin(); line != stops.end();) {
        const auto end =
            std::find_if(line, stops.end(), [&, bottom = frame(*line).bottom()](const auto* stop) {
                return top(stop) > bottom;
            });
        std::stable_sort(line, end, [&](const auto* a, const auto* b) { return left(a) < left(b); });
        line = end;
    }
    return stops;
}

std::size_t placeBehind(std::ptrdiff_t place, std::ptrdiff_t count, bool forwards) {
    const auto step = forwards ? 1 : count - 1;
    const auto start = place == count && forwards ? count - 1 : place % count;
    return static_cast<std::size_t>((start + step) % count);
}

bool focusNextIn(const QWidget& widget, bool forwards) {
    const auto stops = tabStopsIn(widget);
    if (stops.empty())
        return false;
    const auto place = std::ranges::find(stops, widget.window()->focusWidget()) - stops.begin();
    stops[placeBehind(place, std::ssize(stops), forwards)]->setFocus(forwards ? Qt::TabFocusReason
                                                                              : Qt::BacktabFocusReason);
    return true;
}

} // namespace kestrova
