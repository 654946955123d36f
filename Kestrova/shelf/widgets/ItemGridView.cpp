#include "Kestrova/shelf/widgets/ItemGridView.h"

#include "Kestrova/shelf/widgets/ItemCardDelegate.h"

#include <QResizeEvent>

namespace kestrova {
namespace {

// What one notch of most wheels stands for.
constexpr int linesPerNotch = 3;

} // namespace

ItemGridView::ItemGridView(ShelfPanelView& view, MainQueue& mainQueue, PictureDecoder& decoder,
                           QWidget* parent)
    : ItemView(view, ShelfViewMode::grid, mainQueue, decoder, parent) {
    start(std::make_unique<ItemCardDelegate>(items(), thumbnails()));
}

void ItemGridView::setLinkPreviews(const LinkPreviewCache& previews) {
    static_cast<ItemCardDelegate&>(delegate()).setLinkPreviews(&previews);
    viewport()->update();
}

ItemLayout ItemGridView::layoutOf(std::size_t count) const {
    // Of the whole view: the scroll bar lies in the padding, so that its coming and going moves no card.
    return gridLayout(count, width(), ItemCardDelegate::cardHeight());
}

QSize ItemGridView::thumbnailSize() const {
    return ItemCardDelegate::thumbnailSize(itemLayout().cell.width());
}

int ItemGridView::scrollStep() const {
    return (itemLayout().cell.height() + itemLayout().spacing) / linesPerNotch;
}

ListEmptyState ItemGridView::emptyState() const {
    return {QStringLiteral("folder"), QStringLiteral("아직 컬렉션 항목이 없어요"),
            QStringLiteral("사이드바 [전체] 에서 항목을 우클릭 → 컬렉션에 추가")};
}

void ItemGridView::showEvent(QShowEvent* event) {
    ItemView::showEvent(event);
    reportColumnCount();
}

void ItemGridView::resizeEvent(QResizeEvent* event) {
    ItemView::resizeEvent(event);
    if (isVisible())
        reportColumnCount();
}

void ItemGridView::reportColumnCount() {
    if (onColumnCountChange)
        onColumnCountChange(gridColumnCount(width()));
}

} // namespace kestrova
