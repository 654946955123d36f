#pragma once

#include "Kestrova/detail/ItemPreviewView.h"
#include "Kestrova/detail/widgets/DetailScreen.h"
#include "Kestrova/detail/widgets/DetailSurroundings.h"

#include <functional>
#include <memory>

namespace kestrova {

class SheetButton;

/// The larger look at an item, as a screen.
class ItemPreviewScreen final : public DetailScreen {
public:
    ItemPreviewScreen(const std::shared_ptr<ClipboardItem>& item, const DetailSurroundings& surroundings,
                      std::function<void()> onClose, QWidget* parent);

    void setTheme(const ShelfTheme& theme) override;
    /// What scrolls.
    QWidget& firstFocus() override { return *m_content.widget; }
    const ItemPreviewView& view() const { return m_view; }

private:
    /// What shows items of that kind.
    struct Content {
        QWidget* widget = nullptr;
        int sidePadding = groundPadding;
        std::function<void(const ShelfTheme&)> render;
    };

    Content makeContent(const DetailSurroundings& surroundings);
    Content makeText();
    Content makePicture();
    Content makeDetail(const DetailSurroundings& surroundings);

    ItemPreviewView m_view;
    SheetButton* m_close;
    Content m_content;
};

} // namespace kestrova
