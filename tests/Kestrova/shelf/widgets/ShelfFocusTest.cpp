#include "Kestrova/detail/widgets/ItemEditor.h"
#include "Kestrova/detail/widgets/ItemPreviewScreen.h"
#include "Kestrova/shelf/controls/SheetButton.h"
#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"

#include <QAbstractScrollArea>
#include <QFocusEvent>
#include <QScrollBar>

namespace kestrova {
namespace {

class ShelfFocusTest : public WidgetFixture {
protected:
    /// What the host tells of a window that got the keyboard.
    void tellOfFocus() { QApplication::setActiveWindow(&panel); }
    /// As the host sends them.
    void type(const QByteArray& text) {
        for (const char letter : text)
            QTest::keyClick(panel.windowHandle(), letter);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(panel.windowHandle(), key, modifiers);
    }
};

TEST_F(ShelfFocusTest, ShowingPutsTheKeyboardIntoTheSearch) {
    show();
    EXPECT_TRUE(field().hasFocus());
    EXPECT_TRUE(view._searchFocused);
    EXPECT_EQ(view._lane, KeyboardLane::search);
}

TEST_F(ShelfFocusTest, ResigningTakesTheKeyboardFromTheSearch) {
    show();
    view.perform([&] { view.resignSearchFocus(); });
    EXPECT_FALSE(field().hasFocus());
    EXPECT_FALSE(view._searchFocused);
    ASSERT_NE(panel.focusWidget(), nullptr);
    EXPECT_FALSE(panel.focusWidget()->inherits("QLineEdit"));
}

TEST_F(ShelfFocusTest, KeysNoLongerReachAControlThatWasResigned) {
    show();
    view.perform([&] { view.resignSearchFocus(); });
    QTest::keyClicks(&panel, u"abc"_qs);
    EXPECT_EQ(view._query, u"");
}

TEST_F(ShelfFocusTest, TheStateCanGiveTheKeyboardBack) {
    show();
    view.perform([&] { view.resignSearchFocus(); });
    view.perform([&] { view._searchFocused = true; });
    EXPECT_TRUE(field().hasFocus());
}

TEST_F(ShelfFocusTest, AClickIntoTheFieldEntersTheSearchLane) {
    add(u"a"_qs);
    show();
    view.perform([&] { view.itemTapped(); });
    ASSERT_EQ(view._lane, KeyboardLane::list);
    QTest::mouseClick(&field(), Qt::LeftButton);
    EXPECT_TRUE(view._searchFocused);
    EXPECT_EQ(view._lane, KeyboardLane::search);
}

TEST_F(ShelfFocusTest, LettersThatComeAfterTheShelfHasGoneAreTheSearchs) {
    add(u"a"_qs);
    show();
    type("ab");
    view.perform([&] { view.itemTapped(); });
    ASSERT_FALSE(field().hasFocus());
    panel.orderOut();
    type("cd");
    EXPECT_EQ(view._query, u"abcd");
    show();
    type("e");
    EXPECT_EQ(view._query, u"abcde");
    EXPECT_TRUE(view._searchFocused);
}

TEST_F(ShelfFocusTest, LettersThatComeBehindLateNewsOfTheFocusAreTheSearchsToo) {
    show();
    panel.orderOut();
    tellOfFocus();
    type("ab");
    EXPECT_EQ(view._query, u"ab");
}

TEST_F(ShelfFocusTest, OtherKeysThatComeAfterTheShelfHasGoneDoNothing) {
    add(u"a"_qs);
    show();
    panel.orderOut();
    tellOfFocus();
    type("a 1b");
    press(Qt::Key_Backspace);
    for (const auto key : {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Escape, Qt::Key_Up, Qt::Key_Menu})
        press(key);
    press(Qt::Key_F10, Qt::ShiftModifier);
    press(Qt::Key_A, Qt::ControlModifier);
    type("c");
    EXPECT_EQ(view._query, u"a 1c");
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(dismissals, 0);
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(ShelfFocusTest, WhatComesAfterTheShelfHasGoneWithAnEditorIsTheEditors) {
    const auto item = add(u"a"_qs);
    show();
    view.perform([&] { view.edit(item); });
    ASSERT_TRUE(waitFor([&] { return part<ItemEditor>().hasFocus(); }));
    panel.orderOut();
    type("b");
    EXPECT_EQ(view._query, u"");
    EXPECT_EQ(panel.focusWidget(), &part<ItemEditor>());
}

TEST_F(ShelfFocusTest, AWindowThatLosesTheKeyboardChangesNothing) {
    show();
    QFocusEvent event(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QCoreApplication::sendEvent(&field(), &event);
    EXPECT_TRUE(view._searchFocused);
}

TEST_F(ShelfFocusTest, APopupChangesNothing) {
    show();
    QFocusEvent event(QEvent::FocusOut, Qt::PopupFocusReason);
    QCoreApplication::sendEvent(&field(), &event);
    EXPECT_TRUE(view._searchFocused);
}

TEST_F(ShelfFocusTest, AControlThatLosesTheKeyboardToAnotherOneTellsTheState) {
    show();
    field().clearFocus();
    EXPECT_FALSE(view._searchFocused);
}

TEST_F(ShelfFocusTest, ComposedTextSurvivesTheLossOfTheKeyboard) {
    show();
    QInputMethodEvent event(u"한"_qs, {});
    QCoreApplication::sendEvent(&field(), &event);
    ASSERT_EQ(view._query, u"한");
    view.perform([&] { view.resignSearchFocus(); });
    EXPECT_EQ(view._query, u"한");
}

TEST_F(ShelfFocusTest, AnEditorTakesTheKeyboardAndGivesItBack) {
    const auto item = add(u"text"_qs);
    show();
    view.perform([&] { view.edit(item); });
    // At once the search has it no longer, on the next turn the editor has it.
    EXPECT_FALSE(field().hasFocus());
    EXPECT_TRUE(waitFor([&] { return part<ItemEditor>().hasFocus(); }));
    EXPECT_TRUE(view._searchFocused);
    view.perform([&] { view.popRoute(); });
    EXPECT_TRUE(field().hasFocus());
}

TEST_F(ShelfFocusTest, AfterAnEditorTheListHasTheKeyboardIfItHadItBefore) {
    const auto item = add(u"text"_qs);
    show();
    view.perform([&] { view.itemTapped(); });
    view.perform([&] { view.edit(item); });
    view.perform([&] { view.popRoute(); });
    EXPECT_FALSE(field().hasFocus());
    EXPECT_EQ(view._lane, KeyboardLane::list);
}

TEST_F(ShelfFocusTest, TheEditorSavesWithCtrlReturnAndWithSuperS) {
    const auto item = add(u"text"_qs);
    show();
    for (const auto& [key, modifier] :
         {std::pair(Qt::Key_Return, Qt::ControlModifier), std::pair(Qt::Key_S, Qt::MetaModifier)}) {
        view.perform([&] { view.edit(item); });
        QTest::keyClicks(&part<ItemEditor>(), u"+"_qs);
        const auto expected = part<ItemEditor>().toPlainText();
        QTest::keyClick(&part<ItemEditor>(), key, modifier);
        EXPECT_FALSE(view._route);
        EXPECT_EQ(item->content(), expected);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

TEST_F(ShelfFocusTest, WhatWasTypedForAnItemThatIsDeletedMeanwhileBecomesANewOne) {
    const auto item = add(u"text"_qs);
    show();
    view.perform([&] { view.edit(item); });
    QTest::keyClicks(&part<ItemEditor>(), u"+"_qs);
    deleteElsewhere(item->id());
    ASSERT_TRUE(view.items().empty());
    EXPECT_EQ(part<ItemEditor>().toPlainText(), u"+text");
    QTest::keyClick(&part<ItemEditor>(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_FALSE(view._route);
    ASSERT_EQ(view.items().size(), 1U);
    EXPECT_EQ(view.items().front()->content(), u"+text");
}

TEST_F(ShelfFocusTest, CancellingLeavesTheItemAsItWas) {
    const auto item = add(u"text"_qs);
    show();
    view.perform([&] { view.edit(item); });
    QTest::keyClicks(&part<ItemEditor>(), u"+"_qs);
    for (auto* const child : panel.findChildren<QWidget*>())
        if (auto* const button = dynamic_cast<SheetButton*>(child); button && button->text() == u"취소"_qs)
            QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_FALSE(view._route);
    EXPECT_EQ(item->content(), u"text");
}

TEST_F(ShelfFocusTest, APreviewTakesTheKeyboardToScrollAndGivesItBack) {
    const auto item = add(u"line\n"_qs.repeated(200));
    show();
    view.perform([&] { view.preview(item); });
    auto& screen = part<ItemPreviewScreen>();
    ASSERT_TRUE(screen.isAncestorOf(panel.focusWidget()));
    auto* const scrolled = qobject_cast<QAbstractScrollArea*>(panel.focusWidget());
    ASSERT_TRUE(scrolled);
    QTest::keyClick(scrolled, Qt::Key_PageDown);
    EXPECT_GT(scrolled->verticalScrollBar()->value(), 0);
    // Around the screen, and to nothing below it.
    for (int step = 0; step < 6; ++step) {
        QTest::keyClick(panel.focusWidget(), Qt::Key_Tab);
        EXPECT_TRUE(screen.isAncestorOf(panel.focusWidget())) << step;
    }
    view.perform([&] { view.popRoute(); });
    EXPECT_TRUE(field().hasFocus());
}

TEST_F(ShelfFocusTest, ATextThatNobodyChangedIsSavedToTheLetter) {
    const auto content = u"a\r\nb\u00a0c\u2028d"_qs;
    const auto item = add(content);
    show();
    view.perform([&] { view.edit(item); });
    QTest::keyClick(&part<ItemEditor>(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(item->content(), content);
}

} // namespace
} // namespace kestrova
