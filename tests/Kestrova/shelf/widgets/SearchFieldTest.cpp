#include "Kestrova/shelf/controls/SymbolButton.h"
#include "tests/Kestrova/shelf/widgets/WidgetFixture.h"

#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMimeData>

namespace kestrova {
namespace {

class SearchFieldTest : public WidgetFixture {
protected:
    /// Dragged there and dropped by a program that would rather have its text moved. Ignore if it is refused.
    Qt::DropAction drop(const QString& text, Qt::DropActions offered) {
        QMimeData data;
        data.setText(text);
        const auto place = field().rect().center();
        QDragEnterEvent enter(place, offered, &data, Qt::LeftButton, Qt::ShiftModifier);
        QCoreApplication::sendEvent(&field(), &enter);
        QDragMoveEvent move(place, offered, &data, Qt::LeftButton, Qt::ShiftModifier);
        QCoreApplication::sendEvent(&field(), &move);
        QDropEvent drop(place, offered, &data, Qt::LeftButton, Qt::ShiftModifier);
        QCoreApplication::sendEvent(&field(), &drop);
        EXPECT_EQ(enter.isAccepted(), drop.isAccepted());
        EXPECT_EQ(move.isAccepted(), drop.isAccepted());
        if (!drop.isAccepted())
            return Qt::IgnoreAction;
        EXPECT_EQ(enter.dropAction(), drop.dropAction());
        EXPECT_EQ(move.dropAction(), drop.dropAction());
        return drop.dropAction();
    }
    void compose(const QString& preedit) {
        QInputMethodEvent event(preedit, {});
        QCoreApplication::sendEvent(&field(), &event);
    }
    void commit(const QString& text, const QString& nextPreedit = {}) {
        QInputMethodEvent event(nextPreedit, {});
        event.setCommitString(text);
        QCoreApplication::sendEvent(&field(), &event);
    }
};

TEST_F(SearchFieldTest, TypedLettersAreTheQuery) {
    show();
    QTest::keyClicks(&field(), u"ab"_qs);
    EXPECT_EQ(view._query, u"ab");
    QTest::keyClick(&field(), Qt::Key_Backspace);
    EXPECT_EQ(view._query, u"a");
}

TEST_F(SearchFieldTest, WhatIsBeingComposedIsPartOfTheQuery) {
    show();
    for (const auto* const step : {u"ㅎ", u"하", u"한"}) {
        compose(QString::fromUtf16(step));
        EXPECT_EQ(view._query, QString::fromUtf16(step));
    }
    commit(u"한"_qs, u"ㄱ"_qs);
    EXPECT_EQ(view._query, u"한ㄱ");
    compose(u"그"_qs);
    compose(u"글"_qs);
    commit(u"글"_qs);
    EXPECT_EQ(view._query, u"한글");
    EXPECT_EQ(field().text(), u"한글");
}

TEST_F(SearchFieldTest, ACompositionStandsAtTheCursor) {
    show();
    QTest::keyClicks(&field(), u"ab"_qs);
    field().setCursorPosition(1);
    compose(u"하"_qs);
    EXPECT_EQ(view._query, u"a하b");
    commit(u"하"_qs);
    EXPECT_EQ(view._query, u"a하b");
    EXPECT_EQ(field().cursorPosition(), 2);
}

TEST_F(SearchFieldTest, ACompositionThatIsGivenUpLeavesTheQuery) {
    show();
    QTest::keyClicks(&field(), u"x"_qs);
    compose(u"ㅎ"_qs);
    compose({});
    EXPECT_EQ(view._query, u"x");
}

TEST_F(SearchFieldTest, RenderingLeavesCompositionAndCursorAlone) {
    show();
    QTest::keyClicks(&field(), u"abc"_qs);
    field().setCursorPosition(1);
    compose(u"하"_qs);
    const auto item = add(u"a하bc"_qs);
    view.perform([&] { view._selection = item->id(); });
    commit(u"한"_qs);
    EXPECT_EQ(field().text(), u"a한bc");
    EXPECT_EQ(field().cursorPosition(), 2);
    EXPECT_EQ(view._query, u"a한bc");
}

TEST_F(SearchFieldTest, RenderingKeepsWhatIsMarked) {
    show();
    QTest::keyClicks(&field(), u"abc"_qs);
    field().setSelection(1, 2);
    add(u"abc"_qs);
    EXPECT_EQ(field().selectedText(), u"bc");
}

TEST_F(SearchFieldTest, TheStateCanChangeTheText) {
    show();
    view.perform([&] { view._query = u"from elsewhere"_qs; });
    EXPECT_EQ(field().text(), u"from elsewhere");
    EXPECT_EQ(view._query, u"from elsewhere");
}

TEST_F(SearchFieldTest, AButtonEmptiesItWhileThereIsText) {
    show();
    auto& button = *part<SearchField>().findChildren<QAbstractButton*>().front();
    EXPECT_FALSE(button.isVisible());
    QTest::keyClicks(&field(), u"abc"_qs);
    ASSERT_TRUE(button.isVisible());
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(view._query, u"");
    EXPECT_EQ(field().text(), u"");
    EXPECT_FALSE(button.isVisible());
    EXPECT_TRUE(field().hasFocus());
}

TEST_F(SearchFieldTest, DroppedTextIsLookedForAndStaysWithTheProgramThatItComesFrom) {
    show();
    EXPECT_EQ(drop(u"words"_qs, Qt::CopyAction | Qt::MoveAction), Qt::CopyAction);
    EXPECT_EQ(view._query, u"words");
}

TEST_F(SearchFieldTest, TextThatCanOnlyBeMovedIsNotTaken) {
    show();
    EXPECT_EQ(drop(u"words"_qs, Qt::MoveAction), Qt::IgnoreAction);
    EXPECT_EQ(view._query, u"");
}

TEST_F(SearchFieldTest, HasItsPlaceholderAndItsNames) {
    show();
    EXPECT_EQ(field().placeholderText(), u"검색…");
    EXPECT_FALSE(field().accessibleName().isEmpty());
}

} // namespace
} // namespace kestrova
