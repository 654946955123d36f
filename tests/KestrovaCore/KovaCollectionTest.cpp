#include "tests/support/StoreFixture.h"

namespace kestrova {
namespace {

class KovaCollectionTest : public StoreFixture {
protected:
    std::shared_ptr<KovaCollection> collection(const QString& name, std::int64_t sortOrder) {
        auto made = std::make_shared<KovaCollection>(name, sortOrder, std::nullopt, std::nullopt);
        m_context.insert(made);
        return made;
    }
    std::shared_ptr<ClipboardItem> member(const QString& content, int seconds,
                                          const std::vector<std::shared_ptr<KovaCollection>>& collections) {
        auto item = makeText(content, seconds);
        item->setCollections(collections);
        m_context.insert(item);
        return item;
    }
    static QStringList namesOf(const ClipboardItem& item) {
        QStringList names;
        const auto collections = item.collections();
        for (const auto& each : *collections)
            names.append(each->name());
        return names;
    }

    ModelContext m_context{*m_container};
};

TEST_F(KovaCollectionTest, TwoCollectionsMayHaveTheSameName) {
    const auto a = collection(QStringLiteral("같은 이름"), 1);
    const auto b = collection(QStringLiteral("같은 이름"), 2);
    ASSERT_TRUE(m_context.save());
    EXPECT_FALSE(*a == *b);
    EXPECT_EQ(CollectionQuery(m_context).results().size(), 2u);
}

TEST_F(KovaCollectionTest, DeletingACollectionLeavesItsTwentyItemsWithoutIt) {
    const auto doomed = collection(QStringLiteral("doomed"), 1);
    const auto kept = collection(QStringLiteral("kept"), 2);
    for (int i = 0; i < 20; ++i)
        member(QString::number(i), i, {doomed, kept});
    ASSERT_TRUE(m_context.save());
    ModelContext elsewhere(*m_container);
    const ItemQuery seenElsewhere(elsewhere);

    m_context.remove(*doomed);
    ASSERT_TRUE(m_context.save());

    for (auto* const context : {&m_context, &elsewhere}) {
        const auto items = context->fetch({});
        ASSERT_TRUE(items);
        ASSERT_EQ(items.value().size(), 20u);
        for (const auto& item : items.value())
            EXPECT_EQ(namesOf(*item), QStringList{QStringLiteral("kept")});
    }
    const auto reopened = openedByAnotherProcess();
    ModelContext fresh(*reopened);
    EXPECT_EQ(fresh.fetch({}).value().size(), 20u);
    EXPECT_EQ(fresh.itemsOf(kept->id()).size(), 20u);
    EXPECT_TRUE(fresh.itemsOf(doomed->id()).empty());
}

TEST_F(KovaCollectionTest, ACollectionThatIsRemovedAndNotYetSavedHasNoMembersHere) {
    const auto group = collection(QStringLiteral("group"), 1);
    const auto id = member(QStringLiteral("x"), 1, {group})->id();
    ASSERT_TRUE(m_context.save());
    EXPECT_NE(id, ItemID{});
    m_context.remove(*group);
    EXPECT_TRUE(m_context.itemsOf(group->id()).empty());
    const auto isMember = [&](const ClipboardItemValues& values) {
        return values.collections && !values.collections->empty();
    };
    EXPECT_EQ(m_context.fetchCount({.predicate = isMember}).value(), 0u);
}

TEST_F(KovaCollectionTest, ACollectionThatOnlyAQueryHoldsMayBeRemoved) {
    const CollectionQuery query(m_context);
    collection(QStringLiteral("only in the query"), 1);
    m_context.remove(*query.results().front());
    EXPECT_TRUE(query.results().empty());
}

TEST_F(KovaCollectionTest, AnItemThatIsThereAlreadyCanBePutIntoACollectionThatIsSavedWithIt) {
    const auto item = makeText(QStringLiteral("x"), 1);
    m_context.insert(item);
    ASSERT_TRUE(m_context.save());
    const auto group = collection(QStringLiteral("group"), 1);
    item->setCollections(std::vector{group});
    ASSERT_TRUE(m_context.save());
    ModelContext elsewhere(*m_container);
    EXPECT_EQ(namesOf(*item), QStringList{QStringLiteral("group")});
    EXPECT_EQ(namesOf(*elsewhere.item(item->id())), QStringList{QStringLiteral("group")});
    EXPECT_EQ(m_context.itemsOf(group->id()).size(), 1u);
}

TEST_F(KovaCollectionTest, DeletingAnItemTakesItOutOfItsCollections) {
    const auto group = collection(QStringLiteral("group"), 1);
    const auto item = member(QStringLiteral("x"), 1, {group});
    ASSERT_TRUE(m_context.save());
    m_context.remove(*item);
    ASSERT_TRUE(m_context.save());
    EXPECT_TRUE(group->items().value().empty());
}

TEST_F(KovaCollectionTest, ShowsItsItemsInTheOrderOfTheHistory) {
    const auto group = collection(QStringLiteral("group"), 1);
    member(QStringLiteral("old"), 1, {group});
    member(QStringLiteral("new"), 3, {group});
    member(QStringLiteral("middle"), 2, {group});
    ASSERT_TRUE(m_context.save());
    QStringList contents;
    const auto items = group->items();
    for (const auto& item : *items)
        contents.append(item->content());
    EXPECT_EQ(contents,
              (QStringList{QStringLiteral("new"), QStringLiteral("middle"), QStringLiteral("old")}));
}

TEST_F(KovaCollectionTest, AnItemKeepsTheOrderInWhichItWasPutIntoItsCollections) {
    const auto a = collection(QStringLiteral("a"), 1);
    const auto b = collection(QStringLiteral("b"), 2);
    const auto item = member(QStringLiteral("x"), 1, {b});
    ASSERT_TRUE(m_context.save());
    item->setCollections(std::vector{b, a});
    ASSERT_TRUE(m_context.save());
    const auto reopened = openedByAnotherProcess();
    ModelContext fresh(*reopened);
    EXPECT_EQ(namesOf(*fresh.item(item->id())), (QStringList{QStringLiteral("b"), QStringLiteral("a")}));
}

TEST_F(KovaCollectionTest, StandInTheirSortOrderWithGapsAndRepeats) {
    collection(QStringLiteral("seven"), 7);
    collection(QStringLiteral("one"), 1);
    collection(QStringLiteral("seven again"), 7);
    const CollectionQuery query(m_context);
    const auto names = [&] {
        QStringList list;
        for (const auto& each : query.results())
            list.append(each->name());
        return list;
    };
    EXPECT_EQ(names(),
              (QStringList{QStringLiteral("one"), QStringLiteral("seven"), QStringLiteral("seven again")}));
    query.results()[0]->setSortOrder(9);
    EXPECT_EQ(names(),
              (QStringList{QStringLiteral("seven"), QStringLiteral("seven again"), QStringLiteral("one")}));
}

TEST_F(KovaCollectionTest, AFieldChangedHereOutlivesWhatAnotherContextSaves) {
    const auto group = collection(QStringLiteral("name"), 1);
    ASSERT_TRUE(m_context.save());
    ModelContext elsewhere(*m_container);
    const auto there = elsewhere.collection(group->id());
    ASSERT_NE(there, nullptr);
    there->setName(QStringLiteral("edited there"));
    group->setColorHex(QStringLiteral("#00ff00"));
    group->setIcon(QStringLiteral("star"));
    ASSERT_TRUE(m_context.save());
    EXPECT_EQ(there->name(), u"edited there");
    EXPECT_EQ(there->colorHex(), QStringLiteral("#00ff00"));
    EXPECT_EQ(there->icon(), QStringLiteral("star"));
    ASSERT_TRUE(elsewhere.save());
    EXPECT_EQ(group->name(), u"edited there");
}

} // namespace
} // namespace kestrova
