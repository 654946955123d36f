#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"
#include "Kestrova/shelf/widgets/SidebarCounts.h"
#include "Kestrova/shelf/widgets/SidebarRow.h"

#include <QWidget>

#include <cstdint>
#include <functional>
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

    static constexpr int width = 200;

protected:
    void resizeEvent(QResizeEvent* event) override;
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
};

} // namespace kestrova
