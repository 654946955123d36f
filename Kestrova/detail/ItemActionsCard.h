#pragma once

#include "Kestrova/detail/ActionRow.h"
#include "Kestrova/detail/ItemActions.h"
#include "Kestrova/state/Reactions.h"
#include "Platform/EventMonitors.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace kestrova {

enum class CardScreen { root, collections };

/// The menu of what can be done with an item, which keys drive: where it is, and what each key does. It draws
/// nothing. Main thread only.
class ItemActionsCard {
public:
    using Instant = std::chrono::steady_clock::time_point;

    /// All of it outlives the card.
    struct Surroundings {
        EventMonitors& eventMonitors;
        /// Whether a key goes to the window that the card lies in.
        std::function<bool(const LocalEvent&)> isOfTheWindow;
        std::function<Instant()> now = [] { return std::chrono::steady_clock::now(); };
    };

    ItemActionsCard(Surroundings surroundings, ItemActions itemActions);
    ItemActionsCard(const ItemActionsCard&) = delete;
    ItemActionsCard& operator=(const ItemActionsCard&) = delete;
    ~ItemActionsCard();

    /// Everything that enters the card runs inside it; afterwards `onRender` is called if anything that is
    /// painted may have changed.
    template<typename Handler>
    void perform(Handler&& handler) {
        m_reactions.perform(std::forward<Handler>(handler));
    }
    /// The moment to paint.
    std::function<void()> onRender;

    // Events.
    /// The card has come to the screen: from now on its keys are its own.
    void appears();
    void disappears();
    /// The pointer has moved to another place on that row. A row that comes to lie below a pointer at rest is
    /// not to be told of.
    void pointerMoved(std::ptrdiff_t row);
    void pointerLeft();
    /// A press of the pointer; a disabled row does nothing.
    void rowClicked(std::ptrdiff_t row);
    /// The collections, or what is shown of them, are others now. `isInCurrentCollection` and
    /// `onRemoveFromCurrentCollection` go together.
    void collectionsChanged(std::vector<std::shared_ptr<KovaCollection>> allCollections,
                            std::function<void()> onRemoveFromCurrentCollection);

    /// Those of the screen, as the item is now.
    std::vector<ActionRow> rows();
    /// The row that is lit up; it may lie outside the list.
    std::ptrdiff_t highlightedIndex() const { return hoveredIndex.value_or(selectedIndex); }

    /// To be called inside `perform`.
    void go(CardScreen to);

    // The state.
    ItemActions actions;
    std::ptrdiff_t selectedIndex = 0;
    std::optional<std::ptrdiff_t> hoveredIndex;
    std::unique_ptr<EventMonitor> keyMonitor;
    CardScreen screen = CardScreen::root;
    /// Hovering is ignored until then.
    Instant ignoreHoverUntil;

private:
    struct KeyBinding;
    struct Tables;

    /// Whether the key is taken.
    bool handleKey(const KeyEvent& event);
    void run(std::ptrdiff_t row);
    void moveSelection(std::ptrdiff_t direction);
    void ignoreHoverForAMoment();

    // What keys do; false if there is nothing that the key could do.
    bool goBack();
    bool cancel();
    bool runSelected();
    bool preview();
    bool deleteItem();
    bool moveUp();
    bool moveDown();
    bool copy();
    bool edit();
    bool togglePin();

    Surroundings m_surroundings;
    Reactions m_reactions;
};

} // namespace kestrova
