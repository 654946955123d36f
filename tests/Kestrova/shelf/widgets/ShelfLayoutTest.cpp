#include "Kestrova/detail/widgets/ActionRowButton.h"
#include "Kestrova/detail/widgets/DetailScreen.h"
#include "Kestrova/detail/widgets/DetailView.h"
#include "Kestrova/detail/widgets/ItemActionsCardWidget.h"
#include "Kestrova/look/InterfaceFont.h"
#include "Kestrova/shelf/controls/LabelButton.h"
#include "Kestrova/shelf/controls/SymbolButton.h"
#include "Kestrova/shelf/widgets/ChipRow.h"
#include "Kestrova/shelf/widgets/DetailOverlay.h"
#include "Kestrova/shelf/widgets/FilterChip.h"
#include "Kestrova/shelf/widgets/HintBar.h"
#include "Kestrova/shelf/widgets/ItemGridView.h"
#include "Kestrova/shelf/widgets/PreviewPane.h"
#include "Kestrova/shelf/widgets/ShelfContent.h"
#include "Kestrova/shelf/widgets/Sidebar.h"
#include "Kestrova/shelf/widgets/SidebarRow.h"
#include "Kestrova/shelf/widgets/TopBar.h"
#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"

#include <QContextMenuEvent>

namespace kestrova {
namespace {

class ShelfLayoutTest : public WidgetFixture {
protected:
    ~ShelfLayoutTest() override { QApplication::setFont(m_font); }

    template<typename Widget>
    std::vector<Widget*> parts() {
        std::vector<Widget*> found;
        for (auto* const child : panel.findChildren<QWidget*>())
            if (auto* const widget = dynamic_cast<Widget*>(child); widget && widget->isVisible())
                found.push_back(widget);
        return found;
    }
    QRect placeOf(const QWidget& widget) {
        auto& content = part<ShelfContent>();
        return {widget.mapTo(&content, QPoint()), widget.size()};
    }
    bool isAtRest(const QWidget& widget) const { return widget.graphicsEffect() == nullptr; }
    std::shared_ptr<KovaCollection> addCollection(const QString& name) {
        ModelContext elsewhere(*m_container);
        elsewhere.insert(
            std::make_shared<KovaCollection>(name, ++m_lastSortOrder, std::nullopt, std::nullopt));
        EXPECT_TRUE(elsewhere.save());
        return view.allCollections().back();
    }
    void setFontFactor(double factor) {
        auto font = m_font;
        font.setPointSizeF(m_font.pointSizeF() * factor);
        QApplication::setFont(font);
    }

private:
    const QFont m_font = QApplication::font();
    int m_lastSortOrder = 0;
};

// The frame of the whole

TEST_F(ShelfLayoutTest, ThePartsLieWhereTheyBelong) {
    add(u"a"_qs);
    show();
    EXPECT_EQ(placeOf(part<TopBar>()), QRect(0, 0, 960, 56));
    EXPECT_EQ(placeOf(part<Sidebar>()), QRect(0, 57, 200, 483));
    EXPECT_EQ(placeOf(part<PreviewPane>()), QRect(480, 57, 480, 483));
    EXPECT_EQ(placeOf(part<ChipRow>()).left(), 201);
    EXPECT_EQ(placeOf(part<ChipRow>()).right(), 478);
    EXPECT_EQ(part<ChipRow>().height(), 22);
}

TEST_F(ShelfLayoutTest, TheControlsOfTheTopBarStandInARow) {
    show();
    const auto buttons = parts<SymbolButton>();
    ASSERT_EQ(buttons.size(), 3U);
    EXPECT_EQ(placeOf(*buttons[0]), QRect(16, 12, 36, 36));
    EXPECT_EQ(placeOf(*buttons[2]), QRect(960 - 16 - 36, 12, 36, 36));
    const auto search = placeOf(part<SearchField>());
    EXPECT_GT(search.left(), placeOf(*buttons[0]).right());
    EXPECT_LT(search.right(), placeOf(*buttons[1]).left());
    EXPECT_EQ(buttons[0]->toolTip(), u"사이드바 (⌥⌘S)");
    EXPECT_EQ(buttons[1]->toolTip(), u"보기 모드 (⌘`)");
    EXPECT_EQ(buttons[2]->toolTip(), u"프리뷰 (⌥⌘I)");
}

TEST_F(ShelfLayoutTest, APaneComesAndGoesWithOpacityAndFromItsEdge) {
    show();
    auto& sidebar = part<Sidebar>();
    view.perform([&] { view._sidebarVisible = false; });
    EXPECT_TRUE(waitFor([&] { return sidebar.isVisible() && !isAtRest(sidebar) && sidebar.x() < 0; }));
    EXPECT_TRUE(waitFor([&] { return !sidebar.isVisible(); }));
    view.perform([&] { view._sidebarVisible = true; });
    EXPECT_TRUE(waitFor([&] { return sidebar.isVisible() && isAtRest(sidebar) && sidebar.x() == 0; }));
    auto& preview = part<PreviewPane>();
    view.perform([&] { view._previewVisible = false; });
    EXPECT_TRUE(waitFor([&] { return !isAtRest(preview); }));
    EXPECT_TRUE(waitFor([&] { return !preview.isVisible(); }));
}

TEST_F(ShelfLayoutTest, NothingMovesOnceThePanelIsHidden) {
    const auto item = add(u"a"_qs);
    show();
    view.perform([&] {
        view._sidebarVisible = false;
        view._previewVisible = false;
        view._optionHeld = view._commandHeld = view._controlHeld = true;
        view._route = DetailRoute::actions(item);
    });
    panel.orderOut();
    EXPECT_FALSE(part<Sidebar>().isVisibleTo(&part<ShelfContent>()));
    EXPECT_FALSE(part<PreviewPane>().isVisibleTo(&part<ShelfContent>()));
    EXPECT_TRUE(isAtRest(part<ItemActionsCardWidget>()));
}

// Fonts

TEST_F(ShelfLayoutTest, ControlsGrowWithTheFontAndNothingOverlaps) {
    add(u"a"_qs);
    addCollection(u"긴 이름을 가진 아주 긴 컬렉션"_qs);
    show();
    for (const double factor : {1.0, 1.5, 2.0}) {
        setFontFactor(factor);
        ASSERT_TRUE(waitFor([&] { return part<TopBar>().height() == TopBar::height(); }));
        QCoreApplication::processEvents();
        const auto& field = part<SearchLineEdit>();
        EXPECT_GE(field.height(), QFontMetrics(field.font()).height()) << factor;
        EXPECT_GE(part<SearchField>().height(), 36);
        const KeyCapsule keys{{QStringLiteral("option"), QStringLiteral("command")}, u"S"_qs};
        EXPECT_GE(part<SymbolButton>().width(), keys.size().width()) << factor;
        EXPECT_GE(part<FilterChip>().height(), 22);
        EXPECT_GE(part<FilterChip>().height(), QFontMetrics(interfaceFont(12)).ascent()) << factor;
        EXPECT_GE(part<Sidebar>().y(), part<TopBar>().height());
        const auto rows = parts<SidebarRow>();
        ASSERT_EQ(rows.size(), 4U);
        for (std::size_t i = 0; i < rows.size(); ++i) {
            EXPECT_GE(rows[i]->height(), QFontMetrics(interfaceFont(13)).height()) << factor;
            EXPECT_TRUE(i == 0 || rows[i]->y() > rows[i - 1]->geometry().bottom()) << factor;
        }
        EXPECT_GE(part<LabelButton>().height(), QFontMetrics(interfaceFont(13)).height()) << factor;
        EXPECT_EQ(part<HintBar>().geometry().bottom(), part<PreviewPane>().height() - 1 - 8) << factor;
        EXPECT_EQ(part<HintBar>().height(), part<HintBar>().heightForWidth(part<HintBar>().width()))
            << factor;
    }
}

// The list pane

TEST_F(ShelfLayoutTest, TheViewModeChoosesBetweenListAndGrid) {
    add(u"a"_qs);
    show();
    EXPECT_TRUE(list().isVisible());
    EXPECT_FALSE(part<ItemGridView>().isVisible());
    view.perform([&] { view.flipViewMode(); });
    EXPECT_FALSE(list().isVisible());
    EXPECT_TRUE(part<ItemGridView>().isVisible());
    EXPECT_EQ(view._gridColumnCount, 1U) << "a pane of 280 points";
    view.perform([&] { view._previewVisible = false; });
    EXPECT_TRUE(waitFor([&] { return view._gridColumnCount == 4U; })) << view._gridColumnCount;
}

// The sidebar

TEST_F(ShelfLayoutTest, TheSidebarEndsWithTheButtonForANewCollection) {
    show();
    auto& button = part<LabelButton>();
    EXPECT_EQ(button.text(), u"새 컬렉션");
    QTest::mouseClick(&button, Qt::LeftButton);
    ASSERT_TRUE(view._collectionSheetMode);
    EXPECT_EQ(*view._collectionSheetMode, CollectionEditSheet::Mode::create());
}

TEST_F(ShelfLayoutTest, OnlyCollectionsHaveAMenu) {
    const auto collection = addCollection(u"업무"_qs);
    show();
    const auto rows = parts<SidebarRow>();
    ASSERT_EQ(rows.size(), 4U);
    std::shared_ptr<KovaCollection> asked;
    QPoint place;
    part<Sidebar>().onContextMenu = [&](const auto& of, QPoint at) {
        asked = of;
        place = at;
    };
    const auto askFor = [](QWidget& row) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, {105, 205});
        QCoreApplication::sendEvent(&row, &event);
    };
    askFor(*rows[2]);
    EXPECT_EQ(asked, nullptr);
    askFor(*rows[3]);
    EXPECT_EQ(asked, collection);
    EXPECT_EQ(place, QPoint(105, 205));
    EXPECT_EQ(view._collectionFilter, CollectionFilter::all());
}

// The preview pane

TEST_F(ShelfLayoutTest, TheHintBarIsThereForAnItemAndOnlyThen) {
    show();
    EXPECT_TRUE(parts<HintBar>().empty());
    add(u"a"_qs);
    EXPECT_EQ(parts<HintBar>().size(), 1U);
}

TEST_F(ShelfLayoutTest, TheFirstItemComesFromTheBottomEdge) {
    show();
    auto& content = part<DetailView>();
    add(u"a"_qs);
    EXPECT_GT(content.y(), 0);
    EXPECT_TRUE(waitFor([&] { return content.y() == 0; }));
}

TEST_F(ShelfLayoutTest, AnotherItemFadesInUnlessThePersonRunsPastIt) {
    add(u"c"_qs);
    add(u"b"_qs);
    add(u"a"_qs);
    show();
    auto& content = part<DetailView>();
    ASSERT_TRUE(waitFor([&] { return content.y() == 0 && isAtRest(content); }));
    view.perform([&] { view.moveSelection(1); });
    EXPECT_FALSE(isAtRest(content));
    view.perform([&] { view.moveSelection(1); });
    EXPECT_TRUE(isAtRest(content));
}

// Detail screens

TEST_F(ShelfLayoutTest, ADetailScreenComesFromTheTrailingEdgeOverADimmedList) {
    const auto item = add(u"a"_qs);
    show();
    view.perform([&] { view.preview(item); });
    auto& sheet = part<DetailScreen>();
    EXPECT_GT(sheet.x(), 480);
    EXPECT_FALSE(isAtRest(sheet));
    EXPECT_TRUE(waitFor([&] { return isAtRest(sheet); }));
    EXPECT_EQ(placeOf(sheet), QRect(16, 16, 928, 508));
}

TEST_F(ShelfLayoutTest, TheActionsCardComesFromTheBottomEdge) {
    const auto item = add(u"a"_qs);
    show();
    view.perform([&] { view._route = DetailRoute::actions(item); });
    auto& card = part<ItemActionsCardWidget>();
    EXPECT_GT(card.y(), 400);
    EXPECT_TRUE(waitFor([&] { return isAtRest(card); }));
    EXPECT_EQ(card.size().width(), 380);
    EXPECT_EQ(placeOf(card).center().x(), 479);
    EXPECT_EQ(placeOf(card).bottom(), 539 - 12);
}

TEST_F(ShelfLayoutTest, AScreenThatGoesIsSeenOnButCanNoLongerBeUsed) {
    const auto item = add(u"a"_qs);
    show();
    auto& overlay = part<DetailOverlay>();
    view.perform([&] { view._route = DetailRoute::actions(item); });
    ASSERT_TRUE(waitFor([&] { return isAtRest(part<ItemActionsCardWidget>()); }));
    view.perform([&] { view.popRoute(); });
    EXPECT_TRUE(parts<ActionRowButton>().empty());
    EXPECT_TRUE(overlay.isVisible());
    EXPECT_TRUE(overlay.testAttribute(Qt::WA_TransparentForMouseEvents));
    EXPECT_TRUE(field().hasFocus());
    EXPECT_TRUE(waitFor([&] { return !overlay.isVisible(); }));
}

// Modifiers

TEST_F(ShelfLayoutTest, AfterAShowNoKeyIsTakenForHeld) {
    add(u"a"_qs);
    show();
    view.perform([&] { view._optionHeld = view._commandHeld = view._controlHeld = true; });
    panel.orderOut();
    show();
    EXPECT_FALSE(view._optionHeld || view._commandHeld || view._controlHeld);
}

} // namespace
} // namespace kestrova
