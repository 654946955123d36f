#pragma once

#include <cstddef>
#include <cstdint>

namespace kestrova {

class ShelfPanelView;
struct KeyEvent;

/// Drives the shelf without the mouse: decides by the open route, the modifiers, the key and the lane what a
/// key press does. It holds nothing of its own; all state is the view's. Main thread only.
class ShelfKeyboard {
public:
    /// `view` outlives it.
    explicit ShelfKeyboard(ShelfPanelView& view) : m_view(view) {}

    /// Whether the key is taken. One that is not goes on to the control in focus.
    bool handleKey(const KeyEvent& event);
    /// `flags` are those of `ModifierFlags`.
    void modifiersChanged(std::uint32_t flags);
    /// Of the modifiers that the shelf takes for held, only those in `flags` still are.
    void modifiersReleased(std::uint32_t flags);

private:
    struct CommandBinding;
    struct LaneRules;
    struct Tables;

    // The steps of `handleKey`, each for the keys that the ones before it left.
    bool handle(const KeyEvent& event);
    void leave();
    bool plainKey(const KeyEvent& event);
    bool commandKey(const KeyEvent& event);
    bool optionKey(std::uint16_t keyCode);
    bool optionCommandKey(const KeyEvent& event);
    bool digit(const KeyEvent& event);

    // What command keys do; false if there is nothing to do it to.
    bool undo();
    bool copy();
    bool edit();
    bool togglePin();
    bool showActions();
    bool flipViewMode();
    bool deleteItem();

    // What a digit from 1 to 9 chooses; false if there is no such entry.
    bool chooseChip(std::ptrdiff_t digit);
    bool chooseSidebarRow(std::ptrdiff_t digit);
    bool quickPaste(std::ptrdiff_t digit, bool isRepeat);

    // The rules of the lanes.
    bool laneKey(const KeyEvent& event);
    bool notHandled(const KeyEvent& event);
    bool enterSearch(const KeyEvent& event);
    bool enterTagsFromSearch(const KeyEvent& event);
    bool enterList(const KeyEvent& event);
    bool previousRow(const KeyEvent& event);
    bool nextRow(const KeyEvent& event);
    bool previousTag(const KeyEvent& event);
    bool nextTag(const KeyEvent& event);
    bool previousItem(const KeyEvent& event);
    bool nextItem(const KeyEvent& event);
    bool previousChip(const KeyEvent& event);
    bool nextChip(const KeyEvent& event);
    bool cellAbove(const KeyEvent& event);
    bool cellBelow(const KeyEvent& event);
    bool cellBefore(const KeyEvent& event);
    bool cellBehind(const KeyEvent& event);
    bool paste(const KeyEvent& event);
    bool preview(const KeyEvent& event);

    void goToTags();
    bool goToSidebarIfShown();
    /// A position that chips have left meanwhile is passed through on the way back.
    bool stepToChip(std::ptrdiff_t position);
    bool stepToNextChip(std::ptrdiff_t position);
    std::ptrdiff_t chipPosition() const;
    std::ptrdiff_t selectionIndex() const;
    std::ptrdiff_t columns() const;
    std::ptrdiff_t sidebarRowCount() const;

    ShelfPanelView& m_view;
};

} // namespace kestrova
