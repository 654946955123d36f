#include "tests/desktop/ClipboardReader.h"
#include "tests/desktop/PasteDestination.h"
#include "tests/desktop/Pictures.h"
#include "tests/desktop/RealPrograms.h"
#include "tests/desktop/ShelfElements.h"
#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/StoreFile.h"

namespace kestrova::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

// Keys that only lists, panes and menus are walked with.
constexpr xcb_keycode_t kLetterI = 31;
constexpr xcb_keycode_t kF10 = 76;
constexpr xcb_keycode_t kLeft = 113;
constexpr xcb_keycode_t kRight = 114;
constexpr xcb_keycode_t kEnd = 115;
constexpr xcb_keycode_t kMenu = 135;

const QString kPicture = u"이미지, Image (32 × 20)"_s;
const QString kFile = u"파일, report.txt"_s;
const QString kColor = u"색상, #3366cc"_s;
const QString kLink = u"링크, https://example.org/path"_s;
const QString kLong = u"텍스트, "_s + u"long "_s.repeated(24).trimmed();
const QString kKorean = u"텍스트, 안녕하세요 세계"_s;
const QString kShort = u"텍스트, first words"_s;
const QStringList kNewestFirst{kPicture, kFile, kColor, kLink, kLong, kKorean, kShort};

/// A history of every kind, and a person without a mouse.
class ShelfByKeysTest : public ShelfTest {
protected:
    ShelfByKeysTest() : ShelfTest(DesktopSession::Accessibility::On) {}

    void SetUp() override {
        ASSERT_TRUE(program.start());
        ASSERT_EQ(program.command({u"add"_s, u"first words"_s}).exitStatus, 0);
        realPrograms::copyFromTerminal(session, u"안녕하세요 세계"_s.toUtf8(), u"UTF8_STRING"_s);
        ASSERT_TRUE(program.waitForRows(2));
        realPrograms::copyFromEditor(session, longText.toUtf8());
        ASSERT_TRUE(program.waitForRows(3));
        ASSERT_EQ(program.command({u"add"_s, u"https://example.org/path"_s}).exitStatus, 0);
        realPrograms::copyFromTerminal(session, "#3366cc", u"UTF8_STRING"_s);
        ASSERT_TRUE(program.waitForRows(5));
        session.writeFile(u"home/folder/report.txt"_s, "a report");
        realPrograms::copyAllInFolder(session, session.path(u"home/folder"_s));
        ASSERT_TRUE(program.waitForRows(6));
        realPrograms::copyFromTerminal(session, pngPicture({32, 20}, 1), u"image/png"_s);
        ASSERT_TRUE(program.waitForRows(7));
        editor = PasteDestination::start(session, PasteDestination::Kind::QtEditor);
        elements.emplace(assistive, program);
        ASSERT_TRUE(openByShortcut());
        ASSERT_TRUE(elements->waitForItems(kNewestFirst));
        ASSERT_EQ(stored(), atFirst);
    }

    bool openByShortcut() {
        pressShortcut();
        return shelf.waitForKeyboard() && elements->waitForFocus(u"검색"_s);
    }
    bool closeByEscape() {
        keys.tap(keyAt::escape);
        return shelf.waitUntilGone() && eventually([this] { return editor->hasKeyboard(); });
    }
    bool reopen() { return closeByEscape() && openByShortcut(); }
    /// From the search through the chips into the list, and there down to the item.
    bool walkTo(const QString& name) {
        keys.tap(keyAt::down);
        if (!elements->waitForFocus(u"All"_s))
            return false;
        keys.tap(keyAt::down);
        for (const QString& item : elements->items()) {
            if (!elements->waitForSelectedItem(item))
                return false;
            if (item == name)
                return true;
            keys.tap(keyAt::down);
        }
        return false;
    }
    void clearSearch() {
        keys.chord({keyAt::control, keyAt::a});
        keys.tap(keyAt::backspace);
    }
    void chooseChip(int digit) { keys.chord({keyAt::control, keyAt::shift, keyAt::digit(digit)}); }
    void chooseLens(int digit) { keys.chord({keyAt::alt, keyAt::digit(digit)}); }
    void tapTimes(xcb_keycode_t key, int times) {
        for (int time = 0; time < times; ++time)
            keys.tap(key);
    }
    bool openMenu(const KeyPresser::Chord& chord) {
        keys.chord(chord);
        return shelf.waitForMenus(1);
    }
    /// Chooses the entry of this number, the first one being 1, of an open menu.
    bool chooseEntry(int number) {
        // Opened by a key for an item, it stands on its first entry already.
        tapTimes(keyAt::down, number);
        keys.tap(keyAt::returnKey);
        return shelf.waitForMenus(0);
    }

    QStringList query(const QByteArray& statement) { return StoreFile(program.storeFile()).query(statement); }
    bool waitForQuery(const QByteArray& statement, const QStringList& expected) {
        return eventually([&] { return query(statement) == expected; });
    }
    /// Kind, pin and text of each item, newest first.
    QStringList stored() {
        return query("SELECT rawType || ' ' || pinned || ' ' || substr(content, 1, 24) || ' ' || "
                     "length(content) FROM ClipboardItem ORDER BY createdAt DESC, id DESC");
    }
    QStringList members() {
        return query("SELECT name || ': ' || content FROM ClipboardItem_collections "
                     "JOIN KovaCollection ON KovaCollection.id = collection "
                     "JOIN ClipboardItem ON ClipboardItem.id = item ORDER BY content");
    }

    AssistiveProgram assistive{session.busAddress()};
    std::optional<ShelfElements> elements;
    std::unique_ptr<PasteDestination> editor;

    const QString longText = u"long "_s.repeated(600).trimmed() + u"\nlast line"_s;
    const QString filePath = session.path(u"home/folder/report.txt"_s);
    /// As `stored` tells it.
    const QStringList atFirst{u"image 0 Image 5"_s,
                              u"file 0 %1 %2"_s.arg(filePath.left(24)).arg(filePath.size()),
                              u"color 0 #3366cc 7"_s,
                              u"url 0 https://example.org/path 24"_s,
                              u"text 0 long long long long long %1"_s.arg(longText.size()),
                              u"text 0 안녕하세요 세계 8"_s,
                              u"text 0 first words 11"_s};
};

TEST_F(ShelfByKeysTest, TheSearchNarrowsAndWidensTheList) {
    keys.type("first");
    EXPECT_TRUE(elements->waitForItems({kShort}));
    clearSearch();
    EXPECT_TRUE(elements->waitForItems(kNewestFirst));
    keys.type("EXAMPLE");
    EXPECT_TRUE(elements->waitForItems({kLink}));
    keys.type(" no such");
    EXPECT_TRUE(elements->waitForItems({}));
    clearSearch();
    EXPECT_TRUE(elements->waitForItems(kNewestFirst));
    EXPECT_TRUE(closeByEscape());
    EXPECT_EQ(stored(), atFirst);
}

TEST_F(ShelfByKeysTest, TheArrowsWalkThroughAllLanes) {
    keys.tap(keyAt::down);
    ASSERT_TRUE(elements->waitForFocus(u"All"_s));
    EXPECT_EQ(elements->chips(),
              (QStringList{u"All"_s, u"텍스트"_s, u"링크"_s, u"이미지"_s, u"파일"_s, u"색상"_s}));
    keys.tap(kRight);
    EXPECT_TRUE(elements->waitForFocus(u"텍스트"_s));
    EXPECT_TRUE(elements->waitForItems({kLong, kKorean, kShort}));
    keys.tap(kRight);
    EXPECT_TRUE(elements->waitForFocus(u"링크"_s));
    EXPECT_TRUE(elements->waitForItems({kLink}));
    tapTimes(kLeft, 2);
    EXPECT_TRUE(elements->waitForFocus(u"All"_s));
    EXPECT_TRUE(elements->waitForItems(kNewestFirst));

    keys.tap(keyAt::down);
    keys.tap(keyAt::down);
    EXPECT_TRUE(elements->waitForSelectedItem(kFile));
    tapTimes(keyAt::up, 2);
    EXPECT_TRUE(elements->waitForFocus(u"All"_s));
    keys.tap(kLeft);
    EXPECT_TRUE(elements->waitForFocus(u"전체, 항목 7개"_s));
    keys.tap(keyAt::down);
    EXPECT_TRUE(elements->waitForSelectedLens(u"Pinned, 항목 0개"_s));
    EXPECT_TRUE(elements->waitForItems({}));
    keys.tap(keyAt::up);
    EXPECT_TRUE(elements->waitForItems(kNewestFirst));
    // Beyond the first row there is the search.
    keys.tap(keyAt::up);
    EXPECT_TRUE(elements->waitForFocus(u"검색"_s));
    EXPECT_TRUE(closeByEscape());
    EXPECT_EQ(stored(), atFirst);
}

TEST_F(ShelfByKeysTest, DigitsChooseChipsAndLenses) {
    const std::vector<std::pair<int, QStringList>> shown{{2, {kLong, kKorean, kShort}},
                                                         {3, {kLink}},
                                                         {4, {kPicture}},
                                                         {5, {kFile}},
                                                         {6, {kColor}},
                                                         {1, kNewestFirst}};
    for (const auto& [digit, items] : shown) {
        chooseChip(digit);
        EXPECT_TRUE(elements->waitForItems(items)) << digit;
    }
    for (const auto& [digit, lens] :
         {std::pair(2, u"Pinned, 항목 0개"_s), std::pair(3, u"Screenshots, 항목 0개"_s),
          std::pair(1, u"전체, 항목 7개"_s)}) {
        chooseLens(digit);
        EXPECT_TRUE(elements->waitForSelectedLens(lens)) << digit;
    }
    EXPECT_TRUE(elements->waitForItems(kNewestFirst));
    EXPECT_TRUE(closeByEscape());
    EXPECT_EQ(stored(), atFirst);
}

TEST_F(ShelfByKeysTest, TheArrowsWalkOverTheGridByRowsAndColumns) {
    keys.chord({keyAt::control, keyAt::alt, kLetterI});
    ASSERT_TRUE(elements->waitForChecked(u"프리뷰"_s, false));
    keys.chord({keyAt::control, keyAt::grave});
    ASSERT_TRUE(elements->waitFor(u"보기 모드: 격자"_s));
    // So many stand side by side when the preview has gone.
    constexpr int kColumns = 4;
    ASSERT_TRUE(eventually([this] {
        const auto frames = elements->framesOfItems();
        return std::ssize(frames) == kNewestFirst.size() && frames[kColumns - 1].top() == frames[0].top() &&
               frames[kColumns].top() > frames[0].bottom();
    }));
    ASSERT_TRUE(walkTo(kPicture));
    const std::vector<std::pair<xcb_keycode_t, int>> steps{{kRight, 1},       {keyAt::down, 1 + kColumns},
                                                           {kLeft, kColumns}, {keyAt::up, 0},
                                                           {kRight, 1},       {kRight, 2},
                                                           {kRight, 3},       {kRight, 3},
                                                           {keyAt::down, 6},  {kRight, 6},
                                                           {keyAt::up, 2}};
    for (const auto& [key, place] : steps) {
        keys.tap(key);
        ASSERT_TRUE(elements->waitForSelectedItem(kNewestFirst[place])) << int{key} << ' ' << place;
    }
    tapTimes(kLeft, 3);
    EXPECT_TRUE(elements->waitForFocus(u"전체, 항목 7개"_s));
    keys.tap(kRight);
    keys.tap(keyAt::up);
    EXPECT_TRUE(elements->waitForFocus(u"All"_s));

    keys.chord({keyAt::control, keyAt::grave});
    EXPECT_TRUE(elements->waitFor(u"보기 모드: 목록"_s));
    keys.chord({keyAt::control, keyAt::alt, kLetterI});
    EXPECT_TRUE(elements->waitForChecked(u"프리뷰"_s, true));
}

TEST_F(ShelfByKeysTest, TheSidebarGoesAndComesBackWithItsWidth) {
    constexpr int kWidth = 960;
    constexpr int kWidthWithoutSidebar = 760;
    for (const bool isShown : {false, true}) {
        keys.chord({keyAt::control, keyAt::alt, keyAt::s});
        EXPECT_TRUE(elements->waitForChecked(u"사이드바"_s, isShown));
        EXPECT_TRUE(
            eventually([&] { return shelf.frame().width() == (isShown ? kWidth : kWidthWithoutSidebar); }));
        EXPECT_TRUE(eventually([&] { return elements->lenses().isEmpty() != isShown; }));
    }
    EXPECT_TRUE(shelf.hasKeyboard());
}

TEST_F(ShelfByKeysTest, WhatIsDoneToItemsIsWhatTheStoreSays) {
    const QString pinned = kShort + u", 고정됨"_s;
    keys.type("first");
    ASSERT_TRUE(elements->waitForItems({kShort}));
    keys.chord({keyAt::control, keyAt::p});
    EXPECT_TRUE(elements->waitForItems({pinned}));
    clearSearch();
    QStringList items = kNewestFirst;
    items.last() = pinned;
    ASSERT_TRUE(elements->waitForItems(items));

    // One deletion is taken back, and one stays.
    ASSERT_TRUE(walkTo(kLink));
    keys.chord({keyAt::control, keyAt::backspace});
    QStringList without = items;
    without.removeOne(kLink);
    EXPECT_TRUE(elements->waitForItems(without));
    keys.chord({keyAt::control, keyAt::z});
    EXPECT_TRUE(elements->waitForItems(items));
    EXPECT_TRUE(elements->waitForSelectedItem(kLink));
    keys.tap(keyAt::up);
    ASSERT_TRUE(elements->waitForSelectedItem(kColor));
    keys.chord({keyAt::control, keyAt::backspace});
    items.removeOne(kColor);
    EXPECT_TRUE(elements->waitForItems(items));

    ASSERT_TRUE(reopen());
    ASSERT_TRUE(walkTo(kKorean));
    keys.chord({keyAt::control, keyAt::c});
    EXPECT_TRUE(eventually([this] {
        return ClipboardReader(session.display()).read("UTF8_STRING") == u"안녕하세요 세계"_s.toUtf8();
    }));

    keys.tap(keyAt::down);
    ASSERT_TRUE(elements->waitForSelectedItem(pinned));
    keys.chord({keyAt::control, keyAt::e});
    ASSERT_TRUE(elements->waitForFocus(u"Edit Text"_s, u"text"_s));
    keys.chord({keyAt::control, kEnd});
    keys.type(" edited");
    keys.chord({keyAt::control, keyAt::s});
    EXPECT_TRUE(elements->waitUntilGone(u"편집"_s, u"dialog"_s));
    const QString edited = u"텍스트, first words edited, 고정됨"_s;
    EXPECT_TRUE(elements->waitForSelectedItem(edited));

    keys.tap(keyAt::space);
    EXPECT_TRUE(elements->waitFor(u"미리보기"_s, u"dialog"_s));
    keys.tap(keyAt::escape);
    EXPECT_TRUE(elements->waitUntilGone(u"미리보기"_s, u"dialog"_s));
    EXPECT_TRUE(shelf.hasKeyboard());

    EXPECT_EQ(editor->text(), QString());
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(editor->waitForText(u"first words edited"_s));
    EXPECT_TRUE(shelf.waitForKeyboard());
    EXPECT_TRUE(closeByEscape());

    QStringList expected = atFirst;
    expected.removeAt(2);
    expected.last() = u"text 1 first words edited 18"_s;
    EXPECT_EQ(stored(), expected);
}

TEST_F(ShelfByKeysTest, ACollectionIsMadeFilledEditedAndDeleted) {
    for (int tabs = 0; tabs < 12 && elements->focused() != u"새 컬렉션"_s; ++tabs) {
        const QString before = elements->focused();
        keys.tap(keyAt::tab);
        ASSERT_TRUE(eventually([&] { return elements->focused() != before; })) << before.toStdString();
    }
    keys.tap(keyAt::returnKey);
    ASSERT_TRUE(elements->waitForFocus(u"이름"_s, u"text"_s));
    // Without a name it is not made.
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(
        throughout(300ms, [this] { return elements->named(u"새 컬렉션"_s, u"dialog"_s).has_value(); }));
    keys.type("Work");
    keys.tap(keyAt::tab);
    ASSERT_TRUE(elements->waitForFocus(u"기본"_s));
    tapTimes(kRight, 2);
    ASSERT_TRUE(elements->waitForFocus(u"Indigo"_s));
    keys.tap(keyAt::space);
    EXPECT_TRUE(elements->waitForChecked(u"Indigo"_s, true));
    keys.tap(keyAt::returnKey);
    const QByteArray collections = "SELECT name || ' ' || colorHex FROM KovaCollection";
    ASSERT_TRUE(waitForQuery(collections, {u"Work #5856D6"_s}));
    EXPECT_TRUE(elements->waitForSelectedLens(u"Work, 항목 0개"_s));
    EXPECT_TRUE(elements->waitUntilGone(u"새 컬렉션"_s, u"dialog"_s));

    chooseLens(1);
    for (const auto& [item, menu] : {std::pair(kKorean, KeyPresser::Chord{kMenu}),
                                     std::pair(kLink, KeyPresser::Chord{keyAt::shift, kF10})}) {
        ASSERT_TRUE(elements->waitForItems(kNewestFirst));
        ASSERT_TRUE(reopen());
        ASSERT_TRUE(walkTo(item));
        ASSERT_TRUE(openMenu(menu)) << item.toStdString();
        // Behind Paste, Copy and Edit.
        tapTimes(keyAt::down, 3);
        keys.tap(kRight);
        keys.tap(keyAt::returnKey);
        EXPECT_TRUE(shelf.waitForMenus(0));
    }
    EXPECT_TRUE(eventually([this] {
        return members() == QStringList{u"Work: https://example.org/path"_s, u"Work: 안녕하세요 세계"_s};
    }));

    // From the first item over the first chip into the sidebar, on the collection's row.
    chooseLens(4);
    ASSERT_TRUE(elements->waitForItems({kLink, kKorean}));
    keys.tap(kLeft);
    ASSERT_TRUE(elements->waitForFocus(u"Work, 항목 2개"_s));
    ASSERT_TRUE(openMenu({kMenu}));
    ASSERT_TRUE(chooseEntry(1));
    ASSERT_TRUE(elements->waitForFocus(u"이름"_s, u"text"_s));
    EXPECT_TRUE(elements->waitForChecked(u"Indigo"_s, true));
    clearSearch();
    keys.type("Home");
    keys.tap(keyAt::tab);
    ASSERT_TRUE(elements->waitForFocus(u"Indigo"_s));
    keys.tap(kRight);
    keys.tap(keyAt::space);
    EXPECT_TRUE(elements->waitForChecked(u"Purple"_s, true));
    keys.tap(keyAt::returnKey);
    EXPECT_TRUE(waitForQuery(collections, {u"Home #AF52DE"_s}));
    EXPECT_EQ(members(), (QStringList{u"Home: https://example.org/path"_s, u"Home: 안녕하세요 세계"_s}));

    ASSERT_TRUE(elements->waitForFocus(u"Home, 항목 2개"_s));
    ASSERT_TRUE(openMenu({kMenu}));
    ASSERT_TRUE(chooseEntry(2));
    EXPECT_TRUE(waitForQuery(collections, {}));
    EXPECT_TRUE(elements->waitForSelectedLens(u"전체, 항목 7개"_s));
    EXPECT_TRUE(elements->waitForItems(kNewestFirst));
    EXPECT_EQ(members(), QStringList());
    EXPECT_EQ(stored(), atFirst);
}

} // namespace
} // namespace kestrova::test
