#include "Kestrova/detail/ItemPreviewView.h"

#include "Kestrova/detail/TypeWord.h"
#include "KestrovaCore/ClipboardItem.h"

#include <utility>

namespace kestrova {

ItemPreviewView::ItemPreviewView(std::shared_ptr<ClipboardItem> previewed, Decode decode,
                                 std::function<void()> onCloseScreen)
    : item(std::move(previewed)), onClose(std::move(onCloseScreen)), m_decode(std::move(decode)) {}

QString ItemPreviewView::title() const {
    return typeWord(item->type());
}

bool ItemPreviewView::showsPicture() const {
    return item->type() == ClipboardItemType::image;
}

void ItemPreviewView::viewAppears(int widthInPixels) {
    if (!showsPicture() || widthInPixels <= 0 || std::exchange(m_width, widthInPixels) == widthInPixels)
        return;
    if (!item->hasImageData()) {
        show({});
        return;
    }
    m_decode(item->storedImageData(), widthInPixels,
             [this, wish = ++*m_wish, wishes = std::weak_ptr(m_wish)](const QImage& picture) {
                 if (const auto current = wishes.lock(); current && *current == wish)
                     show(picture);
             });
}

void ItemPreviewView::show(const QImage& picture) {
    decodedImage = picture;
    if (onRender)
        onRender();
}

} // namespace kestrova
