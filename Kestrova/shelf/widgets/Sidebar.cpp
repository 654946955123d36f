#include "Kestrova/shelf/widgets/Sidebar.h"

#include "Kestrova/detail/ColorFormats.h"
#include "Kestrova/detail/QtColor.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/look/Symbol.h"
#include "Kestrova/look/TabularDigits.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/controls/LabelButton.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "Kestrova/shelf/controls/ThinScrollBar.h"
#include "KestrovaCore/KovaCollection.h"

#include <QFontMetrics>
#include <QPainter>
#include <QScrollArea>

#include <utility>

namespace kestrova {
namespace {

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
      m_newCollection(
          new LabelButton(QStringLiteral("plus.circle.fill"), QStringLiteral("새 컬렉션"), this)) {
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
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        if (i == fixedLensCount) {
            m_column->dividerY = y + dividerSpace / 2;
            y += dividerSpace;
        }
        const int rowHeight = m_rows[i]->sizeHint().height();
        m_rows[i]->setGeometry(0, y, QWidget::width(), rowHeight);
        y += rowHeight + 1;
    }
    m_column->resize(QWidget::width(), y + listPadding);
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
