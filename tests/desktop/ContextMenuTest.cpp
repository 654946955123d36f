#include "tests/desktop/ClipboardReader.h"
#include "tests/desktop/FakeApplication.h"
#include "tests/desktop/Mouse.h"
#include "tests/desktop/PasteDestination.h"
#include "tests/desktop/ProbedHost.h"
#include "tests/desktop/SelectionOwner.h"
#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/StoreFile.h"

#include <QDir>
#include <QFile>
#include <QUrl>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

/// The context menu of an item, driven as a person drives it.
class ContextMenuTest : public ShelfTest {
protected:
    // Keys that only menus are walked with.
    static constexpr xcb_keycode_t kMenuKey = 135;
    static constexpr xcb_keycode_t kRight = 114;
    static constexpr xcb_keycode_t kDelete = 119;

    bool isMenuOpen() const { return windows.isKeyboardHeld(); }
    /// By its window: to see whether the keyboard is held is to hold it for a moment, and a menu that wants
    /// it then goes without.
    bool waitForMenu() const { return shelf.waitForMenus(1); }
    bool waitForMenuToGo() const {
        return eventually([this] { return !isMenuOpen(); });
    }
    /// Waits until the window manager has done with it, too: a menu goes when its window loses the keyboard.
    bool openShelf() {
        return shelf.open() &&
               throughout(std::chrono::milliseconds(300), [this] { return shelf.hasKeyboard(); });
    }
    /// Of the row, the first one being 0; below the bar on top and the chips.
    QPoint placeOfRow(int row) const { return shelf.frame().topLeft() + QPoint(300, 122 + 32 * row); }
    bool rightClick(int row) {
        // Two at one place could be taken for a double click, which is none.
        m_lastClick = placeOfRow(row) + QPoint(m_lastClick == placeOfRow(row) ? 30 : 0, 0);
        mouse.click(m_lastClick, Mouse::Button::Right);
        return waitForMenu();
    }
    void tapTimes(xcb_keycode_t key, int times) {
        for (int time = 0; time < times; ++time)
            keys.tap(key);
    }
    /// Chooses the entry that stands so many lines above the end; the last one is 1.
    void chooseFromEnd(int line) {
        tapTimes(keyAt::up, line);
        keys.tap(keyAt::returnKey);
    }
    /// Another program copies the file, and the row is there.
    bool copyFile(const QString& path) {
        const auto rows = program.contents().size();
        m_owner.emplace(
            session.display(),
            SelectionScript{.offers = {{.target = "text/uri-list",
                                        .bytes = QUrl::fromLocalFile(path).toEncoded() + "\r\n"}}});
        return program.waitForRows(static_cast<int>(rows) + 1);
    }
    QStringList sharedFiles() const {
        QStringList found;
        const QDir folder(session.path(u"cache/Kestrova/Shared"_s));
        for (const auto& each : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            found += QDir(folder.filePath(each)).entryList(QDir::Files);
        return found;
    }

    Mouse mouse{session.display()};

private:
    QPoint m_lastClick;
    std::optional<SelectionOwner> m_owner;
};

TEST_F(ContextMenuTest, PasteByRightClickGoesToTheProgramThatWasInFront) {
    closeAfterPaste();
    startWith({u"older"_s, u"newest"_s});
    const auto editor = PasteDestination::start(session, PasteDestination::Kind::QtEditor);
    ASSERT_TRUE(openShelf());
    ASSERT_TRUE(rightClick(1));
    // On its first entry.
    mouse.click(placeOfRow(1) + QPoint(40, 18));
    EXPECT_TRUE(editor->waitForText(u"older"_s));
    EXPECT_FALSE(isMenuOpen());
}

TEST_F(ContextMenuTest, ReturnPastesWhileNothingIsHighlighted) {
    startWith({u"words"_s});
    const auto editor = PasteDestination::start(session, PasteDestination::Kind::Mousepad);
    ASSERT_TRUE(openShelf());
    ASSERT_TRUE(rightClick(0));
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(editor->waitForText(u"words"_s));
}

TEST_F(ContextMenuTest, TheCopyKeyCopiesTheRowOfTheMenuAndNotTheSelectedOne) {
    startWith({u"older"_s, u"newest"_s});
    ASSERT_TRUE(openShelf());
    ASSERT_TRUE(rightClick(1));
    keys.chord({keyAt::control, keyAt::c});
    EXPECT_TRUE(
        eventually([this] { return ClipboardReader(session.display()).read("UTF8_STRING") == "older"; }));
    EXPECT_TRUE(waitForMenuToGo());
    EXPECT_TRUE(shelf.hasKeyboard());
}

TEST_F(ContextMenuTest, TheDeleteKeyDeletesTheRowOfTheMenu) {
    startWith({u"older"_s, u"newest"_s});
    ASSERT_TRUE(openShelf());
    ASSERT_TRUE(rightClick(1));
    keys.tap(kDelete);
    EXPECT_TRUE(eventually([this] { return program.contents() == QStringList{u"newest"_s}; }));
    EXPECT_TRUE(shelf.isUp());
}

TEST_F(ContextMenuTest, TheSpaceKeyOpensThePreviewThatEscapeClosesBeforeTheShelf) {
    startWith({u"words"_s});
    ASSERT_TRUE(openShelf());
    ASSERT_TRUE(rightClick(0));
    keys.tap(keyAt::space);
    ASSERT_TRUE(waitForMenuToGo());
    keys.tap(keyAt::escape);
    EXPECT_TRUE(throughout(std::chrono::milliseconds(400), [this] { return shelf.isUp(); }));
    keys.tap(keyAt::escape);
    EXPECT_TRUE(shelf.waitUntilGone());
}

TEST_F(ContextMenuTest, TheMenuKeyOpensItForTheCurrentItemInTheListLane) {
    startWith({u"older"_s, u"newest"_s});
    ASSERT_TRUE(openShelf());
    // From the search through the chips to the list, and there to the second row.
    tapTimes(keyAt::down, 3);
    keys.tap(kMenuKey);
    ASSERT_TRUE(waitForMenu());
    // From the first entry, which is highlighted, to the second one.
    keys.tap(keyAt::down);
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(
        eventually([this] { return ClipboardReader(session.display()).read("UTF8_STRING") == "older"; }));
}

TEST_F(ContextMenuTest, AnItemIsPutIntoACollectionAndTakenOut) {
    startWith({u"words"_s});
    ASSERT_TRUE(program.quit());
    StoreFile(program.storeFile())
        .execute(
            "INSERT INTO KovaCollection (name, createdAt, sortOrder) VALUES ('Work', 0, 0), ('Home', 0, 1)");
    ASSERT_TRUE(program.start());
    const auto collectionsOfTheItem = [this] {
        return StoreFile(program.storeFile())
            .query("SELECT name FROM ClipboardItem_collections JOIN KovaCollection ON id = collection");
    };
    ASSERT_TRUE(openShelf());
    for (const auto& expected : {QStringList{u"Home"_s}, QStringList()}) {
        ASSERT_TRUE(rightClick(0));
        tapTimes(keyAt::down, 4);
        keys.tap(kRight);
        keys.tap(keyAt::down);
        keys.tap(keyAt::returnKey);
        EXPECT_TRUE(eventually([&] { return collectionsOfTheItem() == expected; }));
        EXPECT_TRUE(waitForMenuToGo());
    }
}

TEST_F(ContextMenuTest, AClickElsewhereClosesTheMenuAndNotTheShelf) {
    startWith({u"words"_s});
    ASSERT_TRUE(openShelf());
    ASSERT_TRUE(rightClick(0));
    mouse.click({1270, 790});
    EXPECT_TRUE(waitForMenuToGo());
    EXPECT_TRUE(throughout(std::chrono::milliseconds(400), [this] { return shelf.isUp(); }));
    mouse.click({1270, 790});
    EXPECT_TRUE(shelf.waitUntilGone());
}

TEST_F(ContextMenuTest, TheMenuGoesWithTheShelf) {
    startWith({u"words"_s});
    ASSERT_TRUE(openShelf());
    ASSERT_TRUE(rightClick(0));
    ASSERT_EQ(program.command({u"hide"_s}).exitStatus, 0);
    EXPECT_TRUE(waitForMenuToGo());
    EXPECT_TRUE(shelf.waitUntilGone());
}

TEST_F(ContextMenuTest, AFileIsOpenedByItsApplicationAndTheShelfStepsAside) {
    const FakeApplication reader(session, u"reader"_s, {u"text/plain"_s});
    const auto file = session.writeFile(u"home/a b & 'c'.txt"_s, "words");
    startWith({});
    ASSERT_TRUE(copyFile(file));
    ASSERT_TRUE(openShelf());
    ASSERT_TRUE(rightClick(0));
    chooseFromEnd(3);
    const auto start = reader.waitForStart();
    ASSERT_TRUE(start);
    EXPECT_EQ(start->arguments, QStringList{file});
    EXPECT_TRUE(start->token.contains(u"_TIME"_s)) << start->token.toStdString();
    EXPECT_EQ(start->displayPlugin, QString());
    EXPECT_EQ(start->blockedSignals, u"0000000000000000"_s);
    EXPECT_TRUE(start->standsApart);
    EXPECT_TRUE(shelf.waitUntilGone());
}

TEST_F(ContextMenuTest, AFileThatNothingOpensCostsALineOfTheLog) {
    const auto file = session.writeFile(u"home/a.kestrova-unknown"_s, QByteArray(1, '\0'));
    startWith({});
    ASSERT_TRUE(copyFile(file));
    ASSERT_TRUE(QFile::remove(file));
    ASSERT_TRUE(openShelf());
    ASSERT_TRUE(rightClick(0));
    chooseFromEnd(3);
    EXPECT_TRUE(eventually([this] {
        return program.process().standardError().contains("[Applications] No application opens");
    }));
    EXPECT_FALSE(program.process().standardError().contains("kestrova-unknown"));
    EXPECT_TRUE(program.isReady());
}

TEST_F(ContextMenuTest, AFileIsRevealedByTheFileManager) {
    ProbedHost desktop(session);
    ASSERT_EQ(desktop.ask(u"files"_s), u"manages");
    const FakeApplication folders(session, u"folders"_s, {u"inode/directory"_s});
    const auto file = session.writeFile(u"home/a b.txt"_s, "words");
    startWith({});
    ASSERT_TRUE(copyFile(file));
    ASSERT_TRUE(openShelf());
    ASSERT_TRUE(rightClick(0));
    chooseFromEnd(2);
    QString shown;
    EXPECT_TRUE(eventually([&] { return !(shown = desktop.ask(u"shown"_s)).isEmpty(); }));
    EXPECT_TRUE(shown.startsWith(QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded) + u" kestrova-"_s))
        << shown.toStdString();
    EXPECT_TRUE(shown.contains(u"_TIME"_s));
    EXPECT_TRUE(shelf.waitUntilGone());
    EXPECT_FALSE(folders.wasStarted());
}

TEST_F(ContextMenuTest, WithoutAFileManagerTheFolderIsOpened) {
    const FakeApplication folders(session, u"folders"_s, {u"inode/directory"_s});
    const auto file = session.writeFile(u"home/a.txt"_s, "words");
    startWith({});
    ASSERT_TRUE(copyFile(file));
    ASSERT_TRUE(openShelf());
    ASSERT_TRUE(rightClick(0));
    chooseFromEnd(2);
    const auto start = folders.waitForStart();
    ASSERT_TRUE(start);
    EXPECT_EQ(QDir::cleanPath(start->arguments.value(0)), session.path(u"home"_s));
}

TEST_F(ContextMenuTest, OfAFileThatHasGoneTheFolderIsOpened) {
    ProbedHost desktop(session);
    ASSERT_EQ(desktop.ask(u"files"_s), u"manages");
    const FakeApplication folders(session, u"folders"_s, {u"inode/directory"_s});
    const auto file = session.writeFile(u"home/a.txt"_s, "words");
    startWith({});
    ASSERT_TRUE(copyFile(file));
    ASSERT_TRUE(QFile::remove(file));
    ASSERT_TRUE(openShelf());
    ASSERT_TRUE(rightClick(0));
    chooseFromEnd(2);
    EXPECT_TRUE(folders.waitForStart());
    EXPECT_EQ(desktop.ask(u"shown"_s), QString());
}

TEST_F(ContextMenuTest, ATextIsSharedThroughAPrivateFileThatGoesWithTheProgram) {
    const FakeApplication notes(session, u"notes"_s, {u"text/plain"_s});
    startWith({u"words to share"_s});
    ASSERT_TRUE(openShelf());
    ASSERT_TRUE(rightClick(0));
    const auto first = shelf.menus();
    chooseFromEnd(2);
    // The menu of applications comes when the first one has gone.
    ASSERT_TRUE(eventually([&] {
        const auto now = shelf.menus();
        return now.size() == 1 && now != first;
    }));
    keys.tap(keyAt::down);
    keys.tap(keyAt::returnKey);
    const auto start = notes.waitForStart();
    ASSERT_TRUE(start);
    const auto path = start->arguments.value(0);
    EXPECT_TRUE(path.startsWith(session.path(u"cache/Kestrova/Shared/"_s))) << path.toStdString();
    EXPECT_TRUE(path.endsWith(u".txt"_s));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "words to share");
    EXPECT_EQ(file.permissions() &
                  (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
              QFile::Permissions());
    EXPECT_EQ(sharedFiles().size(), 1);
    EXPECT_TRUE(shelf.waitUntilGone());
    ASSERT_TRUE(program.quit());
    EXPECT_FALSE(QFile::exists(path));
}

} // namespace
} // namespace kestrova::test
