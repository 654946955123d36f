#pragma once

#include "Kestrova/look/Transition.h"
#include "Kestrova/shelf/ShelfTypes.h"
#include "Kestrova/shelf/widgets/DragStart.h"
#include "Kestrova/shelf/widgets/ItemDelegate.h"
#include "Kestrova/shelf/widgets/ItemLayout.h"
#include "Kestrova/shelf/widgets/ItemListModel.h"
#include "Kestrova/shelf/widgets/ListEmptyState.h"
#include "Kestrova/shelf/widgets/ThumbnailCache.h"
#include "KestrovaCore/ClipboardItemType.h"

#include <QAbstractItemView>

#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace kestrova {

class ClipboardItem;
class PictureDecoder;
class ShelfPanelView;
class ThinScrollBar;

/// What the list and the grid have in common: the history in cells of one size that scroll, or a word to the
/// person if there is none. What the person does to an item goes to the state; only the place to which it is
/// scrolled is its own. It never takes the keyboard.
///
/// Of the two, one is in sight: the one of the state's view mode. The other stays hidden and does nothing.
class ItemView : public QAbstractItemView {
public:
    ~ItemView() override;

    /// Shows what the state says now, itself included.
    void render(const ShelfTheme& theme);
    /// Drops the pictures of items that have been deleted.
    void forgetDeleted() { m_thumbnails.forgetDeleted(); }

    /// As if the person had clicked the item.
    void select(const QModelIndex& index);
    /// On the screen, at what shows the item, or as near to that as can be seen.
    QPoint placeOfMenu(const QModelIndex& index) const;
    /// Whether the arrow keys walk its items now.
    bool isWalked() const;
    std::shared_ptr<ClipboardItem> item(const QModelIndex& index) const { return m_model->item(index); }

    /// The person asks for the menu of an item, at a place on the screen. It selects nothing.
    std::function<void(const std::shared_ptr<ClipboardItem>&, QPoint globalPosition)> onContextMenu;

    /// The person begins to drag an item.
    std::function<void(const std::shared_ptr<ClipboardItem>&, const DragPicture&)> onDrag;
    /// Nothing tells the view where a drag has left the pointer.
    void dragEnded();

    // Of the toolkit's views. `visualRect` knows rows that are far out of sight, too.
    QRect visualRect(const QModelIndex& index) const override;
    QModelIndex indexAt(const QPoint& point) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

protected:
    /// All of them outlive it. The view shows itself while the state has that mode.
    ItemView(ShelfPanelView& view, ShelfViewMode mode, MainQueue& mainQueue, PictureDecoder& decoder,
             QWidget* parent);

    /// Where the cells lie in an area of that width.
    virtual ItemLayout layoutOf(std::size_t count) const = 0;
    /// Of the picture in a cell of the layout, in points.
    virtual QSize thumbnailSize() const = 0;
    /// Points by which a notch of the wheel moves the content, divided by the lines that it stands for.
    virtual int scrollStep() const = 0;
    virtual ListEmptyState emptyState() const = 0;
    /// Something beside the common look that the state decides; before anything is drawn.
    virtual void stateChanged() {}

    /// To be called at the end of the constructor.
    void start(std::unique_ptr<ItemDelegate> delegate);

    const ShelfPanelView& state() const { return m_view; }
    ItemDelegate& delegate() const { return *m_delegate; }
    const ItemListModel& items() const { return *m_model; }
    ThumbnailCache& thumbnails() { return m_thumbnails; }
    const ItemLayout& itemLayout() const { return m_layout; }

    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void updateGeometries() override;

    int horizontalOffset() const override { return 0; }
    int verticalOffset() const override;
    bool isIndexHidden(const QModelIndex&) const override { return false; }
    // The keyboard and the selection are the state's.
    QModelIndex moveCursor(CursorAction, Qt::KeyboardModifiers) override { return currentIndex(); }
    void setSelection(const QRect&, QItemSelectionModel::SelectionFlags) override {}
    QRegion visualRegionForSelection(const QItemSelection&) const override { return {}; }

private:
    /// What is looked at: items that come and go within it do not move what the person is reading.
    struct Lens {
        CollectionFilter collection = CollectionFilter::all();
        std::optional<ClipboardItemType> type;
        QString query;
        bool operator==(const Lens&) const = default;
    };
    /// An item in sight, and how far below the top of the viewport it begins.
    struct Anchor {
        ItemID id;
        int top = 0;
    };

    Lens lens() const;
    void leave();
    /// Answers whether other items are shown than before.
    bool showItems();
    void boundThumbnails();
    std::vector<Anchor> anchors() const;
    void restore(const std::vector<Anchor>& anchors);
    ItemLayout::Range rangeInSight() const;
    std::optional<std::size_t> placeInSight(ItemID id) const;
    /// In the coordinates of the viewport.
    QRect cellRect(std::size_t index) const;
    QModelIndex indexOf(std::size_t place) const { return m_model->index(static_cast<int>(place), 0); }

    void copy(const QModelIndex& index);
    void dragPressed();
    DragPicture pictureOf(const QModelIndex& index, QPoint pressed) const;
    /// Tells the state what the pointer is on.
    void pointerIsOn(const QModelIndex& index);
    void pointerMayHaveAnotherItem();
    void followScrollTarget();
    void centreScrollTarget();
    void fadePins();
    void rememberPins();
    double pinShown(ItemID id, bool isPinned) const;

    ShelfPanelView& m_view;
    const ShelfViewMode m_mode;
    ItemListModel* m_model;
    ThumbnailCache m_thumbnails;
    std::unique_ptr<ItemDelegate> m_delegate;
    ThinScrollBar* m_scrollBar;
    ItemLayout m_layout;
    double m_pixelRatio = 1;
    Lens m_lens;
    bool m_isInUse = true;
    bool m_followsOnShow = false;
    std::optional<ItemID> m_pressed;
    QPoint m_pressedAt;
    std::optional<ItemID> m_clicked;
    std::optional<ItemID> m_underPointer;
    std::optional<ItemID> m_scrollTarget;
    // What the items in sight showed last, and the pins that come or go.
    std::map<ItemID, bool> m_pinsShown;
    std::map<ItemID, std::unique_ptr<Transition>> m_pinFades;
};

} // namespace kestrova
