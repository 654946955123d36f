#include "tests/desktop/Keys.h"
#include "tests/desktop/Mouse.h"
#include "tests/desktop/PasteDestination.h"
#include "tests/desktop/RealPrograms.h"
#include "tests/desktop/Rows.h"
#include "tests/desktop/ShelfElements.h"
#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/StoreFile.h"

#include <QFile>

namespace kestrova::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// A person who drags things into, within and out of the shelf.
class DragTest : public ShelfTest {
protected:
    DragTest() : ShelfTest(DesktopSession::Accessibility::On) {}

    /// With these texts, the last one being the newest, and three collections whose orders have gaps.
    void prepare(const QStringList& texts) {
        startWith(texts);
        ASSERT_TRUE(program.quit());
        StoreFile(program.storeFile())
            .execute("INSERT INTO KovaCollection (name, createdAt, sortOrder) "
                     "VALUES ('Work', 0, 3), ('Home', 0, 5), ('Spare', 0, 8);");
        ASSERT_TRUE(program.start());
        elements.emplace(assistive, program);
    }
    void open() {
        mouse.moveTo(kOutside);
        ASSERT_TRUE(shelf.open());
        ASSERT_TRUE(elements->waitFor(u"클립보드 기록"_s, u"list"_s));
    }
    QPoint placeOfItem(const QString& name) { return elements->frameOfItem(name).center(); }
    QRect row(const QString& name) { return elements->frame(name, u"list item"_s); }

    QStringList query(const QByteArray& statement) { return StoreFile(program.storeFile()).query(statement); }
    bool waitForQuery(const QByteArray& statement, const QStringList& expected) {
        return eventually([&] { return query(statement) == expected; });
    }
    /// A program shows what it holds before it makes a drag of a press on it.
    void pullOutOfProgram(QPoint from, QPoint to) {
        const XConnection x(session.display());
        const xcb_atom_t dragged = x.atom("XdndSelection");
        const auto isUnderWay = [&] {
            const XReply<xcb_get_selection_owner_reply_t> owner(
                xcb_get_selection_owner_reply(x.get(), xcb_get_selection_owner(x.get(), dragged), nullptr));
            return owner && owner->owner != XCB_NONE;
        };
        ASSERT_TRUE(eventually([&] {
            mouse.pull(from, to);
            if (eventually(isUnderWay, 1s))
                return true;
            mouse.release();
            return false;
        }));
    }
    /// Over a part of the desktop that the shelf leaves free.
    void putAside(xcb_window_t window) {
        const auto id = QString::number(window);
        session.run(u"xdotool"_s, {u"windowsize"_s, id, u"1000"_s, u"120"_s});
        session.run(u"xdotool"_s, {u"windowmove"_s, id, u"100"_s, u"660"_s});
        ASSERT_TRUE(eventually([&] { return windows.frame(window).top() >= 650; }));
    }

    static constexpr QPoint kOutside{1270, 10};
    static constexpr const char* kOrder =
        "SELECT name || ' ' || sortOrder FROM KovaCollection ORDER BY sortOrder";
    static constexpr const char* kMembers =
        "SELECT name || ': ' || content FROM ClipboardItem_collections "
        "JOIN KovaCollection ON KovaCollection.id = collection "
        "JOIN ClipboardItem ON ClipboardItem.id = item ORDER BY name, content";

    AssistiveProgram assistive{session.busAddress()};
    Mouse mouse{session.display()};
    std::optional<ShelfElements> elements;
};

TEST_F(DragTest, ItemsAreDraggedOntoACollection) {
    prepare({u"older"_s, u"newest"_s});
    open();
    mouse.drag(placeOfItem(u"텍스트, older"_s), row(u"Home, 항목 0개"_s).center());
    EXPECT_TRUE(waitForQuery(kMembers, {u"Home: older"_s}));
    ASSERT_TRUE(elements->waitFor(u"Home, 항목 1개"_s));
    mouse.drag(placeOfItem(u"텍스트, newest"_s), row(u"Home, 항목 1개"_s).center());
    EXPECT_TRUE(waitForQuery(kMembers, {u"Home: newest"_s, u"Home: older"_s}));
    EXPECT_TRUE(shelf.hasKeyboard());
    // The pointer does afterwards what it did before.
    mouse.click(placeOfItem(u"텍스트, older"_s));
    EXPECT_TRUE(elements->waitForSelectedItem(u"텍스트, older"_s));
}

TEST_F(DragTest, CollectionsAreReordered) {
    prepare({u"words"_s});
    open();
    const QRect work = row(u"Work, 항목 0개"_s);
    const QRect spare = row(u"Spare, 항목 0개"_s);
    const QPoint nearTop = QPoint(work.center().x(), work.top() + 3);
    // Onto its own place: nothing is written, the gaps stay.
    mouse.drag(spare.center(), spare.center() + QPoint(40, 4));
    EXPECT_TRUE(throughout(500ms, [this] {
        return query(kOrder) == QStringList{u"Work 3"_s, u"Home 5"_s, u"Spare 8"_s};
    }));
    mouse.drag(spare.center(), nearTop);
    EXPECT_TRUE(waitForQuery(kOrder, {u"Spare 0"_s, u"Work 1"_s, u"Home 2"_s}));
    ASSERT_TRUE(eventually([&] { return row(u"Spare, 항목 0개"_s) == work; }));
    mouse.drag(work.center(), spare.center() + QPoint(0, 120));
    EXPECT_TRUE(waitForQuery(kOrder, {u"Work 0"_s, u"Home 1"_s, u"Spare 2"_s}));
    EXPECT_EQ(elements->selectedLens(), u"전체, 항목 1개");
}

class DragIntoEditorTest : public DragTest, public ::testing::WithParamInterface<PasteDestination::Kind> {};

TEST_P(DragIntoEditorTest, ATextArrivesAsItIs) {
    const QString text = u"두 줄\nof words \"quoted\""_s;
    prepare({text});
    const auto editor = PasteDestination::start(session, GetParam());
    putAside(editor->window());
    open();
    const auto items = elements->items();
    ASSERT_EQ(items.size(), 1);
    const QPoint place = windows.frame(editor->window()).center() + QPoint(0, 20);
    // A program that is too busy to answer in time gets no drop, and a person tries again.
    ASSERT_TRUE(eventually([&] {
        mouse.drag(placeOfItem(items.front()), place);
        return eventually([&] { return editor->hasText(); }, 5s);
    }));
    EXPECT_TRUE(editor->waitForText(text));
    EXPECT_TRUE(shelf.isUp());
    EXPECT_EQ(program.contents(), QStringList{text});
}

INSTANTIATE_TEST_SUITE_P(Editors, DragIntoEditorTest,
                         ::testing::Values(PasteDestination::Kind::Mousepad,
                                           PasteDestination::Kind::QtEditor));

TEST_F(DragTest, EscapeCancelsADragAndNotTheShelf) {
    prepare({u"words"_s});
    open();
    const QPoint collection = row(u"Work, 항목 0개"_s).center();
    mouse.pull(placeOfItem(u"텍스트, words"_s), collection);
    keys.tap(keyAt::escape);
    mouse.release();
    EXPECT_TRUE(throughout(500ms, [this] { return shelf.isUp() && query(kMembers).isEmpty(); }));
    mouse.drag(placeOfItem(u"텍스트, words"_s), collection);
    EXPECT_TRUE(waitForQuery(kMembers, {u"Work: words"_s}));
}

TEST_F(DragTest, ARowThatArrivesDoesNotDisturbADrag) {
    prepare({u"words"_s});
    open();
    const QPoint collection = row(u"Work, 항목 0개"_s).center();
    mouse.pull(placeOfItem(u"텍스트, words"_s), collection);
    ASSERT_EQ(program.command({u"add"_s, u"newer"_s}).exitStatus, 0);
    ASSERT_TRUE(elements->waitForItems({u"텍스트, newer"_s, u"텍스트, words"_s}));
    mouse.release();
    EXPECT_TRUE(waitForQuery(kMembers, {u"Work: words"_s}));
    EXPECT_TRUE(program.isReady());
}

TEST_F(DragTest, AnItemThatIsDeletedWhileItIsDraggedGoesNowhere) {
    prepare({u"kept"_s, u"words"_s});
    open();
    const QPoint collection = row(u"Work, 항목 0개"_s).center();
    mouse.pull(placeOfItem(u"텍스트, words"_s), collection);
    const auto id = program.newestRow()[u"id"_s].toVariant().toString();
    ASSERT_EQ(program.command({u"delete"_s, id}).exitStatus, 0);
    ASSERT_TRUE(elements->waitForItems({u"텍스트, kept"_s}));
    mouse.release();
    EXPECT_TRUE(throughout(500ms, [this] { return query(kMembers).isEmpty(); }));
    EXPECT_EQ(program.contents(), QStringList{u"kept"_s});
    mouse.drag(placeOfItem(u"텍스트, kept"_s), collection);
    EXPECT_TRUE(waitForQuery(kMembers, {u"Work: kept"_s}));
}

TEST_F(DragTest, AShelfThatIsHiddenInTheMiddleOfADragWorksAfterwards) {
    prepare({u"words"_s});
    open();
    const QPoint collection = row(u"Work, 항목 0개"_s).center();
    mouse.pull(placeOfItem(u"텍스트, words"_s), collection);
    ASSERT_EQ(program.command({u"hide"_s}).exitStatus, 0);
    ASSERT_TRUE(shelf.waitUntilGone());
    mouse.pullOn(collection + QPoint(20, 0));
    mouse.release();
    EXPECT_TRUE(throughout(300ms, [this] { return query(kMembers).isEmpty(); }));
    open();
    mouse.drag(placeOfItem(u"텍스트, words"_s), row(u"Work, 항목 0개"_s).center());
    EXPECT_TRUE(waitForQuery(kMembers, {u"Work: words"_s}));
    EXPECT_TRUE(shelf.hasKeyboard());
    // And a press elsewhere closes it, as no drag is under way.
    mouse.click(kOutside);
    EXPECT_TRUE(shelf.waitUntilGone());
}

TEST_F(DragTest, TheProgramEndsInTheMiddleOfADrag) {
    prepare({u"words"_s});
    open();
    mouse.pull(placeOfItem(u"텍스트, words"_s), row(u"Work, 항목 0개"_s).center());
    EXPECT_TRUE(program.quit());
    EXPECT_EQ(program.process().result().exitStatus, 0);
    mouse.release();
}

TEST_F(DragTest, AFileOfAFileManagerBecomesARow) {
    const QString file = session.writeFile(u"home/files/report.txt"_s, "a report");
    prepare({});
    session.start({.program = u"pcmanfm"_s, .arguments = {u"--no-desktop"_s, session.path(u"home/files"_s)}});
    const auto window = activateWindowOfClass(session, u"Pcmanfm"_s).toUInt();
    // The only file, right of the places and below the bars.
    const QPoint icon = windows.frame(window).topLeft() + QPoint(205, 95);
    ASSERT_TRUE(eventually([&] { return windows.colorAt(icon) != windows.colorAt(icon + QPoint(100, 0)); }));
    pullOutOfProgram(icon, icon + QPoint(60, 0));
    // The press has closed it, had it been there.
    ASSERT_EQ(program.command({u"show"_s}).exitStatus, 0);
    ASSERT_TRUE(eventually([this] { return shelf.isUp(); }));
    const QPoint lists = elements->frame(u"클립보드 기록"_s, u"list"_s).center();
    mouse.pullOn(lists);
    mouse.pullOn(lists + QPoint(20, 10));
    mouse.release();
    ASSERT_TRUE(program.waitForRows(1));
    EXPECT_EQ(withoutIdentity(program.newestRow()), fileRow(file, 8, QJsonValue::Null));
    EXPECT_TRUE(QFile::exists(file));
}

/// A person drags a link out of a browser and, with the button down, opens the shelf.
class DragFromBrowserTest : public DragTest, public ::testing::WithParamInterface<bool> {
protected:
    void openByShortcut() { pressShortcut(); }
    void openByCommand() { ASSERT_EQ(program.command({u"show"_s}).exitStatus, 0); }
    void dragLinkOntoLists(const std::function<void()>& openShelf) {
        prepare({});
        // The page is nothing but the link, and stays when it is only clicked.
        const auto window =
            realPrograms::showInBrowser(session, u"Link page"_s,
                                        "<style>a{position:fixed;inset:0;background:#2040c0}</style>"
                                        "<a href='https://example.org/a?b=c' onclick='return false'>link</a>")
                .toUInt();
        QPoint link;
        ASSERT_TRUE(eventually([&] {
            link = windows.frame(window).center();
            return windows.colorAt(link) == QColor(0x20, 0x40, 0xC0);
        }));
        pullOutOfProgram(link, link + QPoint(60, 0));
        openShelf();
        ASSERT_TRUE(shelf.waitForKeyboard());
        const QPoint lists = elements->frame(u"클립보드 기록"_s, u"list"_s).center();
        mouse.pullOn(lists);
        mouse.pullOn(lists + QPoint(20, 10));
        mouse.release();
        ASSERT_TRUE(program.waitForRows(1));
        EXPECT_EQ(program.newestRow()[u"content"_s].toString(), u"https://example.org/a?b=c");
        EXPECT_EQ(program.newestRow()[u"rawType"_s].toString(), u"url");
        EXPECT_TRUE(shelf.isUp());
    }
};

TEST_P(DragFromBrowserTest, AnAddressBecomesARowOfAShelfOpenedByTheCommand) {
    if (GetParam())
        startCompositor();
    dragLinkOntoLists([this] { openByCommand(); });
}

TEST_P(DragFromBrowserTest, AnAddressBecomesARowOfAShelfOpenedByTheShortcut) {
    if (GetParam())
        startCompositor();
    dragLinkOntoLists([this] { openByShortcut(); });
}

INSTANTIATE_TEST_SUITE_P(Compositors, DragFromBrowserTest, ::testing::Bool(),
                         [](const auto& test) { return test.param ? "Composited" : "Plain"; });

} // namespace
} // namespace kestrova::test
