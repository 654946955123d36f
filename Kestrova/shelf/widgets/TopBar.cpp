#include "Kestrova/shelf/widgets/TopBar.h"

#include "Kestrova/shelf/ShelfPanelView.h"
#include "Kestrova/shelf/controls/PanelAccessibility.h"
#include "Kestrova/shelf/controls/SymbolButton.h"
#include "Kestrova/shelf/widgets/SearchField.h"

#include <algorithm>
#include <cmath>

namespace kestrova {
namespace {

constexpr int sidePadding = 16;
constexpr int topPadding = 12;
constexpr int spacing = 8;
constexpr int bottomPadding = 8;
constexpr int smallestButtonEdge = 36;
constexpr double symbolSize = 14;

KeyCapsule optionCommandChip(const QString& letter) {
    return {{QStringLiteral("option"), QStringLiteral("command")}, letter};
}

/// Room for the keys that may lie on a button, too.
int buttonEdge() {
    const double chipWidth = optionCommandChip(QStringLiteral("S")).size().width();
    return std::max(
        {smallestButtonEdge, SearchField::smallestHeight(), static_cast<int>(std::ceil(chipWidth))});
}

} // namespace

TopBar::TopBar(ShelfPanelView& view, QWidget* parent)
    : QWidget(parent),
      m_view(view),
      m_sidebarButton(makeButton(QStringLiteral("사이드바"), QStringLiteral("사이드바 (⌥⌘S)"))),
      m_searchField(new SearchField(this)),
      m_modeButton(makeButton(QStringLiteral("보기 모드"), QStringLiteral("보기 모드 (⌘`)"))),
      m_previewButton(makeButton(QStringLiteral("프리뷰"), QStringLiteral("프리뷰 (⌥⌘I)"))) {
    for (auto* const toggle : {m_sidebarButton, m_previewButton})
        toggle->setCheckable(true);
    m_sidebarButton->setCapsule(optionCommandChip(QStringLiteral("S")));
    m_previewButton->setCapsule(optionCommandChip(QStringLiteral("I")));
    m_sidebarButton->onTap = [this] { m_view.perform([this] { m_view._sidebarVisible.flip(); }); };
    m_previewButton->onTap = [this] { m_view.perform([this] { m_view._previewVisible.flip(); }); };
    m_modeButton->onTap = [this] { m_view.perform([this] { m_view.flipViewMode(); }); };
    auto& lineEdit = m_searchField->lineEdit();
    lineEdit.onTextChange = [this](const QString& query) { m_view.perform([&] { m_view._query = query; }); };
    m_searchField->onClear = [this] { m_view.perform([this] { m_view._query.clear(); }); };
}

SymbolButton* TopBar::makeButton(const QString& name, const QString& help) {
    auto* const button = new SymbolButton(name, symbolSize, this);
    button->setToolTip(help);
    return button;
}

void TopBar::render(const ShelfTheme& theme) {
    m_searchField->render(m_view._query, m_view._searchFocused, theme);
    m_sidebarButton->render(QStringLiteral("sidebar.left"), m_view._sidebarVisible, theme);
    m_previewButton->render(QStringLiteral("sidebar.right"), m_view._previewVisible, theme);
    // It has no state that is off.
    m_modeButton->render(m_view._viewMode == ShelfViewMode::list ? QStringLiteral("list.bullet")
                                                                 : QStringLiteral("square.grid.2x2"),
                         true, theme);
    setSpokenName(*m_modeButton, m_view._viewMode == ShelfViewMode::list ? QStringLiteral("보기 모드: 목록")
                                                                         : QStringLiteral("보기 모드: 격자"));
    const bool showsKeys = m_view._optionHeld && m_view._commandHeld;
    m_sidebarButton->showCapsule(showsKeys);
    m_previewButton->showCapsule(showsKeys);
}

int TopBar::height() {
    return topPadding + buttonEdge() + bottomPadding;
}

void TopBar::resizeEvent(QResizeEvent*) {
    const int edge = buttonEdge();
    int left = sidePadding;
    int right = width() - sidePadding;
    m_sidebarButton->setGeometry(left, topPadding, edge, edge);
    left += edge + spacing;
    for (auto* const button : {m_previewButton, m_modeButton}) {
        right -= edge;
        button->setGeometry(right, topPadding, edge, edge);
        right -= spacing;
    }
    m_searchField->setGeometry(left, topPadding, right - left, edge);
}

} // namespace kestrova
