#pragma once

#include "Kestrova/shelf/widgets/ShelfTheme.h"
#include "KestrovaCore/PersistentIdentifier.h"

#include <QStyledItemDelegate>

#include <functional>
#include <optional>

namespace kestrova {

class ItemListModel;
class ThumbnailCache;
struct ItemRow;

/// Draws the rows of the list.
class ItemRowDelegate final : public QStyledItemDelegate {
public:
    /// What a row looks like beside the values of its item.
    struct Look {
        ShelfTheme theme;
        std::optional<ItemID> selection;
        std::optional<ItemID> hovered;
        /// From 0 to 1: how far the selected row shows the command key with K in place of its digit.
        double peek = 0;
    };

    /// Both outlive it.
    ItemRowDelegate(const ItemListModel& model, ThumbnailCache& thumbnails)
        : m_model(model), m_thumbnails(thumbnails) {}

    void setLook(const Look& look) { m_look = look; }
    const Look& look() const { return m_look; }
    /// From 0 to 1: how far the pin of an item is in sight. Unset: pins come and go at once.
    std::function<double(ItemID, bool)> pinShown;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    void paintIcon(QPainter& painter, const QRectF& frame, const ItemRow& row,
                   const QModelIndex& index) const;
    void paintPicture(QPainter& painter, const QRectF& frame, const QImage& picture) const;
    void paintSwatch(QPainter& painter, const QRectF& frame, const QColor& color) const;
    void paintTrailingSlot(QPainter& painter, const QRectF& slot, const ItemRow& row, double peek) const;

    const ItemListModel& m_model;
    ThumbnailCache& m_thumbnails;
    Look m_look;
};

} // namespace kestrova
