#include "Kestrova/clipboard/OwnWrite.h"
#include "tests/Kestrova/shelf/ShelfFixture.h"

#include <QFile>

namespace kestrova {
namespace {

using enum ClipboardItemType;
using Shown = std::vector<std::pair<HUDEvent, std::shared_ptr<ClipboardItem>>>;

class ShelfItemsTest : public ShelfFixture {
protected:
    QStringList namesOf(const ClipboardItem& item) const {
        QStringList names;
        if (const auto collections = item.collections())
            for (const auto& collection : *collections)
                names.append(collection->name());
        return names;
    }
};

TEST_F(ShelfItemsTest, CopyingWritesMarksTheWriteAsOwnAndShowsTheToast) {
    const auto a = add(u"a"_qs);
    act([&] { view.copy(a); });
    EXPECT_EQ(pasteboard.written(), std::vector<PasteboardEntry>{PlainText{u"a"_qs}});
    EXPECT_EQ(ownWriteChangeCount, pasteboard.changeCount());
    EXPECT_EQ(hud.shown, (Shown{{HUDEvent::copied, a}}));
}

TEST_F(ShelfItemsTest, CopyingAFormOfAnItemWritesMarksTheWriteAsOwnAndShowsTheToast) {
    const auto color = add(u"#fff"_qs, {.type = ClipboardItemType::color});
    act([&] { view.copyText(color, u"rgb(255, 255, 255)"_qs); });
    EXPECT_EQ(pasteboard.written(), std::vector<PasteboardEntry>{PlainText{u"rgb(255, 255, 255)"_qs}});
    EXPECT_EQ(ownWriteChangeCount, pasteboard.changeCount());
    EXPECT_EQ(hud.shown, (Shown{{HUDEvent::copied, color}}));
}

TEST_F(ShelfItemsTest, CopyingFromTheListItselfOutlivesAnItemThatArrivesWithIt) {
    add(u"a"_qs);
    type(u"a"_qs);
    pasteboard.onPollDue = [this] { add(u"another a"_qs); };
    pasteboard.copyElsewhere(u"another a"_qs);
    act([&] { view.copy(view.filteredItems().back()); });
    ASSERT_EQ(hud.shown.size(), 1u);
    EXPECT_EQ(hud.shown[0].second->content(), u"a"_qs);
}

TEST_F(ShelfItemsTest, WritingAloneShowsNoToast) {
    const auto a = add(u"a"_qs);
    act([&] { view.writeToPasteboard(*a); });
    EXPECT_EQ(pasteboard.written(), std::vector<PasteboardEntry>{PlainText{u"a"_qs}});
    EXPECT_EQ(ownWriteChangeCount, pasteboard.changeCount());
    EXPECT_TRUE(hud.shown.empty());
}

TEST_F(ShelfItemsTest, ThePinFlipsAndIsSaved) {
    const auto a = add(u"a"_qs);
    for (const bool pinned : {true, false}) {
        act([&] { view.togglePin(*a); });
        ModelContext other(*m_container);
        EXPECT_EQ(other.item(a->id())->pinned(), pinned);
    }
}

TEST_F(ShelfItemsTest, TextFormattedTextLinksAndColoursAreEditable) {
    for (const auto type : {text, rtf, url, color}) {
        const auto item = add(u"x"_qs, {.type = type});
        act([&] { view.edit(item); });
        EXPECT_EQ(view._route, DetailRoute::edit(item));
    }
    act([&] { view._route.reset(); });
    for (const auto type : {image, file}) {
        const auto item = add(u"x"_qs, {.type = type});
        act([&] { view.edit(item); });
        EXPECT_EQ(view._route, std::nullopt);
    }
}

TEST_F(ShelfItemsTest, EverythingHasAPreview) {
    const auto item = add(u"x"_qs, {.type = file});
    act([&] { view.preview(item); });
    EXPECT_EQ(view._route, DetailRoute::preview(item));
    EXPECT_EQ(view._suspendedRoute, std::nullopt);
}

TEST_F(ShelfItemsTest, AnItemIsInACollectionOnce) {
    const auto a = add(u"a"_qs);
    const auto work = addCollection(u"work"_qs);
    const auto home = addCollection(u"home"_qs);
    put(a, home);
    put(a, work);
    put(a, home);
    EXPECT_EQ(namesOf(*a), (QStringList{u"home"_qs, u"work"_qs}));
    ModelContext other(*m_container);
    EXPECT_EQ(namesOf(*other.item(a->id())), (QStringList{u"home"_qs, u"work"_qs}));
}

TEST_F(ShelfItemsTest, RemovingFromACollectionKeepsTheOthers) {
    const auto a = add(u"a"_qs);
    const auto work = addCollection(u"work"_qs);
    const auto home = addCollection(u"home"_qs);
    act([&] { view.removeFromCollection(*a, *work); });
    EXPECT_EQ(a->collections(), std::nullopt);
    put(a, work);
    put(a, home);
    act([&] { view.removeFromCollection(*a, *work); });
    EXPECT_EQ(namesOf(*a), QStringList{u"home"_qs});
    ModelContext other(*m_container);
    EXPECT_EQ(namesOf(*other.item(a->id())), QStringList{u"home"_qs});
}

TEST_F(ShelfItemsTest, TogglingACollectionAddsThenRemovesAndKeepsTheCardOpen) {
    const auto a = add(u"a"_qs);
    const auto work = addCollection(u"work"_qs);
    act([&] { view._route = DetailRoute::actions(a); });
    act([&] { view.toggleCollection(*a, work); });
    EXPECT_EQ(namesOf(*a), QStringList{u"work"_qs});
    act([&] { view.toggleCollection(*a, work); });
    EXPECT_EQ(namesOf(*a), QStringList());
    EXPECT_EQ(view._route, DetailRoute::actions(a));
}

TEST_F(ShelfItemsTest, ATapOnAnItemLeavesTheSearchForTheList) {
    panel.visible = true;
    act([&] { view._searchFocused = true; });
    act([&] { view.itemTapped(); });
    EXPECT_EQ(view._lane, KeyboardLane::list);
    EXPECT_FALSE(view._searchFocused);
    EXPECT_EQ(endedEditing(), 1);
}

TEST_F(ShelfItemsTest, AnEditIsSavedAndLeadsBack) {
    const auto a = add(u"a"_qs);
    act([&] {
        view._suspendedRoute = DetailRoute::actions(a);
        view._route = DetailRoute::edit(a);
    });
    act([&] { view.saveEdit(*a, u"b"_qs); });
    EXPECT_EQ(savedContents(*m_container), QStringList{u"b"_qs});
    EXPECT_EQ(view._route, DetailRoute::actions(a));
    EXPECT_EQ(view._suspendedRoute, std::nullopt);
}

TEST_F(ShelfItemsTest, AChangeThatCannotBeSavedStandsAndNothingIsShown) {
    const auto a = add(u"a"_qs);
    {
        ForeignConnection other(storeFile());
        other.execute("BEGIN IMMEDIATE");
        act([&] { view.togglePin(*a); });
        EXPECT_TRUE(a->pinned());
        EXPECT_TRUE(hud.shown.empty());
    }
    lens(CollectionFilter::pinned());
    EXPECT_EQ(shown(), QStringList{u"a"_qs});
}

TEST_F(ShelfItemsTest, WhatWasTypedInAnItemThatIsDeletedMeanwhileBecomesANewOne) {
    const auto link = add(u"https://a.example"_qs, {.type = url, .pinned = true});
    act([&] { view.edit(link); });
    deleteElsewhere(link->id());
    act([&] { view.saveEdit(*link, u"https://b.example"_qs); });
    ASSERT_EQ(savedContents(*m_container), QStringList{u"https://b.example"_qs});
    const auto& made = *view.items().front();
    EXPECT_EQ(made.type(), url);
    EXPECT_EQ(made.source(), ItemSource::clipboard);
    EXPECT_FALSE(made.pinned());
    EXPECT_GT(made.createdAt(), link->createdAt());
    EXPECT_EQ(view._route, std::nullopt);
}

TEST_F(ShelfItemsTest, ADeletedItemInWhichNothingWasTypedStaysDeleted) {
    const auto a = add(u"a"_qs);
    act([&] { view.edit(a); });
    deleteElsewhere(a->id());
    act([&] { view.saveEdit(*a, u"a"_qs); });
    EXPECT_EQ(savedContents(*m_container), QStringList());
    EXPECT_EQ(view._route, std::nullopt);
}

TEST_F(ShelfItemsTest, AnItemThatIsDeletedMeanwhileIsNeitherPinnedNorDeletedAgain) {
    const auto a = add(u"a"_qs);
    deleteElsewhere(a->id());
    act([&] {
        view.togglePin(*a);
        view.deleteItem(*a);
    });
    EXPECT_FALSE(a->pinned());
    EXPECT_TRUE(view._deletedStack.empty());
    act([&] { view.undoLastDelete(); });
    EXPECT_EQ(savedContents(*m_container), QStringList());
}

// Drops

TEST_F(ShelfItemsTest, ADroppedLinkBecomesALink) {
    const auto before = currentTimestamp();
    act([&] { view.dropURLs({QUrl(u"https://example.org/a b?q=\u00e9"_qs)}); });
    ASSERT_EQ(view.items().size(), 1u);
    const auto& item = *view.items().front();
    EXPECT_EQ(item.content(), u"https://example.org/a%20b?q=%C3%A9"_qs);
    EXPECT_EQ(item.type(), url);
    EXPECT_EQ(item.sourceApp(), std::nullopt);
    EXPECT_GE(item.createdAt(), before);
    EXPECT_LE(item.createdAt(), currentTimestamp());
    EXPECT_FALSE(item.pinned());
    EXPECT_EQ(item.source(), ItemSource::clipboard);
    EXPECT_EQ(item.fileURLString(), std::nullopt);
    EXPECT_EQ(item.fileSize(), std::nullopt);
}

TEST_F(ShelfItemsTest, ADroppedFileKeepsItsEncodedPathItsUrlAndItsSize) {
    const auto path = m_directory.filePath(u"a b.txt"_qs);
    QFile made(path);
    ASSERT_TRUE(made.open(QIODevice::WriteOnly));
    ASSERT_EQ(made.write("12345"), 5);
    made.close();
    const auto encoded = QUrl::fromLocalFile(path).path(QUrl::FullyEncoded);
    act([&] { view.dropURLs({QUrl::fromLocalFile(path)}); });
    const auto& item = *view.items().front();
    EXPECT_EQ(item.content(), encoded);
    EXPECT_TRUE(item.content().endsWith(u"/a%20b.txt"_qs));
    EXPECT_EQ(item.type(), file);
    EXPECT_EQ(item.fileURLString(), u"file://"_qs + encoded);
    EXPECT_EQ(item.fileSize(), 5);
}

TEST_F(ShelfItemsTest, ADroppedFileThatCannotBeReadHasNoSize) {
    act([&] { view.dropURLs({QUrl(u"file:///nowhere/at/all"_qs)}); });
    EXPECT_EQ(view.items().front()->fileSize(), std::nullopt);
}

TEST_F(ShelfItemsTest, EachDroppedUrlIsARowEvenARepeatedOneAndTheToastIsForTheLast) {
    const QUrl link(u"https://example.org/"_qs);
    act([&] { view.dropURLs({link, link, QUrl(u"https://example.org/last"_qs)}); });
    EXPECT_EQ(savedContents(*m_container).size(), 3);
    ASSERT_EQ(hud.shown.size(), 1u);
    EXPECT_EQ(hud.shown[0].first, HUDEvent::copied);
    EXPECT_EQ(hud.shown[0].second->content(), u"https://example.org/last"_qs);
}

TEST_F(ShelfItemsTest, ADropOfNothingShowsNoToast) {
    act([&] { view.dropURLs({}); });
    EXPECT_TRUE(view.items().empty());
    EXPECT_TRUE(hud.shown.empty());
}

} // namespace
} // namespace kestrova
