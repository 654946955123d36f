#pragma once

#include "Kestrova/look/Transition.h"
#include "Kestrova/shelf/widgets/ItemView.h"

namespace kestrova {

/// The history as a list, one row an item.
class ItemListView final : public ItemView {
public:
    /// All of them outlive it.
    ItemListView(ShelfPanelView& view, MainQueue& mainQueue, PictureDecoder& decoder, QWidget* parent);

protected:
    ItemLayout layoutOf(std::size_t count) const override;
    QSize thumbnailSize() const override;
    int scrollStep() const override;
    ListEmptyState emptyState() const override;
    void stateChanged() override;

private:
    Transition m_peek;
};

} // namespace kestrova
