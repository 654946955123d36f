#include "Kestrova/shelf/widgets/ItemView.h"

#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/controls/PictureDecoder.h"
#include "Kestrova/shelf/controls/ThinScrollBar.h"
#include "KestrovaCore/ClipboardItem.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QCursor>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr auto pinDuration = 120ms;
constexpr qsizetype bytesPerPixel = 4;
constexpr int widestDragPicture = 260;
// A little scrolling back and forth decodes nothing anew, and still the pictures of a long history do not
// pile up.
constexpr qsizetype screensKept = 3;
constexpr qsizetype greatestCapacity = 24 * 1024 * 1024;

} // namespace

ItemView::ItemView(ShelfPanelView& view, ShelfViewMode mode, MainQueue& mainQueue, PictureDecoder& decoder,
                   QWidget* parent)
    : QAbstractItemView(parent),
      m_view(view),
      m_mode(mode),
      m_model(new ItemListModel(this)),
      m_thumbnails(mainQueue, decoder),
      m_scrollBar(new ThinScrollBar) {
    setAccessibleName(QStringLiteral("클립보드 기록"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setAutoScroll(false);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBar(m_scrollBar);
    viewport()->setAutoFillBackground(false);
    setMouseTracking(true);
    m_thumbnails.placeInSight = [this](ItemID id) { return placeInSight(id); };
    m_thumbnails.onArrival = [this](ItemID id) {
        if (const auto place = placeInSight(id))
            viewport()->update(cellRect(*place));
    };
    m_thumbnails.onSettled = [this] { viewport()->update(); };
}

void ItemView::start(std::unique_ptr<ItemDelegate> delegate) {
    m_delegate = std::move(delegate);
    m_delegate->pinShown = [this](ItemID id, bool isPinned) { return pinShown(id, isPinned); };
    setItemDelegate(m_delegate.get());
    setModel(m_model);
}

ItemView::~ItemView() {
    // Nobody is told any more.
    m_underPointer.reset();
}

void ItemView::render(const ShelfTheme& theme) {
    if (m_view._viewMode != m_mode) {
        leave();
        return;
    }
    if (!std::exchange(m_isInUse, true))
        show();
    fadePins();
    auto look = m_delegate->look();
    if (look.theme != theme)
        m_scrollBar->setThumbColor(theme.scrollThumb);
    look.theme = theme;
    look.selection = m_view._selection;
    look.hovered = m_view._hoveredItem;
    m_delegate->setLook(look);
    const bool hasOtherItems = showItems();
    stateChanged();
    if (const auto place = m_view.indexInFilteredItems(m_view._selection))
        setCurrentIndex(indexOf(*place));
    followScrollTarget();
    viewport()->update();
    if (hasOtherItems)
        pointerMayHaveAnotherItem();
}

bool ItemView::isWalked() const {
    const bool isInLists = m_view._lane == KeyboardLane::list || m_view._lane == KeyboardLane::grid;
    return isVisible() && isInLists && !m_view._searchFocused && !m_view._controlFocused && !m_view._route;
}

void ItemView::leave() {
    if (!std::exchange(m_isInUse, false))
        return;
    hide();
    // Whoever comes back looks for what is selected then, not for the place that was left.
    m_scrollTarget.reset();
    m_followsOnShow = false;
    m_pinsShown.clear();
    m_pinFades.clear();
    m_thumbnails.clear();
    m_model->show({});
    updateGeometries();
}

// What is shown, and where

ItemView::Lens ItemView::lens() const {
    return {m_view._collectionFilter, m_view._typeFilter, m_view._query};
}

bool ItemView::showItems() {
    const bool isSameLens = std::exchange(m_lens, lens()) == m_lens;
    const auto kept = isSameLens ? anchors() : std::vector<Anchor>();
    if (!m_model->show(m_view.filteredItems()))
        return false;
    updateGeometries();
    restore(kept);
    return true;
}

std::vector<ItemView::Anchor> ItemView::anchors() const {
    std::vector<Anchor> found;
    // At the top the person looks at what is newest.
    if (verticalOffset() == 0)
        return found;
    const auto range = rangeInSight();
    for (auto place = range.begin; place < range.end; ++place)
        if (const auto shown = m_model->item(place))
            found.push_back({shown->id(), cellRect(place).top()});
    const auto selected = std::ranges::find(found, m_delegate->look().selection,
                                            [](const Anchor& anchor) { return std::optional(anchor.id); });
    if (selected != found.end())
        std::rotate(found.begin(), selected, selected + 1);
    return found;
}

void ItemView::restore(const std::vector<Anchor>& anchors) {
    for (const auto& anchor : anchors) {
        const auto place = m_view.indexInFilteredItems(anchor.id);
        if (!place || *place >= m_layout.count)
            continue;
        verticalScrollBar()->setValue(m_layout.cellRect(*place).top() - anchor.top);
        return;
    }
}

void ItemView::updateGeometries() {
    QAbstractItemView::updateGeometries();
    if (!m_delegate)
        return;
    const auto layout = layoutOf(m_model->size());
    const bool isReflowed =
        layout.columns != m_layout.columns || layout.cell.height() != m_layout.cell.height();
    const auto kept = isReflowed && layout.count == m_layout.count ? anchors() : std::vector<Anchor>();
    if (layout.cell != m_layout.cell) {
        m_thumbnails.awaitSettledSizes();
        viewport()->update();
    }
    m_layout = layout;
    auto& bar = *verticalScrollBar();
    bar.setSingleStep(scrollStep());
    bar.setPageStep(viewport()->height());
    bar.setRange(0, std::max(0, m_layout.height() - viewport()->height()));
    restore(kept);
    boundThumbnails();
}

void ItemView::boundThumbnails() {
    if (m_layout.cell.isEmpty())
        return;
    const auto pixels = (QSizeF(thumbnailSize()) * devicePixelRatioF()).toSize();
    const auto rows = static_cast<std::size_t>(viewport()->height() / m_layout.cell.height() + 2);
    const auto screen =
        static_cast<qsizetype>(rows * m_layout.columns) * pixels.width() * pixels.height() * bytesPerPixel;
    // Less than what is in sight would be decoded over and over.
    m_thumbnails.setCapacity(std::max(screen, std::min(screensKept * screen, greatestCapacity)));
}

int ItemView::verticalOffset() const {
    return verticalScrollBar()->value();
}

QRect ItemView::cellRect(std::size_t index) const {
    return m_layout.cellRect(index).translated(0, -verticalOffset());
}

QRect ItemView::visualRect(const QModelIndex& index) const {
    return index.isValid() ? cellRect(static_cast<std::size_t>(index.row())) : QRect();
}

QModelIndex ItemView::indexAt(const QPoint& point) const {
    const auto place = m_layout.indexAt(point + QPoint(0, verticalOffset()));
    return place ? indexOf(*place) : QModelIndex();
}

ItemLayout::Range ItemView::rangeInSight() const {
    return m_layout.cellsBetween(verticalOffset(), verticalOffset() + viewport()->height());
}

std::optional<std::size_t> ItemView::placeInSight(ItemID id) const {
    const auto place = isVisible() ? m_view.indexInFilteredItems(id) : std::nullopt;
    const auto range = rangeInSight();
    return place && *place >= range.begin && *place < range.end ? place : std::nullopt;
}

// Scrolling

QPoint ItemView::placeOfMenu(const QModelIndex& index) const {
    const auto shown = visualRect(index).intersected(viewport()->rect());
    return viewport()->mapToGlobal(shown.isEmpty() ? viewport()->rect().center() : shown.center());
}

void ItemView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    if (!index.isValid())
        return;
    const auto cell = m_layout.cellRect(static_cast<std::size_t>(index.row()));
    const int height = viewport()->height();
    const int atTop = cell.top();
    const int atBottom = cell.top() + cell.height() - height;
    auto& bar = *verticalScrollBar();
    switch (hint) {
    case PositionAtCenter:
        bar.setValue((atTop + atBottom) / 2);
        break;
    case PositionAtTop:
        bar.setValue(atTop);
        break;
    case PositionAtBottom:
        bar.setValue(atBottom);
        break;
    case EnsureVisible:
        bar.setValue(std::clamp(bar.value(), std::min(atTop, atBottom), std::max(atTop, atBottom)));
        break;
    }
}

void ItemView::followScrollTarget() {
    if (std::exchange(m_scrollTarget, m_view._scrollTarget) == m_view._scrollTarget)
        return;
    centreScrollTarget();
    // The view may have another size by the time that it is seen.
    m_followsOnShow = !isVisible();
}

void ItemView::centreScrollTarget() {
    if (const auto place = m_view.indexInFilteredItems(m_scrollTarget))
        scrollTo(indexOf(*place), PositionAtCenter);
}

void ItemView::scrollContentsBy(int, int) {
    viewport()->update();
    pointerMayHaveAnotherItem();
}

void ItemView::showEvent(QShowEvent* event) {
    QAbstractItemView::showEvent(event);
    if (std::exchange(m_followsOnShow, false))
        centreScrollTarget();
}

void ItemView::hideEvent(QHideEvent* event) {
    QAbstractItemView::hideEvent(event);
    m_pressed.reset();
    m_clicked.reset();
    pointerIsOn({});
    m_thumbnails.forgetWishes();
}

// Painting

void ItemView::paintEvent(QPaintEvent* event) {
    // Nothing else tells of a display with other pixels.
    if (const double ratio = devicePixelRatioF(); std::exchange(m_pixelRatio, ratio) != ratio)
        boundThumbnails();
    QPainter painter(viewport());
    if (m_layout.count == 0) {
        emptyState().paint(painter, viewport()->rect(), m_delegate->look().theme);
        return;
    }
    const int top = verticalOffset() + event->rect().top();
    const auto range = m_layout.cellsBetween(top, top + event->rect().height());
    QStyleOptionViewItem option;
    for (auto place = range.begin; place < range.end; ++place) {
        option.rect = cellRect(place);
        m_delegate->paint(&painter, option, indexOf(place));
    }
    rememberPins();
}

void ItemView::rememberPins() {
    m_pinsShown.clear();
    const auto range = rangeInSight();
    for (auto place = range.begin; place < range.end; ++place) {
        if (const auto shown = m_model->item(place))
            m_pinsShown[shown->id()] = shown->pinned();
    }
}

void ItemView::fadePins() {
    std::erase_if(m_pinFades, [](const auto& fade) { return !fade.second->isMoving(); });
    for (const auto& [id, wasPinned] : std::exchange(m_pinsShown, {})) {
        const auto place = m_view.indexInFilteredItems(id);
        if (!place || m_view.filteredItems()[*place]->pinned() == wasPinned)
            continue;
        auto fade = std::make_unique<Transition>(pinDuration, QEasingCurve::OutQuad,
                                                 [this] { viewport()->update(); });
        fade->jumpTo(wasPinned);
        fade->glideTo(!wasPinned);
        m_pinFades[id] = std::move(fade);
    }
}

double ItemView::pinShown(ItemID id, bool isPinned) const {
    const auto fade = m_pinFades.find(id);
    return fade == m_pinFades.end() ? (isPinned ? 1.0 : 0.0) : fade->second->value();
}

// What the person does

void ItemView::select(const QModelIndex& index) {
    if (const auto selected = item(index))
        m_view.perform([&] {
            m_view._selection = selected->id();
            m_view.itemTapped();
        });
}

void ItemView::copy(const QModelIndex& index) {
    if (const auto copied = item(index))
        m_view.perform([&] { m_view.copy(copied); });
}

void ItemView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const auto pressed = item(indexAt(event->position().toPoint()));
    m_pressed = pressed ? std::optional(pressed->id()) : std::nullopt;
    m_pressedAt = event->position().toPoint();
}

void ItemView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const auto index = indexAt(event->position().toPoint());
    const auto released = item(index);
    m_clicked.reset();
    if (const auto pressed = std::exchange(m_pressed, std::nullopt);
        released && pressed && released->id() == *pressed) {
        m_clicked = pressed;
        select(index);
    }
}

void ItemView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const auto index = indexAt(event->position().toPoint());
    const auto clickedTwice = item(index);
    // The first click has selected it. What has come to lie there since then is not what the person means.
    if (const auto clicked = std::exchange(m_clicked, std::nullopt);
        clickedTwice && clicked == clickedTwice->id())
        copy(index);
}

void ItemView::contextMenuEvent(QContextMenuEvent* event) {
    // By the keyboard the menu is opened for what the state has selected, which is not known here.
    const auto asked = event->reason() == QContextMenuEvent::Mouse ? item(indexAt(event->pos())) : nullptr;
    event->setAccepted(asked && onContextMenu);
    if (event->isAccepted())
        onContextMenu(asked, event->globalPos());
}

void ItemView::mouseMoveEvent(QMouseEvent* event) {
    const auto place = event->position().toPoint();
    if (m_pressed && event->buttons() == Qt::LeftButton && isDragMeant(m_pressedAt, place))
        dragPressed();
    else
        pointerIsOn(indexAt(place));
}

void ItemView::dragPressed() {
    const auto place = m_view.indexInFilteredItems(std::exchange(m_pressed, std::nullopt));
    m_clicked.reset();
    if (!place || !onDrag)
        return;
    const auto dragged = m_view.filteredItems()[*place];
    const auto picture = pictureOf(indexOf(*place), m_pressedAt);
    pointerIsOn({});
    onDrag(dragged, picture);
}

DragPicture ItemView::pictureOf(const QModelIndex& index, QPoint pressed) const {
    const auto cell = visualRect(index);
    // The whole width of a row would hide where it is dropped.
    const QSize size(std::min(cell.width(), widestDragPicture), cell.height());
    const auto inCell = pressed - cell.topLeft();
    return dragPicture(*this, size, {std::min(inCell.x(), size.width()), inCell.y()},
                       m_delegate->look().theme.ground, [&](QPainter& painter) {
                           QStyleOptionViewItem option;
                           option.rect = QRect({}, size);
                           m_delegate->paint(&painter, option, index);
                       });
}

void ItemView::dragEnded() {
    if (!isVisible())
        return;
    const auto pointer = QCursor::pos();
    const bool isHere = QApplication::widgetAt(pointer) == viewport();
    pointerIsOn(isHere ? indexAt(viewport()->mapFromGlobal(pointer)) : QModelIndex());
}

bool ItemView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Leave)
        pointerIsOn({});
    return QAbstractItemView::viewportEvent(event);
}

void ItemView::pointerMayHaveAnotherItem() {
    if (viewport()->underMouse())
        pointerIsOn(indexAt(viewport()->mapFromGlobal(QCursor::pos())));
}

void ItemView::pointerIsOn(const QModelIndex& index) {
    const auto entered = item(index);
    const auto id = entered ? std::optional(entered->id()) : std::nullopt;
    const auto left = std::exchange(m_underPointer, id);
    if (left == id)
        return;
    m_view.perform([&] {
        // Whoever was entered meanwhile keeps the hover.
        if (left && m_view._hoveredItem == left)
            m_view._hoveredItem.reset();
        if (id)
            m_view._hoveredItem = id;
    });
}

} // namespace kestrova
