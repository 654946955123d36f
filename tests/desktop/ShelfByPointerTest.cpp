#include "tests/desktop/ClipboardReader.h"
#include "tests/desktop/FakeApplication.h"
#include "tests/desktop/Mouse.h"
#include "tests/desktop/PasteDestination.h"
#include "tests/desktop/Pictures.h"
#include "tests/desktop/RealPrograms.h"
#include "tests/desktop/ScreenPicture.h"
#include "tests/desktop/SelectionOwner.h"
#include "tests/desktop/ShelfElements.h"
#include "tests/desktop/ShelfTest.h"
#include "tests/desktop/StoreFile.h"
#include "tests/desktop/TypingTarget.h"

#include <QUrl>

#include <algorithm>

namespace kestrova::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// The lines of an item's menu, a letter each: Paste, Copy, Edit, Collection, preView, Share, Remove from
/// this collection, Open, Find it in its folder, Delete; and the dividers.
namespace itemMenu {
const QString kText = u"PCE-cvs-D"_s;
const QString kTextInCollection = u"PCE-cvsr-D"_s;
const QString kFile = u"PC-cvs-of-D"_s;
} // namespace itemMenu

/// A person without a keyboard: not one key is pressed.
class ShelfByPointerTest : public ShelfTest {
protected:
    ShelfByPointerTest() : ShelfTest(DesktopSession::Accessibility::On) {}

    /// With these texts, the last one being the newest, and what `statements` put into the store.
    void prepare(const QStringList& texts, const QByteArray& statements = {}) {
        startWith(texts);
        if (!statements.isEmpty()) {
            ASSERT_TRUE(program.quit());
            StoreFile(program.storeFile()).execute(statements);
            ASSERT_TRUE(program.start());
        }
        elements.emplace(assistive, program);
    }
    void open() {
        mouse.moveTo(kOutside);
        ASSERT_TRUE(shelf.open());
        // The window manager has done with it, too: a menu goes when its window loses the keyboard.
        ASSERT_TRUE(throughout(300ms, [this] { return shelf.hasKeyboard(); }));
        ASSERT_TRUE(elements->waitFor(u"클립보드 기록"_s, u"list"_s));
    }
    bool click(const QString& name, const QString& role = {}, Mouse::Button button = Mouse::Button::Left) {
        const QRect frame = elements->frame(name, role);
        if (frame.isEmpty())
            return false;
        mouse.click(frame.center(), button);
        return true;
    }
    bool clickItem(const QString& name, Mouse::Button button = Mouse::Button::Left) {
        const QRect frame = elements->frameOfItem(name);
        if (frame.isEmpty())
            return false;
        mouse.click(frame.center(), button);
        return true;
    }

    /// Where the line stands in the highest menu, which has these lines.
    QPoint placeOfLine(const QString& lines, QChar line) {
        constexpr int kInset = 5;
        constexpr int kDividerHeight = 9;
        const QRect menu = windows.frame(shelf.menus().back());
        const auto dividers = lines.count(u'-');
        const auto lineHeight =
            (menu.height() - 2 * kInset - dividers * kDividerHeight) / (lines.size() - dividers);
        qsizetype y = kInset + lineHeight / 2;
        for (const QChar above : lines.first(lines.indexOf(line)))
            y += above == u'-' ? kDividerHeight : lineHeight;
        return menu.topLeft() + QPoint(menu.width() / 2, static_cast<int>(y));
    }
    bool openItemMenu(const QString& item) {
        return clickItem(item, Mouse::Button::Right) && shelf.waitForMenus(1);
    }
    bool choose(const QString& lines, QChar line) {
        mouse.click(placeOfLine(lines, line));
        return shelf.waitForMenus(0);
    }
    /// Opens the submenu of the collections and clicks the only line in it.
    bool chooseOnlyCollection(const QString& lines) {
        mouse.moveTo(placeOfLine(lines, u'c'));
        return shelf.waitForMenus(2) && choose(u"x"_s, u'x');
    }
    bool openLensMenu(const QString& lens) {
        return click(lens, u"list item"_s, Mouse::Button::Right) && shelf.waitForMenus(1);
    }

    QStringList query(const QByteArray& statement) { return StoreFile(program.storeFile()).query(statement); }
    bool waitForQuery(const QByteArray& statement, const QStringList& expected) {
        return eventually([&] { return query(statement) == expected; });
    }
    bool clipboardBecomes(const QByteArray& text) {
        return eventually([&] { return ClipboardReader(session.display()).read("UTF8_STRING") == text; });
    }

    // A place of the bare desktop.
    static constexpr QPoint kOutside{1270, 790};
    static constexpr const char* kCollections =
        "SELECT name || ' ' || coalesce(colorHex, '') FROM KovaCollection ORDER BY sortOrder";
    static constexpr const char* kMembers =
        "SELECT name || ': ' || content FROM ClipboardItem_collections "
        "JOIN KovaCollection ON KovaCollection.id = collection "
        "JOIN ClipboardItem ON ClipboardItem.id = item ORDER BY name, content";
    static constexpr const char* kWork =
        "INSERT INTO KovaCollection (name, createdAt, sortOrder) VALUES ('Work', 0, 0);";

    AssistiveProgram assistive{session.busAddress()};
    Mouse mouse{session.display()};
    ScreenPicture screen{session.display()};
    std::optional<ShelfElements> elements;
};

TEST_F(ShelfByPointerTest, TheTraysMenuShowsAndHidesTheShelf) {
    session.start({.program = u"trayer"_s, .arguments = {u"--edge"_s, u"bottom"_s}});
    prepare({u"words"_s});
    const auto icon = [this] {
        const auto own = windows.ofProcess(program.process().pid());
        const auto found = std::ranges::find_if(
            own, [this](xcb_window_t candidate) { return windows.frame(candidate).width() <= 100; });
        return found == own.end() ? QRect() : windows.frame(*found);
    };
    ASSERT_TRUE(eventually([&] { return icon().isValid(); }));
    const auto menu = [this] {
        const auto own = windows.ofProcess(program.process().pid());
        const auto found = std::ranges::find_if(
            own, [this](xcb_window_t candidate) { return windows.frame(candidate).height() > 100; });
        return found == own.end() || shelf.isUp() ? QRect() : windows.frame(*found);
    };
    mouse.click(icon().center(), Mouse::Button::Right);
    QRect lines;
    ASSERT_TRUE(eventually([&] { return !(lines = menu()).isEmpty(); }));
    // A click on what is disabled does nothing, and the first entry that is not shows the shelf.
    for (int y = lines.top() + 4; y < lines.bottom() && !menu().isEmpty(); y += 12) {
        mouse.click({lines.center().x(), y});
        static_cast<void>(eventually([&] { return menu().isEmpty(); }, 1s));
    }
    EXPECT_TRUE(shelf.waitForKeyboard());
    mouse.click(kOutside - QPoint(0, 200));
    EXPECT_TRUE(shelf.waitUntilGone());
}

TEST_F(ShelfByPointerTest, AClickOnTheToastShowsTheShelf) {
    program.editDefault(u"hudDurationMs"_s, 4000);
    prepare({u"words"_s});
    const SelectionOwner owner(session.display(), plainText("copied elsewhere"));
    QRect toast;
    ASSERT_TRUE(eventually([&] {
        for (const xcb_window_t window : windows.ofProcess(program.process().pid()))
            if (windows.frame(window).height() < 150)
                toast = windows.frame(window);
        return toast.width() > 100;
    }));
    mouse.click(toast.center());
    EXPECT_TRUE(shelf.waitForKeyboard());
    EXPECT_TRUE(elements->waitForItems({u"텍스트, copied elsewhere"_s, u"텍스트, words"_s}));
}

TEST_F(ShelfByPointerTest, AClickSelectsAndADoubleClickCopiesWithoutPasting) {
    prepare({u"oldest"_s, u"older"_s, u"newest"_s});
    const TypingTarget target(session, {u"target"_s});
    open();
    const QRect row = elements->frameOfItem(u"텍스트, older"_s).adjusted(0, 0, -2, 0);
    const QImage atRest = screen.of(row);
    mouse.moveTo(row.center());
    EXPECT_TRUE(eventually([&] { return screen.of(row) != atRest; })) << "hovered";
    mouse.moveTo(kOutside);
    EXPECT_TRUE(eventually([&] { return screen.of(row) == atRest; }));

    mouse.click(row.center());
    EXPECT_TRUE(elements->waitForSelectedItem(u"텍스트, older"_s));
    // What is selected is what the preview shows.
    EXPECT_TRUE(elements->waitFor(u"Length: 5 chars"_s));
    EXPECT_FALSE(ClipboardReader(session.display()).read("UTF8_STRING"));

    ASSERT_TRUE(clickItem(u"텍스트, oldest"_s));
    ASSERT_TRUE(clickItem(u"텍스트, newest"_s));
    ASSERT_TRUE(elements->waitForSelectedItem(u"텍스트, newest"_s));
    mouse.doubleClick(elements->frameOfItem(u"텍스트, oldest"_s).center());
    EXPECT_TRUE(clipboardBecomes("oldest"));
    EXPECT_TRUE(throughout(500ms, [&] { return target.pasted(0).isEmpty() && shelf.isUp(); }));
    EXPECT_EQ(program.contents(), (QStringList{u"newest"_s, u"older"_s, u"oldest"_s}));
}

TEST_F(ShelfByPointerTest, TheWheelScrollsWhatIsUnderThePointer) {
    QStringList texts;
    for (int number = 0; number < 40; ++number)
        texts.append(u"text %1"_s.arg(number));
    QByteArray collections;
    for (int number = 0; number < 15; ++number)
        collections += QByteArray(kWork).replace("Work", "Work " + QByteArray::number(number));
    prepare(texts, collections);
    open();
    // The first one is the place where the pointer is, and what moves there.
    const auto scrolls = [this](const std::function<QRect()>& place, QPoint inside) {
        const QRect atRest = place();
        ASSERT_FALSE(atRest.isEmpty());
        for (int notch = 0; notch < 3; ++notch)
            mouse.click(inside, Mouse::Button::WheelDown);
        EXPECT_TRUE(eventually([&] { return place().top() < atRest.top(); }));
        for (int notch = 0; notch < 3; ++notch)
            mouse.click(inside, Mouse::Button::WheelUp);
        EXPECT_TRUE(eventually([&] { return place() == atRest; }));
    };
    const auto firstItem = [this] {
        const auto frames = elements->framesOfItems();
        return frames.empty() ? QRect() : frames.front();
    };
    scrolls(firstItem, firstItem().center());
    const auto firstLens = [this] { return elements->frame(u"전체, 항목 40개"_s); };
    scrolls(firstLens, firstLens().center());
    // The only chip there is beside All is no way to the list below it.
    const QRect item = firstItem();
    mouse.click(elements->frame(u"텍스트"_s, u"radio button"_s).center(), Mouse::Button::WheelDown);
    EXPECT_TRUE(throughout(300ms, [&] { return firstItem() == item; }));
    ASSERT_TRUE(click(u"보기 모드: 목록"_s));
    ASSERT_TRUE(elements->waitFor(u"보기 모드: 격자"_s));
    scrolls(firstItem, firstItem().center());
    EXPECT_TRUE(shelf.isUp());
}

TEST_F(ShelfByPointerTest, TheWheelScrollsChipsThatDoNotFit) {
    // With a font of ordinary size they all do.
    session.environment().insert(u"XDG_CURRENT_DESKTOP"_s, u"KDE"_s);
    session.environment().insert(u"KDE_SESSION_VERSION"_s, u"5"_s);
    session.writeFile(u"config/kdeglobals"_s, "[General]\nfont=Sans,18,-1,5,50,0,0,0,0,0\n");
    prepare({u"words"_s, u"#3366cc"_s, u"https://example.org"_s});
    session.writeFile(u"home/a.txt"_s, "a file");
    realPrograms::copyAllInFolder(session, session.path(u"home"_s));
    ASSERT_TRUE(program.waitForRows(4));
    realPrograms::copyFromTerminal(session, pngPicture({32, 20}, 1), u"image/png"_s);
    ASSERT_TRUE(program.waitForRows(5));
    open();
    const QRect atRest = elements->frame(u"텍스트"_s, u"radio button"_s);
    mouse.click(atRest.center(), Mouse::Button::WheelDown);
    EXPECT_TRUE(
        eventually([&] { return elements->frame(u"텍스트"_s, u"radio button"_s).left() < atRest.left(); }));
    mouse.click(atRest.center(), Mouse::Button::WheelUp);
    EXPECT_TRUE(eventually([&] { return elements->frame(u"텍스트"_s, u"radio button"_s) == atRest; }));
}

TEST_F(ShelfByPointerTest, ChipsLensesAndButtonsDoWhatTheySay) {
    prepare({u"words"_s, u"#3366cc"_s, u"https://example.org"_s});
    ASSERT_EQ(program.command({u"pin"_s, program.rows().last()[u"id"].toVariant().toString()}).exitStatus, 0);
    const QString words = u"텍스트, words, 고정됨"_s;
    const QStringList all{u"링크, https://example.org"_s, u"색상, #3366cc"_s, words};
    open();
    ASSERT_TRUE(elements->waitForItems(all));
    for (const auto& [chip, items] :
         {std::pair(u"색상"_s, QStringList{all[1]}), std::pair(u"링크"_s, QStringList{all[0]}),
          std::pair(u"텍스트"_s, QStringList{all[2]}), std::pair(u"All"_s, all)}) {
        ASSERT_TRUE(click(chip, u"radio button"_s)) << chip.toStdString();
        EXPECT_TRUE(elements->waitForItems(items)) << chip.toStdString();
    }
    for (const auto& [lens, items] :
         {std::pair(u"Pinned, 항목 1개"_s, QStringList{words}),
          std::pair(u"Screenshots, 항목 0개"_s, QStringList()), std::pair(u"전체, 항목 3개"_s, all)}) {
        ASSERT_TRUE(click(lens)) << lens.toStdString();
        EXPECT_TRUE(elements->waitForSelectedLens(lens));
        EXPECT_TRUE(elements->waitForItems(items)) << lens.toStdString();
    }
    ASSERT_TRUE(click(u"보기 모드: 목록"_s));
    EXPECT_TRUE(elements->waitFor(u"보기 모드: 격자"_s));
    EXPECT_TRUE(elements->waitForItems(all));
    ASSERT_TRUE(clickItem(all[1]));
    EXPECT_TRUE(elements->waitForSelectedItem(all[1]));
    ASSERT_TRUE(click(u"보기 모드: 격자"_s));
    EXPECT_TRUE(elements->waitFor(u"보기 모드: 목록"_s));
    for (const bool isShown : {false, true}) {
        ASSERT_TRUE(click(u"프리뷰"_s));
        EXPECT_TRUE(elements->waitForChecked(u"프리뷰"_s, isShown));
        ASSERT_TRUE(click(u"사이드바"_s));
        EXPECT_TRUE(elements->waitForChecked(u"사이드바"_s, isShown));
        EXPECT_TRUE(eventually([&] { return shelf.frame().width() == (isShown ? 960 : 760); }));
    }
    mouse.click(kOutside);
    EXPECT_TRUE(shelf.waitUntilGone());
}

TEST_F(ShelfByPointerTest, WhatIsSearchedForIsPutInAndTakenOutByThePointer) {
    prepare({u"words"_s, u"other"_s});
    session.start({.program = u"xclip"_s,
                   .arguments = {u"-quiet"_s, u"-selection"_s, u"primary"_s, u"-i"_s},
                   .standardInput = "word"});
    open();
    // The middle button pastes what is selected elsewhere.
    ASSERT_TRUE(eventually([this] {
        click(u"검색"_s, {}, Mouse::Button::Middle);
        return eventually([this] { return elements->items() == QStringList{u"텍스트, words"_s}; }, 2s);
    }));
    ASSERT_TRUE(click(u"검색어 지우기"_s));
    EXPECT_TRUE(elements->waitForItems({u"텍스트, other"_s, u"텍스트, words"_s}));
    EXPECT_TRUE(elements->waitUntilGone(u"검색어 지우기"_s));
}

TEST_F(ShelfByPointerTest, TheMenuOfAnItemPastesAndCopies) {
    prepare({u"older"_s, u"newest"_s});
    const auto editor = PasteDestination::start(session, PasteDestination::Kind::QtEditor);
    open();
    ASSERT_TRUE(openItemMenu(u"텍스트, older"_s));
    EXPECT_TRUE(choose(itemMenu::kText, u'P'));
    EXPECT_TRUE(editor->waitForText(u"older"_s));
    ASSERT_TRUE(shelf.waitForKeyboard());
    ASSERT_TRUE(openItemMenu(u"텍스트, newest"_s));
    EXPECT_TRUE(choose(itemMenu::kText, u'C'));
    EXPECT_TRUE(clipboardBecomes("newest"));
    EXPECT_EQ(editor->text(), u"older");
    EXPECT_TRUE(shelf.isUp());
}

TEST_F(ShelfByPointerTest, TheMenuOfAnItemFilesItAndDeletesIt) {
    prepare({u"older"_s, u"newest"_s}, kWork);
    open();
    ASSERT_TRUE(openItemMenu(u"텍스트, older"_s));
    EXPECT_TRUE(chooseOnlyCollection(itemMenu::kText));
    EXPECT_TRUE(waitForQuery(kMembers, {u"Work: older"_s}));
    ASSERT_TRUE(openItemMenu(u"텍스트, newest"_s));
    EXPECT_TRUE(chooseOnlyCollection(itemMenu::kText));
    EXPECT_TRUE(waitForQuery(kMembers, {u"Work: newest"_s, u"Work: older"_s}));
    // The same line takes it out.
    ASSERT_TRUE(openItemMenu(u"텍스트, newest"_s));
    EXPECT_TRUE(chooseOnlyCollection(itemMenu::kText));
    EXPECT_TRUE(waitForQuery(kMembers, {u"Work: older"_s}));
    // And so does a line of its own where the collection is looked at.
    ASSERT_TRUE(elements->waitFor(u"Work, 항목 1개"_s));
    ASSERT_TRUE(click(u"Work, 항목 1개"_s));
    ASSERT_TRUE(elements->waitForItems({u"텍스트, older"_s}));
    ASSERT_TRUE(openItemMenu(u"텍스트, older"_s));
    EXPECT_TRUE(choose(itemMenu::kTextInCollection, u'r'));
    EXPECT_TRUE(waitForQuery(kMembers, {}));
    EXPECT_TRUE(elements->waitForItems({}));

    ASSERT_TRUE(click(u"전체, 항목 2개"_s));
    ASSERT_TRUE(elements->waitForItems({u"텍스트, newest"_s, u"텍스트, older"_s}));
    ASSERT_TRUE(openItemMenu(u"텍스트, newest"_s));
    EXPECT_TRUE(choose(itemMenu::kText, u'D'));
    EXPECT_TRUE(elements->waitForItems({u"텍스트, older"_s}));
    EXPECT_TRUE(waitForQuery("SELECT content FROM ClipboardItem", {u"older"_s}));
    EXPECT_EQ(query(kCollections), QStringList{u"Work "_s});
}

TEST_F(ShelfByPointerTest, TheMenuOfAFileOpensIt) {
    const FakeApplication reader(session, u"reader"_s, {u"text/plain"_s});
    const QString file = session.writeFile(u"home/report.txt"_s, "a report");
    prepare({});
    const SelectionOwner owner(
        session.display(),
        SelectionScript{.offers = {{.target = "text/uri-list",
                                    .bytes = QUrl::fromLocalFile(file).toEncoded() + "\r\n"}}});
    ASSERT_TRUE(program.waitForRows(1));
    open();
    ASSERT_TRUE(openItemMenu(u"파일, report.txt"_s));
    EXPECT_TRUE(choose(itemMenu::kFile, u'o'));
    const auto start = reader.waitForStart();
    ASSERT_TRUE(start);
    EXPECT_EQ(start->arguments, QStringList{file});
    EXPECT_TRUE(shelf.waitUntilGone());
}

TEST_F(ShelfByPointerTest, TheMenuOfAnItemOpensThePreviewAndTheEditor) {
    for (const auto& [line, name] : {std::pair(u'v', u"미리보기"_s), std::pair(u'E', u"편집"_s)}) {
        prepare({u"words"_s});
        open();
        ASSERT_TRUE(openItemMenu(u"텍스트, words"_s));
        EXPECT_TRUE(choose(itemMenu::kText, line));
        EXPECT_TRUE(elements->waitFor(name, u"dialog"_s)) << name.toStdString();
        mouse.click(kOutside);
        EXPECT_TRUE(shelf.waitUntilGone());
        ASSERT_TRUE(program.quit());
    }
}

TEST_F(ShelfByPointerTest, ACollectionIsGivenAColourAndDeleted) {
    prepare({u"words"_s},
            QByteArray(kWork) +
                "INSERT INTO ClipboardItem_collections (item, collection) "
                "SELECT ClipboardItem.id, KovaCollection.id FROM ClipboardItem, KovaCollection;");
    open();
    ASSERT_TRUE(openLensMenu(u"Work, 항목 1개"_s));
    ASSERT_TRUE(choose(u"e-d"_s, u'e'));
    ASSERT_TRUE(elements->waitFor(u"컬렉션 편집"_s, u"dialog"_s));
    EXPECT_TRUE(elements->waitForChecked(u"기본"_s, true));
    ASSERT_TRUE(click(u"Green"_s));
    EXPECT_TRUE(elements->waitForChecked(u"Green"_s, true));
    ASSERT_TRUE(click(u"저장"_s));
    EXPECT_TRUE(waitForQuery(kCollections, {u"Work #34C759"_s}));
    EXPECT_TRUE(elements->waitUntilGone(u"컬렉션 편집"_s, u"dialog"_s));
    EXPECT_EQ(query(kMembers), QStringList{u"Work: words"_s});

    // A change that is cancelled is none.
    ASSERT_TRUE(openLensMenu(u"Work, 항목 1개"_s));
    ASSERT_TRUE(choose(u"e-d"_s, u'e'));
    ASSERT_TRUE(elements->waitForChecked(u"Green"_s, true));
    ASSERT_TRUE(click(u"Red"_s));
    EXPECT_TRUE(elements->waitForChecked(u"Red"_s, true));
    ASSERT_TRUE(click(u"취소"_s));
    EXPECT_TRUE(elements->waitUntilGone(u"컬렉션 편집"_s, u"dialog"_s));
    EXPECT_EQ(query(kCollections), QStringList{u"Work #34C759"_s});

    ASSERT_TRUE(openLensMenu(u"Work, 항목 1개"_s));
    ASSERT_TRUE(choose(u"e-d"_s, u'd'));
    EXPECT_TRUE(waitForQuery(kCollections, {}));
    EXPECT_EQ(query(kMembers), QStringList());
    EXPECT_TRUE(elements->waitForItems({u"텍스트, words"_s}));
    EXPECT_EQ(program.contents(), QStringList{u"words"_s});
}

TEST_F(ShelfByPointerTest, ANewCollectionWithoutANameIsNotMade) {
    prepare({u"words"_s});
    open();
    ASSERT_TRUE(click(u"새 컬렉션"_s));
    ASSERT_TRUE(elements->waitFor(u"새 컬렉션"_s, u"dialog"_s));
    ASSERT_TRUE(click(u"Teal"_s));
    EXPECT_TRUE(elements->waitForChecked(u"Teal"_s, true));
    ASSERT_TRUE(click(u"만들기"_s));
    // Neither does a click beside the sheet close it.
    mouse.click(shelf.frame().topLeft() + QPoint(30, 300));
    EXPECT_TRUE(
        throughout(400ms, [this] { return elements->named(u"새 컬렉션"_s, u"dialog"_s).has_value(); }));
    ASSERT_TRUE(click(u"취소"_s));
    EXPECT_TRUE(elements->waitUntilGone(u"새 컬렉션"_s, u"dialog"_s));
    EXPECT_EQ(query(kCollections), QStringList());
    mouse.click(kOutside);
    EXPECT_TRUE(shelf.waitUntilGone());
}

} // namespace
} // namespace kestrova::test
