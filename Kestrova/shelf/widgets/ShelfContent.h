#pragma once

#include "Kestrova/detail/InfoFormatters.h"
#include "Kestrova/detail/widgets/DetailSurroundings.h"
#include "Kestrova/look/Transition.h"
#include "Kestrova/shelf/controls/Ground.h"
#include "Kestrova/shelf/controls/PictureDecoder.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"
#include "Kestrova/shelf/widgets/DragStart.h"
#include "Kestrova/shelf/widgets/DropDestination.h"
#include "Kestrova/shelf/widgets/ItemContextMenu.h"
#include "Kestrova/shelf/widgets/ShelfFocus.h"

#include <QWidget>

namespace kestrova {

class Appearance;
class ChipRow;
class CollectionSheetView;
class ClipboardItem;
class DetailOverlay;
class ItemGridView;
class ItemListView;
class ItemView;
class MainQueue;
class PreviewPane;
class ShelfPanelView;
class Sidebar;
class TopBar;

/// All that the panel shows, laid out. It follows the state in `render` and holds none.
class ShelfContent final : public QWidget {
public:
    /// All of them outlive it.
    ShelfContent(ShelfPanelView& view, MainQueue& mainQueue, const Appearance& appearance,
                 TellReaders tellReaders, QWidget* parent);

    void render();
    /// While nothing is rendered: drops what has been deleted.
    void forgetDeleted();
    void setGround(Ground ground);
    /// Takes the keyboard away from whichever text control has it.
    void endEditing();
    /// The panel has just been hidden; see `ShelfFocus`.
    void awaitLateKeys() { m_focus.awaitLateKeys(); }
    /// A menu of them; the person may close it without a choice.
    void pickShareTarget(const std::vector<ShareTarget>& targets,
                         std::function<void(const ShareTarget&)> done);

protected:
    bool focusNextPrevChild(bool next) override { return m_focus.focusNext(next); }
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override { m_dropDestination.enter(*event); }
    void dragMoveEvent(QDragMoveEvent* event) override { m_dropDestination.move(*event); }
    void dragLeaveEvent(QDragLeaveEvent*) override { m_dropDestination.leave(); }
    void dropEvent(QDropEvent* event) override { m_dropDestination.drop(*event); }

private:
    void arrange();
    DetailSurroundings detailSurroundings();
    void connectDrags();
    ItemView& items() const;
    /// On the screen, at what shows the item, or as near to that as can be seen.
    QPoint placeOfMenu(const ClipboardItem& item) const;

    ShelfPanelView& m_view;
    const Appearance& m_appearance;
    PictureDecoder m_decoder;
    InfoFormatters m_formatters;
    ShelfTheme m_theme;
    Ground m_ground = Ground::translucent;
    ItemContextMenu m_contextMenu;
    DragStart m_dragStart;
    DropDestination m_dropDestination;
    Transition m_sidebarShown;
    Transition m_previewShown;
    TopBar* m_topBar;
    Sidebar* m_sidebar;
    ChipRow* m_chipRow;
    ItemListView* m_list;
    ItemGridView* m_grid;
    PreviewPane* m_preview;
    DetailOverlay* m_overlay;
    CollectionSheetView* m_collectionSheet;
    ShelfFocus m_focus;
};

} // namespace kestrova
