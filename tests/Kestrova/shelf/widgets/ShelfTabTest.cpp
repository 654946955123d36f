#include "Kestrova/shelf/controls/SymbolButton.h"
#include "Kestrova/shelf/widgets/ChipRow.h"
#include "Kestrova/shelf/widgets/Sidebar.h"
#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"

namespace kestrova {
namespace {

/// A person with a keyboard and no mouse.
class ShelfTabTest : public WidgetFixture {
protected:
    void SetUp() override {
        add(u"one"_qs);
        add(u"two"_qs);
        show();
    }
    void tab() { QTest::keyClick(panel.focusWidget(), Qt::Key_Tab); }
    void backtab() { QTest::keyClick(panel.focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier); }
    /// What has the keyboard, in words.
    QString place() const {
        if (view._searchFocused)
            return u"search"_qs;
        if (view._controlFocused)
            return panel.focusWidget()->accessibleName();
        switch (view._lane) {
        case KeyboardLane::sidebar:
            return u"sidebar"_qs;
        case KeyboardLane::tags:
            return u"tags"_qs;
        default:
            return u"list"_qs;
        }
    }
    QStringList wholeRound(const std::function<void()>& step) {
        QStringList places;
        do {
            step();
            places.append(place());
        } while (places.back() != u"search" && places.size() < 30);
        return places;
    }
    bool tabTo(const QString& wanted) {
        for (int step = 0; step < 30; ++step) {
            tab();
            if (place() == wanted)
                return true;
        }
        return false;
    }
};

TEST_F(ShelfTabTest, TabWalksAllThatCanBePressedAndComesBack) {
    EXPECT_EQ(wholeRound([&] { tab(); }),
              (QStringList{u"보기 모드: 목록"_qs, u"프리뷰"_qs, u"sidebar"_qs, u"새 컬렉션"_qs, u"tags"_qs,
                           u"list"_qs, u"사이드바"_qs, u"search"_qs}));
    EXPECT_EQ(wholeRound([&] { backtab(); }),
              (QStringList{u"사이드바"_qs, u"list"_qs, u"tags"_qs, u"새 컬렉션"_qs, u"sidebar"_qs,
                           u"프리뷰"_qs, u"보기 모드: 목록"_qs, u"search"_qs}));
}

TEST_F(ShelfTabTest, TheButtonThatEmptiesTheSearchIsAStopWhileItIsThere) {
    QTest::keyClicks(&field(), u"on"_qs);
    tab();
    EXPECT_EQ(place(), u"검색어 지우기");
    QTest::keyClick(panel.focusWidget(), Qt::Key_Return);
    EXPECT_EQ(view._query, u"");
    // It has gone, and the keyboard goes where one types on.
    EXPECT_TRUE(field().hasFocus());
    EXPECT_EQ(place(), u"search");
}

TEST_F(ShelfTabTest, ReturnAndSpacePressTheButtonWhichKeepsTheKeyboard) {
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        ASSERT_TRUE(tabTo(u"프리뷰"_qs));
        const bool before = view._previewVisible;
        QTest::keyClick(panel.focusWidget(), key);
        EXPECT_NE(static_cast<bool>(view._previewVisible), before);
        EXPECT_EQ(place(), u"프리뷰");
        EXPECT_EQ(panel.focusWidget()->accessibleName(), u"프리뷰");
    }
}

TEST_F(ShelfTabTest, ALaneThatTabEntersIsTheOneOfTheArrowKeys) {
    ASSERT_TRUE(tabTo(u"sidebar"_qs));
    EXPECT_EQ(view._lane, KeyboardLane::sidebar);
    EXPECT_EQ(panel.focusWidget(), &part<Sidebar>().currentRow());
    ASSERT_TRUE(tabTo(u"tags"_qs));
    EXPECT_EQ(view._lane, KeyboardLane::tags);
    EXPECT_EQ(panel.focusWidget(), &part<ChipRow>().activeChip());
    ASSERT_TRUE(tabTo(u"list"_qs));
    EXPECT_EQ(view._lane, KeyboardLane::list);
}

TEST_F(ShelfTabTest, ALaneThatTakesOverTakesTheKeyboard) {
    ASSERT_TRUE(tabTo(u"새 컬렉션"_qs));
    view.perform([&] {
        view._lane = KeyboardLane::tags;
        view._controlFocused = false;
    });
    EXPECT_EQ(panel.focusWidget(), &part<ChipRow>().activeChip());
}

TEST_F(ShelfTabTest, AClickOnAButtonLeavesTheKeyboardWhereItIs) {
    for (const auto& name : {u"보기 모드"_qs, u"새 컬렉션"_qs}) {
        const auto buttons = panel.findChildren<QAbstractButton*>();
        const auto pressed = std::ranges::find_if(
            buttons, [&](const auto* button) { return button->accessibleName().startsWith(name); });
        ASSERT_NE(pressed, buttons.end());
        ASSERT_TRUE((*pressed)->focusPolicy() & Qt::TabFocus);
        QTest::mousePress(*pressed, Qt::LeftButton);
        EXPECT_TRUE(field().hasFocus()) << name.toStdString();
        EXPECT_FALSE(view._controlFocused);
        QTest::mouseRelease(*pressed, Qt::LeftButton, {}, QPoint(-5, -5));
    }
}

TEST_F(ShelfTabTest, AButtonThatSlidesOutOfSightLosesTheKeyboard) {
    ASSERT_TRUE(tabTo(u"새 컬렉션"_qs));
    view.perform([&] { view._sidebarVisible = false; });
    ASSERT_TRUE(part<Sidebar>().isVisible());
    EXPECT_EQ(place(), u"search");
    QTest::keyClick(panel.focusWidget(), Qt::Key_Return);
    EXPECT_EQ(view._collectionSheetMode, std::nullopt);
}

TEST_F(ShelfTabTest, TheMenuKeyOnAButtonOpensNoMenuOfAnItem) {
    view.perform([&] { view.enterLane(KeyboardLane::list); });
    tab();
    ASSERT_EQ(place(), u"사이드바");
    QContextMenuEvent request(QContextMenuEvent::Keyboard, {}, panel.focusWidget()->mapToGlobal(QPoint()));
    QCoreApplication::sendEvent(panel.focusWidget(), &request);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(ShelfTabTest, LettersOnAButtonTypeNothing) {
    ASSERT_TRUE(tabTo(u"프리뷰"_qs));
    QTest::keyClicks(panel.focusWidget(), u"abc"_qs);
    EXPECT_EQ(view._query, u"");
    EXPECT_EQ(place(), u"프리뷰");
}

TEST_F(ShelfTabTest, AnOpenScreenKeepsTabToItself) {
    view.perform([&] { view._route = DetailRoute::actions(view.currentItem()); });
    QSet<QString> seen;
    for (int step = 0; step < 12; ++step) {
        tab();
        seen.insert(panel.focusWidget()->accessibleName());
    }
    EXPECT_EQ(seen, QSet{u"Paste"_qs});
    view.perform([&] { view.popRoute(); });
    EXPECT_TRUE(field().hasFocus());
}

TEST_F(ShelfTabTest, TheButtonInFocusShowsARing) {
    ASSERT_TRUE(tabTo(u"프리뷰"_qs));
    auto& button = *panel.focusWidget();
    const auto focused = button.grab().toImage();
    tab();
    const auto plain = button.grab().toImage();
    int different = 0;
    for (int x = 0; x < plain.width(); ++x)
        different += focused.pixelColor(x, 1) != plain.pixelColor(x, 1);
    EXPECT_GT(different, plain.width() / 2);
}

} // namespace
} // namespace kestrova
