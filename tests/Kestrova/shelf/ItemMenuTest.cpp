#include "Kestrova/shelf/ItemMenu.h"

#include "KestrovaCore/CollectionMembership.h"
#include "tests/Kestrova/shelf/ShelfFixture.h"

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Kind = ItemMenuAction::Kind;

class ItemMenuTest : public ShelfFixture {
protected:
    ItemMenu menuOf(const std::shared_ptr<ClipboardItem>& item) { return itemMenu(*item, view); }
    static QStringList titles(const ItemMenu& menu) {
        QStringList titles;
        for (const auto& entry : menu)
            titles.append(entry.isDivider() ? u"-"_s : entry.title);
        return titles;
    }
    QStringList titlesOf(const std::shared_ptr<ClipboardItem>& item) { return titles(menuOf(item)); }
    static const ItemMenuEntry& entry(const ItemMenu& menu, const QString& title) {
        const auto found = std::ranges::find(menu, title, &ItemMenuEntry::title);
        if (found == menu.end())
            qFatal("The menu has no such entry.");
        return *found;
    }
    void choose(Kind kind, const std::shared_ptr<ClipboardItem>& item,
                const std::shared_ptr<KovaCollection>& collection = {}) {
        act([&] { perform(ItemMenuAction{kind, collection}, item, view); });
    }
    std::shared_ptr<ClipboardItem> fileItem(const std::optional<QString>& url) {
        const auto item = add(u"/home/kim/report.pdf"_s, {.type = ClipboardItemType::file});
        item->setFileURLString(url);
        return item;
    }

    const QString fileURL = u"file:///home/kim/report.pdf"_s;
};

TEST_F(ItemMenuTest, ATextHasTheEntriesThatNeedNothingElseInTheirOrder) {
    EXPECT_THAT(titlesOf(add(u"words"_s)),
                ElementsAre(u"Paste"_s, u"Copy"_s, u"Edit"_s, u"-"_s, u"Collection"_s, u"Preview"_s,
                            u"Share..."_s, u"-"_s, u"Delete"_s));
}

TEST_F(ItemMenuTest, AFileInACollectionThatIsOpenHasAllButEdit) {
    const auto item = fileItem(fileURL);
    const auto work = addCollection(u"Work"_s);
    put(item, work);
    lens(CollectionFilter::collection(work->id()));
    EXPECT_THAT(titlesOf(item), ElementsAre(u"Paste"_s, u"Copy"_s, u"-"_s, u"Collection"_s, u"Preview"_s,
                                            u"Share..."_s, u"이 컬렉션에서 빼기"_s, u"-"_s, u"열기"_s,
                                            u"Finder 에서 보기"_s, u"-"_s, u"Delete"_s));
}

TEST_F(ItemMenuTest, EachEntryShowsItsShortcutAndItsDrawing) {
    const auto work = addCollection(u"Work"_s);
    lens(CollectionFilter::collection(work->id()));
    const auto menu = menuOf(add(u"words"_s));
    const auto shortcut = [&](const QString& title) { return entry(menu, title).shortcut; };
    EXPECT_EQ(shortcut(u"Paste"_s), u"Return");
    EXPECT_EQ(shortcut(u"Copy"_s), u"⌘C");
    EXPECT_EQ(shortcut(u"Edit"_s), u"⌘E");
    EXPECT_EQ(shortcut(u"Preview"_s), u"Space");
    EXPECT_EQ(shortcut(u"Delete"_s), u"Delete");
    EXPECT_EQ(shortcut(u"Collection"_s), u"");
    EXPECT_EQ(shortcut(u"Share..."_s), u"");
    EXPECT_EQ(shortcut(u"이 컬렉션에서 빼기"_s), u"");
    EXPECT_EQ(entry(menu, u"이 컬렉션에서 빼기"_s).symbol, u"rectangle.stack.badge.minus");
    EXPECT_EQ(std::ranges::count_if(menu, [](const auto& each) { return !each.symbol.isEmpty(); }), 1);
}

TEST_F(ItemMenuTest, TheKeysAreThoseThatAreShown) {
    const auto menu = menuOf(add(u"words"_s));
    using Keys = std::vector<QKeyCombination>;
    EXPECT_EQ(entry(menu, u"Paste"_s).keys, (Keys{Qt::Key_Return, Qt::Key_Enter}));
    EXPECT_EQ(entry(menu, u"Copy"_s).keys, Keys{Qt::CTRL | Qt::Key_C});
    EXPECT_EQ(entry(menu, u"Edit"_s).keys, Keys{Qt::CTRL | Qt::Key_E});
    EXPECT_EQ(entry(menu, u"Preview"_s).keys, Keys{Qt::Key_Space});
    EXPECT_EQ(entry(menu, u"Delete"_s).keys, (Keys{Qt::Key_Delete, Qt::Key_Backspace}));
}

TEST_F(ItemMenuTest, OnlyDeleteIsDestructive) {
    for (const auto& each : menuOf(fileItem(fileURL)))
        EXPECT_EQ(each.isDestructive, each.title == u"Delete") << each.title.toStdString();
}

struct Editability {
    ClipboardItemType type;
    bool isEditable;
};

class ItemMenuOfTypeTest : public ItemMenuTest, public ::testing::WithParamInterface<Editability> {};

TEST_P(ItemMenuOfTypeTest, EditIsOfferedForWhatIsText) {
    EXPECT_EQ(titlesOf(add(u"words"_s, {.type = GetParam().type})).contains(u"Edit"_s),
              GetParam().isEditable);
}

INSTANTIATE_TEST_SUITE_P(Types, ItemMenuOfTypeTest,
                         ::testing::Values(Editability{ClipboardItemType::text, true},
                                           Editability{ClipboardItemType::rtf, true},
                                           Editability{ClipboardItemType::url, true},
                                           Editability{ClipboardItemType::color, true},
                                           Editability{ClipboardItemType::image, false},
                                           Editability{ClipboardItemType::file, false}));

class ItemMenuOfFileTest : public ItemMenuTest,
                           public ::testing::WithParamInterface<std::pair<std::optional<QString>, bool>> {};

TEST_P(ItemMenuOfFileTest, OpenAndRevealAreOfferedForAFileURLThatParses) {
    const auto& [url, isOffered] = GetParam();
    const auto found = titlesOf(fileItem(url));
    EXPECT_EQ(found.contains(u"열기"_s), isOffered);
    EXPECT_EQ(found.contains(u"Finder 에서 보기"_s), isOffered);
    EXPECT_EQ(found.count(u"-"_s), isOffered ? 3 : 2);
}

INSTANTIATE_TEST_SUITE_P(URLs, ItemMenuOfFileTest,
                         ::testing::Values(std::pair(std::optional(u"file:///a%20b"_s), true),
                                           std::pair(std::optional<QString>(), false),
                                           std::pair(std::optional(u""_s), false),
                                           std::pair(std::optional(u"/a/bare/path"_s), false),
                                           std::pair(std::optional(u"http://[broken"_s), false)));

TEST_F(ItemMenuTest, TakingOutOfTheCollectionIsOfferedOnlyWhileOneIsOpen) {
    const auto item = add(u"words"_s);
    const auto work = addCollection(u"Work"_s);
    put(item, work);
    EXPECT_FALSE(titlesOf(item).contains(u"이 컬렉션에서 빼기"_s));
    lens(CollectionFilter::collection(work->id()));
    EXPECT_EQ(entry(menuOf(item), u"이 컬렉션에서 빼기"_s).action,
              (ItemMenuAction{Kind::removeFromCollection, work}));
    deleteElsewhere(work->id());
    EXPECT_FALSE(titlesOf(item).contains(u"이 컬렉션에서 빼기"_s));
}

TEST_F(ItemMenuTest, WithoutCollectionsTheSubmenuSaysSoInOneDisabledLine) {
    const auto submenu = entry(menuOf(add(u"words"_s)), u"Collection"_s).submenu;
    EXPECT_THAT(titles(submenu), ElementsAre(u"컬렉션 없음"_s));
    EXPECT_FALSE(submenu.front().isEnabled);
    EXPECT_EQ(submenu.front().action, std::nullopt);
}

TEST_F(ItemMenuTest, TheSubmenuMarksTheCollectionsThatHoldTheItemInTheirSortOrder) {
    const auto item = add(u"words"_s);
    const auto work = addCollection(u"Work & more"_s);
    const auto home = addCollection(u"Home"_s);
    put(item, home);
    const auto submenu = entry(menuOf(item), u"Collection"_s).submenu;
    EXPECT_THAT(titles(submenu), ElementsAre(u"  Work & more"_s, u"✓ Home"_s));
    EXPECT_EQ(submenu[0].action, (ItemMenuAction{Kind::addToCollection, work}));
    EXPECT_EQ(submenu[1].action, (ItemMenuAction{Kind::removeFromCollection, home}));
}

TEST_F(ItemMenuTest, PasteCallsOnSelect) {
    choose(Kind::paste, add(u"words"_s));
    EXPECT_EQ(pasted, QStringList{u"words"_s});
}

TEST_F(ItemMenuTest, CopyWritesToThePasteboardWithTheToast) {
    choose(Kind::copy, add(u"words"_s));
    EXPECT_EQ(pasteboard.string(), u"words"_s);
    ASSERT_EQ(hud.shown.size(), 1U);
    EXPECT_EQ(hud.shown.front().first, HUDEvent::copied);
}

TEST_F(ItemMenuTest, EditAndPreviewOpenTheirScreens) {
    const auto item = add(u"words"_s);
    choose(Kind::edit, item);
    EXPECT_EQ(view._route, DetailRoute::edit(item));
    choose(Kind::preview, item);
    EXPECT_EQ(view._route, DetailRoute::preview(item));
}

TEST_F(ItemMenuTest, CollectionsAreAddedAndRemoved) {
    const auto item = add(u"words"_s);
    const auto work = addCollection(u"Work"_s);
    choose(Kind::addToCollection, item, work);
    EXPECT_TRUE(isInCollection(*item, *work));
    choose(Kind::removeFromCollection, item, work);
    EXPECT_FALSE(isInCollection(*item, *work));
}

TEST_F(ItemMenuTest, DeleteTakesTheRowAway) {
    choose(Kind::deleteItem, add(u"words"_s));
    EXPECT_THAT(shown(), IsEmpty());
}

class ItemMenuOnDeletedTest : public ItemMenuTest, public ::testing::WithParamInterface<Kind> {};

TEST_P(ItemMenuOnDeletedTest, NothingIsDoneToAnItemThatHasGoneMeanwhile) {
    const auto item = fileItem(fileURL);
    const auto work = addCollection(u"Work"_s);
    deleteElsewhere(item->id());
    choose(GetParam(), item, work);
    queue.turn();
    EXPECT_THAT(pasted, IsEmpty());
    EXPECT_EQ(hud.shown.size(), 0U);
    EXPECT_EQ(view._route, std::nullopt);
    EXPECT_THAT(workspace.opened, IsEmpty());
    EXPECT_THAT(workspace.revealed, IsEmpty());
    EXPECT_THAT(sharing.asked, IsEmpty());
    EXPECT_TRUE(view._deletedStack.empty());
}

INSTANTIATE_TEST_SUITE_P(Actions, ItemMenuOnDeletedTest,
                         ::testing::Values(Kind::paste, Kind::copy, Kind::edit, Kind::addToCollection,
                                           Kind::removeFromCollection, Kind::preview, Kind::share,
                                           Kind::openFile, Kind::revealFile, Kind::deleteItem));

TEST_F(ItemMenuTest, ACollectionThatHasGoneMeanwhileIsLeftAlone) {
    const auto item = add(u"words"_s);
    const auto work = addCollection(u"Work"_s);
    deleteElsewhere(work->id());
    choose(Kind::addToCollection, item, work);
    EXPECT_THAT(item->collections().value_or(std::vector<std::shared_ptr<KovaCollection>>()), IsEmpty());
}

} // namespace
} // namespace kestrova
