#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/TypingTarget.h"

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

/// Korean as people write it: an input method composes each syllable of several keys.
class ShelfHangulTest : public ShelfTest {
protected:
    void SetUp() override {
        session.environment().insert(u"QT_IM_MODULE"_s, u"ibus"_s);
        session.start({.program = u"ibus-daemon"_s,
                       .arguments = {u"--replace"_s, u"--panel=disable"_s, u"--emoji-extension=disable"_s}});
        ASSERT_TRUE(eventually([this] {
            return session.run(u"ibus"_s, {u"engine"_s, u"hangul"_s}).exitStatus == 0 &&
                   session.run(u"ibus"_s, {u"engine"_s}).standardOutput.trimmed() == "hangul";
        }));
        startWith({u"사과 apple"_s, u"배 pear"_s, u"체리 cherry"_s});
    }
    /// The input method begins with Latin letters, and attends to a window some time after that has the
    /// keyboard. False if no Korean ones come.
    bool switchToKorean() {
        return eventually([this] {
            // The keys of 가 and a blank, which ends the composition.
            shelf.search("rk ");
            if (shelf.searchText() == "가 ")
                return true;
            keys.chord({keyAt::shift, keyAt::space});
            return false;
        });
    }
};

TEST_F(ShelfHangulTest, ASyllableThatIsStillBeingComposedIsSearchedFor) {
    const TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(shelf.open());
    ASSERT_TRUE(switchToKorean());
    // The keys of 배.
    shelf.search("qo");
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(eventually([&] { return target.pasted(0) == QStringList{u"배 pear"_s}; }))
        << "pasted " << target.pasted(0).join(u'|').toStdString() << ", the search "
        << shelf.searchText().value_or("nothing").toStdString();
}

TEST_F(ShelfHangulTest, TheShelfsKeysAreItsOwnWhileASyllableIsBeingComposed) {
    const TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(shelf.open());
    ASSERT_TRUE(switchToKorean());
    shelf.search("qo");
    // Through the chips into the list, whose first row it pastes.
    keys.tap(keyAt::down);
    keys.tap(keyAt::down);
    keys.tap(keyAt::returnKey);
    ASSERT_TRUE(eventually([&] { return target.pasted(0) == QStringList{u"배 pear"_s}; }));
    ASSERT_TRUE(shelf.waitForKeyboard());
    keys.tap(keyAt::escape);
    EXPECT_TRUE(shelf.waitUntilGone());
}

TEST_F(ShelfHangulTest, AHeldReturnPastesOnce) {
    // Some repeats come before the paste's own keys, which end them.
    const TypingTarget target(session, {u"target"_s});
    ASSERT_EQ(session.run(u"xset"_s, {u"r"_s, u"rate"_s, u"20"_s, u"100"_s}).exitStatus, 0);
    ASSERT_TRUE(shelf.open());
    ASSERT_TRUE(switchToKorean());
    shelf.search("qo");
    keys.press(keyAt::returnKey);
    ASSERT_TRUE(eventually([&] { return target.pasted(0).size() == 1; }));
    EXPECT_TRUE(throughout(std::chrono::milliseconds(800), [&] { return target.pasted(0).size() == 1; }));
    keys.release(keyAt::returnKey);
    EXPECT_TRUE(shelf.waitForKeyboard());
    EXPECT_EQ(target.pasted(0), QStringList{u"배 pear"_s});
}

TEST_F(ShelfHangulTest, NoSyllableGetsLostOrDoubled) {
    const TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(shelf.open());
    ASSERT_TRUE(switchToKorean());
    // The keys of 사과 배 and a blank.
    shelf.search("tkrhk qo ");
    EXPECT_EQ(shelf.searchText(), "사과 배 ");
}

} // namespace
} // namespace kestrova::test
