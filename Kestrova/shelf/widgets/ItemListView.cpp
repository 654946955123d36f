#include "Kestrova/shelf/widgets/ItemListView.h"

#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/widgets/ItemRowDelegate.h"

#include <chrono>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr auto peekDuration = 150ms;

} // namespace

ItemListView::ItemListView(ShelfPanelView& view, MainQueue& mainQueue, PictureDecoder& decoder,
                           QWidget* parent)
    : ItemView(view, ShelfViewMode::list, mainQueue, decoder, parent),
      m_peek(peekDuration, QEasingCurve::OutQuad, [this] {
          auto look = delegate().look();
          look.peek = m_peek.value();
          delegate().setLook(look);
          viewport()->update();
      }) {
    start(std::make_unique<ItemRowDelegate>(items(), thumbnails()));
}

ItemLayout ItemListView::layoutOf(std::size_t count) const {
    return listLayout(count, viewport()->width(), ItemRowDelegate::rowHeight());
}

QSize ItemListView::thumbnailSize() const {
    return ItemRowDelegate::thumbnailSize();
}

int ItemListView::scrollStep() const {
    return itemLayout().cell.height();
}

ListEmptyState ItemListView::emptyState() const {
    return {QStringLiteral("tray"), QStringLiteral("아직 카피된 게 없어요"),
            QStringLiteral("어디서든 ⌘C 로 복사해보세요")};
}

void ItemListView::stateChanged() {
    if (isVisible())
        m_peek.glideTo(state()._commandHeld);
    else
        m_peek.jumpTo(state()._commandHeld);
}

} // namespace kestrova
