#pragma once

#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "KestrovaCore/PersistentIdentifier.h"

#include <QObject>
#include <QScopedValueRollback>
#include <QString>

#include <cstddef>
#include <optional>

class QWidget;

namespace kestrova {

class ChipRow;
class ItemView;
class SearchLineEdit;
class ShelfPanelView;
class Sidebar;
class TopBar;

/// Which widget of the shelf has the keyboard. The state says it, by lane; Tab walks from lane to lane and to
/// the controls between them, where the state follows the widget. Programs that read to people are told where
/// the keyboard is, and of the row that it stands on.
class ShelfFocus {
public:
    struct Parts {
        ShelfPanelView& view;
        /// Has the keyboard while it is in the list.
        QWidget& content;
        TopBar& topBar;
        Sidebar& sidebar;
        ChipRow& chipRow;
        TellReaders tellReaders;
    };

    /// All of them outlive it.
    explicit ShelfFocus(const Parts& parts);
    ShelfFocus(const ShelfFocus&) = delete;
    ShelfFocus& operator=(const ShelfFocus&) = delete;
    ~ShelfFocus();

    /// While what it returns lives, widgets follow the state, and where the keyboard goes is no news to it.
    [[nodiscard]] QScopedValueRollback<bool> followState() {
        return QScopedValueRollback(m_followsState, true);
    }
    /// Puts the keyboard where the state says, and tells of the selection in the view that is in sight.
    void render(ItemView& items);
    /// Takes the keyboard away from the search. A screen over the lists keeps it for as long as it is open.
    void endEditing();
    /// The shelf has just been hidden. Keys that were on their way to it go to the search, unless a screen
    /// over the lists had the keyboard.
    void awaitLateKeys();
    /// Tab, or Shift and Tab. False while a screen lies over the lists.
    bool focusNext(bool forwards);

private:
    /// From one of these to the next.
    struct Stop;
    /// The row that is selected, as it is told.
    struct SelectedRow {
        ItemView* items = nullptr;
        std::optional<std::size_t> place;
        std::optional<ItemID> id;
        /// Whether the keyboard stands on it.
        bool isWalked = false;
        QString name;

        bool isOneWith(const SelectedRow& other) const {
            return items == other.items && place == other.place && id == other.id &&
                   isWalked == other.isWalked;
        }
    };

    bool isCovered() const;
    bool isControl(const QWidget* widget) const;
    QWidget& placeOfLanes() const;
    void place();
    void searchFocusChanged(bool isFocused);
    void focusChanged(const QWidget* now);
    void tellOfSelection(ItemView& items);
    void tellOfRow(const SelectedRow& row, QAccessible::Event event) const;

    Parts m_parts;
    SearchLineEdit& m_search;
    bool m_followsState = false;
    // Told of last.
    SelectedRow m_told;
    QObject m_connections;
};

} // namespace kestrova
