#include "Kestrova/shelf/widgets/ShelfContent.h"

#include "Kestrova/detail/widgets/ItemActionsCardWidget.h"
#include "Kestrova/look/Easing.h"
#include "Kestrova/look/Opacity.h"
#include "Kestrova/shelf/ShelfDrags.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/widgets/ChipRow.h"
#include "Kestrova/shelf/widgets/CollectionContextMenu.h"
#include "Kestrova/shelf/widgets/CollectionSheetView.h"
#include "Kestrova/shelf/widgets/DetailOverlay.h"
#include "Kestrova/shelf/widgets/FilterChip.h"
#include "Kestrova/shelf/widgets/ItemDragData.h"
#include "Kestrova/shelf/widgets/ItemGridView.h"
#include "Kestrova/shelf/widgets/ItemListView.h"
#include "Kestrova/shelf/widgets/PreviewPane.h"
#include "Kestrova/shelf/widgets/SearchField.h"
#include "Kestrova/shelf/widgets/Sidebar.h"
#include "Kestrova/shelf/widgets/TopBar.h"
#include "KestrovaCore/ClipboardItem.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMimeData>
#include <QPainter>

#include <cmath>
#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr auto paneDuration = 280ms;
constexpr int dividerWidth = 1;
constexpr int chipsTopPadding = 8;
constexpr int chipsBottomPadding = 8;
// With the padding of a row, its text stands below the first chip.
constexpr int listSidePadding = 4;
constexpr double borderWidth = 0.5;

/// Puts a pane's edge where its transition has come to.
int partOf(int width, const Transition& shown) {
    return static_cast<int>(std::lround(width * shown.value()));
}

} // namespace

ShelfContent::ShelfContent(ShelfPanelView& view, MainQueue& mainQueue, const Appearance& appearance,
                           TellReaders tellReaders, QWidget* parent)
    : QWidget(parent),
      m_view(view),
      m_appearance(appearance),
      m_decoder(mainQueue),
      m_contextMenu(view, *this),
      m_dragStart(view, mainQueue, *this),
      m_dropDestination(view),
      m_sidebarShown(paneDuration, easing(AnimationTiming::easeInEaseOut), [this] { arrange(); }),
      m_previewShown(paneDuration, easing(AnimationTiming::easeInEaseOut), [this] { arrange(); }),
      m_topBar(new TopBar(view, this)),
      m_sidebar(new Sidebar(view, this)),
      m_chipRow(new ChipRow(view, this)),
      m_list(new ItemListView(view, mainQueue, m_decoder, this)),
      m_grid(new ItemGridView(view, mainQueue, m_decoder, this)),
      m_preview(new PreviewPane(view, detailSurroundings(), this)),
      m_overlay(new DetailOverlay(view, detailSurroundings(), this)),
      m_collectionSheet(new CollectionSheetView(view, this)),
      m_focus({view, *this, *m_topBar, *m_sidebar, *m_chipRow, std::move(tellReaders)}) {
    m_grid->setLinkPreviews(view.surroundings().linkPreviews);
    m_grid->onColumnCountChange = [this](std::size_t count) {
        m_view.perform([&] { m_view._gridColumnCount = count; });
    };
    for (ItemView* const items : {static_cast<ItemView*>(m_list), static_cast<ItemView*>(m_grid)})
        items->onContextMenu = [this](const auto& item, QPoint place) {
            m_contextMenu.open(item, place, ItemContextMenu::OpenedBy::pointer, {m_theme, m_ground});
        };
    m_sidebar->onContextMenu = [this](const auto& collection, QPoint place) {
        openCollectionMenu(m_view, collection, place, m_theme, m_ground, *this);
    };
    connectDrags();
}

void ShelfContent::connectDrags() {
    setAcceptDrops(true);
    for (ItemView* const items : {static_cast<ItemView*>(m_list), static_cast<ItemView*>(m_grid)})
        items->onDrag = [this](const auto& item, const DragPicture& picture) {
            m_dragStart.start(picture, [this, dragged = std::weak_ptr(item)]() -> QMimeData* {
                const auto there = dragged.lock();
                return there ? new ItemDragData(m_view.drags().beginItem(*there)) : nullptr;
            });
        };
    m_sidebar->onDrag = [this](const auto& collection, const DragPicture& picture) {
        m_dragStart.start(picture, [this, collection]() -> QMimeData* {
            auto* const carried = new QMimeData;
            carried->setData(CollectionReorderPayload::contentType(),
                             m_view.drags().beginCollection(*collection).encoded());
            return carried;
        });
    };
    m_dragStart.onEnd = [this] { items().dragEnded(); };
    m_dropDestination.isOverLists = [this](QPoint place) { return items().geometry().contains(place); };
    m_dropDestination.onHover = [this](const QPoint* place) { return m_sidebar->dragHovers(place); };
}

DetailSurroundings ShelfContent::detailSurroundings() {
    const auto& surroundings = m_view.surroundings();
    return {.mainQueue = surroundings.mainQueue,
            .decoder = m_decoder,
            .workspace = surroundings.workspace,
            .linkPreviews = surroundings.linkPreviews,
            .defaults = surroundings.defaults,
            .formatters = m_formatters,
            .onCopy = [this](const auto& item, const QString& text) {
                m_view.perform([&] { m_view.copyText(item, text); });
            }};
}

void ShelfContent::render() {
    const auto following = m_focus.followState();
    const auto theme = ShelfTheme::of(
        ShelfTheme::scheme(m_view.themeRaw(), m_appearance.colorScheme(), QApplication::palette()));
    const bool isNewTheme = std::exchange(m_theme, theme) != theme;
    const bool isSeen = isVisible();
    const auto move = [isSeen](Transition& transition, bool on) {
        if (isSeen)
            transition.glideTo(on);
        else
            transition.jumpTo(on);
    };
    move(m_sidebarShown, m_view._sidebarVisible);
    move(m_previewShown, m_view._previewVisible);
    m_topBar->render(theme);
    m_sidebar->render(theme);
    m_chipRow->render(theme);
    m_list->render(theme);
    m_grid->render(theme);
    if (m_view._previewVisible)
        m_preview->render(theme);
    m_overlay->render(theme);
    m_collectionSheet->render(theme);
    m_contextMenu.render();
    // The parts are as high as the desktop's font makes them.
    if (isNewTheme)
        arrange();
    forgetDeleted();
    m_focus.render(items());
}

void ShelfContent::forgetDeleted() {
    m_list->forgetDeleted();
    m_grid->forgetDeleted();
    m_preview->forgetDeleted();
}

void ShelfContent::setGround(Ground ground) {
    updateOnChange(*this, m_ground, ground);
}

void ShelfContent::endEditing() {
    m_focus.endEditing();
}

ItemView& ShelfContent::items() const {
    if (m_view._viewMode == ShelfViewMode::list)
        return *m_list;
    return *m_grid;
}

void ShelfContent::pickShareTarget(const std::vector<ShareTarget>& targets,
                                   std::function<void(const ShareTarget&)> done) {
    std::optional<ItemContextMenu::Opening> opening;
    if (const auto* const card = m_overlay->actionsCard())
        opening = {card->placeOfMenu(), card->isPointedAt() ? ItemContextMenu::OpenedBy::pointer
                                                            : ItemContextMenu::OpenedBy::keyboard};
    m_contextMenu.pickShareTarget(targets, std::move(done), opening, {m_theme, m_ground});
}

void ShelfContent::contextMenuEvent(QContextMenuEvent* event) {
    const auto item = m_view.currentItem();
    const bool isForItem = event->reason() == QContextMenuEvent::Keyboard && !m_view._route &&
                           !m_view._collectionSheetMode && !m_view._controlFocused &&
                           m_view._lane == KeyboardLane::list && item;
    if (!isForItem) {
        event->ignore();
        return;
    }
    m_contextMenu.open(item, placeOfMenu(*item), ItemContextMenu::OpenedBy::keyboard, {m_theme, m_ground});
}

QPoint ShelfContent::placeOfMenu(const ClipboardItem& item) const {
    const auto row = m_view.indexInFilteredItems(item.id());
    if (!row)
        return mapToGlobal(rect().center());
    return items().placeOfMenu(items().model()->index(static_cast<int>(*row), 0));
}

void ShelfContent::hideEvent(QHideEvent*) {
    m_sidebarShown.finish();
    m_previewShown.finish();
}

void ShelfContent::resizeEvent(QResizeEvent*) {
    arrange();
}

void ShelfContent::arrange() {
    const int topBarHeight = TopBar::height();
    const int bodyTop = topBarHeight + dividerWidth;
    const int bodyHeight = height() - bodyTop;
    m_topBar->setGeometry(0, 0, width(), topBarHeight);

    const int sidebarEdge = partOf(Sidebar::width + dividerWidth, m_sidebarShown);
    const int previewEdge = width() - partOf(PreviewPane::width + dividerWidth, m_previewShown);
    m_sidebar->setGeometry(sidebarEdge - Sidebar::width - dividerWidth, bodyTop, Sidebar::width, bodyHeight);
    m_preview->setGeometry(previewEdge + dividerWidth, bodyTop, PreviewPane::width, bodyHeight);
    setOpacity(*m_sidebar, m_sidebarShown.value());
    setOpacity(*m_preview, m_previewShown.value());
    m_sidebar->setVisible(sidebarEdge > 0);
    m_preview->setVisible(previewEdge < width());

    const QRect pane(sidebarEdge, bodyTop, previewEdge - sidebarEdge, bodyHeight);
    const int chipHeight = FilterChip::height();
    m_chipRow->setGeometry(pane.left(), pane.top() + chipsTopPadding, pane.width(), chipHeight);
    const auto below = pane.adjusted(0, chipsTopPadding + chipHeight + chipsBottomPadding, 0, 0);
    m_list->setGeometry(below.adjusted(listSidePadding, 0, -listSidePadding, 0));
    m_grid->setGeometry(below);
    m_overlay->setGeometry(rect());
    m_collectionSheet->setGeometry(rect());
    update();
}

void ShelfContent::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_ground == Ground::opaque) {
        // The window's shape cuts the corners; what is half covered by an arc would be mixed with black.
        auto ground = m_theme.ground;
        ground.setAlpha(255);
        painter.fillRect(rect(), ground);
    } else {
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_theme.ground);
        painter.drawRoundedRect(rect(), ShelfFrame::cornerRadius, ShelfFrame::cornerRadius);
    }
    // The stroke lies within the edge.
    constexpr double inset = borderWidth / 2;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(m_theme.border, borderWidth));
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), ShelfFrame::cornerRadius,
                            ShelfFrame::cornerRadius);

    const int bodyTop = TopBar::height() + dividerWidth;
    painter.fillRect(QRect(0, TopBar::height(), width(), dividerWidth), m_theme.separator);
    const auto divide = [&](int x) {
        painter.fillRect(QRect(x, bodyTop, dividerWidth, height() - bodyTop), m_theme.separator);
    };
    if (m_sidebarShown.value() > 0)
        divide(m_sidebar->geometry().right() + 1);
    if (m_previewShown.value() > 0)
        divide(m_preview->x() - dividerWidth);
}

} // namespace kestrova
