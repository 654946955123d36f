#pragma once

#include "Kestrova/shelf/widgets/CardPlates.h"
#include "Kestrova/shelf/widgets/ItemDelegate.h"

class QColor;
class QImage;

namespace kestrova {

class LinkPreviewCache;
struct ItemGridCard;

/// Draws the cards of the grid.
class ItemCardDelegate final : public ItemDelegate {
public:
    using ItemDelegate::ItemDelegate;

    /// Where cards look for the pages behind links; null: links are shown plain. It outlives the delegate.
    void setLinkPreviews(const LinkPreviewCache* previews) { m_linkPreviews = previews; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    /// Of every card, in the desktop's font.
    static int cardHeight();
    /// Of the picture on a card of that width, in points.
    static QSize thumbnailSize(int cardWidth);

private:
    void paintThumbnail(QPainter& painter, const QRectF& region, const ItemGridCard& card,
                        const QModelIndex& index) const;
    void paintText(QPainter& painter, const QRectF& region, const ItemGridCard& card) const;
    void paintPicture(QPainter& painter, const QRectF& region, const QImage& picture, QSize pixels) const;
    void paintPin(QPainter& painter, const QRectF& region, double shown) const;
    void paintCaption(QPainter& painter, const QRectF& frame, const ItemGridCard& card) const;
    /// One line of a caption: the favicon, if there is one, and the text.
    void paintLine(QPainter& painter, QRectF line, const QFont& font, const QColor& color,
                   const QString& text, const QImage& favicon) const;

    const LinkPreviewCache* m_linkPreviews = nullptr;
    mutable CardPlates m_plates;
};

} // namespace kestrova
