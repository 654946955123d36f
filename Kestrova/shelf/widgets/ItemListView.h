#pragma once

#include "Kestrova/look/Transition.h"
#include "Kestrova/shelf/widgets/ItemListModel.h"
#include "Kestrova/shelf/widgets/ItemRowDelegate.h"
#include "Kestrova/shelf/widgets/ThumbnailCache.h"

#include <QListView>

#include <map>
#include <memory>
#include <optional>

namespace kestrova {

class PictureDecoder;
class ShelfPanelView;
class ThinScrollBar;

/// The history as a list, one row an item, or a word to the person if there is none. What the person does to
/// a row goes to the state; only the place to which the list is scrolled is its own.
class ItemListView final : public QListView {
public:
    /// All of them outlive it.
    ItemListView(ShelfPanelView& view, MainQueue& mainQueue, PictureDecoder& decoder, QWidget* parent);
    ~ItemListView() override;

    /// Shows what the state says now.
    void render(const ShelfTheme& theme);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void hideEvent(QHideEvent* event) override;
    void updateGeometries() override;

private:
    void select(const QModelIndex& index);
    void copy(const QModelIndex& index);
    /// Tells the state what the pointer is on.
    void pointerIsOn(const QModelIndex& index);
    void pointerMayHaveAnotherRow();
    bool isInSight(ItemID id) const;
    void followScrollTarget();
    void fadePins();
    double pinShown(ItemID id, bool isPinned) const;
    void paintEmptyState();

    ShelfPanelView& m_view;
    ItemListModel m_model;
    ThumbnailCache m_thumbnails;
    ItemRowDelegate m_delegate;
    Transition m_peek;
    ThinScrollBar* m_scrollBar;
    std::optional<ItemID> m_underPointer;
    std::optional<ItemID> m_scrollTarget;
    // What the rows in sight showed last, and the pins that come or go.
    std::map<ItemID, bool> m_pinsShown;
    std::map<ItemID, std::unique_ptr<Transition>> m_pinFades;
};

} // namespace kestrova
