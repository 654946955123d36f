#include "Kestrova/shelf/ShelfKeyboard.h"

#include "Kestrova/shelf/ShelfPanelView.h"
#include "KestrovaCore/ClipboardItem.h"
#include "Platform/KeyEvent.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <optional>

namespace kestrova {
namespace {

// All but the bits that the host sets on arrows and on the keypad.
constexpr std::uint32_t disqualifiesPlainKey = 0xFF5F0000;
// The low bits tell which of two like keys it was.
constexpr std::uint32_t deviceIndependent = 0xFFFF0000;
constexpr std::uint32_t optionAndCommand = ModifierFlags::option | ModifierFlags::command;

/// Where a key stands in the plane of one lane.
enum class Column { search, sidebar, tags, list, grid };

Column columnOf(KeyboardLane lane, ShelfViewMode mode) {
    switch (lane) {
    case KeyboardLane::search:
        return Column::search;
    case KeyboardLane::sidebar:
        return Column::sidebar;
    case KeyboardLane::tags:
        return Column::tags;
    case KeyboardLane::list:
    case KeyboardLane::grid:
        return mode == ShelfViewMode::list ? Column::list : Column::grid;
    }
    Q_UNREACHABLE();
}

/// The value of the first character if it is a digit from 1 to 9 in any script, else absent. 0 counts as a
/// character without one.
std::optional<std::ptrdiff_t> digitOf(const QString& characters) {
    const auto codePoints = QStringView(characters).left(2).toUcs4();
    const double value = codePoints.isEmpty() ? 0 : u_getNumericValue(static_cast<UChar32>(codePoints[0]));
    for (std::ptrdiff_t digit = 1; digit <= 9; ++digit)
        if (value == static_cast<double>(digit))
            return digit;
    return std::nullopt;
}

} // namespace

struct ShelfKeyboard::CommandBinding {
    std::uint16_t keyCode;
    bool (ShelfKeyboard::*run)();
    /// Whether a key that is held does it again and again.
    bool repeats = false;
};

/// What one key does, by column.
struct ShelfKeyboard::LaneRules {
    using Rule = bool (ShelfKeyboard::*)(const KeyEvent&);

    std::uint16_t keyCode;
    std::array<Rule, 5> rules;
};

struct ShelfKeyboard::Tables {
    using K = ShelfKeyboard;

    static constexpr std::array commandKeys{CommandBinding{VirtualKey::z, &K::undo, true},
                                            CommandBinding{VirtualKey::c, &K::copy},
                                            CommandBinding{VirtualKey::e, &K::edit},
                                            CommandBinding{VirtualKey::p, &K::togglePin},
                                            CommandBinding{VirtualKey::k, &K::showActions},
                                            CommandBinding{VirtualKey::grave, &K::flipViewMode},
                                            CommandBinding{VirtualKey::deleteKey, &K::deleteItem}};

    // clang-format off
    static constexpr std::array plainKeys{
        //                                  search                   sidebar          tags             list              grid
        LaneRules{VirtualKey::upArrow,    {&K::notHandled,          &K::previousRow, &K::enterSearch, &K::previousItem, &K::cellAbove}},
        LaneRules{VirtualKey::downArrow,  {&K::enterTagsFromSearch, &K::nextRow,     &K::enterList,   &K::nextItem,     &K::cellBelow}},
        LaneRules{VirtualKey::leftArrow,  {&K::notHandled,          &K::notHandled,  &K::previousTag, &K::previousChip, &K::cellBefore}},
        LaneRules{VirtualKey::rightArrow, {&K::notHandled,          &K::enterList,   &K::nextTag,     &K::nextChip,     &K::cellBehind}},
        LaneRules{VirtualKey::returnKey,  {&K::paste,               &K::enterList,   &K::enterList,   &K::paste,        &K::paste}},
        LaneRules{VirtualKey::space,      {&K::notHandled,          &K::notHandled,  &K::preview,     &K::preview,      &K::preview}}};
    // clang-format on
};

bool ShelfKeyboard::handleKey(const KeyEvent& event) {
    bool taken = false;
    m_view.perform([&] { taken = handle(event); });
    return taken;
}

void ShelfKeyboard::modifiersChanged(std::uint32_t flags) {
    m_view.perform([&] {
        m_view._optionHeld = flags & ModifierFlags::option;
        m_view._commandHeld = flags & ModifierFlags::command;
        m_view._controlHeld = flags & ModifierFlags::control;
    });
}

void ShelfKeyboard::modifiersReleased(std::uint32_t flags) {
    m_view.perform([&] {
        m_view._optionHeld &= (flags & ModifierFlags::option) != 0;
        m_view._commandHeld &= (flags & ModifierFlags::command) != 0;
        m_view._controlHeld &= (flags & ModifierFlags::control) != 0;
    });
}

bool ShelfKeyboard::handle(const KeyEvent& event) {
    if (event.keyCode == VirtualKey::escape) {
        // Whoever holds it a little too long leaves one screen, and not all of them.
        if (!event.isRepeat)
            leave();
        return true;
    }
    // All other keys belong to the open detail screen.
    if (m_view._route)
        return false;
    const bool isPlain = (event.modifierFlags & disqualifiesPlainKey) == 0;
    if (isPlain &&
        std::ranges::find(Tables::plainKeys, event.keyCode, &LaneRules::keyCode) != Tables::plainKeys.end())
        return plainKey(event);
    const auto modifiers = event.modifierFlags & deviceIndependent;
    if (modifiers == ModifierFlags::command && commandKey(event))
        return true;
    // Exact: arrows carry further bits, and so an arrow from a keyboard is not taken here.
    if (modifiers == ModifierFlags::option && optionKey(event.keyCode))
        return true;
    if (modifiers == optionAndCommand && optionCommandKey(event))
        return true;
    return digit(event);
}

void ShelfKeyboard::leave() {
    if (m_view._route)
        m_view.popRoute();
    else
        m_view.onDismiss();
}

bool ShelfKeyboard::plainKey(const KeyEvent& event) {
    const bool presses = event.keyCode == VirtualKey::returnKey || event.keyCode == VirtualKey::space;
    if (m_view._controlFocused && presses)
        return false;
    const bool isTaken = laneKey(event);
    // The arrows walk the lanes from anywhere, and take the keyboard with them.
    if (isTaken)
        m_view._controlFocused = false;
    return isTaken;
}

bool ShelfKeyboard::commandKey(const KeyEvent& event) {
    const auto* const binding =
        std::ranges::find(Tables::commandKeys, event.keyCode, &CommandBinding::keyCode);
    if (binding == Tables::commandKeys.end())
        return false;
    // Whoever holds a key a little too long means one item, and not those that come to stand in its place.
    if (event.isRepeat && !binding->repeats)
        return true;
    return (this->*binding->run)();
}

bool ShelfKeyboard::optionKey(std::uint16_t keyCode) {
    if (!m_view._sidebarVisible || (keyCode != VirtualKey::upArrow && keyCode != VirtualKey::downArrow))
        return false;
    const auto row = static_cast<std::ptrdiff_t>(m_view.sidebarIndex());
    m_view.selectSidebarRow(keyCode == VirtualKey::upArrow ? row - 1 : row + 1);
    return true;
}

bool ShelfKeyboard::optionCommandKey(const KeyEvent& event) {
    switch (event.keyCode) {
    case VirtualKey::i:
        if (!event.isRepeat)
            m_view._previewVisible.flip();
        return true;
    case VirtualKey::s:
        if (!event.isRepeat)
            m_view._sidebarVisible.flip();
        return true;
    default:
        return false;
    }
}

bool ShelfKeyboard::digit(const KeyEvent& event) {
    const auto chosen = digitOf(event.charactersIgnoringModifiers);
    if (!chosen)
        return false;
    switch (event.modifierFlags & deviceIndependent) {
    case ModifierFlags::control:
        return chooseChip(*chosen);
    case ModifierFlags::option:
        return chooseSidebarRow(*chosen);
    case ModifierFlags::command:
        return quickPaste(*chosen, event.isRepeat);
    default:
        return false;
    }
}

// Command keys

bool ShelfKeyboard::undo() {
    m_view.undoLastDelete();
    return true;
}

bool ShelfKeyboard::copy() {
    const auto item = m_view.currentItem();
    if (item)
        m_view.writeToPasteboard(*item);
    return item != nullptr;
}

bool ShelfKeyboard::edit() {
    const auto item = m_view.currentItem();
    if (!item)
        return false;
    if (ShelfPanelView::isEditable(*item)) {
        m_view.edit(item);
        return true;
    }
    if (item->type() == ClipboardItemType::image && item->hasImageData()) {
        m_view.onEditImage(item);
        return true;
    }
    return false;
}

bool ShelfKeyboard::togglePin() {
    const auto item = m_view.currentItem();
    if (item)
        m_view.togglePin(*item);
    return item != nullptr;
}

bool ShelfKeyboard::showActions() {
    const auto item = m_view.currentItem();
    if (item)
        m_view._route = DetailRoute::actions(item);
    return item != nullptr;
}

bool ShelfKeyboard::flipViewMode() {
    m_view.flipViewMode();
    return true;
}

bool ShelfKeyboard::deleteItem() {
    const auto item = m_view.currentItem();
    if (item)
        m_view.deleteItem(*item);
    return item != nullptr;
}

// Digits

bool ShelfKeyboard::chooseChip(std::ptrdiff_t digit) {
    if (digit > std::ssize(m_view.availableTypes()) + 1)
        return false;
    m_view.selectTypeChip(digit - 1);
    m_view._activeTagIndex = static_cast<std::size_t>(digit - 1);
    return true;
}

bool ShelfKeyboard::chooseSidebarRow(std::ptrdiff_t digit) {
    if (digit > sidebarRowCount())
        return false;
    m_view.selectSidebarRow(digit - 1);
    return true;
}

bool ShelfKeyboard::quickPaste(std::ptrdiff_t digit, bool isRepeat) {
    const auto& shown = m_view.filteredItems();
    if (digit > std::ssize(shown))
        return false;
    const auto item = shown[static_cast<std::size_t>(digit - 1)];
    if (!isRepeat)
        m_view.onSelect(item);
    return true;
}

// Lanes

bool ShelfKeyboard::laneKey(const KeyEvent& event) {
    const auto column = static_cast<std::size_t>(columnOf(m_view._lane, m_view._viewMode));
    const auto* const key = std::ranges::find(Tables::plainKeys, event.keyCode, &LaneRules::keyCode);
    return (this->*key->rules.at(column))(event);
}

bool ShelfKeyboard::notHandled(const KeyEvent&) {
    return false;
}

bool ShelfKeyboard::enterSearch(const KeyEvent&) {
    m_view._lane = KeyboardLane::search;
    m_view._searchFocused = true;
    return true;
}

bool ShelfKeyboard::enterTagsFromSearch(const KeyEvent&) {
    goToTags();
    m_view.resignSearchFocus();
    return true;
}

bool ShelfKeyboard::enterList(const KeyEvent&) {
    m_view._lane = KeyboardLane::list;
    return true;
}

bool ShelfKeyboard::previousRow(const KeyEvent& event) {
    const auto row = static_cast<std::ptrdiff_t>(m_view.sidebarIndex()) - 1;
    if (row < 0)
        return enterSearch(event);
    m_view.selectSidebarRow(row);
    return true;
}

bool ShelfKeyboard::nextRow(const KeyEvent&) {
    const auto row = static_cast<std::ptrdiff_t>(m_view.sidebarIndex()) + 1;
    if (row < sidebarRowCount())
        m_view.selectSidebarRow(row);
    return true;
}

bool ShelfKeyboard::previousTag(const KeyEvent&) {
    return stepToChip(static_cast<std::ptrdiff_t>(m_view._activeTagIndex) - 1);
}

bool ShelfKeyboard::nextTag(const KeyEvent&) {
    return stepToNextChip(static_cast<std::ptrdiff_t>(m_view._activeTagIndex) + 1);
}

bool ShelfKeyboard::previousItem(const KeyEvent&) {
    if (!m_view._selection || m_view.indexInFilteredItems(m_view._selection) == std::size_t{0})
        goToTags();
    else
        m_view.moveSelection(-1);
    return true;
}

bool ShelfKeyboard::nextItem(const KeyEvent&) {
    m_view.moveSelection(1);
    return true;
}

bool ShelfKeyboard::previousChip(const KeyEvent&) {
    return stepToChip(chipPosition() - 1);
}

bool ShelfKeyboard::nextChip(const KeyEvent&) {
    return stepToNextChip(chipPosition() + 1);
}

bool ShelfKeyboard::cellAbove(const KeyEvent&) {
    if (selectionIndex() >= columns())
        m_view.moveSelection(-columns());
    else
        goToTags();
    return true;
}

bool ShelfKeyboard::cellBelow(const KeyEvent&) {
    m_view.moveSelection(columns());
    return true;
}

bool ShelfKeyboard::cellBefore(const KeyEvent&) {
    if (m_view.filteredItems().empty())
        return goToSidebarIfShown();
    if (selectionIndex() % columns() >= 1)
        m_view.moveSelection(-1);
    else
        goToSidebarIfShown();
    return true;
}

bool ShelfKeyboard::cellBehind(const KeyEvent&) {
    const auto count = std::ssize(m_view.filteredItems());
    if (count == 0)
        return false;
    const auto index = selectionIndex();
    if (index % columns() < columns() - 1 && index < count - 1)
        m_view.moveSelection(1);
    return true;
}

bool ShelfKeyboard::paste(const KeyEvent& event) {
    const auto item = m_view.currentItem();
    if (!item)
        return false;
    if (!event.isRepeat)
        m_view.onSelect(item);
    return true;
}

bool ShelfKeyboard::preview(const KeyEvent&) {
    const auto item = m_view.currentItem();
    if (item)
        m_view.preview(item);
    return item != nullptr;
}

void ShelfKeyboard::goToTags() {
    m_view._lane = KeyboardLane::tags;
    m_view._activeTagIndex = m_view.chipPosition();
}

bool ShelfKeyboard::goToSidebarIfShown() {
    if (!m_view._sidebarVisible)
        return false;
    m_view._lane = KeyboardLane::sidebar;
    return true;
}

bool ShelfKeyboard::stepToNextChip(std::ptrdiff_t position) {
    return position <= std::ssize(m_view.availableTypes()) && stepToChip(position);
}

bool ShelfKeyboard::stepToChip(std::ptrdiff_t position) {
    if (position < 0)
        return goToSidebarIfShown();
    m_view._activeTagIndex = static_cast<std::size_t>(position);
    m_view.selectTypeChip(position);
    return true;
}

std::ptrdiff_t ShelfKeyboard::chipPosition() const {
    return static_cast<std::ptrdiff_t>(m_view.chipPosition());
}

std::ptrdiff_t ShelfKeyboard::selectionIndex() const {
    return static_cast<std::ptrdiff_t>(m_view.indexInFilteredItems(m_view._selection).value_or(0));
}

std::ptrdiff_t ShelfKeyboard::columns() const {
    return static_cast<std::ptrdiff_t>(m_view._gridColumnCount);
}

std::ptrdiff_t ShelfKeyboard::sidebarRowCount() const {
    return std::ssize(m_view.allCollections()) + static_cast<std::ptrdiff_t>(fixedLensCount);
}

} // namespace kestrova
