#pragma once

#include <QString>
#include <Qt>

#include <memory>
#include <optional>
#include <vector>

namespace kestrova {

class ClipboardItem;
class KovaCollection;
class ShelfPanelView;

/// What an entry of an item's context menu does.
struct ItemMenuAction {
    enum class Kind {
        paste,
        copy,
        edit,
        addToCollection,
        removeFromCollection,
        preview,
        share,
        openFile,
        revealFile,
        deleteItem
    };

    Kind kind;
    /// Only of the kinds that speak of one.
    std::shared_ptr<KovaCollection> collection = {};

    bool operator==(const ItemMenuAction&) const = default;
};

/// A line of the menu. One without a title is a divider.
struct ItemMenuEntry {
    QString title = {};
    /// As the menu shows it.
    QString shortcut = {};
    /// The keys that choose the entry while the menu is open; Control stands for the Command key.
    std::vector<QKeyCombination> keys = {};
    QString symbol = {};
    bool isEnabled = true;
    bool isDestructive = false;
    std::optional<ItemMenuAction> action = {};
    std::vector<ItemMenuEntry> submenu = {};

    bool isDivider() const { return title.isEmpty(); }
    bool operator==(const ItemMenuEntry&) const = default;
};

/// The context menu of an item, the same wherever the item is shown.
using ItemMenu = std::vector<ItemMenuEntry>;

/// As the shelf stands now.
ItemMenu itemMenu(const ClipboardItem& item, const ShelfPanelView& view);

/// Inside `perform` of the view. An item or a collection that has been deleted since the menu was made is
/// left alone.
void perform(const ItemMenuAction& action, const std::shared_ptr<ClipboardItem>& item, ShelfPanelView& view);

} // namespace kestrova
