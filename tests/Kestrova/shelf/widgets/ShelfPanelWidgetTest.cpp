#include "Kestrova/detail/widgets/ActionRowButton.h"
#include "Kestrova/shelf/widgets/ChipRow.h"
#include "Kestrova/shelf/widgets/FilterChip.h"
#include "Kestrova/shelf/widgets/ShelfContent.h"
#include "Kestrova/shelf/widgets/Sidebar.h"
#include "Kestrova/shelf/widgets/SidebarRow.h"
#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"
#include "tests/support/ManualMainQueue.h"

namespace kestrova {
namespace {

using namespace std::chrono_literals;

class ShelfPanelWidgetTest : public WidgetFixture {
protected:
    template<typename Widget>
    std::vector<Widget*> parts() {
        std::vector<Widget*> found;
        for (auto* const child : panel.findChildren<QWidget*>())
            if (auto* const widget = dynamic_cast<Widget*>(child); widget && widget->isVisible())
                found.push_back(widget);
        return found;
    }
    static void tap(QWidget& widget) { QTest::mouseClick(&widget, Qt::LeftButton); }
};

TEST_F(ShelfPanelWidgetTest, IsAToolWithoutAFrameAboveOthers) {
    EXPECT_TRUE(panel.windowFlags().testFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint));
    EXPECT_FALSE(panel.isVisible());
    EXPECT_NE(panel.windowNumber(), 0U);
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(ShelfPanelWidgetTest, StandsApartAtEachShowing) {
    show();
    EXPECT_EQ(windowManagement.apart, std::vector{panel.windowNumber()});
    panel.orderOut();
    EXPECT_FALSE(panel.isVisible());
    show();
    EXPECT_EQ(windowManagement.apart.size(), 2U);
}

TEST_F(ShelfPanelWidgetTest, TheKeyboardIsHandedOverBeforeTheWindowGoes) {
    std::vector<std::pair<std::uint64_t, bool>> handovers;
    windowManagement.onHandOver = [&](std::uint64_t window) {
        handovers.emplace_back(window, panel.isVisible());
    };
    show();
    EXPECT_TRUE(handovers.empty());
    panel.orderOut();
    EXPECT_EQ(handovers, (std::vector{std::pair{panel.windowNumber(), true}}));
}

TEST_F(ShelfPanelWidgetTest, TakesTheFrameThatItIsGiven) {
    panel.setFrame({.x = 20, .y = 30, .width = 760, .height = 540});
    EXPECT_EQ(panel.geometry(), QRect(20, 30, 760, 540));
    panel.animateFrame({.x = 0, .y = 0, .width = 960, .height = 540}, 0ms, AnimationTiming::easeInEaseOut);
    EXPECT_TRUE(waitFor([&] { return panel.geometry() == QRect(0, 0, 960, 540); }));
}

TEST_F(ShelfPanelWidgetTest, FadesToTheAlphaThatItIsGiven) {
    panel.setAlpha(0);
    EXPECT_EQ(panel.windowOpacity(), 0);
    panel.animateAlpha(1, 0ms, AnimationTiming::easeOut);
    EXPECT_EQ(panel.windowOpacity(), 1);
    panel.animateAlpha(0, 20ms, AnimationTiming::easeIn);
    EXPECT_TRUE(waitFor([&] { return panel.windowOpacity() == 0; }));
}

TEST_F(ShelfPanelWidgetTest, WithoutACompositorItIsOpaqueWithShapedCorners) {
    windowManagement.compositing = false;
    show();
    EXPECT_FALSE(panel.mask().isEmpty());
    EXPECT_FALSE(panel.mask().contains(QPoint(0, 0)));
    EXPECT_FALSE(panel.mask().contains(QPoint(959, 539)));
    EXPECT_TRUE(panel.mask().contains(QPoint(480, 0)));
    EXPECT_TRUE(panel.mask().contains(QPoint(0, 270)));
    EXPECT_EQ(panel.grab().toImage().pixelColor(300, 530).alpha(), 255);
    panel.orderOut();
    windowManagement.compositing = true;
    show();
    EXPECT_TRUE(panel.mask().isEmpty());
}

TEST_F(ShelfPanelWidgetTest, IsMadeInAQuietMomentBeforeItIsShown) {
    add(u"a"_qs);
    EXPECT_TRUE(panel.children().empty());
    EXPECT_TRUE(waitFor([&] { return !panel.children().empty(); }));
    EXPECT_FALSE(panel.isVisible());
    EXPECT_EQ(list().model()->rowCount(), 1);
}

TEST_F(ShelfPanelWidgetTest, WhatWasUsedIsLetGoSomeSecondsAfterTheStartAndAfterAHiding) {
    ManualMainQueue clock;
    int disuses = 0;
    int rests = 0;
    ShelfPanelWidget other({.mainQueue = clock,
                            .windowManagement = windowManagement,
                            .appearance = appearance,
                            .toolkitRect = &FakeScreens::toolkitRect,
                            .screenRect = &FakeScreens::screenRect,
                            .onDisuse = [&] { ++disuses; },
                            .onRest = [&] { ++rests; }});
    ShelfPanelView otherView({*m_container, clock, pasteboard, defaults, monitors, hud, other, workspace,
                              sharing, screens, linkPreviews},
                             {.onSelect = [](const auto&) {},
                              .onDismiss = [] {},
                              .onEditImage = [](const auto&) {},
                              .onPanelWidthChange = [](double) {},
                              .onStepAside = [] {}});
    other.setContent(otherView);
    clock.advance(1s);
    EXPECT_EQ(disuses, 0);
    // Told behind the drawing that nobody sees.
    EXPECT_EQ(rests, 1);
    clock.advance(10s);
    EXPECT_EQ(disuses, 1);
    EXPECT_EQ(rests, 2);
    other.orderFrontRegardless();
    clock.advance(60s);
    EXPECT_EQ(disuses, 1);
    other.orderOut();
    EXPECT_EQ(rests, 3);
    clock.advance(9s);
    other.orderFrontRegardless();
    clock.advance(9s);
    other.orderOut();
    clock.advance(9s);
    EXPECT_EQ(disuses, 1);
    EXPECT_EQ(rests, 4);
    clock.advance(2s);
    EXPECT_EQ(disuses, 2);
    EXPECT_EQ(rests, 5);
    EXPECT_FALSE(other.isVisible());
    clock.advance(60s);
    EXPECT_EQ(disuses, 2);
}

TEST_F(ShelfPanelWidgetTest, AHiddenPanelLaysNothingOutUntilItIsShown) {
    show();
    panel.orderOut();
    add(u"while hidden"_qs);
    EXPECT_EQ(list().model()->rowCount(), 0);
    show();
    EXPECT_EQ(list().model()->rowCount(), 1);
}

TEST_F(ShelfPanelWidgetTest, AnItemThatArrivesWhileItIsUpIsShown) {
    show();
    add(u"new"_qs);
    EXPECT_EQ(list().model()->rowCount(), 1);
}

TEST_F(ShelfPanelWidgetTest, TheContentHasTheWidthOfTheStateWhateverTheWindows) {
    view._sidebarVisible = false;
    show();
    EXPECT_EQ(part<ShelfContent>().size(), QSize(760, 540));
    EXPECT_EQ(panel.width(), 960);
    view.perform([&] { view._sidebarVisible = true; });
    EXPECT_TRUE(waitFor([&] { return part<ShelfContent>().width() == 960; }));
}

TEST_F(ShelfPanelWidgetTest, BothPanesLeaveTheListTheRest) {
    show();
    EXPECT_TRUE(part<Sidebar>().isVisible());
    EXPECT_EQ(part<Sidebar>().width, 200);
    EXPECT_NEAR(part<ChipRow>().width(), 280, 2);
    view.perform([&] { view._previewVisible = false; });
    EXPECT_TRUE(waitFor([&] { return std::abs(part<ChipRow>().width() - 760) <= 2; }));
    view.perform([&] { view._sidebarVisible = false; });
    EXPECT_TRUE(waitFor([&] { return !part<Sidebar>().isVisible() && part<ChipRow>().width() == 760; }));
}

TEST_F(ShelfPanelWidgetTest, ChipsStandForTheTypesAndFilterByThem) {
    add(u"t"_qs);
    add(u"https://a.org"_qs, ClipboardItemType::url);
    show();
    const auto chips = parts<FilterChip>();
    ASSERT_EQ(chips.size(), 3U);
    tap(*chips[2]);
    EXPECT_EQ(view._typeFilter, ClipboardItemType::url);
    EXPECT_EQ(view._activeTagIndex, 2U);
    EXPECT_EQ(list().model()->rowCount(), 1);
    tap(*chips[0]);
    EXPECT_EQ(view._typeFilter, std::nullopt);
    EXPECT_EQ(view._activeTagIndex, 0U);
}

TEST_F(ShelfPanelWidgetTest, AChipGoesWithTheLastItemOfItsType) {
    add(u"t"_qs);
    const auto link = add(u"https://a.org"_qs, ClipboardItemType::url);
    show();
    ASSERT_EQ(parts<FilterChip>().size(), 3U);
    view.perform([&] { view.deleteItem(*link); });
    EXPECT_EQ(parts<FilterChip>().size(), 2U);
}

TEST_F(ShelfPanelWidgetTest, SidebarRowsSetTheLens) {
    add(u"plain"_qs);
    add(u"pinned"_qs, ClipboardItemType::text, true);
    show();
    const auto rows = parts<SidebarRow>();
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0]->accessibleName(), u"전체, 항목 2개");
    EXPECT_EQ(rows[1]->accessibleName(), u"Pinned, 항목 1개");
    EXPECT_EQ(rows[2]->accessibleName(), u"Screenshots, 항목 0개");
    tap(*rows[1]);
    EXPECT_EQ(view._collectionFilter, CollectionFilter::pinned());
    EXPECT_EQ(list().model()->rowCount(), 1);
    tap(*rows[0]);
    EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
}

TEST_F(ShelfPanelWidgetTest, CountsFollowAPin) {
    const auto item = add(u"a"_qs);
    show();
    view.perform([&] { view.togglePin(*item); });
    EXPECT_EQ(parts<SidebarRow>()[1]->accessibleName(), u"Pinned, 항목 1개");
}

TEST_F(ShelfPanelWidgetTest, EveryButtonHasANameAndAClickOnItLeavesTheKeyboardWhereItIs) {
    add(u"a"_qs);
    show();
    const auto buttons = parts<PanelButton>();
    EXPECT_GE(buttons.size(), 8U);
    for (const auto* const button : buttons) {
        EXPECT_FALSE(button->accessibleName().isEmpty());
        EXPECT_FALSE(button->focusPolicy() & Qt::ClickFocus);
    }
}

TEST_F(ShelfPanelWidgetTest, AnEditorThatWasOpenedFromTheCardComesBackToIt) {
    const auto item = add(u"a"_qs);
    show();
    view.perform([&] { view._route = DetailRoute::actions(item); });
    tap(*parts<ActionRowButton>()[2]);
    ASSERT_EQ(view._route, DetailRoute::edit(item));
    view.perform([&] { view.popRoute(); });
    EXPECT_EQ(view._route, DetailRoute::actions(item));
    EXPECT_FALSE(parts<ActionRowButton>().empty());
}

TEST_F(ShelfPanelWidgetTest, ClosingByTheWindowManagerOnlyAsks) {
    show();
    panel.close();
    EXPECT_TRUE(panel.isVisible());
    EXPECT_EQ(dismissals, 1);
}

TEST_F(ShelfPanelWidgetTest, TheThemeFollowsThePreference) {
    defaults.set(QStringLiteral("themePreference"), QStringLiteral("dark"));
    show();
    const auto ground = [&] { return panel.grab().toImage().pixelColor(300, 530).lightness(); };
    EXPECT_LT(ground(), 80);
    defaults.set(QStringLiteral("themePreference"), QStringLiteral("light"));
    EXPECT_GT(ground(), 180);
}

TEST_F(ShelfPanelWidgetTest, GrowsWithTheFontOfTheDesktop) {
    add(u"a"_qs);
    show();
    const auto rowHeight = [&] { return list().visualRect(list().model()->index(0, 0)).height(); };
    const int before = rowHeight();
    const auto ordinary = QApplication::font();
    auto large = ordinary;
    large.setPointSizeF(2.5 * ordinary.pointSizeF());
    QApplication::setFont(large);
    EXPECT_TRUE(waitFor([&] { return rowHeight() > before; }));
    EXPECT_GT(field().font().pointSizeF(), 2 * ordinary.pointSizeF());
    QApplication::setFont(ordinary);
    EXPECT_TRUE(waitFor([&] { return rowHeight() == before; }));
}

TEST_F(ShelfPanelWidgetTest, GoesQuietlyAfterTheState) {
    QtMainQueue otherQueue;
    ShelfPanelWidget otherPanel({.mainQueue = otherQueue,
                                 .windowManagement = windowManagement,
                                 .appearance = appearance,
                                 .toolkitRect = [](const ScreenRect&) { return QRect(0, 0, 960, 540); },
                                 .screenRect = [](const QRect&) { return ScreenRect(); }});
    {
        ShelfPanelView otherView({*m_container, otherQueue, pasteboard, defaults, monitors, hud, otherPanel,
                                  workspace, sharing, screens, linkPreviews},
                                 {.onSelect = [](const auto&) {},
                                  .onDismiss = [] {},
                                  .onEditImage = [](const auto&) {},
                                  .onPanelWidthChange = [](double) {},
                                  .onStepAside = [] {}});
        otherPanel.setContent(otherView);
        otherPanel.orderFrontRegardless();
        otherView.viewAppears();
        EXPECT_TRUE(otherPanel.isVisible());
    }
}

} // namespace
} // namespace kestrova
