#include "Kestrova/detail/widgets/ItemEditScreen.h"
#include "Kestrova/detail/text/LargeTextEdit.h"
#include "Kestrova/detail/text/TextLineHeight.h"
#include "Kestrova/detail/widgets/ItemEditor.h"
#include "Kestrova/shelf/controls/SheetButton.h"
#include "Kestrova/shelf/controls/SymbolButton.h"
#include "KestrovaCore/ClipboardItem.h"
#include "tests/support/ManualMainQueue.h"

#include <QLabel>
#include <QTest>
#include <QTextBlock>

#include <gmock/gmock.h>

#include <memory>
#include <vector>

namespace kestrova {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Beyond what the toolkit's own control is used for.
QString longText() {
    return u"0123456789\n"_qs.repeated(100'000);
}

class ItemEditScreenTest : public testing::Test {
protected:
    /// The screen in its window, with the keyboard where the overlay puts it.
    ItemEditScreen& open(const QString& content, ClipboardItemType type = ClipboardItemType::text) {
        item = std::make_shared<ClipboardItem>(content, type, std::nullopt, Timestamp{}, false,
                                               ItemSource::clipboard);
        screen = new ItemEditScreen(item, queue,
                                    {.onSave = [this](const QString& text) { saved.push_back(text); },
                                     .onCancel = [this] { ++cancels; }},
                                    &window);
        screen->setTheme(ShelfTheme::of(ShelfTheme::Scheme::dark));
        window.resize(960, 540);
        screen->setGeometry(16, 16, 928, 508);
        screen->show();
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        screen->firstFocus().setFocus();
        return *screen;
    }

    void openWithKeyboard(const QString& content) {
        open(content);
        queue.turn();
    }

    template<typename Widget>
    Widget* part() const {
        for (auto* const child : window.findChildren<QWidget*>())
            if (auto* const found = dynamic_cast<Widget*>(child))
                return found;
        return nullptr;
    }
    SheetButton& button(const QString& title) const {
        for (auto* const child : window.findChildren<QWidget*>())
            if (auto* const found = dynamic_cast<SheetButton*>(child); found && found->text() == title)
                return *found;
        qFatal("There is no such button.");
    }
    QWidget& editor() const { return *window.focusWidget(); }

    void compose(const QString& preedit, const QString& commit = {}) {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit);
        QCoreApplication::sendEvent(&editor(), &event);
    }
    QString save() {
        QTest::keyClick(&editor(), Qt::Key_S, Qt::ControlModifier);
        return saved.empty() ? QString() : saved.back();
    }

    ManualMainQueue queue;
    std::shared_ptr<ClipboardItem> item;
    ItemEditScreen* screen = nullptr;
    std::vector<QString> saved;
    int cancels = 0;
    QWidget window;
};

TEST_F(ItemEditScreenTest, TheBarHasTheTitle) {
    open(u"https://example.com"_qs, ClipboardItemType::url);
    ASSERT_TRUE(part<QLabel>());
    EXPECT_EQ(part<QLabel>()->text(), u"Edit Link");
}

TEST_F(ItemEditScreenTest, TheEditorTakesTheKeyboardJustAfterItAppears) {
    open(u"text"_qs);
    EXPECT_FALSE(part<ItemEditor>()->hasFocus());
    queue.turn();
    EXPECT_TRUE(part<ItemEditor>()->hasFocus());
}

TEST_F(ItemEditScreenTest, WhatIsTypedBeforeTheEditorHasTheKeyboardIsNotLost) {
    open(u"text"_qs);
    for (const auto key : {Qt::Key_A, Qt::Key_B})
        QTest::keyClick(window.focusWidget(), key);
    EXPECT_EQ(part<ItemEditor>()->toPlainText(), u"abtext");
    queue.turn();
    EXPECT_TRUE(part<ItemEditor>()->hasFocus());
}

TEST_F(ItemEditScreenTest, AnOrdinaryTextIsInTheToolkitsOwnEditor) {
    open(u"text"_qs);
    EXPECT_EQ(part<ItemEditor>()->toPlainText(), u"text");
    EXPECT_FALSE(part<LargeTextEdit>());
}

TEST_F(ItemEditScreenTest, AHugeTextIsInTheControlThatLaysOutWhatIsSeen) {
    open(longText());
    EXPECT_FALSE(part<ItemEditor>());
    ASSERT_TRUE(part<LargeTextEdit>());
    EXPECT_FALSE(part<LargeTextEdit>()->isReadOnly());
    queue.turn();
    EXPECT_TRUE(part<LargeTextEdit>()->hasFocus());
}

TEST_F(ItemEditScreenTest, TheStateKnowsWhetherTheEditorHasTheKeyboard) {
    openWithKeyboard(u"text"_qs);
    EXPECT_TRUE(screen->view().editorFocused);
    button(u"취소"_qs).setFocus(Qt::TabFocusReason);
    EXPECT_FALSE(screen->view().editorFocused);
    part<ItemEditor>()->setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(screen->view().editorFocused);
}

// Keys and buttons

struct SavingKey {
    const char* name;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
};

class ItemEditScreenSavingKeyTest : public ItemEditScreenTest,
                                    public testing::WithParamInterface<SavingKey> {};

TEST_P(ItemEditScreenSavingKeyTest, SavesAnOrdinaryText) {
    openWithKeyboard(u"text"_qs);
    QTest::keyClicks(&editor(), u"new "_qs);
    QTest::keyClick(&editor(), GetParam().key, GetParam().modifiers);
    EXPECT_THAT(saved, ElementsAre(u"new text"_qs));
}

TEST_P(ItemEditScreenSavingKeyTest, SavesAHugeText) {
    openWithKeyboard(longText());
    QTest::keyClicks(&editor(), u"new "_qs);
    QTest::keyClick(&editor(), GetParam().key, GetParam().modifiers);
    EXPECT_THAT(saved, ElementsAre(u"new "_qs + longText()));
}

TEST_P(ItemEditScreenSavingKeyTest, SavesFromTheButtonsToo) {
    openWithKeyboard(u"text"_qs);
    button(u"취소"_qs).setFocus();
    QTest::keyClick(&editor(), GetParam().key, GetParam().modifiers);
    EXPECT_THAT(saved, ElementsAre(u"text"_qs));
    EXPECT_EQ(cancels, 0);
}

TEST_P(ItemEditScreenSavingKeyTest, SavesOnceHoweverLongItIsHeld) {
    openWithKeyboard(u"text"_qs);
    QTest::keyPress(&editor(), GetParam().key, GetParam().modifiers);
    QKeyEvent again(QEvent::KeyPress, GetParam().key, GetParam().modifiers, QString(), true);
    QCoreApplication::sendEvent(&editor(), &again);
    EXPECT_THAT(saved, ElementsAre(u"text"_qs));
}

INSTANTIATE_TEST_SUITE_P(Keys, ItemEditScreenSavingKeyTest,
                         testing::Values(SavingKey{"CtrlReturn", Qt::Key_Return, Qt::ControlModifier},
                                         SavingKey{"CtrlEnter", Qt::Key_Enter,
                                                   Qt::ControlModifier | Qt::KeypadModifier},
                                         SavingKey{"SuperReturn", Qt::Key_Return, Qt::MetaModifier},
                                         SavingKey{"CtrlS", Qt::Key_S, Qt::ControlModifier},
                                         SavingKey{"SuperS", Qt::Key_S, Qt::MetaModifier}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(ItemEditScreenTest, TheSaveButtonSaves) {
    openWithKeyboard(u"text"_qs);
    QTest::keyClicks(&editor(), u"+"_qs);
    QTest::mouseClick(&button(u"저장"_qs), Qt::LeftButton);
    EXPECT_THAT(saved, ElementsAre(u"+text"_qs));
}

TEST_F(ItemEditScreenTest, TheCancelButtonCancelsWhateverWasChanged) {
    openWithKeyboard(u"text"_qs);
    QTest::keyClicks(&editor(), u"+"_qs);
    QTest::mouseClick(&button(u"취소"_qs), Qt::LeftButton);
    EXPECT_EQ(cancels, 1);
    EXPECT_THAT(saved, IsEmpty());
}

TEST_F(ItemEditScreenTest, TheWayBackCancels) {
    openWithKeyboard(u"text"_qs);
    QTest::mouseClick(part<SymbolButton>(), Qt::LeftButton);
    EXPECT_EQ(cancels, 1);
}

TEST_F(ItemEditScreenTest, TheTabulatorTypesOneAndWithCtrlLeavesTheEditor) {
    for (const auto& content : {u"text"_qs, longText()}) {
        openWithKeyboard(content);
        auto& control = editor();
        QTest::keyClick(&control, Qt::Key_Tab);
        EXPECT_TRUE(control.hasFocus());
        QTest::keyClick(&control, Qt::Key_Tab, Qt::ControlModifier);
        EXPECT_FALSE(control.hasFocus());
        EXPECT_EQ((control.setFocus(), save()), u"\t"_qs + content);
        delete screen;
    }
}

// What is kept

class ItemEditScreenContentTest : public ItemEditScreenTest, public testing::WithParamInterface<QString> {};

TEST_P(ItemEditScreenContentTest, WhatNobodyChangedIsSavedToTheLetter) {
    openWithKeyboard(GetParam());
    EXPECT_EQ(save(), GetParam());
}

TEST_P(ItemEditScreenContentTest, AroundAChangeEveryCharacterIsKept) {
    openWithKeyboard(GetParam());
    QTest::keyClicks(&editor(), u"x"_qs);
    EXPECT_EQ(save(), u"x"_qs + GetParam());
}

TEST_P(ItemEditScreenContentTest, UndoneItIsWhatItWas) {
    openWithKeyboard(GetParam());
    QTest::keyClicks(&editor(), u"x"_qs);
    QTest::keyClick(&editor(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(save(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Contents, ItemEditScreenContentTest,
                         testing::Values(QString(), u"plain"_qs, u"trailing\n"_qs, u"\n\n"_qs,
                                         u"no\u00a0break\u2007spaces\u202f"_qs, u"a\r\nb\r\n"_qs,
                                         u"a\rb\r"_qs, u"mixed\r\nline\nends\r"_qs, u"a\u2028b\u2029c"_qs,
                                         u"nul"_qs + QChar(0) + QChar(7) + QChar(0x1b),
                                         u"lone"_qs + QChar(0xd83d) + QChar(u'x') + QChar(0xdc00),
                                         u"\ufdd0\ufdd1\ufffc\ufffe\ufeff"_qs, u"tab\tand  blanks "_qs,
                                         u"한글과 😀👨‍👩‍👧 그리고 e\u0301"_qs,
                                         u"\t\n \n"_qs));

TEST_F(ItemEditScreenTest, ATypedLineEndIsAsThoseOfTheText) {
    for (const auto& [content, expected] :
         {std::pair(u"a\r\nb"_qs, u"\r\na\r\nb"_qs), std::pair(u"a\rb"_qs, u"\ra\rb"_qs),
          std::pair(u"a\nb"_qs, u"\na\nb"_qs), std::pair(u"a"_qs, u"\na"_qs)})
        for (const auto modifiers : {Qt::NoModifier, Qt::ShiftModifier}) {
            openWithKeyboard(content);
            QTest::keyClick(&editor(), Qt::Key_Return, modifiers);
            EXPECT_EQ(save(), expected);
            delete screen;
        }
}

// Input methods

class ItemEditScreenComposingTest : public ItemEditScreenTest, public testing::WithParamInterface<bool> {
protected:
    QString content() const { return GetParam() ? longText() : u"text"_qs; }
};

TEST_P(ItemEditScreenComposingTest, WhatAnInputMethodCommitsIsSaved) {
    openWithKeyboard(content());
    compose(u"ㅎ"_qs);
    compose(u"하"_qs);
    compose(u"ㄱ"_qs, u"한"_qs);
    compose({}, u"글"_qs);
    EXPECT_EQ(save(), u"한글"_qs + content());
}

TEST_P(ItemEditScreenComposingTest, WhatWasCommittedCanBeUndone) {
    openWithKeyboard(content());
    compose(u"ㅎ"_qs);
    compose({}, u"한"_qs);
    QTest::keyClick(&editor(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(save(), content());
}

INSTANTIATE_TEST_SUITE_P(BothEditors, ItemEditScreenComposingTest, testing::Bool(), [](const auto& row) {
    return std::string(row.param ? "LargeTextEdit" : "ItemEditor");
});

TEST_F(ItemEditScreenTest, WhatIsStillBeingComposedIsSaved) {
    openWithKeyboard(u"a\nbc"_qs);
    QTest::keyClick(&editor(), Qt::Key_Down);
    QTest::keyClick(&editor(), Qt::Key_Right);
    compose(u"한"_qs);
    EXPECT_EQ(save(), u"a\nb한c");
}

TEST_F(ItemEditScreenTest, ATextOfVeryManyLinesIsEditedInTheControlForLargeTexts) {
    openWithKeyboard(QString(20'000, u'\n'));
    EXPECT_FALSE(part<ItemEditor>());
    QTest::keyClicks(&editor(), u"a"_qs);
    EXPECT_EQ(save(), u'a' + QString(20'000, u'\n'));
}

TEST_F(ItemEditScreenTest, LinesOfEveryScriptAreAsFarFromEachOtherAsOnTheScreensThatOnlyShowThem) {
    openWithKeyboard(u"한글\nLatin\n漢字"_qs);
    auto& shown = *part<ItemEditor>();
    const auto distance = [&](int block) {
        auto cursor = QTextCursor(shown.document()->findBlockByNumber(block));
        const auto above = shown.cursorRect(cursor).bottom();
        cursor.movePosition(QTextCursor::NextBlock);
        return shown.cursorRect(cursor).bottom() - above;
    };
    EXPECT_EQ(distance(0), textLineHeight(shown.font()));
    EXPECT_EQ(distance(1), textLineHeight(shown.font()));
    QTest::keyClick(&shown, Qt::Key_Return);
    EXPECT_EQ(distance(0), textLineHeight(shown.font()));
}

TEST_F(ItemEditScreenTest, LinesTypedInThePlaceOfAllOthersKeepTheirDistance) {
    openWithKeyboard(u"a\nb"_qs);
    auto& shown = *part<ItemEditor>();
    shown.selectAll();
    QTest::keyClick(&shown, Qt::Key_Delete);
    QTest::keyClicks(&shown, u"c"_qs);
    QTest::keyClick(&shown, Qt::Key_Return);
    const auto last = shown.cursorRect().bottom();
    shown.moveCursor(QTextCursor::Start);
    EXPECT_EQ(last - shown.cursorRect().bottom(), textLineHeight(shown.font()));
}

TEST_F(ItemEditScreenTest, NothingIsToBeUndoneBeforeSomethingIsTyped) {
    openWithKeyboard(u"text"_qs);
    EXPECT_FALSE(part<ItemEditor>()->document()->isUndoAvailable());
    screen->setTheme(ShelfTheme::of(ShelfTheme::Scheme::light));
    EXPECT_FALSE(part<ItemEditor>()->document()->isUndoAvailable());
}

TEST_F(ItemEditScreenTest, WhatWasTypedCanBeUndoneInAnotherThemeToo) {
    openWithKeyboard(u"text"_qs);
    QTest::keyClicks(&editor(), u"ab"_qs);
    screen->setTheme(ShelfTheme::of(ShelfTheme::Scheme::light));
    QTest::keyClick(&editor(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(part<ItemEditor>()->toPlainText(), u"text");
}

} // namespace
} // namespace kestrova
