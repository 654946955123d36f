#pragma once

#include "Kestrova/shelf/controls/Ground.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"
#include "Platform/Sharing.h"

#include <QPoint>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QWidget;

namespace kestrova {

class ClipboardItem;
class PanelMenu;
class ShelfPanelView;
struct ItemMenuEntry;

/// Shows the menu of an item, and afterwards the menu of what it can be shared with. What the person chooses
/// goes to the state. At most one of the menus is open; it closes when its item is deleted.
class ItemContextMenu {
public:
    enum class OpenedBy { pointer, keyboard };
    struct Opening {
        QPoint globalPosition;
        OpenedBy openedBy;
    };
    struct Look {
        const ShelfTheme& theme;
        Ground ground;
    };

    /// Both outlive it; the menus belong to `window`.
    ItemContextMenu(ShelfPanelView& view, QWidget& window) : m_view(view), m_window(window) {}

    void open(const std::shared_ptr<ClipboardItem>& item, QPoint globalPosition, OpenedBy openedBy,
              const Look& look);
    /// If `opening` is absent, at the place of the menu that asked for it, or in the middle of the window.
    void pickShareTarget(const std::vector<ShareTarget>& targets,
                         std::function<void(const ShareTarget&)> done, const std::optional<Opening>& opening,
                         const Look& look);
    /// Shows what the state says now.
    void render();

private:
    PanelMenu& makeMenu(const Look& look);
    static void popUp(PanelMenu& menu, const Opening& opening);
    void fill(PanelMenu& menu, const std::vector<ItemMenuEntry>& entries,
              const std::shared_ptr<ClipboardItem>& item);

    ShelfPanelView& m_view;
    QWidget& m_window;
    QPointer<PanelMenu> m_menu;
    std::weak_ptr<ClipboardItem> m_item;
    std::optional<QPoint> m_place;
};

} // namespace kestrova
