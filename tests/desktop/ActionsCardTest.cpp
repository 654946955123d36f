#include "tests/desktop/ClipboardReader.h"
#include "tests/desktop/PasteDestination.h"
#include "tests/desktop/ShelfElements.h"
#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/StoreFile.h"

namespace kestrova::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

const QString kSecond = u"텍스트, second words"_s;
const QString kFirst = u"텍스트, first words"_s;
const QString kCard = u"액션"_s;
const QString kRow = u"menu item"_s;

/// A history of two texts and two collections, and a person who opens the card by its key.
class ActionsCardTest : public ShelfTest {
protected:
    ActionsCardTest() : ShelfTest(DesktopSession::Accessibility::On) {}

    void SetUp() override {
        startWith({u"first words"_s, u"second words"_s});
        ASSERT_TRUE(program.quit());
        StoreFile(program.storeFile())
            .execute("INSERT INTO KovaCollection (name, createdAt, sortOrder) "
                     "VALUES ('Work', 0, 0), ('Home', 0, 1)");
        ASSERT_TRUE(program.start());
        editor = PasteDestination::start(session, PasteDestination::Kind::QtEditor);
        elements.emplace(assistive, program);
        pressShortcut();
        ASSERT_TRUE(shelf.waitForKeyboard());
        ASSERT_TRUE(elements->waitForItems({kSecond, kFirst}));
        ASSERT_TRUE(openCard());
    }

    /// On its first row, for the selected item.
    bool openCard() {
        keys.chord({keyAt::control, keyAt::k});
        return waitForRow(u"Paste"_s);
    }
    bool waitUntilClosed() { return elements->waitUntilGone(kCard, u"dialog"_s); }
    bool waitForRow(const QString& name) { return elements->waitForFocus(name, kRow); }
    bool walkTo(const QString& name) {
        for (int step = 0; step < 12 && elements->focused() != name; ++step) {
            const QString before = elements->focused();
            keys.tap(keyAt::down);
            if (!eventually([&] { return elements->focused() != before; }))
                return false;
        }
        return elements->focused() == name;
    }
    bool openCollections() {
        if (!walkTo(u"Collection"_s))
            return false;
        keys.tap(keyAt::returnKey);
        return waitForRow(u"뒤로"_s);
    }

    bool waitForQuery(const QByteArray& statement, const QStringList& expected) {
        return eventually([&] { return StoreFile(program.storeFile()).query(statement) == expected; });
    }
    bool waitForMembers(const QStringList& expected) {
        return waitForQuery("SELECT name || ': ' || content FROM ClipboardItem_collections "
                            "JOIN KovaCollection ON KovaCollection.id = collection "
                            "JOIN ClipboardItem ON ClipboardItem.id = item ORDER BY name, content",
                            expected);
    }
    bool waitForClipboard(const QByteArray& text) {
        return eventually([&] { return ClipboardReader(session.display()).read("UTF8_STRING") == text; });
    }

    AssistiveProgram assistive{session.busAddress()};
    std::optional<ShelfElements> elements;
    std::unique_ptr<PasteDestination> editor;
};

TEST_F(ActionsCardTest, TheArrowsWalkOverItsRowsAndStopAtBothEnds) {
    for (const auto& name : {u"Copy"_s, u"Edit"_s, u"Preview"_s, u"Pin"_s, u"Collection"_s, u"Share…"_s,
                             u"Delete"_s, u"Delete"_s}) {
        keys.tap(keyAt::down);
        EXPECT_TRUE(waitForRow(name)) << name.toStdString();
    }
    for (int row = 0; row < 9; ++row)
        keys.tap(keyAt::up);
    EXPECT_TRUE(waitForRow(u"Paste"_s));
}

TEST_F(ActionsCardTest, ReturnPastesTheItem) {
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(editor->waitForText(u"second words"_s));
}

TEST_F(ActionsCardTest, EscapeClosesTheCardAndThenTheShelf) {
    keys.tap(keyAt::escape);
    EXPECT_TRUE(waitUntilClosed());
    EXPECT_TRUE(shelf.hasKeyboard());
    keys.tap(keyAt::escape);
    EXPECT_TRUE(shelf.waitUntilGone());
}

TEST_F(ActionsCardTest, TheKeyThatOpensItClosesIt) {
    keys.chord({keyAt::control, keyAt::k});
    EXPECT_TRUE(waitUntilClosed());
    keys.chord({keyAt::super, keyAt::k});
    EXPECT_TRUE(waitForRow(u"Paste"_s));
    keys.chord({keyAt::super, keyAt::k});
    EXPECT_TRUE(waitUntilClosed());
    EXPECT_TRUE(shelf.hasKeyboard());
}

TEST_F(ActionsCardTest, ItsCommandKeysDoWhatTheyAreNamedFor) {
    keys.chord({keyAt::control, keyAt::c});
    EXPECT_TRUE(waitForClipboard("second words"));
    EXPECT_TRUE(waitUntilClosed());

    ASSERT_TRUE(openCard());
    keys.chord({keyAt::control, keyAt::p});
    EXPECT_TRUE(waitForQuery("SELECT content FROM ClipboardItem WHERE pinned", {u"second words"_s}));
    EXPECT_TRUE(waitUntilClosed());
    ASSERT_TRUE(openCard());
    EXPECT_TRUE(walkTo(u"Unpin"_s));
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(waitForQuery("SELECT content FROM ClipboardItem WHERE pinned", {}));

    ASSERT_TRUE(waitUntilClosed());
    ASSERT_TRUE(openCard());
    keys.tap(keyAt::backspace);
    EXPECT_TRUE(waitForQuery("SELECT content FROM ClipboardItem", {u"first words"_s}));
    EXPECT_TRUE(waitUntilClosed());
    EXPECT_TRUE(elements->waitForItems({kFirst}));
}

TEST_F(ActionsCardTest, FromPreviewAndEditorPeopleComeBackToIt) {
    keys.tap(keyAt::space);
    EXPECT_TRUE(elements->waitUntilGone(u"Paste"_s, kRow));
    keys.tap(keyAt::escape);
    EXPECT_TRUE(waitForRow(u"Paste"_s));

    keys.chord({keyAt::control, keyAt::e});
    ASSERT_TRUE(elements->waitUntilGone(u"Paste"_s, kRow));
    ASSERT_TRUE(elements->waitForFocus(u"Edit Text"_s, u"text"_s));
    keys.chord({keyAt::control, keyAt::a});
    keys.type("third words");
    keys.chord({keyAt::control, keyAt::s});
    EXPECT_TRUE(waitForRow(u"Paste"_s));
    EXPECT_TRUE(waitForQuery("SELECT content FROM ClipboardItem ORDER BY content",
                             {u"first words"_s, u"third words"_s}));
}

TEST_F(ActionsCardTest, CollectionsAreFilledAndEmptied) {
    ASSERT_TRUE(openCollections());
    keys.tap(keyAt::down);
    ASSERT_TRUE(waitForRow(u"Work"_s));
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(waitForMembers({u"Work: second words"_s}));
    EXPECT_TRUE(elements->waitForChecked(u"Work"_s, true));
    keys.tap(keyAt::down);
    ASSERT_TRUE(waitForRow(u"Home"_s));
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(waitForMembers({u"Home: second words"_s, u"Work: second words"_s}));
    keys.tap(keyAt::up);
    ASSERT_TRUE(waitForRow(u"Work"_s));
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(waitForMembers({u"Home: second words"_s}));
    EXPECT_TRUE(elements->waitForChecked(u"Work"_s, false));

    // Neither of them does anything here.
    keys.tap(keyAt::space);
    keys.tap(keyAt::backspace);
    keys.tap(keyAt::escape);
    EXPECT_TRUE(waitForRow(u"Paste"_s));
    EXPECT_EQ(program.contents(), (QStringList{u"second words"_s, u"first words"_s}));
    keys.tap(keyAt::escape);
    EXPECT_TRUE(waitUntilClosed());
}

TEST_F(ActionsCardTest, InACollectionTheItemCanBeTakenFromIt) {
    ASSERT_TRUE(openCollections());
    ASSERT_TRUE(walkTo(u"Work"_s));
    keys.tap(keyAt::returnKey);
    ASSERT_TRUE(waitForMembers({u"Work: second words"_s}));
    keys.tap(keyAt::escape);
    ASSERT_TRUE(waitForRow(u"Paste"_s));
    keys.tap(keyAt::escape);
    ASSERT_TRUE(waitUntilClosed());
    keys.chord({keyAt::alt, keyAt::digit(4)});
    ASSERT_TRUE(elements->waitForItems({kSecond}));
    ASSERT_TRUE(openCard());
    ASSERT_TRUE(walkTo(u"이 컬렉션에서 빼기"_s));
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(waitForMembers({}));
    EXPECT_TRUE(elements->waitForItems({}));
    EXPECT_TRUE(waitUntilClosed());
}

TEST_F(ActionsCardTest, ItIsStillThereWhenTheShelfComesBackAndItsKeysWorkOnce) {
    // The shortcut, unlike Escape, hides the shelf with all that is open in it.
    pressShortcut();
    ASSERT_TRUE(shelf.waitUntilGone());
    ASSERT_TRUE(eventually([this] { return editor->hasKeyboard(); }));
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(editor->waitForText(u"\n"_s));
    pressShortcut();
    ASSERT_TRUE(shelf.waitForKeyboard());
    ASSERT_TRUE(elements->waitFor(u"Paste"_s, kRow));
    ASSERT_TRUE(openCollections());
    ASSERT_TRUE(walkTo(u"Work"_s));
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(waitForMembers({u"Work: second words"_s}));
    EXPECT_EQ(editor->text(), u"\n"_s);
}

TEST_F(ActionsCardTest, TheMenuOfApplicationsOpensForTheKeyboard) {
    ASSERT_TRUE(walkTo(u"Share…"_s));
    keys.tap(keyAt::returnKey);
    ASSERT_TRUE(shelf.waitForMenus(1));
    keys.tap(keyAt::escape);
    EXPECT_TRUE(shelf.waitForMenus(0));
    EXPECT_TRUE(waitForRow(u"Share…"_s));
}

} // namespace
} // namespace kestrova::test
