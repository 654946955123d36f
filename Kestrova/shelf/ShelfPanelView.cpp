#include "Kestrova/shelf/ShelfPanelView.h"

#include "Kestrova/capture/HUD.h"
#include "Kestrova/shelf/ShelfDrags.h"
#include "Kestrova/shelf/ShelfKeyboard.h"
#include "Kestrova/shelf/ShelfPanel.h"
#include "Kestrova/shelf/SidebarRows.h"
#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/CollectionMembership.h"
#include "KestrovaCore/KovaCollection.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

namespace kestrova {
namespace {

constexpr std::size_t deletionsKept = 20;

QString themeKey() {
    return QStringLiteral("themePreference");
}

/// Two views of one history, between which a chip is kept.
bool isBetweenAllAndPinned(const CollectionFilter& from, const CollectionFilter& to) {
    return (from == CollectionFilter::all() && to == CollectionFilter::pinned()) ||
           (from == CollectionFilter::pinned() && to == CollectionFilter::all());
}

} // namespace

template<typename Change>
void ShelfPanelView::changeAndSave(Change&& change) {
    // A row whose save failed still has its temporary identifier; if this one works, it gets its own.
    const auto unsaved = _selection && _selection->isTemporary() ? m_context.item(*_selection) : nullptr;
    const bool isOnUnsaved = _collectionFilter.kind() == CollectionFilter::Kind::collection &&
                             _collectionFilter.collectionID().isTemporary();
    const auto unsavedCollection =
        isOnUnsaved ? m_context.collection(_collectionFilter.collectionID()) : nullptr;
    static_cast<void>(std::forward<Change>(change)());
    m_lists.itemsChanged();
    if (unsaved)
        _selection = unsaved->id();
    if (unsavedCollection)
        _collectionFilter = CollectionFilter::collection(unsavedCollection->id());
}

ShelfPanelView::ShelfPanelView(const Surroundings& surroundings, Callbacks callbacks)
    : onSelect(std::move(callbacks.onSelect)),
      onDismiss(std::move(callbacks.onDismiss)),
      onEditImage(std::move(callbacks.onEditImage)),
      onPanelWidthChange(std::move(callbacks.onPanelWidthChange)),
      onStepAside(std::move(callbacks.onStepAside)),
      _sidebarVisible(surroundings.defaults, QStringLiteral("shelfSidebarVisible"), true),
      _previewVisible(surroundings.defaults, QStringLiteral("shelfPreviewVisible"), true),
      m_surroundings(surroundings),
      m_context(surroundings.container),
      m_items(m_context),
      m_allCollections(m_context),
      m_operations(m_context, surroundings.pasteboard, surroundings.hud),
      m_handover({.mainQueue = surroundings.mainQueue,
                  .workspace = surroundings.workspace,
                  .sharing = surroundings.sharing,
                  .panel = surroundings.panel},
                 [this] { onStepAside(); }),
      m_collectionOperations({.context = m_context,
                              .all = m_allCollections,
                              .sheetMode = _collectionSheetMode,
                              .filter = _collectionFilter,
                              .changeAndSave = [this](const auto& change) { changeAndSave(change); }}),
      m_lists(m_items, m_context),
      m_drags(std::make_unique<ShelfDrags>(*this,
                                           ShelfDrags::Surroundings{.mainQueue = surroundings.mainQueue,
                                                                    .screens = surroundings.screens,
                                                                    .panel = surroundings.panel,
                                                                    .collections = m_collectionOperations})),
      m_keyboard(std::make_unique<ShelfKeyboard>(*this)) {
    declareReactions();
    m_reactions.onSettled = [this] {
        if (onRender)
            onRender();
    };
    m_items.onChange = [this] {
        perform([this] {
            m_lists.itemsChanged();
            ++m_itemsRevision;
        });
    };
    m_allCollections.onChange = [this] { perform([this] { ++m_collectionsRevision; }); };
    for (const auto& key : {themeKey(), _sidebarVisible.key(), _previewVisible.key()})
        m_observations.push_back(surroundings.defaults.observe(key, [this] { perform([] {}); }));
}

ShelfPanelView::~ShelfPanelView() = default;

void ShelfPanelView::declareReactions() {
    m_reactions.when([this] { return _searchFocused; },
                     [this](bool, bool focused) {
                         if (!focused)
                             return;
                         _lane = KeyboardLane::search;
                         _controlFocused = false;
                     });
    m_reactions.when([this] { return _query; },
                     [this](const QString&, const QString&) { resetSelectionToFirst(); });
    m_reactions.when([this] { return _typeFilter; },
                     [this](const auto&, const auto&) {
                         resetSelectionToFirst();
                         resignSearchFocus();
                     });
    m_reactions.when([this] { return _collectionFilter; },
                     [this](const auto& from, const auto& to) { lensChanged(from, to); });
    m_reactions.when([this] { return static_cast<bool>(_sidebarVisible); },
                     [this](bool, bool visible) {
                         reportPanelWidth();
                         if (!visible && _lane == KeyboardLane::sidebar)
                             _lane = KeyboardLane::list;
                         resignSearchFocus();
                     });
    m_reactions.when([this] { return _viewMode; },
                     [this](ShelfViewMode, ShelfViewMode) {
                         reportPanelWidth();
                         if (_selection)
                             _scrollTarget = _selection;
                         resignSearchFocus();
                     });
    m_reactions.when([this] { return static_cast<bool>(_previewVisible); },
                     [this](bool, bool) {
                         reportPanelWidth();
                         resignSearchFocus();
                     });
    m_reactions.when([this] { return _collectionSheetMode; },
                     [this](const auto&, const auto&) { m_collectionOperations.openSheet(); });
    m_reactions.watch([this] { return themeRaw(); });
    m_reactions.watch([this] { return std::pair(m_itemsRevision, m_collectionsRevision); });
    m_reactions.watch([this] { return std::array{_selection, _hoveredItem, _scrollTarget}; });
    m_reactions.watch([this] { return _route; });
    m_reactions.watch([this] {
        const auto* const sheet = collectionSheet();
        return sheet
                   ? std::optional{std::tuple(sheet->_name, sheet->_selectedColorHex, sheet->_hoveringSwatch,
                                              sheet->_hoverHex, sheet->_nameFocused)}
                   : std::nullopt;
    });
    m_reactions.watch([this] { return std::array{_optionHeld, _commandHeld, _controlHeld}; });
    m_reactions.watch([this] { return std::pair(_lane, _activeTagIndex); });
    m_reactions.watch([this] { return _controlFocused; });
}

void ShelfPanelView::lensChanged(const CollectionFilter& from, const CollectionFilter& to) {
    const bool keepsChip =
        isBetweenAllAndPinned(from, to) &&
        (!_typeFilter || std::ranges::find(availableTypes(), *_typeFilter) != availableTypes().end());
    if (!keepsChip)
        _typeFilter.reset();
    _activeTagIndex = 0;
    resetSelectionToFirst();
    resignSearchFocus();
}

void ShelfPanelView::reportPanelWidth() {
    onPanelWidthChange(panelWidth());
}

// Events

void ShelfPanelView::viewAppears() {
    perform([this] {
        const auto& shown = filteredItems();
        _selection = shown.empty() ? std::nullopt : std::optional{shown.front()->id()};
        installMonitors();
        _lane = KeyboardLane::search;
        _searchFocused = true;
    });
}

void ShelfPanelView::shelfPanelDidShow() {
    perform([this] {
        // Where they were let go meanwhile, nobody told the shelf of it.
        m_keyboard->modifiersReleased(0);
        resetSelectionToFirst();
        _lane = KeyboardLane::search;
        _searchFocused = true;
    });
}

void ShelfPanelView::viewDisappears() {
    perform([this] {
        removeMonitors();
        _optionHeld = _commandHeld = _controlHeld = false;
        m_drags->forget();
    });
}

void ShelfPanelView::installMonitors() {
    if (_keyMonitor)
        return;
    _keyMonitor =
        m_surroundings.eventMonitors.addLocalMonitor(EventMask::keyDown, [this](const LocalEvent& event) {
            return isOfThePanel(event) && m_keyboard->handleKey(event.key);
        });
    _modifierMonitor = m_surroundings.eventMonitors.addLocalMonitor(
        EventMask::flagsChanged, [this](const LocalEvent& event) {
            if (isOfThePanel(event))
                m_keyboard->modifiersChanged(event.key.modifierFlags);
            else
                // A modifier may be let go when the keyboard is with a menu of ours, or the panel has gone
                // from the screen already.
                m_keyboard->modifiersReleased(event.key.modifierFlags);
            return false;
        });
}

void ShelfPanelView::removeMonitors() {
    _keyMonitor.reset();
    _modifierMonitor.reset();
}

bool ShelfPanelView::isOfThePanel(const LocalEvent& event) const {
    // Keys that are typed in the sheet are the sheet's.
    return m_surroundings.panel.isVisible() && !_collectionSheetMode && goesToThePanel(event);
}

bool ShelfPanelView::goesToThePanel(const LocalEvent& event) const {
    return event.window != 0 && event.window == m_surroundings.panel.windowNumber();
}

// Derived values

QString ShelfPanelView::themeRaw() const {
    return m_surroundings.defaults.text(themeKey()).value_or(QStringLiteral("system"));
}

const ShelfPanelView::Items& ShelfPanelView::lensItems() const {
    return m_lists.lensItems(_collectionFilter);
}

const ShelfPanelView::Items& ShelfPanelView::filteredItems() const {
    return m_lists.filteredItems({_collectionFilter, _typeFilter, _query});
}

const std::vector<ClipboardItemType>& ShelfPanelView::availableTypes() const {
    return m_lists.availableTypes(_collectionFilter);
}

std::shared_ptr<KovaCollection> ShelfPanelView::activeCollection() const {
    if (_collectionFilter.kind() != CollectionFilter::Kind::collection)
        return nullptr;
    const auto found =
        std::ranges::find(allCollections(), _collectionFilter.collectionID(), &KovaCollection::id);
    return found == allCollections().end() ? nullptr : *found;
}

std::shared_ptr<ClipboardItem> ShelfPanelView::currentItem() const {
    const auto& shown = filteredItems();
    for (const auto& wanted : {_selection, _hoveredItem})
        if (const auto index = indexInFilteredItems(wanted))
            return shown[*index];
    return shown.empty() ? nullptr : shown.front();
}

std::size_t ShelfPanelView::sidebarIndex() const {
    return sidebarRowOf(_collectionFilter, allCollections());
}

std::size_t ShelfPanelView::chipPosition() const {
    if (!_typeFilter)
        return 0;
    const auto& types = availableTypes();
    const auto found = std::ranges::find(types, *_typeFilter);
    return found == types.end() ? 0 : static_cast<std::size_t>(found - types.begin()) + 1;
}

std::optional<std::size_t> ShelfPanelView::indexInFilteredItems(std::optional<ItemID> id) const {
    return id ? m_lists.indexOf(*id, {_collectionFilter, _typeFilter, _query}) : std::nullopt;
}

double ShelfPanelView::panelWidth() const {
    return _sidebarVisible ? ShelfFrame::width : ShelfFrame::widthWithoutSidebar;
}

std::optional<TabDropTarget> ShelfPanelView::dropTargetAt(QPointF point) const {
    // Half-open, so that the edge between two rows belongs to one of them.
    const auto hit = std::ranges::find_if(_tabFrames, [&](const auto& entry) {
        const auto frame = entry.second.intersected(_visibleTabs);
        return point.x() >= frame.left() && point.x() < frame.right() && point.y() >= frame.top() &&
               point.y() < frame.bottom();
    });
    return hit == _tabFrames.end() ? std::nullopt : std::optional{hit->first};
}

// Operations on the state

void ShelfPanelView::selectSidebarRow(std::ptrdiff_t row) {
    _collectionFilter = filterOfSidebarRow(row, allCollections());
}

void ShelfPanelView::selectTypeChip(std::ptrdiff_t position) {
    const auto& types = availableTypes();
    if (position < 0 || position > std::ssize(types))
        return;
    _typeFilter = position == 0 ? std::nullopt : std::optional{types[static_cast<std::size_t>(position - 1)]};
    // A lens that cannot be seen must not narrow what the chip shows.
    if (!_sidebarVisible)
        _collectionFilter = CollectionFilter::all();
}

void ShelfPanelView::flipViewMode() {
    _viewMode = _viewMode == ShelfViewMode::list ? ShelfViewMode::grid : ShelfViewMode::list;
}

void ShelfPanelView::moveSelection(std::ptrdiff_t delta) {
    const auto& shown = filteredItems();
    if (shown.empty())
        return;
    const auto index = indexInFilteredItems(_selection);
    const auto from = index ? static_cast<std::ptrdiff_t>(*index) : -1;
    const auto to = std::clamp<std::ptrdiff_t>(from + delta, 0, std::ssize(shown) - 1);
    select(shown[static_cast<std::size_t>(to)]->id());
}

void ShelfPanelView::resetSelectionToFirst() {
    const auto& shown = filteredItems();
    select(shown.empty() ? std::nullopt : std::optional{shown.front()->id()});
}

void ShelfPanelView::select(std::optional<ItemID> id) {
    _selection = id;
    _scrollTarget = id;
}

void ShelfPanelView::resignSearchFocus() {
    // Both are needed: with the state alone, keys would go on reaching the text control.
    if (m_surroundings.panel.isVisible())
        m_surroundings.panel.endEditing();
    _searchFocused = false;
}

void ShelfPanelView::enterLane(KeyboardLane lane) {
    _lane = lane;
    _controlFocused = false;
    if (lane == KeyboardLane::tags)
        _activeTagIndex = chipPosition();
    if (lane == KeyboardLane::search)
        _searchFocused = true;
    else
        resignSearchFocus();
}

void ShelfPanelView::popRoute() {
    _route = std::exchange(_suspendedRoute, std::nullopt);
}

// Operations on an item

void ShelfPanelView::togglePin(ClipboardItem& item) {
    if (item.isDeleted())
        return;
    changeAndSave([&] { return m_operations.togglePin(item); });
}

bool ShelfPanelView::isEditable(const ClipboardItem& item) {
    switch (item.type()) {
    case ClipboardItemType::text:
    case ClipboardItemType::rtf:
    case ClipboardItemType::url:
    case ClipboardItemType::color:
        return true;
    case ClipboardItemType::image:
    case ClipboardItemType::file:
        return false;
    }
    Q_UNREACHABLE();
}

void ShelfPanelView::edit(const std::shared_ptr<ClipboardItem>& item) {
    if (isEditable(*item))
        _route = DetailRoute::edit(item);
}

void ShelfPanelView::preview(const std::shared_ptr<ClipboardItem>& item) {
    _route = DetailRoute::preview(item);
}

void ShelfPanelView::saveEdit(ClipboardItem& item, const QString& content) {
    changeAndSave([&] { return m_operations.saveEdit(item, content); });
    popRoute();
}

void ShelfPanelView::addToCollection(ClipboardItem& item, const std::shared_ptr<KovaCollection>& collection) {
    if (item.isDeleted() || collection->isDeleted())
        return;
    changeAndSave([&] { return m_operations.addToCollection(item, collection); });
}

void ShelfPanelView::removeFromCollection(ClipboardItem& item, const KovaCollection& collection) {
    if (item.isDeleted() || collection.isDeleted())
        return;
    changeAndSave([&] { return m_operations.removeFromCollection(item, collection); });
}

void ShelfPanelView::toggleCollection(ClipboardItem& item,
                                      const std::shared_ptr<KovaCollection>& collection) {
    if (isInCollection(item, *collection))
        removeFromCollection(item, *collection);
    else
        addToCollection(item, collection);
}

void ShelfPanelView::itemTapped() {
    enterLane(KeyboardLane::list);
}

void ShelfPanelView::deleteItem(ClipboardItem& item) {
    if (item.isDeleted())
        return;
    _deletedStack.push_back(DeletedItemSnapshot::of(item));
    if (_deletedStack.size() > deletionsKept)
        _deletedStack.erase(_deletedStack.begin());
    changeAndSave([&] { return m_operations.deleteItem(item); });
}

void ShelfPanelView::undoLastDelete() {
    if (_deletedStack.empty())
        return;
    const auto item = _deletedStack.back().restored(allCollections());
    _deletedStack.pop_back();
    changeAndSave([&] { return m_operations.insert({item}); });
    select(item->id());
}

void ShelfPanelView::dropURLs(const QList<QUrl>& urls) {
    std::vector<std::shared_ptr<ClipboardItem>> dropped;
    for (const auto& url : urls)
        dropped.push_back(ItemOperations::itemOf(url));
    changeAndSave([&] { return m_operations.insert(dropped); });
    if (!dropped.empty())
        m_surroundings.hud.show(dropped.back(), HUDEvent::copied);
}

void ShelfPanelView::dragEnded() {
    m_drags->end();
    // Keys that were let go meanwhile went to the drag.
    m_keyboard->modifiersReleased(0);
}

// Operations on a collection

void ShelfPanelView::presentCollectionSheet(const CollectionEditSheet::Mode& mode) {
    _collectionSheetMode = mode;
}

void ShelfPanelView::deleteCollection(const std::shared_ptr<KovaCollection>& collection) {
    m_collectionOperations.deleteCollection(collection);
}

} // namespace kestrova
