#include "tests/desktop/Mouse.h"
#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/TypingTarget.h"

#include <vector>

namespace kestrova::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// Whether `whole` is `one` and `other` in their own orders, shuffled into each other.
bool isShuffleOf(const QByteArray& whole, const QByteArray& one, const QByteArray& other) {
    if (whole.size() != one.size() + other.size())
        return false;
    const auto width = static_cast<std::size_t>(other.size()) + 1;
    // reached[j]: the first i of `one` and the first j of `other` make up the first i + j of `whole`.
    std::vector<bool> reached(width);
    for (qsizetype i = 0; i <= one.size(); ++i) {
        for (qsizetype j = 0; j <= other.size(); ++j) {
            const auto at = static_cast<std::size_t>(j);
            const bool byOne = i > 0 && reached[at] && whole[i + j - 1] == one[i - 1];
            const bool byOther = j > 0 && reached[at - 1] && whole[i + j - 1] == other[j - 1];
            reached[at] = (i == 0 && j == 0) || byOne || byOther;
        }
    }
    return reached[width - 1];
}

class ShortcutWhileTypingTest : public ShelfTest {
protected:
    static constexpr int kPresses = 50;

    /// The next `count` letters of an endless alphabet.
    QByteArray letters(int count) {
        QByteArray next;
        for (int index = 0; index < count; ++index)
            next.append(static_cast<char>('a' + m_next++ % 26));
        return next;
    }
    void type(int count) {
        const QByteArray next = letters(count);
        m_sent += next;
        keys.type(next);
    }

    /// Every letter went to the target or into the search field, none got lost or came twice.
    void expectAllLettersArrived(const TypingTarget& target) {
        const TypingTarget::Key last{.isPress = false, .window = 0, .key = keyAt::returnKey};
        // Whoever has the keyboard now: nothing is on its way to anybody once the target has this key.
        ASSERT_EQ(program.command({u"hide"_s}).exitStatus, 0);
        ASSERT_TRUE(shelf.waitUntilGone());
        ASSERT_TRUE(windows.activate(target.window(0)));
        keys.tap(keyAt::returnKey);
        ASSERT_TRUE(eventually([&] { return !target.keys().empty() && target.keys().back() == last; }));
        ASSERT_TRUE(shelf.open());
        const auto found = shelf.searchText();
        ASSERT_TRUE(found);
        const QByteArray searched = *found;
        const QByteArray typed = target.typed();
        EXPECT_TRUE(isShuffleOf(m_sent, typed, searched))
            << "sent " << m_sent.toStdString() << "\nto the program " << typed.toStdString()
            << "\nto the search " << searched.toStdString();
        EXPECT_EQ(keys.keysDown(), std::vector<xcb_keycode_t>());
        RecordProperty("lettersInTheSearch", static_cast<int>(searched.size()));
    }

    QByteArray m_sent;

private:
    int m_next = 0;
};

TEST_F(ShortcutWhileTypingTest, NoLetterGetsLostWhenFiftyPressesComeInOneBurst) {
    startWith({});
    const TypingTarget target(session, {u"target"_s});
    for (int press = 0; press < kPresses; ++press) {
        type(4);
        pressShortcut();
    }
    type(4);
    expectAllLettersArrived(target);
}

TEST_F(ShortcutWhileTypingTest, NoLetterGetsLostAroundFiftyPressesThatEachTakeEffect) {
    startWith({});
    const TypingTarget target(session, {u"target"_s});
    for (int press = 0; press < kPresses; ++press) {
        type(3);
        pressShortcut();
        type(5);
        ASSERT_TRUE(press % 2 == 0 ? shelf.waitForKeyboard() : shelf.waitUntilGone()) << press;
    }
    expectAllLettersArrived(target);
}

TEST_F(ShortcutWhileTypingTest, NoLetterGetsLostAroundAHundredPressesAndEscapes) {
    startWith({});
    const TypingTarget target(session, {u"target"_s});
    for (int round = 0; round < kPresses; ++round) {
        type(2);
        pressShortcut();
        type(3);
        ASSERT_TRUE(shelf.waitForKeyboard()) << round;
        type(2);
        keys.tap(keyAt::escape);
        type(3);
        ASSERT_TRUE(shelf.waitUntilGone()) << round;
    }
    expectAllLettersArrived(target);
}

TEST_F(ShortcutWhileTypingTest, NoLetterGetsLostOrAstrayWhenAPasteClosesTheShelf) {
    constexpr int kPastes = 8;
    closeAfterPaste();
    startWith({u"one"_s});
    const TypingTarget target(session, {u"bystander"_s, u"target"_s});
    // While nobody has the keyboard, keys go to the window under the pointer.
    Mouse(session.display()).moveTo(windows.frame(target.window(0)).center());
    QByteArray searched;
    for (int paste = 1; paste <= kPastes; ++paste) {
        ASSERT_TRUE(shelf.open()) << paste;
        keys.tap(keyAt::returnKey);
        type(3);
        while (shelf.isUp())
            type(1);
        type(3);
        ASSERT_TRUE(eventually([&] { return target.pasted(1).size() == paste; })) << paste;
        ASSERT_TRUE(shelf.open()) << paste;
        const auto found = shelf.searchText();
        ASSERT_TRUE(found) << paste;
        searched += *found;
        shelf.search({});
        keys.tap(keyAt::escape);
        ASSERT_TRUE(shelf.waitUntilGone()) << paste;
    }
    EXPECT_TRUE(eventually([&] { return target.typed(1).size() + searched.size() == m_sent.size(); }));
    EXPECT_TRUE(isShuffleOf(m_sent, target.typed(1), searched))
        << "sent " << m_sent.toStdString() << "\nto the program " << target.typed(1).toStdString()
        << "\nto the search " << searched.toStdString();
    EXPECT_EQ(target.typed(0), QByteArray());
    EXPECT_EQ(keys.keysDown(), std::vector<xcb_keycode_t>());
}

TEST(ShuffleTest, TellsLossDoublingAndDisorder) {
    EXPECT_TRUE(isShuffleOf("abcd", "ac", "bd"));
    EXPECT_TRUE(isShuffleOf("abab", "ab", "ab"));
    EXPECT_TRUE(isShuffleOf("ab", "ab", ""));
    EXPECT_FALSE(isShuffleOf("abc", "a", "b"));
    EXPECT_FALSE(isShuffleOf("ab", "ab", "b"));
    EXPECT_FALSE(isShuffleOf("abc", "b", "ca"));
}

} // namespace
} // namespace kestrova::test
