#pragma once

#include "Kestrova/shelf/controls/ShelfTheme.h"
#include "KestrovaCore/PersistentIdentifier.h"

#include <QAbstractItemDelegate>

#include <functional>
#include <optional>

namespace kestrova {

class ItemListModel;
class ThumbnailCache;

/// What the drawings of rows and of cards have in common.
class ItemDelegate : public QAbstractItemDelegate {
public:
    /// What an item looks like beside its own values.
    struct Look {
        ShelfTheme theme;
        std::optional<ItemID> selection;
        std::optional<ItemID> hovered;
        /// From 0 to 1: how far the selected row shows the command key with K in place of its digit.
        double peek = 0;
    };

    /// Both outlive it.
    ItemDelegate(const ItemListModel& model, ThumbnailCache& thumbnails)
        : m_model(model), m_thumbnails(thumbnails) {}

    void setLook(const Look& look) { m_look = look; }
    const Look& look() const { return m_look; }
    /// From 0 to 1: how far the pin of an item is in sight.
    std::function<double(ItemID, bool)> pinShown = [](ItemID, bool isPinned) { return isPinned ? 1 : 0; };

protected:
    const ItemListModel& model() const { return m_model; }
    ThumbnailCache& thumbnails() const { return m_thumbnails; }

private:
    const ItemListModel& m_model;
    ThumbnailCache& m_thumbnails;
    Look m_look;
};

} // namespace kestrova
