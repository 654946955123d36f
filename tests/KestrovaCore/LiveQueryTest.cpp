#include "tests/support/StoreFixture.h"

#include <memory>
#include <optional>

namespace kestrova {
namespace {

class LiveQueryTest : public StoreFixture {
protected:
    static QStringList contents(const ItemQuery& query) {
        QStringList list;
        for (const auto& item : query.results())
            list.append(item->content());
        return list;
    }
    static QStringList list(std::initializer_list<const char*> texts) {
        QStringList made;
        for (const auto* text : texts)
            made.append(QString::fromUtf8(text));
        return made;
    }
    std::shared_ptr<ClipboardItem> insert(ModelContext& context, const char* content, int seconds) {
        auto item = makeText(QString::fromUtf8(content), seconds);
        context.insert(item);
        return item;
    }

    ModelContext m_here{*m_container};
    ModelContext m_there{*m_container};
};

TEST_F(LiveQueryTest, StandsNewestFirstAndAmongEqualMomentsByIdentifierNewestFirst) {
    insert(m_here, "first of 5", 5);
    insert(m_here, "at 9", 9);
    insert(m_here, "second of 5", 5);
    insert(m_here, "at 1", 1);
    ASSERT_TRUE(m_here.save());
    const auto expected = list({"at 9", "second of 5", "first of 5", "at 1"});
    EXPECT_EQ(contents(ItemQuery(m_here)), expected);
    EXPECT_EQ(contents(ItemQuery(m_there)), expected);
    EXPECT_EQ(savedContents(*m_container), expected);
    EXPECT_EQ(savedContents(*openedByAnotherProcess()), expected);
}

TEST_F(LiveQueryTest, ShowsUnsavedChangesOfItsOwnContextAndSavedOnesOfOthers) {
    const ItemQuery here(m_here);
    const ItemQuery there(m_there);
    insert(m_here, "a", 1);
    EXPECT_EQ(contents(here), list({"a"}));
    EXPECT_EQ(contents(there), list({}));
    ASSERT_TRUE(m_here.save());
    EXPECT_EQ(contents(there), list({"a"}));
    EXPECT_EQ(contents(here), list({"a"}));
}

TEST_F(LiveQueryTest, DropsADeletedItemHereAtOnceAndThereWithTheSave) {
    const auto item = insert(m_here, "a", 1);
    insert(m_here, "b", 2);
    ASSERT_TRUE(m_here.save());
    const ItemQuery here(m_here);
    const ItemQuery there(m_there);
    m_here.remove(*item);
    EXPECT_EQ(contents(here), list({"b"}));
    EXPECT_EQ(contents(there), list({"b", "a"}));
    ASSERT_TRUE(m_here.save());
    EXPECT_EQ(contents(there), list({"b"}));
}

TEST_F(LiveQueryTest, MovesAnItemWhoseMomentChanges) {
    const auto item = insert(m_here, "a", 1);
    insert(m_here, "b", 2);
    ASSERT_TRUE(m_here.save());
    const ItemQuery there(m_there);
    const ItemQuery here(m_here);
    item->setCreatedAt(moment(3));
    EXPECT_EQ(contents(here), list({"a", "b"}));
    ASSERT_TRUE(m_here.save());
    EXPECT_EQ(contents(there), list({"a", "b"}));
}

TEST_F(LiveQueryTest, TellsOfEveryChangeOfAField) {
    const auto item = insert(m_here, "a", 1);
    ASSERT_TRUE(m_here.save());
    ItemQuery here(m_here);
    ItemQuery there(m_there);
    int toldHere = 0;
    int toldThere = 0;
    here.onChange = [&] { ++toldHere; };
    there.onChange = [&] { ++toldThere; };
    item->setOcrText(QStringLiteral("words"));
    EXPECT_EQ(toldHere, 1);
    EXPECT_EQ(toldThere, 0);
    ASSERT_TRUE(m_here.save());
    EXPECT_EQ(toldThere, 1);
    EXPECT_EQ(there.results()[0]->ocrText(), QStringLiteral("words"));
}

TEST_F(LiveQueryTest, TakesInTheRowsOfAnotherProcessAtTheNextFetch) {
    insert(m_here, "ours", 1);
    ASSERT_TRUE(m_here.save());
    const ItemQuery query(m_here);
    const auto other = openedByAnotherProcess();
    ModelContext foreign(*other);
    foreign.insert(makeText(QStringLiteral("theirs"), 2));
    ASSERT_TRUE(foreign.save());
    EXPECT_EQ(contents(query), list({"ours"}));
    ASSERT_TRUE(m_here.fetch({.limit = 1}));
    EXPECT_EQ(contents(query), list({"theirs", "ours"}));
}

TEST_F(LiveQueryTest, AQueryThatIsMadeWhileOthersAreToldShowsEachRowOnce) {
    ModelContext later(*m_container);
    std::optional<ItemQuery> made;
    ItemQuery there(m_there);
    there.onChange = [&] {
        if (!made)
            made.emplace(later);
    };
    insert(m_here, "a", 1);
    ASSERT_TRUE(m_here.save());
    ASSERT_TRUE(made);
    EXPECT_EQ(contents(*made), list({"a"}));
}

TEST_F(LiveQueryTest, WhoIsToldMayDropAnotherQueryAndItself) {
    auto second = std::make_unique<ItemQuery>(m_here);
    auto first = std::make_unique<ItemQuery>(m_here);
    int told = 0;
    const auto dropBoth = [&] {
        ++told;
        first.reset();
        second.reset();
    };
    first->onChange = dropBoth;
    second->onChange = dropBoth;
    insert(m_here, "a", 1);
    EXPECT_EQ(told, 1);
}

} // namespace
} // namespace kestrova
