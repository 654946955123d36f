#include "Kestrova/shelf/widgets/ItemListView.h"

#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/widgets/PictureDecoder.h"
#include "Kestrova/shelf/widgets/ThinScrollBar.h"
#include "KestrovaCore/ClipboardItem.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace kestrova {
namespace {

constexpr int gapAtTheEnd = 8;

using namespace std::chrono_literals;

constexpr auto peekDuration = 150ms;
constexpr auto pinDuration = 120ms;

} // namespace

ItemListView::ItemListView(ShelfPanelView& view, MainQueue& mainQueue, PictureDecoder& decoder,
                           QWidget* parent)
    : QListView(parent),
      m_view(view),
      m_thumbnails(mainQueue, decoder),
      m_delegate(m_model, m_thumbnails),
      m_peek(peekDuration, QEasingCurve::OutQuad,
             [this] {
                 auto look = m_delegate.look();
                 look.peek = m_peek.value();
                 m_delegate.setLook(look);
                 viewport()->update();
             }),
      m_scrollBar(new ThinScrollBar) {
    setAccessibleName(QStringLiteral("클립보드 기록"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setAutoScroll(false);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBar(m_scrollBar);
    viewport()->setAutoFillBackground(false);
    setMouseTracking(true);
    setModel(&m_model);
    setItemDelegate(&m_delegate);
    m_delegate.pinShown = [this](ItemID id, bool isPinned) { return pinShown(id, isPinned); };
    m_thumbnails.isInSight = [this](ItemID id) { return isInSight(id); };
    m_thumbnails.onArrival = [this] { viewport()->update(); };
    connect(this, &QAbstractItemView::clicked, [this](const QModelIndex& index) { select(index); });
}

ItemListView::~ItemListView() {
    // Nobody is told any more.
    m_underPointer.reset();
    // The base class still asks its model and delegate, which are members and go before it.
    setItemDelegate(nullptr);
    setModel(nullptr);
}

void ItemListView::render(const ShelfTheme& theme) {
    fadePins();
    auto look = m_delegate.look();
    const bool isNewTheme = look.theme != theme;
    look.theme = theme;
    look.selection = m_view._selection;
    look.hovered = m_view._hoveredItem;
    m_delegate.setLook(look);
    if (isNewTheme)
        m_scrollBar->setThumbColor(theme.scrollThumb);
    const bool hasOtherRows = m_model.show(m_view.filteredItems());
    if (isVisible())
        m_peek.glideTo(m_view._commandHeld);
    else
        m_peek.jumpTo(m_view._commandHeld);
    if (const auto row = m_view.indexInFilteredItems(m_view._selection))
        setCurrentIndex(m_model.index(static_cast<int>(*row), 0));
    followScrollTarget();
    viewport()->update();
    if (hasOtherRows)
        pointerMayHaveAnotherRow();
}

void ItemListView::followScrollTarget() {
    if (std::exchange(m_scrollTarget, m_view._scrollTarget) == m_view._scrollTarget)
        return;
    if (const auto row = m_view.indexInFilteredItems(m_scrollTarget))
        scrollTo(m_model.index(static_cast<int>(*row), 0), QAbstractItemView::PositionAtCenter);
}

// Pins

void ItemListView::fadePins() {
    std::erase_if(m_pinFades, [](const auto& fade) { return !fade.second->isMoving(); });
    for (const auto& [id, wasPinned] : std::exchange(m_pinsShown, {})) {
        const auto row = m_view.indexInFilteredItems(id);
        if (!row || m_view.filteredItems()[*row]->pinned() == wasPinned)
            continue;
        auto fade = std::make_unique<Transition>(pinDuration, QEasingCurve::OutQuad,
                                                 [this] { viewport()->update(); });
        fade->jumpTo(wasPinned);
        fade->glideTo(!wasPinned);
        m_pinFades[id] = std::move(fade);
    }
}

double ItemListView::pinShown(ItemID id, bool isPinned) const {
    const auto fade = m_pinFades.find(id);
    return fade == m_pinFades.end() ? (isPinned ? 1.0 : 0.0) : fade->second->value();
}

// Painting

bool ItemListView::isInSight(ItemID id) const {
    const auto row = m_view.indexInFilteredItems(id);
    return isVisible() && row &&
           viewport()->rect().intersects(visualRect(m_model.index(static_cast<int>(*row), 0)));
}

void ItemListView::paintEvent(QPaintEvent* event) {
    if (m_model.items().empty()) {
        paintEmptyState();
        return;
    }
    QListView::paintEvent(event);
    m_pinsShown.clear();
    const auto first = indexAt({1, 1});
    const auto last = indexAt({1, viewport()->height() - 1});
    const int lastRow = last.isValid() ? last.row() : m_model.rowCount() - 1;
    for (int row = qMax(first.row(), 0); row <= lastRow; ++row) {
        const auto& item = *m_model.items()[static_cast<std::size_t>(row)];
        m_pinsShown[item.id()] = item.pinned();
    }
}

void ItemListView::paintEmptyState() {
    const auto& theme = m_delegate.look().theme;
    QPainter painter(viewport());
    const QRectF area = viewport()->rect();
    constexpr double symbolEdge = 34;
    constexpr double gap = 12;
    const auto title = interfaceFont(13, QFont::Medium);
    const auto hint = interfaceFont(11);
    const double titleHeight = QFontMetricsF(title).height();
    const double hintHeight = QFontMetricsF(hint).height();
    double y = area.center().y() - (symbolEdge + gap + titleHeight + gap / 2 + hintHeight) / 2;
    Symbol(QStringLiteral("tray"))
        .paint(painter, {area.left(), y, area.width(), symbolEdge}, symbolEdge, theme.inactiveSymbol);
    y += symbolEdge + gap;
    painter.setFont(title);
    painter.setPen(theme.text);
    painter.drawText(QRectF(area.left(), y, area.width(), titleHeight), Qt::AlignCenter,
                     QStringLiteral("아직 카피된 게 없어요"));
    y += titleHeight + gap / 2;
    painter.setFont(hint);
    painter.setPen(theme.secondaryText);
    painter.drawText(QRectF(area.left(), y, area.width(), hintHeight), Qt::AlignCenter,
                     QStringLiteral("어디서든 ⌘C 로 복사해보세요"));
}

// What the person does

void ItemListView::select(const QModelIndex& index) {
    if (const auto item = m_model.item(index))
        m_view.perform([&] {
            m_view._selection = item->id();
            m_view.itemTapped();
        });
}

void ItemListView::copy(const QModelIndex& index) {
    if (const auto item = m_model.item(index))
        m_view.perform([&] { m_view.copy(item); });
}

void ItemListView::mousePressEvent(QMouseEvent* event) {
    // Other buttons have no meaning on a row, and the toolkit would take them for a click.
    if (event->button() == Qt::LeftButton)
        QListView::mousePressEvent(event);
}

void ItemListView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        copy(indexAt(event->position().toPoint()));
}

void ItemListView::mouseMoveEvent(QMouseEvent* event) {
    QListView::mouseMoveEvent(event);
    pointerIsOn(indexAt(event->position().toPoint()));
}

bool ItemListView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Leave)
        pointerIsOn({});
    return QListView::viewportEvent(event);
}

void ItemListView::scrollContentsBy(int dx, int dy) {
    QListView::scrollContentsBy(dx, dy);
    pointerMayHaveAnotherRow();
}

void ItemListView::hideEvent(QHideEvent* event) {
    QListView::hideEvent(event);
    pointerIsOn({});
    m_thumbnails.forgetWishes();
}

void ItemListView::pointerMayHaveAnotherRow() {
    if (viewport()->underMouse())
        pointerIsOn(indexAt(viewport()->mapFromGlobal(QCursor::pos())));
}

void ItemListView::pointerIsOn(const QModelIndex& index) {
    const auto item = m_model.item(index);
    const auto id = item ? std::optional(item->id()) : std::nullopt;
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

void ItemListView::updateGeometries() {
    QListView::updateGeometries();
    // The rows run to the panel's edge; the end of the list has a gap below it.
    if (auto& bar = *verticalScrollBar(); bar.maximum() > 0)
        bar.setMaximum(bar.maximum() + gapAtTheEnd);
}

} // namespace kestrova
