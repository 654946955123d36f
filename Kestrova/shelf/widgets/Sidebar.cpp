#include "Kestrova/shelf/widgets/Sidebar.h"

#include "Kestrova/detail/ColorFormats.h"
#include "Kestrova/detail/QtColor.h"
#include "Kestrova/look/Easing.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/look/TabularDigits.h"
#include "Kestrova/shelf/ShelfDrags.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/controls/LabelButton.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "Kestrova/shelf/controls/ThinScrollBar.h"
#include "KestrovaCore/KovaCollection.h"

#include <QFontMetrics>
#include <QPainter>
#include <QScrollArea>
#include <QTimerEvent>

#include <cmath>
#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr auto reorderDuration = 180ms;
constexpr int dragScrollZone = 28;
constexpr int dragScrollInterval = 16;
constexpr int dragScrollStep = 5;
constexpr int headerSidePadding = 12;
constexpr int headerTopPadding = 12;
constexpr int headerBottomPadding = 8;
constexpr double headerSize = 11;
constexpr double headerSpacing = 6;
constexpr int listPadding = 4;
constexpr int dividerSpace = 9;
constexpr int dividerWidth = 1;
constexpr int footerPadding = 8;
constexpr double listDividerOpacity = 0.35;
constexpr double footerDividerOpacity = 0.5;

QFont headerFont() {
    auto font = interfaceFont(headerSize, QFont::DemiBold);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0.6);
    return font;
}

QColor fainter(QColor color, double opacity) {
    color.setAlphaF(color.alphaF() * static_cast<float>(opacity));
    return color;
}

QString symbolOf(const KovaCollection& collection) {
    const auto icon = collection.icon();
    return icon && Symbol(*icon).exists() ? *icon : QStringLiteral("folder.fill");
}

} // namespace

class Sidebar::RowColumn final : public QWidget {
public:
    explicit RowColumn(QWidget* parent) : QWidget(parent) {}

    QColor dividerColor;
    /// Absent: there are no collections.
    std::optional<int> dividerY;

protected:
    void paintEvent(QPaintEvent*) override {
        if (!dividerY)
            return;
        QPainter painter(this);
        painter.fillRect(QRect(headerSidePadding, *dividerY, QWidget::width() - 2 * headerSidePadding, 1),
                         dividerColor);
    }
};

Sidebar::Sidebar(ShelfPanelView& view, QWidget* parent)
    : QWidget(parent),
      m_view(view),
      m_scrollArea(new QScrollArea(this)),
      m_column(new RowColumn(nullptr)),
      m_scrollBar(new ThinScrollBar),
      m_newCollection(new LabelButton(QStringLiteral("plus.circle.fill"), QStringLiteral("새 컬렉션"), this)),
      m_glide(reorderDuration, easing(AnimationTiming::easeOut), [this] { placeRows(); }) {
    setAccessibleRole(*m_column, QAccessible::List);
    m_column->setAccessibleName(QStringLiteral("컬렉션"));
    m_scrollArea->setFrameShape(QFrame::NoFrame);
    m_scrollArea->setFocusPolicy(Qt::NoFocus);
    m_scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scrollArea->setVerticalScrollBar(m_scrollBar);
    m_scrollArea->setWidgetResizable(false);
    m_scrollArea->setWidget(m_column);
    m_scrollArea->viewport()->setAutoFillBackground(false);
    m_column->setAutoFillBackground(false);
    connect(m_scrollBar, &QScrollBar::valueChanged, [this] { publishFrames(); });
    m_newCollection->onTap = [this] {
        m_view.perform([this] { m_view.presentCollectionSheet(CollectionEditSheet::Mode::create()); });
    };
}

const SidebarCounts& Sidebar::counts() {
    // Walks the whole history, so not for every key that is pressed.
    if (std::exchange(m_countedRevision, m_view.itemsRevision()) != m_view.itemsRevision())
        m_counts = SidebarCounts::of(m_view.items());
    return m_counts;
}

std::vector<SidebarRow::Values> Sidebar::rowValues() {
    const auto& numbers = counts();
    std::vector<SidebarRow::Values> rows{
        {.symbol = QStringLiteral("tray.full.fill"), .title = QStringLiteral("전체"), .count = numbers.all},
        {.symbol = QStringLiteral("pin.fill"), .title = QStringLiteral("Pinned"), .count = numbers.pinned},
        {.symbol = QStringLiteral("camera.viewfinder"),
         .title = QStringLiteral("Screenshots"),
         .count = numbers.screenshots},
    };
    for (const auto& collection : m_view.allCollections()) {
        const auto color = parseColor(collection->colorHex().value_or(QString()));
        rows.push_back({.symbol = symbolOf(*collection),
                        .title = collection->name(),
                        .count = numbers.ofCollection(collection->id()),
                        .color = color ? qColor(*color) : m_theme.accent});
    }
    return rows;
}

void Sidebar::render(const ShelfTheme& theme) {
    if (std::exchange(m_theme, theme) != theme) {
        m_scrollBar->setThumbColor(theme.scrollThumb);
        m_column->dividerColor = fainter(theme.separator, listDividerOpacity);
        m_column->update();
        m_newCollection->setTheme(theme);
        update();
    }
    auto values = rowValues();
    if (values.size() != m_rows.size())
        update();
    makeRows(values.size());
    const auto selected = m_view.sidebarIndex();
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i].isSelected = i == selected;
        values[i].isInActiveLane = m_view._lane == KeyboardLane::sidebar;
        if (m_view._optionHeld && i < shortcutDigits)
            values[i].optionShortcut = static_cast<int>(i) + 1;
        m_rows[i]->render(values[i], theme);
    }
    noteReordering();
    arrange();
    if (std::exchange(m_shownRow, selected) != selected)
        m_scrollArea->ensureWidgetVisible(m_rows[selected], 0, listPadding);
}

SidebarRow& Sidebar::currentRow() const {
    return *m_rows.at(m_shownRow);
}

void Sidebar::makeRows(std::size_t count) {
    while (m_rows.size() > count) {
        m_rows.back()->hide();
        m_rows.back()->deleteLater();
        m_rows.pop_back();
    }
    while (m_rows.size() < count) {
        auto* const row = new SidebarRow(m_column);
        if (m_rows.size() < shortcutDigits)
            row->setAccessibleDescription(QStringLiteral("⌥%1").arg(m_rows.size() + 1));
        row->onTap = [this, position = m_rows.size()] {
            m_view.perform([&] { m_view.selectSidebarRow(static_cast<std::ptrdiff_t>(position)); });
        };
        row->onContextMenu = [this, position = m_rows.size()](QPoint place) { askForMenu(position, place); };
        if (m_rows.size() >= fixedLensCount)
            row->onDrag = [this, position = m_rows.size() - fixedLensCount](const DragPicture& picture) {
                const auto& collections = m_view.allCollections();
                if (position < collections.size() && onDrag)
                    onDrag(collections[position], picture);
            };
        row->show();
        m_rows.push_back(row);
    }
}

void Sidebar::askForMenu(std::size_t position, QPoint globalPosition) {
    const auto& collections = m_view.allCollections();
    if (position >= fixedLensCount && position - fixedLensCount < collections.size() && onContextMenu)
        onContextMenu(collections[position - fixedLensCount], globalPosition);
}

int Sidebar::headerHeight() const {
    return headerTopPadding + QFontMetrics(headerFont()).height() + headerBottomPadding;
}

int Sidebar::footerHeight() const {
    return dividerWidth + m_newCollection->sizeHint().height() + 2 * footerPadding;
}

void Sidebar::arrange() {
    m_scrollArea->setGeometry(0, headerHeight(), QWidget::width(),
                              height() - headerHeight() - footerHeight());
    m_newCollection->setGeometry(footerPadding, height() - footerHeight() + dividerWidth + footerPadding,
                                 QWidget::width() - 2 * footerPadding, m_newCollection->sizeHint().height());
    int y = listPadding;
    m_column->dividerY.reset();
    m_tops.clear();
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        if (i == fixedLensCount) {
            m_column->dividerY = y + dividerSpace / 2;
            y += dividerSpace;
        }
        m_tops.push_back(y);
        y += m_rows[i]->sizeHint().height() + 1;
    }
    placeRows();
    m_column->resize(QWidget::width(), y + listPadding);
    publishFrames();
}

void Sidebar::noteReordering() {
    const bool isReordered =
        std::exchange(m_shownReorderings, m_view.drags().reorderings()) != m_view.drags().reorderings();
    if (isReordered && isVisible()) {
        m_glideFrom.clear();
        for (std::size_t i = 0; i < m_shownCollections.size(); ++i)
            m_glideFrom[m_shownCollections[i]] = m_rows[i + fixedLensCount]->y();
        m_glide.jumpTo(false);
        m_glide.glideTo(true);
    }
    m_shownCollections.clear();
    for (const auto& collection : m_view.allCollections())
        m_shownCollections.push_back(collection->id());
}

void Sidebar::placeRows() {
    for (std::size_t i = 0; i < m_rows.size() && i < m_tops.size(); ++i) {
        int y = m_tops[i];
        if (i >= fixedLensCount && m_glide.isMoving())
            if (const auto from = m_glideFrom.find(m_shownCollections[i - fixedLensCount]);
                from != m_glideFrom.end())
                y = static_cast<int>(std::lround(from->second + (y - from->second) * m_glide.value()));
        m_rows[i]->setGeometry(0, y, QWidget::width(), m_rows[i]->sizeHint().height());
    }
}

// Drags

QRectF Sidebar::publishedFrame(std::size_t row) const {
    const QRect frame({0, m_tops[row] + m_column->y()},
                      m_rows[row]->sizeHint().expandedTo({QWidget::width(), 0}));
    return frame.translated(m_scrollArea->pos() + pos());
}

void Sidebar::publishFrames() {
    std::unordered_map<TabDropTarget, QRectF> frames;
    for (std::size_t i = 0; isVisible() && i < m_shownCollections.size(); ++i)
        frames[{m_shownCollections[i]}] = publishedFrame(i + fixedLensCount);
    const QRectF visible = rowsArea();
    if (frames != m_view._tabFrames || visible != m_view._visibleTabs)
        m_view.perform([&] {
            m_view._tabFrames = std::move(frames);
            m_view._visibleTabs = visible;
        });
}

QRect Sidebar::rowsArea() const {
    return m_scrollArea->geometry().translated(pos());
}

bool Sidebar::dragHovers(const QPoint* place) {
    const auto rows = rowsArea();
    m_dragScrollStep = 0;
    if (place && rows.contains(*place)) {
        if (place->y() < rows.top() + dragScrollZone)
            m_dragScrollStep = -dragScrollStep;
        else if (place->y() > rows.bottom() - dragScrollZone)
            m_dragScrollStep = dragScrollStep;
    }
    if (!canDragScroll())
        m_dragScroll.stop();
    else if (!m_dragScroll.isActive())
        m_dragScroll.start(dragScrollInterval, this);
    return m_dragScroll.isActive();
}

bool Sidebar::canDragScroll() const {
    return (m_dragScrollStep < 0 && m_scrollBar->value() > m_scrollBar->minimum()) ||
           (m_dragScrollStep > 0 && m_scrollBar->value() < m_scrollBar->maximum());
}

void Sidebar::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_dragScroll.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    m_scrollBar->setValue(m_scrollBar->value() + m_dragScrollStep);
    if (!canDragScroll())
        m_dragScroll.stop();
}

void Sidebar::moveEvent(QMoveEvent*) {
    publishFrames();
}

void Sidebar::showEvent(QShowEvent*) {
    publishFrames();
}

void Sidebar::hideEvent(QHideEvent*) {
    m_glide.finish();
    m_dragScroll.stop();
    publishFrames();
}

void Sidebar::resizeEvent(QResizeEvent*) {
    arrange();
}

void Sidebar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const auto font = headerFont();
    const QRectF line(headerSidePadding, headerTopPadding, QWidget::width() - 2 * headerSidePadding,
                      QFontMetrics(font).height());
    painter.setFont(font);
    painter.setPen(m_theme.secondaryText);
    const auto title = QStringLiteral("컬렉션");
    painter.drawText(line, Qt::AlignVCenter | Qt::AlignLeft, title);
    const auto countFont = interfaceFont(headerSize);
    const auto count = QString::number(m_view.allCollections().size());
    const double left = line.left() + QFontMetricsF(font).horizontalAdvance(title) + headerSpacing;
    painter.setFont(countFont);
    drawTabularAtRight(painter, {left, line.top(), tabularWidth(count, countFont), line.height()}, count);
    painter.fillRect(QRect(0, height() - footerHeight(), QWidget::width(), dividerWidth),
                     fainter(m_theme.separator, footerDividerOpacity));
}

} // namespace kestrova
