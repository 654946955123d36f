#include "Kestrova/shelf/widgets/ShelfContent.h"

#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/widgets/ChipRow.h"
#include "Kestrova/shelf/widgets/DetailOverlay.h"
#include "Kestrova/shelf/widgets/FilterChip.h"
#include "Kestrova/shelf/widgets/ItemContentView.h"
#include "Kestrova/shelf/widgets/ItemListView.h"
#include "Kestrova/shelf/widgets/SearchField.h"
#include "Kestrova/shelf/widgets/Sidebar.h"
#include "Kestrova/shelf/widgets/TopBar.h"

#include <QApplication>
#include <QPainter>
#include <QScopedValueRollback>

#include <cmath>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

constexpr auto paneDuration = 280ms;
constexpr int previewWidth = 480;
constexpr int dividerWidth = 1;
constexpr int chipsTopPadding = 8;
constexpr int chipsBottomPadding = 8;
// With the padding of a row, its text stands below the first chip.
constexpr int listSidePadding = 4;

/// Puts a pane's edge where its transition has come to.
int partOf(int width, const Transition& shown) {
    return static_cast<int>(std::lround(width * shown.value()));
}

} // namespace

ShelfContent::ShelfContent(ShelfPanelView& view, MainQueue& mainQueue, QWidget* parent)
    : QWidget(parent),
      m_view(view),
      m_decoder(mainQueue),
      m_sidebarShown(paneDuration, QEasingCurve::InOutQuad, [this] { arrange(); }),
      m_previewShown(paneDuration, QEasingCurve::InOutQuad, [this] { arrange(); }),
      m_topBar(new TopBar(view, this)),
      m_sidebar(new Sidebar(view, this)),
      m_chipRow(new ChipRow(view, this)),
      m_list(new ItemListView(view, mainQueue, m_decoder, this)),
      m_preview(new ItemContentView(mainQueue, m_decoder, this)),
      m_overlay(new DetailOverlay(view, mainQueue, m_decoder, this)) {
    m_topBar->searchField().lineEdit().onFocusChange = [this](bool isFocused) {
        searchFocusChanged(isFocused);
    };
    // The list stands in for the grid too, and the arrow keys must walk what is seen: one column.
    m_view.perform([this] { m_view._gridColumnCount = 1; });
}

void ShelfContent::render() {
    // Where the focus goes meanwhile follows from the state and is no news to it.
    const QScopedValueRollback rendering(m_isRendering, true);
    const auto theme = ShelfTheme::of(ShelfTheme::scheme(m_view.themeRaw(), QApplication::palette()));
    updateOnChange(*this, m_theme, theme);
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
    if (m_view._previewVisible)
        m_preview->render(m_view.currentItem(), theme);
    m_overlay->render(theme);
    placeFocus();
}

void ShelfContent::setGround(Ground ground) {
    updateOnChange(*this, m_ground, ground);
}

void ShelfContent::placeFocus() {
    // An open detail screen has taken it.
    if (m_view._route)
        return;
    auto& lineEdit = m_topBar->searchField().lineEdit();
    auto* const focused = window()->focusWidget();
    if (m_view._searchFocused && focused != &lineEdit)
        lineEdit.setFocus(Qt::OtherFocusReason);
    else if (!m_view._searchFocused && focused != this)
        setFocus(Qt::OtherFocusReason);
}

void ShelfContent::endEditing() {
    // A detail screen keeps the keyboard for as long as it is open.
    if (!m_view._route)
        setFocus(Qt::OtherFocusReason);
}

void ShelfContent::searchFocusChanged(bool isFocused) {
    // A detail screen borrows the keyboard; when it closes, the state says where it belongs.
    if (m_isRendering || m_view._route || !window()->isVisible())
        return;
    m_view.perform([&] { m_view._searchFocused = isFocused; });
}

void ShelfContent::resizeEvent(QResizeEvent*) {
    arrange();
}

void ShelfContent::arrange() {
    const int bodyTop = TopBar::height + dividerWidth;
    const int bodyHeight = QWidget::height() - bodyTop;
    const int sidebarEdge = partOf(Sidebar::width + dividerWidth, m_sidebarShown);
    const int previewEdge = width() - partOf(previewWidth, m_previewShown);
    m_topBar->setGeometry(0, 0, width(), TopBar::height);
    m_sidebar->setGeometry(sidebarEdge - Sidebar::width - dividerWidth, bodyTop, Sidebar::width, bodyHeight);
    m_preview->setGeometry(previewEdge + dividerWidth, bodyTop, previewWidth - dividerWidth, bodyHeight);
    m_sidebar->setVisible(sidebarEdge > 0);
    m_preview->setVisible(previewEdge < width());
    const int paneWidth = previewEdge - sidebarEdge;
    m_chipRow->setGeometry(sidebarEdge, bodyTop + chipsTopPadding, paneWidth, FilterChip::height);
    const int listTop = bodyTop + chipsTopPadding + FilterChip::height + chipsBottomPadding;
    m_list->setGeometry(sidebarEdge + listSidePadding, listTop, paneWidth - 2 * listSidePadding,
                        QWidget::height() - listTop);
    m_overlay->setGeometry(rect());
    update();
}

void ShelfContent::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // The stroke lies within the edge.
    painter.setPen(QPen(m_theme.border, 1));
    if (m_ground == Ground::opaque) {
        // The window's shape cuts the corners; what is half covered by an arc would be mixed with black.
        auto ground = m_theme.ground;
        ground.setAlpha(255);
        painter.fillRect(rect(), ground);
    } else {
        painter.setBrush(m_theme.ground);
    }
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
    painter.fillRect(QRect(0, TopBar::height, width(), dividerWidth), m_theme.separator);
    const auto divide = [&](int x) {
        painter.fillRect(QRect(x, TopBar::height + dividerWidth, dividerWidth, QWidget::height()),
                         m_theme.separator);
    };
    if (m_sidebarShown.value() > 0)
        divide(m_sidebar->geometry().right() + 1);
    if (m_previewShown.value() > 0)
        divide(m_preview->x() - dividerWidth);
}

} // namespace kestrova
