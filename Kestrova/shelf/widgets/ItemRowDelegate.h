#pragma once

#include "Kestrova/shelf/widgets/ItemDelegate.h"

class QColor;
class QImage;

namespace kestrova {

struct ItemRow;

/// Draws the rows of the list.
class ItemRowDelegate final : public ItemDelegate {
public:
    using ItemDelegate::ItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    /// Of every row, in the desktop's font.
    static int rowHeight();
    /// Of the pictures that rows show, in points; they grow with the font.
    static QSize thumbnailSize();

private:
    void paintIcon(QPainter& painter, const QRectF& slot, const ItemRow& row, const QModelIndex& index) const;
    void paintPicture(QPainter& painter, const QRectF& frame, const QImage& picture) const;
    void paintSwatch(QPainter& painter, const QRectF& frame, const QColor& color) const;
    void paintTrailingSlot(QPainter& painter, const QRectF& slot, const ItemRow& row, double peek) const;
};

} // namespace kestrova
