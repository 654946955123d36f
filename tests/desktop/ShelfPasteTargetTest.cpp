#include "tests/desktop/ClipboardReader.h"
#include "tests/desktop/PasteDestination.h"
#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/TypingTarget.h"

#include <csignal>

namespace kestrova::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using Accessibility = DesktopSession::Accessibility;

/// Who gets a paste. The parameter: whether the shelf stays open after it.
class ShelfPasteTargetTest : public ShelfTest, public ::testing::WithParamInterface<bool> {
protected:
    explicit ShelfPasteTargetTest(Accessibility accessibility = Accessibility::Off)
        : ShelfTest(accessibility) {}

    void SetUp() override {
        if (!staysOpen())
            closeAfterPaste();
        startWith({u"older"_s, u"newest"_s});
    }
    bool staysOpen() const { return GetParam(); }

    /// Waits until the shelf moves the focus no more.
    bool waitForEndOfPaste() { return staysOpen() ? shelf.waitForKeyboard() : shelf.waitUntilGone(); }
    bool waitForDroppedPaste() {
        return eventually([this] { return program.process().standardError().contains("Paste dropped"); });
    }
    bool isOnClipboard(const QByteArray& text) {
        return ClipboardReader(session.display()).read("UTF8_STRING") == text;
    }
};

std::string afterwards(const ::testing::TestParamInfo<bool>& info) {
    return info.param ? "WhileShelfStays" : "WhileShelfCloses";
}

TEST_P(ShelfPasteTargetTest, OfTwoWindowsOfOneProcessTheOneThatHadTheKeyboardGetsIt) {
    const TypingTarget target(session, {u"first"_s, u"second"_s});
    for (const int chosen : {0, 1, 0}) {
        const int other = 1 - chosen;
        const auto before = target.pasted(chosen).size();
        const auto otherBefore = target.pasted(other).size();
        ASSERT_TRUE(windows.activate(target.window(chosen)));
        pressShortcut();
        ASSERT_TRUE(shelf.waitForKeyboard());
        pressCommandDigit(1);
        EXPECT_TRUE(eventually([&] { return target.pasted(chosen).size() == before + 1; }));
        EXPECT_EQ(target.pasted(chosen).last(), u"newest"_s);
        EXPECT_TRUE(waitForEndOfPaste());
        EXPECT_EQ(target.pasted(other).size(), otherBefore);
        ASSERT_EQ(program.command({u"hide"_s}).exitStatus, 0);
        ASSERT_TRUE(shelf.waitUntilGone());
    }
}

TEST_P(ShelfPasteTargetTest, OfTwoTerminalsOfOneProcessTheOneThatHadTheKeyboardGetsIt) {
    // Both windows say the same of themselves: only the window itself tells them apart.
    const TypingTarget target(session, {u"same"_s, u"same"_s});
    ASSERT_TRUE(windows.activate(target.window(0)));
    ASSERT_TRUE(shelf.open());
    pressCommandDigit(2);
    EXPECT_TRUE(eventually([&] { return target.pasted(0) == QStringList{u"older"_s}; }));
    EXPECT_TRUE(waitForEndOfPaste());
    EXPECT_EQ(target.pasted(1), QStringList());
}

TEST_P(ShelfPasteTargetTest, AProgramThatStealsTheFocusMeanwhileGetsNothing) {
    TypingTarget thief(session, {u"thief"_s});
    const TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(shelf.open());
    thief.stealFocusFrom(target.window(0));
    pressCommandDigit(1);
    EXPECT_TRUE(waitForDroppedPaste());
    EXPECT_TRUE(thief.hasStolen());
    EXPECT_TRUE(waitForEndOfPaste());
    EXPECT_EQ(thief.keys(), std::vector<TypingTarget::Key>());
    EXPECT_EQ(target.pasted(0), QStringList());
    EXPECT_TRUE(isOnClipboard("newest"));
    EXPECT_EQ(keys.keysDown(), std::vector<xcb_keycode_t>());
}

TEST_P(ShelfPasteTargetTest, AWindowThatIsRefusedTheFocusCostsThePasteNotAWrongOne) {
    const TypingTarget bystander(session, {u"bystander"_s});
    const TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(shelf.open());
    windows.refuseKeyboard(target.window(0));
    pressCommandDigit(1);
    EXPECT_TRUE(waitForDroppedPaste());
    EXPECT_TRUE(waitForEndOfPaste());
    EXPECT_EQ(bystander.keys(), std::vector<TypingTarget::Key>());
    EXPECT_EQ(target.pasted(0), QStringList());
    EXPECT_TRUE(isOnClipboard("newest"));
}

TEST_P(ShelfPasteTargetTest, AProgramThatHoldsTheKeyboardCostsThePasteNotAWrongOne) {
    TypingTarget holder(session, {u"holder"_s});
    const TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(shelf.open());
    // The shelf still has the press of the digit, as the grab comes behind it.
    keys.chord({keyAt::control, keyAt::digit(1)});
    holder.holdKeyboard();
    EXPECT_TRUE(waitForDroppedPaste());
    holder.letKeyboardGo();
    EXPECT_EQ(holder.pasted(0), QStringList());
    EXPECT_EQ(target.pasted(0), QStringList());
    EXPECT_TRUE(isOnClipboard("newest"));
}

TEST_P(ShelfPasteTargetTest, ATerminatedProgramCostsThePasteAndNothingElse) {
    TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(shelf.open());
    target.process().end();
    pressCommandDigit(1);
    EXPECT_TRUE(eventually([this] { return isOnClipboard("newest"); }));
    EXPECT_TRUE(waitForEndOfPaste());
    EXPECT_TRUE(program.isReady());
    ASSERT_TRUE(shelf.open());
    EXPECT_EQ(program.rows().size(), 2);
}

TEST_P(ShelfPasteTargetTest, InPlaceOfATerminatedProgramTheOneInFrontGetsItAndNeverTheShelf) {
    const TypingTarget next(session, {u"next"_s});
    TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(shelf.open());
    target.process().end();
    pressCommandDigit(1);
    if (staysOpen()) {
        EXPECT_TRUE(waitForDroppedPaste());
        EXPECT_TRUE(waitForEndOfPaste());
        EXPECT_EQ(next.keys(), std::vector<TypingTarget::Key>());
        keys.type("x");
        EXPECT_EQ(shelf.searchText(), "x");
    } else {
        EXPECT_TRUE(eventually([&] { return next.pasted(0) == QStringList{u"newest"_s}; }));
    }
    EXPECT_TRUE(program.isReady());
}

TEST_P(ShelfPasteTargetTest, AStoppedProgramGetsThePasteOnceItGoesOn) {
    TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(shelf.open());
    target.process().signal(SIGSTOP);
    pressCommandDigit(1);
    EXPECT_TRUE(eventually([this] { return isOnClipboard("newest"); }));
    EXPECT_TRUE(waitForEndOfPaste());
    EXPECT_TRUE(program.isReady());
    target.process().signal(SIGCONT);
    EXPECT_TRUE(eventually([&] { return target.pasted(0) == QStringList{u"newest"_s}; }));
}

TEST_P(ShelfPasteTargetTest, ANewDigitPressedWhileOneIsPastedLosesNoKeyToTheProgram) {
    const TypingTarget target(session, {u"target"_s});
    ASSERT_TRUE(shelf.open());
    for (int round = 0; round < 5; ++round)
        pressCommandDigit(1);
    EXPECT_TRUE(eventually([&] { return !target.pasted(0).isEmpty(); }));
    EXPECT_TRUE(waitForEndOfPaste());
    EXPECT_EQ(keys.keysDown(), std::vector<xcb_keycode_t>());
    const QStringList pasted = target.pasted(0);
    EXPECT_EQ(pasted.count(u"newest"_s), pasted.size()) << pasted.join(u'|').toStdString();
}

INSTANTIATE_TEST_SUITE_P(Shelf, ShelfPasteTargetTest, ::testing::Values(true, false), afterwards);

class AccessiblePasteTargetTest : public ShelfPasteTargetTest {
protected:
    AccessiblePasteTargetTest() : ShelfPasteTargetTest(Accessibility::On) {}
};

TEST_P(AccessiblePasteTargetTest, AStoppedEditorGetsThePasteOnceAndTheShelfStaysAlive) {
    const auto editor = PasteDestination::start(session, PasteDestination::Kind::QtEditor);
    ASSERT_TRUE(shelf.open());
    editor->process().signal(SIGSTOP);
    pressCommandDigit(1);
    EXPECT_TRUE(program.isReady());
    EXPECT_TRUE(eventually([this] { return isOnClipboard("newest"); }));
    EXPECT_TRUE(waitForEndOfPaste());
    editor->process().signal(SIGCONT);
    EXPECT_TRUE(editor->waitForText(u"newest"_s)) << editor->text().toStdString();
    // A second time would follow at once.
    EXPECT_TRUE(throughout(500ms, [&] { return editor->text() == u"newest"_s; }));
}

TEST_P(AccessiblePasteTargetTest, AnEditorThatIsKilledMeanwhileHarmsNothing) {
    const auto editor = PasteDestination::start(session, PasteDestination::Kind::Mousepad);
    ASSERT_TRUE(shelf.open());
    pressCommandDigit(1);
    editor->process().signal(SIGKILL);
    EXPECT_TRUE(editor->process().waitForEnd(kGenerously));
    EXPECT_TRUE(program.isReady());
    EXPECT_TRUE(shelf.open());
    EXPECT_EQ(program.rows().size(), 2);
}

INSTANTIATE_TEST_SUITE_P(Shelf, AccessiblePasteTargetTest, ::testing::Values(true, false), afterwards);

} // namespace
} // namespace kestrova::test
