#include "tests/desktop/HangulTest.h"
#include "tests/desktop/TypingTarget.h"

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

class ShelfHangulTest : public HangulTest {
protected:
    void SetUp() override {
        HangulTest::SetUp();
        startWith({u"사과 apple"_s, u"배 pear"_s, u"체리 cherry"_s});
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
