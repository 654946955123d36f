#pragma once

#include "Kestrova/look/Transition.h"
#include "Kestrova/shelf/ShelfTypes.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"
#include "Kestrova/shelf/widgets/SidebarCounts.h"
#include "Kestrova/shelf/widgets/SidebarRow.h"

#include <QBasicTimer>
#include <QWidget>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

class QScrollArea;

namespace kestrova {

class KovaCollection;
class LabelButton;
class ShelfPanelView;
class ThinScrollBar;

/// The lenses: three fixed ones, then the collections.
class Sidebar final : public QWidget {
public:
    /// `view` outlives it.
    Sidebar(ShelfPanelView& view, QWidget* parent);

    void render(const ShelfTheme& theme);
    /// Of the open lens.
    SidebarRow& currentRow() const;

    /// The person asks for the menu of a collection at a place of the screen.
    std::function<void(const std::shared_ptr<KovaCollection>&, QPoint globalPosition)> onContextMenu;

    /// The person begins to drag a collection.
    std::function<void(const std::shared_ptr<KovaCollection>&, const DragPicture&)> onDrag;
    /// Something is dragged over the rows, or no longer if `place` is null: near their ends they scroll.
    /// Answers whether they do, so that what is at the place is about to change.
    bool dragHovers(const QPoint* place);

    static constexpr int width = 200;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    /// The widget on which the rows lie; it draws the line between fixed rows and collections.
    class RowColumn;

    int headerHeight() const;
    int footerHeight() const;
    const SidebarCounts& counts();
    std::vector<SidebarRow::Values> rowValues();
    void makeRows(std::size_t count);
    void askForMenu(std::size_t position, QPoint globalPosition);
    void arrange();
    void noteReordering();
    void placeRows();
    void publishFrames();
    QRectF publishedFrame(std::size_t row) const;
    /// Where rows can be seen, in the space of the published frames.
    QRect rowsArea() const;
    bool canDragScroll() const;

    ShelfPanelView& m_view;
    QScrollArea* m_scrollArea;
    RowColumn* m_column;
    ThinScrollBar* m_scrollBar;
    LabelButton* m_newCollection;
    std::vector<SidebarRow*> m_rows;
    ShelfTheme m_theme;
    SidebarCounts m_counts;
    std::optional<std::uint64_t> m_countedRevision;
    std::size_t m_shownRow = 0;
    // Where the rows lie in the column once they stand still.
    std::vector<int> m_tops;
    std::vector<CollectionID> m_shownCollections;
    // From where collections that have been reordered glide to their places.
    std::map<CollectionID, int> m_glideFrom;
    Transition m_glide;
    std::uint64_t m_shownReorderings = 0;
    QBasicTimer m_dragScroll;
    int m_dragScrollStep = 0;
};

} // namespace kestrova
