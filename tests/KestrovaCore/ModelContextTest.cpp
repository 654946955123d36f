#include "tests/support/StoreFixture.h"

namespace kestrova {
namespace {

class ModelContextTest : public StoreFixture {
protected:
    std::shared_ptr<ClipboardItem> saved(const QString& content, int seconds = 0) {
        auto item = makeText(content, seconds);
        m_here.insert(item);
        EXPECT_TRUE(m_here.save());
        return item;
    }

    ModelContext m_here{*m_container};
    ModelContext m_there{*m_container};
};

TEST_F(ModelContextTest, GivesOneHandleForOneRowHoweverOftenItIsFetched) {
    const auto item = saved(QStringLiteral("a"));
    EXPECT_EQ(m_here.item(item->id()), item);
    EXPECT_EQ(m_here.fetch({}).value().at(0), item);
    const auto there = m_there.item(item->id());
    EXPECT_EQ(m_there.fetch({}).value().at(0), there);
}

TEST_F(ModelContextTest, OthersSeeAChangeWithTheSaveAndNotBefore) {
    const auto item = saved(QStringLiteral("a"));
    const auto there = m_there.item(item->id());
    item->setPinned(true);
    item->setContent(QStringLiteral("b"));
    EXPECT_FALSE(there->pinned());
    EXPECT_EQ(m_there.fetch({.predicate = &ClipboardItemValues::pinned}).value().size(), 0u);
    ASSERT_TRUE(m_here.save());
    EXPECT_TRUE(there->pinned());
    EXPECT_EQ(there->content(), u"b");
    EXPECT_FALSE(m_here.hasChanges());
}

TEST_F(ModelContextTest, AFieldThatIsChangedHereWinsOverAMergeAndTheOthersAreTakenOver) {
    const auto item = saved(QStringLiteral("a"));
    const auto there = m_there.item(item->id());
    there->setContent(QStringLiteral("mine"));
    item->setContent(QStringLiteral("theirs"));
    item->setPinned(true);
    ASSERT_TRUE(m_here.save());
    EXPECT_EQ(there->content(), u"mine");
    EXPECT_TRUE(there->pinned());
    ASSERT_TRUE(m_there.save());
    EXPECT_EQ(item->content(), u"mine");
    EXPECT_TRUE(item->pinned());
}

TEST_F(ModelContextTest, FetchesIncludeUnsavedChangesInTheirOrder) {
    saved(QStringLiteral("at 1"), 1);
    const auto moved = saved(QStringLiteral("at 2"), 2);
    const auto gone = saved(QStringLiteral("at 3"), 3);
    m_here.insert(makeText(QStringLiteral("new at 2"), 2));
    moved->setCreatedAt(moment(9));
    m_here.remove(*gone);
    QStringList contents;
    for (const auto& item : m_here.fetch({}).value())
        contents.append(item->content());
    EXPECT_EQ(contents,
              (QStringList{QStringLiteral("at 2"), QStringLiteral("new at 2"), QStringLiteral("at 1")}));
    EXPECT_EQ(m_here.fetchCount({}).value(), 3u);
    EXPECT_EQ(m_here.fetch({.offset = 1, .limit = 1}).value().at(0)->content(), u"new at 2");
    EXPECT_EQ(m_there.fetchCount({}).value(), 3u);
}

TEST_F(ModelContextTest, AnIdentifierIsTemporaryUntilTheSaveAndThenTheRowNumber) {
    const auto item = makeText(QStringLiteral("a"));
    EXPECT_EQ(item->id().value, 0);
    m_here.insert(item);
    EXPECT_TRUE(item->id().isTemporary());
    EXPECT_EQ(m_here.item(item->id()), item);
    ASSERT_TRUE(m_here.save());
    EXPECT_EQ(item->id().value, 1);
    EXPECT_EQ(m_here.item(item->id()), item);
}

TEST_F(ModelContextTest, AnIdentifierIsNeverUsedAgain) {
    const auto first = saved(QStringLiteral("a"));
    const auto id = first->id();
    m_here.remove(*first);
    ASSERT_TRUE(m_here.save());
    EXPECT_GT(saved(QStringLiteral("b"))->id(), id);
    const auto reopened = openedByAnotherProcess();
    ModelContext fresh(*reopened);
    const auto third = makeText(QStringLiteral("c"));
    fresh.insert(third);
    ASSERT_TRUE(fresh.save());
    EXPECT_EQ(third->id().value, 3);
}

TEST_F(ModelContextTest, AnItemThatWasInsertedAndRemovedUnsavedNeverReachesTheStore) {
    const auto item = makeText(QStringLiteral("a"));
    m_here.insert(item);
    m_here.remove(*item);
    EXPECT_FALSE(m_here.hasChanges());
    EXPECT_TRUE(item->isDeleted());
    EXPECT_EQ(m_here.item(item->id()), nullptr);
    ASSERT_TRUE(m_here.save());
    EXPECT_EQ(savedContents(*m_container), QStringList{});
}

TEST_F(ModelContextTest, APictureIsReadFromDiskAndAHandleThatIsHeldKeepsItWhenTheRowGoes) {
    const QByteArray png(3'000'000, 'p');
    const auto item = std::make_shared<ClipboardItem>(QStringLiteral("Image"), ClipboardItemType::image,
                                                      std::nullopt, moment(1), false, ItemSource::clipboard);
    item->setImageData(png);
    m_here.insert(item);
    EXPECT_EQ(item->imageData(), png);
    ASSERT_TRUE(m_here.save());
    EXPECT_EQ(item->imageData(), png);

    const auto heldThere = m_there.item(item->id());
    EXPECT_TRUE(heldThere->hasImageData());
    m_here.remove(*item);
    ASSERT_TRUE(m_here.save());
    EXPECT_TRUE(heldThere->isDeleted());
    EXPECT_EQ(heldThere->imageData(), png);
    EXPECT_EQ(item->imageData(), png);
    EXPECT_EQ(m_there.item(heldThere->id()), nullptr);
}

TEST_F(ModelContextTest, RemovingAPictureFromAnItemIsSaved) {
    const auto item = saved(QStringLiteral("Image"));
    item->setImageData(QByteArray("png"));
    ASSERT_TRUE(m_here.save());
    const auto there = m_there.item(item->id());
    EXPECT_EQ(there->imageData(), QByteArray("png"));
    item->setImageData(std::nullopt);
    EXPECT_EQ(item->imageData(), std::nullopt);
    ASSERT_TRUE(m_here.save());
    EXPECT_EQ(there->imageData(), std::nullopt);
    EXPECT_FALSE(there->hasImageData());
}

TEST_F(ModelContextTest, AHandleThatOutlivesItsContextStillReadsItsFields) {
    std::shared_ptr<ClipboardItem> orphan;
    {
        ModelContext context(*m_container);
        orphan = makeText(QStringLiteral("a"));
        context.insert(orphan);
        ASSERT_TRUE(context.save());
    }
    EXPECT_EQ(orphan->content(), u"a");
    orphan->setContent(QStringLiteral("b"));
    EXPECT_EQ(savedContents(*m_container), QStringList{QStringLiteral("a")});
}

TEST_F(ModelContextTest, TwoProcessesThatWriteInTurnsLoseAndMixNothing) {
    const auto other = openedByAnotherProcess();
    ModelContext theirs(*other);
    for (int i = 0; i < 50; ++i) {
        m_here.insert(makeText(QStringLiteral("ours %1").arg(i), 2 * i));
        ASSERT_TRUE(m_here.save());
        theirs.insert(makeText(QStringLiteral("theirs %1").arg(i), 2 * i + 1));
        ASSERT_TRUE(theirs.save());
    }
    const auto here = savedContents(*m_container);
    EXPECT_EQ(here.size(), 100);
    EXPECT_EQ(here, savedContents(*other));
    EXPECT_EQ(here.first(), u"theirs 49");
    EXPECT_EQ(here.last(), u"ours 0");
}

TEST_F(ModelContextTest, AnEditDoesNotUndoWhatAnotherProcessChangedInTheSameRow) {
    const auto item = saved(QStringLiteral("a"));
    const auto other = openedByAnotherProcess();
    ModelContext theirs(*other);
    theirs.item(item->id())->setPinned(true);
    ASSERT_TRUE(theirs.save());
    item->setContent(QStringLiteral("edited"));
    ASSERT_TRUE(m_here.save());
    EXPECT_TRUE(item->pinned());
    const auto reopened = openedByAnotherProcess();
    ModelContext fresh(*reopened);
    EXPECT_EQ(fresh.item(item->id())->content(), u"edited");
    EXPECT_TRUE(fresh.item(item->id())->pinned());
}

TEST_F(ModelContextTest, AnEditOfARowThatAnotherProcessDeletedComesToNothingAndSpoilsNothing) {
    const auto item = saved(QStringLiteral("a"));
    const auto other = openedByAnotherProcess();
    ModelContext theirs(*other);
    theirs.remove(*theirs.item(item->id()));
    ASSERT_TRUE(theirs.save());
    item->setContent(QStringLiteral("edited"));
    m_here.insert(makeText(QStringLiteral("b"), 1));
    ASSERT_TRUE(m_here.save());
    EXPECT_TRUE(item->isDeleted());
    EXPECT_EQ(savedContents(*m_container), QStringList{QStringLiteral("b")});
}

} // namespace
} // namespace kestrova
