#include "tests/desktop/CommandConnection.h"
#include "tests/desktop/PasteDestination.h"
#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/TypingTarget.h"

namespace kestrova::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// Texts that are told apart and found by searching for them.
QString numbered(int number) {
    return u"n%1."_s.arg(number, 3, 10, QLatin1Char{'0'});
}

class ManyPastesTest : public ShelfTest {
protected:
    using ShelfTest::ShelfTest;

    /// Each is chosen by keys that come in one burst, as soon as the one before has arrived.
    void expectArriveFromAShelfThatStaysOpen(int count) {
        startWithNumbered(count);
        const auto editor = PasteDestination::start(session, PasteDestination::Kind::QtEditor);
        ASSERT_TRUE(shelf.open());
        QString expected;
        for (int number = 0; number < count; ++number) {
            choose(number, count);
            expected += numbered(number);
            ASSERT_TRUE(editor->waitForText(expected)) << whatCame(*editor);
            ASSERT_TRUE(shelf.waitForKeyboard());
        }
        expectNoKeyStuck();
        EXPECT_EQ(program.rows().size(), count);
    }
    void startWithNumbered(int count) {
        ASSERT_TRUE(program.start());
        CommandConnection commands(session.busAddress());
        for (int number = 0; number < count; ++number)
            ASSERT_TRUE(commands.run({u"add"_s, numbered(number)}));
    }
    /// Chooses the row of `number` by search, or by its digit if it is among the newest of `count`.
    void choose(int number, int count) {
        const int digit = count - number;
        if (digit <= 9) {
            shelf.search("");
            pressCommandDigit(digit);
        } else {
            shelf.search(numbered(number).left(4).toLatin1());
            keys.tap(keyAt::returnKey);
        }
    }
    /// The end of what came, and what the program says of chords that it could not bring to their window.
    std::string whatCame(PasteDestination& editor) {
        return editor.text().right(60).toStdString() + '\n' + program.process().standardError().toStdString();
    }
    void expectNoKeyStuck() {
        EXPECT_EQ(keys.keysDown(), std::vector<xcb_keycode_t>());
        EXPECT_EQ(keys.modifiers(), 0);
    }
};

TEST_F(ManyPastesTest, ThreeHundredFromAShelfThatStaysOpenAllArriveOnceAndInOrder) {
    expectArriveFromAShelfThatStaysOpen(300);
}

class AccessibleManyPastesTest : public ManyPastesTest {
protected:
    AccessibleManyPastesTest() : ManyPastesTest(DesktopSession::Accessibility::On) {}
};

// What is typed takes a detour over the accessibility bus then, and nothing may overtake it.
TEST_F(AccessibleManyPastesTest, AHundredFromAShelfThatStaysOpenAllArriveOnceAndInOrder) {
    expectArriveFromAShelfThatStaysOpen(100);
}

TEST_F(ManyPastesTest, AHundredFromAShelfThatClosesAllArriveOnceAndInOrder) {
    constexpr int kCount = 100;
    closeAfterPaste();
    startWithNumbered(kCount);
    const auto editor = PasteDestination::start(session, PasteDestination::Kind::QtEditor);
    QString expected;
    for (int number = 0; number < kCount; ++number) {
        pressShortcut();
        ASSERT_TRUE(shelf.waitForKeyboard()) << number;
        choose(number, kCount);
        expected += numbered(number);
        ASSERT_TRUE(editor->waitForText(expected)) << whatCame(*editor);
    }
    expectNoKeyStuck();
}

TEST_F(ManyPastesTest, AHundredByCommandAllArriveOnceAndInOrder) {
    constexpr int kCount = 100;
    startWithNumbered(kCount);
    const auto editor = PasteDestination::start(session, PasteDestination::Kind::QtEditor);
    CommandConnection commands(session.busAddress());
    const auto rows = commands.rows(kCount);
    ASSERT_TRUE(rows);
    QString expected;
    for (int number = 0; number < kCount; ++number) {
        const QJsonValue row = rows->at(kCount - 1 - number);
        ASSERT_TRUE(commands.run({u"paste"_s, row[u"id"].toVariant().toString()}));
        expected += row[u"content"].toString();
        ASSERT_TRUE(editor->waitForText(expected)) << whatCame(*editor);
    }
    expectNoKeyStuck();
}

TEST_F(ManyPastesTest, AModifierThatIsHeldAcrossThePasteHarmsNeitherPasteNorModifier) {
    startWithNumbered(9);
    const TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(shelf.open());
    QStringList expected;
    for (const xcb_keycode_t held : {keyAt::super, keyAt::control}) {
        keys.press(held);
        for (const int digit : {1, 2, 3}) {
            keys.tap(keyAt::digit(digit));
            expected.append(numbered(9 - digit));
            ASSERT_TRUE(eventually([&] { return target.pasted(0).size() == expected.size(); }));
            ASSERT_TRUE(shelf.waitForKeyboard());
            EXPECT_EQ(keys.keysDown(), std::vector<xcb_keycode_t>{held});
        }
        keys.release(held);
        expectNoKeyStuck();
    }
    // Shift is no part of any way to choose: it comes down before the paste's own keys do.
    keys.tap(keyAt::returnKey);
    keys.press(keyAt::shift);
    expected.append(numbered(8));
    EXPECT_TRUE(eventually([&] { return target.pasted(0).size() == expected.size(); }));
    EXPECT_TRUE(shelf.waitForKeyboard());
    EXPECT_EQ(keys.keysDown(), std::vector<xcb_keycode_t>{keyAt::shift});
    keys.release(keyAt::shift);
    expectNoKeyStuck();
    EXPECT_EQ(target.pasted(0), expected);
}

TEST_F(ManyPastesTest, AModifierLetGoAtAnyMomentOfThePasteDoesNotStick) {
    startWithNumbered(9);
    const TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(shelf.open());
    constexpr int kMoments = 26;
    for (int moment = 0; moment < kMoments; ++moment) {
        keys.press(keyAt::super);
        keys.tap(keyAt::digit(1));
        // The moment is what is tried: from the press of the digit to behind the paste's own keys.
        throughout(moment * 5ms, [] { return true; });
        keys.release(keyAt::super);
        ASSERT_TRUE(eventually([&] { return target.pasted(0).size() == moment + 1; })) << moment;
        ASSERT_TRUE(shelf.waitForKeyboard());
        expectNoKeyStuck();
    }
}

TEST_F(ManyPastesTest, LocksStayAsTheyAre) {
    startWithNumbered(9);
    const TypingTarget target(session, {u"target"_s});
    keys.lock(keyAt::capsLock, true);
    keys.lock(keyAt::numLock, true);
    const std::uint16_t before = keys.modifiers();
    const QJsonValue newest = program.newestRow();
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(program.command({u"paste"_s, newest[u"id"].toVariant().toString()}).exitStatus, 0);
        ASSERT_TRUE(eventually([&] { return target.pasted(0).size() == round + 1; }));
    }
    EXPECT_EQ(keys.modifiers(), before);
    EXPECT_EQ(keys.keysDown(), std::vector<xcb_keycode_t>());
}

} // namespace
} // namespace kestrova::test
