#pragma once

#include "Kestrova/look/Transition.h"
#include "Kestrova/shelf/widgets/PictureDecoder.h"
#include "Kestrova/shelf/widgets/ShelfTheme.h"

#include <QWidget>

namespace kestrova {

class ChipRow;
class DetailOverlay;
class ItemContentView;
class ItemListView;
class MainQueue;
class ShelfPanelView;
class Sidebar;
class TopBar;

/// All that the panel shows, laid out. It follows the state in `render` and holds none.
class ShelfContent final : public QWidget {
public:
    /// How far what lies behind the window is let through.
    enum class Ground { translucent, opaque };

    /// Both outlive it.
    ShelfContent(ShelfPanelView& view, MainQueue& mainQueue, QWidget* parent);

    void render();
    void setGround(Ground ground);
    /// Takes the keyboard away from whichever text control has it.
    void endEditing();

    static constexpr int height = 540;
    static constexpr double cornerRadius = 12;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void arrange();
    void placeFocus();
    void searchFocusChanged(bool isFocused);

    ShelfPanelView& m_view;
    PictureDecoder m_decoder;
    ShelfTheme m_theme;
    Ground m_ground = Ground::translucent;
    Transition m_sidebarShown;
    Transition m_previewShown;
    TopBar* m_topBar;
    Sidebar* m_sidebar;
    ChipRow* m_chipRow;
    ItemListView* m_list;
    ItemContentView* m_preview;
    DetailOverlay* m_overlay;
    bool m_isRendering = false;
};

} // namespace kestrova
