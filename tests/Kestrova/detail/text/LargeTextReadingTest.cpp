#include "tests/Kestrova/detail/text/LargeTextEditFixture.h"

#include <QAbstractEventDispatcher>
#include <QMenu>
#include <QWheelEvent>

namespace kestrova {
namespace {

class LargeTextReadingTest : public LargeTextEditFixture {
protected:
    LargeTextReadingTest() {
        edit.setReadOnly(true);
        edit.setText(lines);
    }

    /// Whether the text takes it.
    bool wheel(int angle) {
        QWheelEvent event({50, 50}, edit.mapToGlobal(QPointF(50, 50)), {}, {0, angle}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(edit.viewport(), &event);
        return event.isAccepted();
    }

    void press(qsizetype position, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mousePress(edit.viewport(), Qt::LeftButton, modifiers, pointAt(position));
    }
    void release(qsizetype position) {
        QTest::mouseRelease(edit.viewport(), Qt::LeftButton, Qt::NoModifier, pointAt(position));
    }
    void drag(QPoint point) {
        QMouseEvent event(QEvent::MouseMove, point, edit.viewport()->mapToGlobal(point), Qt::NoButton,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(edit.viewport(), &event);
    }

    const QString lines = QStringLiteral("one two three\nfour five six\n").repeated(5'000);
};

TEST_F(LargeTextReadingTest, TheWheelScrollsAndBackAgainIsTheStart) {
    wheel(-240);
    EXPECT_GT(edit.scroll().place(), TextScroll::Place{});
    wheel(240);
    EXPECT_EQ(edit.scroll().place(), TextScroll::Place{});
}

TEST_F(LargeTextReadingTest, SlowWheelsAddUp) {
    for (int part = 0; part < 40; ++part)
        wheel(-3);
    const auto slowly = edit.scroll().place();
    edit.setText(lines);
    wheel(-120);
    EXPECT_EQ(edit.scroll().place(), slowly);
}

TEST_F(LargeTextReadingTest, AtItsEndsTheWheelIsLeftToThePageAround) {
    EXPECT_FALSE(wheel(120));
    EXPECT_TRUE(wheel(-120));
    EXPECT_TRUE(wheel(120));
    key(Qt::Key_End, Qt::ControlModifier);
    EXPECT_FALSE(wheel(-120));
    EXPECT_TRUE(wheel(120));
}

TEST_F(LargeTextReadingTest, ATurnOfTheWheelTooSmallToShowIsItsOwn) {
    EXPECT_TRUE(wheel(-1));
    EXPECT_EQ(edit.scroll().place(), TextScroll::Place{});
}

TEST_F(LargeTextReadingTest, ATextWithRoomLeavesTheWheelToThePageAround) {
    edit.setText(QStringLiteral("one"));
    EXPECT_FALSE(wheel(-120));
    EXPECT_FALSE(wheel(120));
}

TEST_F(LargeTextReadingTest, ArrowsPagesHomeAndEndScroll) {
    key(Qt::Key_Down);
    const auto line = edit.scroll().place();
    EXPECT_GT(line, TextScroll::Place{});
    key(Qt::Key_PageDown);
    EXPECT_GT(edit.scroll().place().line, 10 * line.line);
    key(Qt::Key_PageUp);
    EXPECT_EQ(edit.scroll().place(), line);
    key(Qt::Key_Up);
    EXPECT_EQ(edit.scroll().place(), TextScroll::Place{});
    key(Qt::Key_End);
    EXPECT_EQ(barValue(), edit.verticalScrollBar()->maximum());
    key(Qt::Key_Home);
    EXPECT_EQ(barValue(), 0);
    key(Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(barValue(), edit.verticalScrollBar()->maximum());
    key(Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(barValue(), 0);
}

TEST_F(LargeTextReadingTest, TheBarLeadsToThatPartOfTheText) {
    edit.verticalScrollBar()->setValue(70'000);
    EXPECT_NEAR(static_cast<double>(edit.scroll().place().line), 70'000.0, 20.0);
    EXPECT_EQ(barValue(), 70'000);
    edit.verticalScrollBar()->setValue(edit.verticalScrollBar()->maximum());
    EXPECT_TRUE(edit.caretRect(lines.size()));
}

TEST_F(LargeTextReadingTest, ATextWithRoomLeavesTheBarNothingToDo) {
    edit.setText(QStringLiteral("short"));
    EXPECT_EQ(edit.verticalScrollBar()->maximum(), 0);
}

TEST_F(LargeTextReadingTest, NothingIsTypedPastedCutOrUndone) {
    QGuiApplication::clipboard()->setText(QStringLiteral("pasted"));
    edit.select(0, 3);
    QTest::keyClicks(&edit, QStringLiteral("x"));
    for (const auto letter : {Qt::Key_V, Qt::Key_X, Qt::Key_Z})
        key(letter, Qt::ControlModifier);
    for (const auto other : {Qt::Key_Backspace, Qt::Key_Delete, Qt::Key_Return})
        key(other);
    QInputMethodEvent composed;
    composed.setCommitString(QStringLiteral("가"));
    QApplication::sendEvent(&edit, &composed);
    EXPECT_EQ(edit.text(), lines);
    EXPECT_FALSE(edit.isModified());
}

TEST_F(LargeTextReadingTest, TheTabulatorLeavesIt) {
    QWidget window;
    auto* const first = new LargeTextEdit(&window);
    auto* const second = new LargeTextEdit(&window);
    first->setReadOnly(true);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    first->setFocus();
    QTest::keyClick(first, Qt::Key_Tab);
    EXPECT_TRUE(second->hasFocus());
    QTest::keyClick(second, Qt::Key_Tab);
    EXPECT_TRUE(second->hasFocus());
    EXPECT_EQ(second->text(), QStringLiteral("\t"));
}

TEST_F(LargeTextReadingTest, DraggingMarks) {
    press(4);
    drag(pointAt(18));
    release(18);
    EXPECT_EQ(edit.selectedText(), QStringLiteral("two three\nfour"));
}

TEST_F(LargeTextReadingTest, DraggingBackwardsMarksToo) {
    press(18);
    drag(pointAt(4));
    release(4);
    EXPECT_EQ(edit.selection(), (TextSelection{18, 4}));
}

TEST_F(LargeTextReadingTest, ShiftAndAPressGoOnWithWhatIsMarked) {
    press(4);
    release(4);
    press(18, Qt::ShiftModifier);
    release(18);
    EXPECT_EQ(edit.selection(), (TextSelection{4, 18}));
    press(7, Qt::ShiftModifier);
    release(7);
    EXPECT_EQ(edit.selection(), (TextSelection{4, 7}));
}

TEST_F(LargeTextReadingTest, ADoubleClickMarksAWordAndDraggingOnMarksMoreOfThem) {
    QTest::mouseDClick(edit.viewport(), Qt::LeftButton, {}, pointAt(5));
    EXPECT_EQ(edit.selectedText(), QStringLiteral("two"));
    QTest::mousePress(edit.viewport(), Qt::LeftButton, {}, pointAt(30));
    QTest::mouseRelease(edit.viewport(), Qt::LeftButton, {}, pointAt(30));
    QMouseEvent twice(QEvent::MouseButtonDblClick, pointAt(5), edit.viewport()->mapToGlobal(pointAt(5)),
                      Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(edit.viewport(), &twice);
    drag(pointAt(10));
    EXPECT_EQ(edit.selectedText(), QStringLiteral("two three"));
    drag(pointAt(1));
    EXPECT_EQ(edit.selectedText(), QStringLiteral("one two"));
}

TEST_F(LargeTextReadingTest, AThirdClickMarksTheParagraph) {
    QTest::mouseDClick(edit.viewport(), Qt::LeftButton, {}, pointAt(18));
    QMouseEvent third(QEvent::MouseButtonPress, pointAt(18), edit.viewport()->mapToGlobal(pointAt(18)),
                      Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(edit.viewport(), &third);
    EXPECT_EQ(edit.selectedText(), QStringLiteral("four five six"));
}

TEST_F(LargeTextReadingTest, DraggingBelowTheEdgeScrollsOnAndMarks) {
    press(0);
    drag(QPoint(10, edit.viewport()->height() + 60));
    const bool hasScrolled = QTest::qWaitFor([&] { return edit.scroll().place().line > 500; }, 20'000);
    release(0);
    EXPECT_TRUE(hasScrolled);
    EXPECT_GT(caret(), 500);
    EXPECT_EQ(edit.selection().anchor, 0);
}

struct Interruption {
    const char* name;
    void (*happens)(LargeTextEdit& edit);

    friend void PrintTo(const Interruption& interruption, std::ostream* stream) {
        *stream << interruption.name;
    }
};

class InterruptedMarkingTest : public LargeTextReadingTest, public testing::WithParamInterface<Interruption> {
protected:
    int timers() {
        return static_cast<int>(QAbstractEventDispatcher::instance()->registeredTimers(&edit).size());
    }
};

TEST_P(InterruptedMarkingTest, EndsWithoutTheReleaseOfTheButton) {
    press(0);
    drag(QPoint(10, edit.viewport()->height() + 60));
    ASSERT_EQ(timers(), 1);
    GetParam().happens(edit);
    EXPECT_EQ(timers(), 0);
    edit.show();
    edit.setText(lines);
    drag(pointAt(18));
    EXPECT_TRUE(edit.selection().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    By, InterruptedMarkingTest,
    testing::Values(Interruption{"hiding", [](LargeTextEdit& edit) { edit.hide(); }},
                    Interruption{"another text",
                                 [](LargeTextEdit& edit) { edit.setText(QStringLiteral("other")); }},
                    Interruption{"the loss of the keyboard", [](LargeTextEdit& edit) { edit.clearFocus(); }},
                    Interruption{"a pointer with another button", [](LargeTextEdit& edit) {
                                     const QPointF point(10, 10);
                                     QMouseEvent event(QEvent::MouseMove, point,
                                                       edit.viewport()->mapToGlobal(point), Qt::NoButton,
                                                       Qt::RightButton, Qt::NoModifier);
                                     QApplication::sendEvent(edit.viewport(), &event);
                                 }}));

TEST_F(LargeTextReadingTest, AllIsMarkedAndCopied) {
    key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(edit.selection(), (TextSelection{0, lines.size()}));
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), lines);
}

TEST_F(LargeTextReadingTest, TheMenuOffersWhatCanBeDone) {
    const auto enabled = [&] {
        QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, edit.viewport()->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(edit.viewport(), &event);
        auto* const menu = edit.findChild<QMenu*>();
        std::vector<bool> states;
        for (const auto* const action : menu->actions())
            if (!action->isSeparator())
                states.push_back(action->isEnabled());
        delete menu;
        return states;
    };
    EXPECT_EQ(enabled(), (std::vector{false, true}));
    edit.select(0, 3);
    EXPECT_EQ(enabled(), (std::vector{true, true}));
    edit.setReadOnly(false);
    EXPECT_EQ(enabled(), (std::vector{false, false, true, true, true, true}));
}

TEST_F(LargeTextReadingTest, WhatIsMarkedIsDrawnOnItsGround) {
    edit.setText(QStringLiteral("xxxx\nxxxx"));
    const auto marking = ShelfTheme::of(ShelfTheme::Scheme::dark).marking;
    const auto at = [&] { return edit.viewport()->grab().toImage().pixelColor(3, 1); };
    EXPECT_NE(at(), marking);
    edit.select(0, 4);
    EXPECT_EQ(at(), marking);
}

class StrangeTextTest : public LargeTextEditFixture, public testing::WithParamInterface<QString> {};

TEST_P(StrangeTextTest, IsShownScrolledMarkedAndCopiedAsItIs) {
    edit.setText(GetParam());
    edit.grab();
    for (int page = 0; page < 5; ++page) {
        key(Qt::Key_PageDown);
        edit.grab();
    }
    key(Qt::Key_End, Qt::ControlModifier);
    edit.grab();
    for (int word = 0; word < 10; ++word)
        key(Qt::Key_Left, Qt::ControlModifier);
    edit.verticalScrollBar()->setValue(edit.verticalScrollBar()->maximum() / 2);
    edit.perform(TextCommand::selectAll);
    edit.grab();
    EXPECT_EQ(edit.selectedText(), GetParam());
    EXPECT_EQ(edit.text(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Texts, StrangeTextTest,
    testing::Values(QString(), QStringLiteral("\n"), QString(30'000, QChar(0)),
                    QString(30'000, QChar(0xD800)), QString(30'000, QChar(0xDC00)),
                    QString(30'000, QChar(0x0301)), QString(30'000, QChar(0x200D)),
                    QString(30'000, QChar(0x202E)), QString(30'000, u'\t'), QString(30'000, u'\r'),
                    QStringLiteral("\r\n").repeated(20'000), QStringLiteral("שלום עולם ").repeated(3'000),
                    QStringLiteral("\U0001F468\u200D\U0001F469\u200D\U0001F467").repeated(3'000),
                    QStringLiteral("\u1112\u1161\u11ab").repeated(5'000), QString(20'000, QChar(QChar::Nbsp)),
                    QStringLiteral("a\u2028b\u2029c\u0085d\ve\f").repeated(1'000), QString(30'000, u' ')));

} // namespace
} // namespace kestrova
