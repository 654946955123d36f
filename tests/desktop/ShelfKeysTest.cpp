#include "tests/desktop/ClipboardReader.h"
#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/TypingTarget.h"

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

/// What keys in the shelf do to the history, read back by the command line.
class ShelfKeysTest : public ShelfTest {
protected:
    void SetUp() override {
        startWith({u"first"_s, u"second"_s, u"third"_s});
        m_target = std::make_unique<TypingTarget>(session, QStringList{u"target"_s});
        ASSERT_TRUE(shelf.open());
    }

    /// From the search through the chips into the list, and down to the row of this number.
    void goToRow(int number) {
        for (int step = 0; step < 2 + number; ++step)
            keys.tap(keyAt::down);
    }
    QStringList contentsInOrder() {
        QStringList contents = program.contents();
        contents.sort();
        return contents;
    }
    QStringList pinned() {
        QStringList contents;
        for (const QJsonValue row : program.rows()) {
            if (row[u"pinned"].toBool())
                contents.append(row[u"content"].toString());
        }
        return contents;
    }
    bool waitForContents(const QStringList& inOrder) {
        return eventually([&] { return contentsInOrder() == inOrder; });
    }
    bool waitForPinned(const QStringList& expected) {
        return eventually([&] { return pinned() == expected; });
    }
    const TypingTarget& target() const { return *m_target; }

private:
    std::unique_ptr<TypingTarget> m_target;
};

TEST_F(ShelfKeysTest, ControlPPinsTheSelectedRowAndUnpinsItAgain) {
    goToRow(1);
    keys.chord({keyAt::control, keyAt::p});
    EXPECT_TRUE(waitForPinned({u"second"_s}));
    keys.chord({keyAt::control, keyAt::p});
    EXPECT_TRUE(waitForPinned({}));
}

TEST_F(ShelfKeysTest, ControlPPinsTheFirstMatchFromTheSearchField) {
    keys.type("fir");
    keys.chord({keyAt::control, keyAt::p});
    EXPECT_TRUE(waitForPinned({u"first"_s}));
}

TEST_F(ShelfKeysTest, SuperPPinsToo) {
    keys.chord({keyAt::super, keyAt::p});
    EXPECT_TRUE(waitForPinned({u"third"_s}));
}

TEST_F(ShelfKeysTest, ControlBackspaceDeletesTheSelectedRowAndControlZBringsItBack) {
    goToRow(1);
    keys.chord({keyAt::control, keyAt::backspace});
    ASSERT_TRUE(waitForContents({u"first"_s, u"third"_s}));
    keys.chord({keyAt::control, keyAt::z});
    EXPECT_TRUE(waitForContents({u"first"_s, u"second"_s, u"third"_s}));
}

TEST_F(ShelfKeysTest, AnUndoneDeletionKeepsThePinAndThePlace) {
    goToRow(1);
    keys.chord({keyAt::control, keyAt::p});
    ASSERT_TRUE(waitForPinned({u"second"_s}));
    const QStringList before = program.contents();
    keys.chord({keyAt::super, keyAt::backspace});
    ASSERT_TRUE(waitForContents({u"first"_s, u"third"_s}));
    keys.chord({keyAt::super, keyAt::z});
    EXPECT_TRUE(waitForPinned({u"second"_s}));
    EXPECT_EQ(program.contents(), before);
}

TEST_F(ShelfKeysTest, ControlBackspaceInTheSearchFieldDeletesAWordAndNoRow) {
    keys.type("sec third");
    keys.chord({keyAt::control, keyAt::backspace});
    EXPECT_EQ(shelf.searchText(), QByteArray("sec "));
    // The text that was on the clipboard for the reading was recorded, and nothing went.
    for (const QString& row : {u"first"_s, u"second"_s, u"third"_s})
        EXPECT_TRUE(program.contents().contains(row)) << row.toStdString();
}

TEST_F(ShelfKeysTest, SuperBackspaceDeletesTheFirstMatchFromTheSearchField) {
    keys.type("sec");
    keys.chord({keyAt::super, keyAt::backspace});
    EXPECT_TRUE(waitForContents({u"first"_s, u"third"_s}));
}

TEST_F(ShelfKeysTest, ControlCPutsTheSelectedRowOnTheClipboardAndPastesNothing) {
    goToRow(2);
    keys.chord({keyAt::control, keyAt::c});
    ClipboardReader reader(session.display());
    EXPECT_TRUE(eventually([&] { return reader.read("UTF8_STRING") == "first"; }));
    EXPECT_TRUE(shelf.hasKeyboard());
    EXPECT_EQ(target().pasted(0), QStringList());
    // Its own copy is no news to it.
    EXPECT_EQ(program.contents(), (QStringList{u"third"_s, u"second"_s, u"first"_s}));
}

TEST_F(ShelfKeysTest, ReturnPastesTheSelectedRow) {
    goToRow(1);
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(eventually([this] { return target().pasted(0) == QStringList{u"second"_s}; }));
}

TEST_F(ShelfKeysTest, AHeldReturnPastesOnce) {
    // Some repeats come before the paste's own keys, which end them.
    ASSERT_EQ(session.run(u"xset"_s, {u"r"_s, u"rate"_s, u"20"_s, u"100"_s}).exitStatus, 0);
    keys.press(keyAt::returnKey);
    ASSERT_TRUE(eventually([this] { return target().pasted(0).size() == 1; }));
    EXPECT_TRUE(
        throughout(std::chrono::milliseconds(800), [this] { return target().pasted(0).size() == 1; }));
    keys.release(keyAt::returnKey);
    EXPECT_TRUE(shelf.waitForKeyboard());
    EXPECT_EQ(target().pasted(0), QStringList{u"third"_s});
}

TEST_F(ShelfKeysTest, EveryDigitPastesTheRowOfItsNumber) {
    QStringList expected;
    for (const int digit : {1, 2, 3}) {
        pressCommandDigit(digit);
        expected.append(QStringList{u"third"_s, u"second"_s, u"first"_s}[digit - 1]);
        ASSERT_TRUE(eventually([&] { return target().pasted(0) == expected; })) << digit;
        ASSERT_TRUE(shelf.waitForKeyboard());
    }
    // There is no fourth row.
    pressCommandDigit(4);
    EXPECT_TRUE(throughout(std::chrono::milliseconds(300),
                           [&] { return shelf.hasKeyboard() && target().pasted(0) == expected; }));
}

TEST_F(ShelfKeysTest, WhatIsTypedIsSearchedForAgainAfterTheShelfWasClosed) {
    keys.type("sec");
    keys.tap(keyAt::escape);
    ASSERT_TRUE(shelf.waitUntilGone());
    ASSERT_TRUE(shelf.open());
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(eventually([this] { return target().pasted(0) == QStringList{u"second"_s}; }));
}

} // namespace
} // namespace kestrova::test
