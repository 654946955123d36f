#include "Kestrova/detail/ItemActionsCard.h"

#include "Kestrova/detail/ActionRows.h"
#include "Platform/KeyEvent.h"

#include <algorithm>
#include <array>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr auto hoverPause = 400ms;
// The bits that the host sets on arrows and on the keypad are none of these.
constexpr std::uint32_t heldModifiers = ModifierFlags::capsLock | ModifierFlags::shift |
                                        ModifierFlags::control | ModifierFlags::option |
                                        ModifierFlags::command | ModifierFlags::help;

enum class Held { anything, nothing, commandAlone };
/// What a key does that is held down.
enum class Repeat { never, always };

bool isHeld(Held held, std::uint32_t flags) {
    switch (held) {
    case Held::anything:
        return true;
    case Held::nothing:
        return (flags & heldModifiers) == 0;
    case Held::commandAlone:
        return (flags & heldModifiers) == ModifierFlags::command;
    }
    Q_UNREACHABLE();
}

bool isInside(std::ptrdiff_t index, const std::vector<ActionRow>& rows) {
    return index >= 0 && index < std::ssize(rows);
}

/// The first row from `index` on that is not disabled; `index` itself if there is none.
std::ptrdiff_t skippingDisabled(std::ptrdiff_t index, std::ptrdiff_t direction,
                                const std::vector<ActionRow>& rows) {
    auto found = index;
    while (isInside(found, rows) && rows[static_cast<std::size_t>(found)].disabled)
        found += direction;
    return isInside(found, rows) ? found : index;
}

} // namespace

struct ItemActionsCard::KeyBinding {
    std::uint16_t keyCode;
    Held held;
    /// Absent: both.
    std::optional<CardScreen> screen;
    bool (ItemActionsCard::*run)();
    Repeat repeat = Repeat::never;
};

struct ItemActionsCard::Tables {
    using C = ItemActionsCard;

    static constexpr auto root = CardScreen::root;
    static constexpr auto collections = CardScreen::collections;

    static constexpr std::array keys{
        KeyBinding{VirtualKey::escape, Held::anything, collections, &C::goBack},
        KeyBinding{VirtualKey::escape, Held::anything, root, &C::cancel},
        KeyBinding{VirtualKey::returnKey, Held::nothing, {}, &C::runSelected},
        KeyBinding{VirtualKey::space, Held::nothing, root, &C::preview},
        KeyBinding{VirtualKey::deleteKey, Held::nothing, root, &C::deleteItem},
        KeyBinding{VirtualKey::upArrow, Held::nothing, {}, &C::moveUp, Repeat::always},
        KeyBinding{VirtualKey::downArrow, Held::nothing, {}, &C::moveDown, Repeat::always},
        KeyBinding{VirtualKey::c, Held::commandAlone, root, &C::copy},
        KeyBinding{VirtualKey::e, Held::commandAlone, root, &C::edit},
        KeyBinding{VirtualKey::p, Held::commandAlone, root, &C::togglePin},
        KeyBinding{VirtualKey::k, Held::commandAlone, root, &C::cancel}};
};

ItemActionsCard::ItemActionsCard(Surroundings surroundings, ItemActions itemActions)
    : actions(std::move(itemActions)), m_surroundings(std::move(surroundings)) {
    m_reactions.watch([this] { return std::pair(selectedIndex, hoveredIndex); });
    m_reactions.watch([this] { return screen; });
    m_reactions.watch([this] { return std::pair(actions.allCollections, actions.isInCurrentCollection); });
    m_reactions.onSettled = [this] {
        if (onRender)
            onRender();
    };
}

ItemActionsCard::~ItemActionsCard() = default;

// Events

void ItemActionsCard::appears() {
    perform([this] {
        ignoreHoverForAMoment();
        if (keyMonitor)
            return;
        keyMonitor =
            m_surroundings.eventMonitors.addLocalMonitor(EventMask::keyDown, [this](const LocalEvent& event) {
                return m_surroundings.isOfTheWindow(event) && handleKey(event.key);
            });
    });
}

void ItemActionsCard::disappears() {
    perform([this] {
        keyMonitor.reset();
        hoveredIndex.reset();
    });
}

void ItemActionsCard::pointerMoved(std::ptrdiff_t row) {
    if (m_surroundings.now() < ignoreHoverUntil)
        return;
    perform([&] { hoveredIndex = row; });
}

void ItemActionsCard::pointerLeft() {
    perform([this] { hoveredIndex.reset(); });
}

void ItemActionsCard::rowClicked(std::ptrdiff_t row) {
    perform([&] { run(row); });
}

void ItemActionsCard::collectionsChanged(std::vector<std::shared_ptr<KovaCollection>> allCollections,
                                         std::function<void()> onRemoveFromCurrentCollection) {
    perform([&] {
        actions.allCollections = std::move(allCollections);
        actions.isInCurrentCollection = onRemoveFromCurrentCollection != nullptr;
        actions.onRemoveFromCurrentCollection = std::move(onRemoveFromCurrentCollection);
        // A highlight on a row that has gone would leave the person without any.
        const auto last = std::max<std::ptrdiff_t>(std::ssize(rows()) - 1, 0);
        selectedIndex = std::min(selectedIndex, last);
        if (hoveredIndex > last)
            hoveredIndex.reset();
    });
}

// State

std::vector<ActionRow> ItemActionsCard::rows() {
    switch (screen) {
    case CardScreen::root:
        return rootRows(actions, [this] { go(CardScreen::collections); });
    case CardScreen::collections:
        return collectionRows(actions, [this] { go(CardScreen::root); });
    }
    Q_UNREACHABLE();
}

void ItemActionsCard::go(CardScreen to) {
    screen = to;
    selectedIndex = 0;
    hoveredIndex.reset();
    ignoreHoverForAMoment();
}

void ItemActionsCard::ignoreHoverForAMoment() {
    ignoreHoverUntil = m_surroundings.now() + hoverPause;
}

void ItemActionsCard::run(std::ptrdiff_t row) {
    const auto all = rows();
    if (isInside(row, all) && !all[static_cast<std::size_t>(row)].disabled)
        all[static_cast<std::size_t>(row)].invoke();
}

void ItemActionsCard::moveSelection(std::ptrdiff_t direction) {
    const auto all = rows();
    if (all.empty())
        return;
    const auto next = std::clamp<std::ptrdiff_t>(selectedIndex + direction, 0, std::ssize(all) - 1);
    selectedIndex = skippingDisabled(next, direction, all);
    hoveredIndex.reset();
}

// Keys

bool ItemActionsCard::handleKey(const KeyEvent& event) {
    const auto* const binding = std::ranges::find_if(Tables::keys, [&](const KeyBinding& each) {
        return each.keyCode == event.keyCode && isHeld(each.held, event.modifierFlags) &&
               each.screen.value_or(screen) == screen;
    });
    if (binding == Tables::keys.end())
        return false;
    // Whoever holds a key a little too long means one thing, and not what follows from it.
    if (event.isRepeat && binding->repeat == Repeat::never)
        return true;
    bool isTaken = false;
    perform([&] { isTaken = (this->*binding->run)(); });
    return isTaken;
}

bool ItemActionsCard::goBack() {
    go(CardScreen::root);
    return true;
}

bool ItemActionsCard::cancel() {
    actions.onCancel();
    return true;
}

bool ItemActionsCard::runSelected() {
    run(selectedIndex);
    return true;
}

bool ItemActionsCard::preview() {
    actions.onPreview();
    return true;
}

bool ItemActionsCard::deleteItem() {
    actions.onDelete();
    return true;
}

bool ItemActionsCard::moveUp() {
    moveSelection(-1);
    return true;
}

bool ItemActionsCard::moveDown() {
    moveSelection(1);
    return true;
}

bool ItemActionsCard::copy() {
    actions.onCopy();
    return true;
}

bool ItemActionsCard::edit() {
    const auto& editing = actions.onEdit ? actions.onEdit : actions.onEditImage;
    if (editing)
        editing();
    return editing != nullptr;
}

bool ItemActionsCard::togglePin() {
    actions.onTogglePin();
    return true;
}

} // namespace kestrova
