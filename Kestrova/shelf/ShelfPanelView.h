#pragma once

#include "Kestrova/shelf/CollectionEditSheet.h"
#include "Kestrova/shelf/CollectionOperations.h"
#include "Kestrova/shelf/DeletedItemSnapshot.h"
#include "Kestrova/shelf/ItemHandover.h"
#include "Kestrova/shelf/ItemOperations.h"
#include "Kestrova/shelf/ShelfLists.h"
#include "Kestrova/shelf/ShelfTypes.h"
#include "Kestrova/state/Reactions.h"
#include "Kestrova/state/StoredFlag.h"
#include "KestrovaCore/ClipboardItemType.h"
#include "KestrovaCore/LiveQuery.h"
#include "KestrovaCore/ModelContext.h"
#include "Platform/EventMonitors.h"
#include "Platform/MainQueue.h"
#include "Platform/UserDefaults.h"

#include <QList>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QUrl>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace kestrova {

class ClipboardItem;
class HUD;
class KovaCollection;
class LinkPreviewCache;
class ModelContainer;
class Pasteboard;
class Screens;
class ShelfDrags;
class ShelfKeyboard;
class ShelfPanel;
class Sharing;
class Workspace;

/// The single holder of the shelf's state: what is looked at, what is selected, where the keyboard is. Lists,
/// sidebar, chips and keys are functions of the fields below; nothing else of the shelf keeps a selection or
/// a filter. It lives as long as the program, so all that a show does not reset survives a hide.
///
/// Everything that enters it (a key, a click, a notice) runs inside `perform`; fields are changed nowhere
/// else. Main thread only.
class ShelfPanelView {
public:
    /// All of it outlives the view.
    struct Surroundings {
        ModelContainer& container;
        MainQueue& mainQueue;
        Pasteboard& pasteboard;
        UserDefaults& defaults;
        EventMonitors& eventMonitors;
        HUD& hud;
        ShelfPanel& panel;
        Workspace& workspace;
        Sharing& sharing;
        const Screens& screens;
        LinkPreviewCache& linkPreviews;
    };
    using ItemAction = std::function<void(const std::shared_ptr<ClipboardItem>&)>;
    using Items = std::vector<std::shared_ptr<ClipboardItem>>;
    using Collections = std::vector<std::shared_ptr<KovaCollection>>;

    /// All of them are set.
    struct Callbacks {
        ItemAction onSelect;
        std::function<void()> onDismiss;
        ItemAction onEditImage;
        std::function<void(double)> onPanelWidthChange;
        /// Another application is about to be in front and keeps the keyboard.
        std::function<void()> onStepAside;
    };

    ShelfPanelView(const Surroundings& surroundings, Callbacks callbacks);
    ShelfPanelView(const ShelfPanelView&) = delete;
    ShelfPanelView& operator=(const ShelfPanelView&) = delete;
    ~ShelfPanelView();

    /// Runs an event handler on the state, then the reactions to what it changed, then `onRender` if anything
    /// that is painted may have changed.
    template<typename Handler>
    void perform(Handler&& handler) {
        m_reactions.perform(std::forward<Handler>(handler));
    }
    /// For what shows the state: nothing of it is changed through these.
    const Surroundings& surroundings() const { return m_surroundings; }
    /// The moment to paint.
    std::function<void()> onRender;

    // Events.
    void viewAppears();
    void viewDisappears();
    /// "ShelfPanelDidShow": the panel has come up.
    void shelfPanelDidShow();

    /// Whether a key goes to the panel, and to no sheet of its.
    bool isOfThePanel(const LocalEvent& event) const;
    EventMonitors& eventMonitors() const { return m_surroundings.eventMonitors; }

    // Derived values; each read gives what a computation from scratch would. The lists stay where they are
    // until the state or the history changes.
    const Items& lensItems() const;
    const Items& filteredItems() const;
    const std::vector<ClipboardItemType>& availableTypes() const;
    std::shared_ptr<KovaCollection> activeCollection() const;
    std::shared_ptr<ClipboardItem> currentItem() const;
    std::size_t sidebarIndex() const;
    /// Of the chip that is chosen; 0 if there is no such chip.
    std::size_t chipPosition() const;
    /// The lists above hold no item any more until they are read again. For a shelf that is out of sight: an
    /// item that is held somewhere has its picture read before it is deleted.
    void dropLists() { m_lists.itemsChanged(); }
    const Items& items() const { return m_items.results(); }
    /// Moves on with each change of `items`, or of a field of one of them.
    std::uint64_t itemsRevision() const { return m_itemsRevision; }
    const Collections& allCollections() const { return m_allCollections.results(); }
    /// The place of the item in `filteredItems`.
    std::optional<std::size_t> indexInFilteredItems(std::optional<ItemID> id) const;
    /// 960 with the sidebar, 760 without, in points.
    double panelWidth() const;
    /// The collection row at a point, in the space of `_tabFrames`.
    std::optional<TabDropTarget> dropTargetAt(QPointF point) const;

    // Operations on the state. To be called inside `perform`.
    void selectSidebarRow(std::ptrdiff_t row);
    void selectTypeChip(std::ptrdiff_t position);
    void flipViewMode();
    void moveSelection(std::ptrdiff_t delta);
    void resetSelectionToFirst();
    void resignSearchFocus();
    /// The keyboard goes there, as by the keys of the neighbouring lanes.
    void enterLane(KeyboardLane lane);
    void popRoute();

    // Operations on an item. To be called inside `perform`.
    void copy(const std::shared_ptr<ClipboardItem>& item) { m_operations.copy(item); }
    /// The same of a text that was made of the item.
    void copyText(const std::shared_ptr<ClipboardItem>& item, const QString& text) {
        m_operations.copyText(item, text);
    }
    /// As `copy`, without the toast.
    void writeToPasteboard(const ClipboardItem& item) { m_operations.writeToPasteboard(item); }
    /// Nothing happens to an item that has been deleted meanwhile; so too in `deleteItem`.
    void togglePin(ClipboardItem& item);
    static bool isEditable(const ClipboardItem& item);
    void edit(const std::shared_ptr<ClipboardItem>& item);
    void preview(const std::shared_ptr<ClipboardItem>& item);
    /// Of an item that has been deleted meanwhile, what was typed becomes a new one.
    void saveEdit(ClipboardItem& item, const QString& content);
    /// Nothing happens if the item or the collection has been deleted meanwhile; so too in the two below.
    void addToCollection(ClipboardItem& item, const std::shared_ptr<KovaCollection>& collection);
    void removeFromCollection(ClipboardItem& item, const KovaCollection& collection);
    void toggleCollection(ClipboardItem& item, const std::shared_ptr<KovaCollection>& collection);
    void itemTapped();
    void deleteItem(ClipboardItem& item);
    /// With its default application. Nothing happens to an item without a file; so too in `revealFile`.
    void openFile(const ClipboardItem& item) { m_handover.openFile(item); }
    void revealFile(const ClipboardItem& item) { m_handover.revealFile(item); }
    void open(const QUrl& url) { m_handover.open(url); }
    void reveal(const QUrl& file) { m_handover.reveal(file); }
    /// On the next turn asks for an application, and hands the item over to the one that is chosen.
    void share(const std::shared_ptr<ClipboardItem>& item) { m_handover.share(item); }
    void undoLastDelete();
    /// Makes one item of each URL that was dropped on the lists.
    void dropURLs(const QList<QUrl>& urls);

    /// Drags that start in the shelf or come over it.
    ShelfDrags& drags() const { return *m_drags; }
    void dragEnded();

    // Operations on a collection. To be called inside `perform`.
    void presentCollectionSheet(const CollectionEditSheet::Mode& mode);
    /// The open sheet with what has been typed in it, or null. It outlives a hide.
    CollectionEditSheet* collectionSheet() const { return m_collectionOperations.sheet(); }
    /// The items stay in the history.
    void deleteCollection(const std::shared_ptr<KovaCollection>& collection);

    // The state. Text and flags that are kept in the user defaults are read there at each use.
    QString themeRaw() const;
    QString _query;
    std::optional<ItemID> _selection;
    std::optional<ItemID> _hoveredItem;
    std::optional<ItemID> _scrollTarget;
    std::optional<ClipboardItemType> _typeFilter;
    CollectionFilter _collectionFilter = CollectionFilter::all();
    std::optional<CollectionEditSheet::Mode> _collectionSheetMode;
    std::optional<DetailRoute> _route;
    std::optional<DetailRoute> _suspendedRoute;
    std::vector<DeletedItemSnapshot> _deletedStack;
    std::unique_ptr<EventMonitor> _keyMonitor;
    bool _optionHeld = false;
    bool _commandHeld = false;
    bool _controlHeld = false;
    std::unique_ptr<EventMonitor> _modifierMonitor;
    std::unordered_map<TabDropTarget, QRectF> _tabFrames;
    /// What can be seen of them: nothing is dropped on the rest.
    QRectF _visibleTabs;
    std::optional<TabDropTarget> _hoveredDropTarget;
    ScheduledBlock _hoverPollTimer;
    std::optional<CollectionID> _draggingCollectionID;
    std::optional<double> _dragReorderHoverX;
    ScheduledBlock _dragReorderPollTimer;
    bool _searchFocused = false;
    /// A control that belongs to no lane has the keyboard: Return and Space press it.
    bool _controlFocused = false;
    KeyboardLane _lane = KeyboardLane::search;
    std::size_t _activeTagIndex = 0;
    /// At least 1.
    std::size_t _gridColumnCount = 4;
    ItemAction onSelect;
    std::function<void()> onDismiss;
    ItemAction onEditImage;
    std::function<void(double)> onPanelWidthChange;
    std::function<void()> onStepAside;
    StoredFlag _sidebarVisible;
    ShelfViewMode _viewMode = ShelfViewMode::list;
    StoredFlag _previewVisible;

private:
    void declareReactions();
    void lensChanged(const CollectionFilter& from, const CollectionFilter& to);
    void reportPanelWidth();
    void installMonitors();
    void removeMonitors();
    bool goesToThePanel(const LocalEvent& event) const;
    void select(std::optional<ItemID> id);
    /// Runs a change that ends with a save, and drops the failure of the save: the change stands in memory
    /// and goes to disk with the next one.
    template<typename Change>
    void changeAndSave(Change&& change);

    Surroundings m_surroundings;
    ModelContext m_context;
    ItemQuery m_items;
    CollectionQuery m_allCollections;
    ItemOperations m_operations;
    ItemHandover m_handover;
    CollectionOperations m_collectionOperations;
    mutable ShelfLists m_lists;
    std::uint64_t m_itemsRevision = 0;
    std::uint64_t m_collectionsRevision = 0;
    Reactions m_reactions;
    std::unique_ptr<ShelfDrags> m_drags;
    std::unique_ptr<ShelfKeyboard> m_keyboard;
    std::vector<DefaultsObservation> m_observations;
};

} // namespace kestrova
