#include "Kestrova/shelf/widgets/ShelfFocus.h"

#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/SpokenItem.h"
#include "Kestrova/shelf/controls/PanelButton.h"
#include "Kestrova/shelf/controls/TabStops.h"
#include "Kestrova/shelf/widgets/ChipRow.h"
#include "Kestrova/shelf/widgets/ItemView.h"
#include "Kestrova/shelf/widgets/SearchField.h"
#include "Kestrova/shelf/widgets/Sidebar.h"
#include "Kestrova/shelf/widgets/TopBar.h"

#include <QApplication>

#include <algorithm>
#include <utility>
#include <vector>

namespace kestrova {

struct ShelfFocus::Stop {
    QWidget* widget;
    /// Absent for a control.
    std::optional<KeyboardLane> lane = {};
};

ShelfFocus::ShelfFocus(const Parts& parts) : m_parts(parts), m_search(parts.topBar.searchField().lineEdit()) {
    m_search.onFocusChange = [this](bool isFocused) { searchFocusChanged(isFocused); };
    QObject::connect(qApp, &QApplication::focusChanged, &m_connections,
                     [this](const QWidget*, const QWidget* now) { focusChanged(now); });
}

ShelfFocus::~ShelfFocus() {
    m_search.onFocusChange = nullptr;
}

bool ShelfFocus::isCovered() const {
    return m_parts.view._route || m_parts.view._collectionSheetMode;
}

bool ShelfFocus::isControl(const QWidget* widget) const {
    const auto* const button = dynamic_cast<const PanelButton*>(widget);
    // What slides out of sight is still visible to the toolkit.
    const bool isLeaving = !m_parts.view._sidebarVisible && m_parts.sidebar.isAncestorOf(widget);
    return button && !isLeaving && (button->focusPolicy() & Qt::TabFocus) && button->isVisible() &&
           m_parts.content.isAncestorOf(button);
}

QWidget& ShelfFocus::placeOfLanes() const {
    const auto& view = m_parts.view;
    if (view._searchFocused)
        return m_search;
    if (view._lane == KeyboardLane::sidebar)
        return m_parts.sidebar.currentRow();
    if (view._lane == KeyboardLane::tags)
        return m_parts.chipRow.activeChip();
    return m_parts.content;
}

void ShelfFocus::render(ItemView& items) {
    const auto following = followState();
    // Whatever lies over the lists has taken it.
    if (!isCovered())
        place();
    tellOfSelection(items);
}

void ShelfFocus::place() {
    auto* const focused = m_parts.content.window()->focusWidget();
    if (m_parts.view._controlFocused) {
        if (isControl(focused))
            return;
        // It has gone, with the keyboard. The search is where people begin.
        m_parts.view.perform([this] { m_parts.view.enterLane(KeyboardLane::search); });
    }
    if (auto& wanted = placeOfLanes(); focused != &wanted)
        wanted.setFocus(Qt::OtherFocusReason);
}

void ShelfFocus::endEditing() {
    if (!isCovered() && m_parts.content.window()->focusWidget() == &m_search)
        m_parts.content.setFocus(Qt::OtherFocusReason);
}

void ShelfFocus::searchFocusChanged(bool isFocused) {
    if (m_followsState || isCovered() || !m_parts.content.window()->isVisible())
        return;
    m_parts.view.perform([&] {
        m_parts.view._searchFocused = isFocused;
        // Both at once: in between the state would call the keyboard back.
        m_parts.view._controlFocused = !isFocused && isControl(m_parts.content.window()->focusWidget());
    });
}

void ShelfFocus::awaitLateKeys() {
    const auto following = followState();
    if (!isCovered())
        m_search.setFocus(Qt::OtherFocusReason);
}

void ShelfFocus::focusChanged(const QWidget* now) {
    // News of the focus may be late, too, and the toolkit then looks for a control that does not hide.
    const bool isLate = now && m_parts.content.isAncestorOf(now) && !m_parts.content.window()->isVisible();
    if (isLate && now != &m_search)
        awaitLateKeys();
    if (!m_followsState && !isCovered() && isControl(now))
        m_parts.view.perform([this] { m_parts.view._controlFocused = true; });
}

// Walking

bool ShelfFocus::focusNext(bool forwards) {
    if (m_followsState || isCovered())
        return false;
    std::vector<Stop> stops;
    for (auto* const widget : tabStopsIn(m_parts.topBar))
        stops.push_back({widget});
    if (m_parts.view._sidebarVisible) {
        stops.push_back({&m_parts.sidebar.currentRow(), KeyboardLane::sidebar});
        for (auto* const widget : tabStopsIn(m_parts.sidebar))
            stops.push_back({widget});
    }
    stops.push_back({&m_parts.chipRow.activeChip(), KeyboardLane::tags});
    stops.push_back({&m_parts.content, KeyboardLane::list});

    const auto* const focused = m_parts.content.window()->focusWidget();
    const auto& next = stops[placeBehind(std::ranges::find(stops, focused, &Stop::widget) - stops.begin(),
                                         std::ssize(stops), forwards)];
    if (next.lane)
        m_parts.view.perform([&] { m_parts.view.enterLane(*next.lane); });
    else
        next.widget->setFocus(forwards ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

// Telling

void ShelfFocus::tellOfSelection(ItemView& items) {
    const auto& view = m_parts.view;
    const auto count = view.filteredItems().size();
    const auto place = view.indexInFilteredItems(view._selection);
    const SelectedRow row{.items = &items,
                          .place = place,
                          .id = view._selection,
                          .isWalked = items.isWalked(),
                          .name = place ? spokenName(*view.filteredItems()[*place], *place) : QString()};
    // Readers speak a new description of what has the keyboard, but no change of something else.
    setSpokenDescription(m_search, place
                                       ? QStringLiteral("%1, %2").arg(row.name, spokenPosition(*place, count))
                                       : spokenCount(count));
    const auto told = std::exchange(m_told, row);
    if (!place)
        return;
    if (!told.isOneWith(row)) {
        tellOfRow(row, QAccessible::Selection);
        if (row.isWalked)
            tellOfRow(row, QAccessible::Focus);
    } else if (told.name != row.name) {
        tellOfRow(row, QAccessible::NameChanged);
    }
}

void ShelfFocus::tellOfRow(const SelectedRow& row, QAccessible::Event event) const {
    QAccessibleEvent news(row.items, event);
    news.setChild(static_cast<int>(*row.place));
    m_parts.tellReaders(&news);
}

} // namespace kestrova
