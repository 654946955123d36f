#pragma once

#include "Kestrova/shelf/widgets/ItemView.h"

namespace kestrova {

class LinkPreviewCache;

/// The history as a grid of cards, as many beside each other as there is room for.
class ItemGridView final : public ItemView {
public:
    /// All of them outlive it.
    ItemGridView(ShelfPanelView& view, MainQueue& mainQueue, PictureDecoder& decoder, QWidget* parent);

    /// Where the cards of links find pictures and titles. It outlives the view; without it links are shown
    /// plain.
    void setLinkPreviews(const LinkPreviewCache& previews);

    /// Told when the grid appears, and at each change of its width while it is there.
    std::function<void(std::size_t)> onColumnCountChange;

protected:
    ItemLayout layoutOf(std::size_t count) const override;
    QSize thumbnailSize() const override;
    int scrollStep() const override;
    ListEmptyState emptyState() const override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void reportColumnCount();
};

} // namespace kestrova
