#include "KestrovaCore/Schema.h"
#include "tests/support/LogCapture.h"
#include "tests/support/StoreFixture.h"

#include <QElapsedTimer>
#include <QFile>

namespace kestrova {
namespace {

class StoreFaultsTest : public StoreFixture {
protected:
    ModelContext m_context{*m_container};
};

TEST_F(StoreFaultsTest, ASaveThatFailsKeepsItsChangesAndTheNextSaveWritesThem) {
    const auto item = makeText(QStringLiteral("kept"), 1);
    item->setImageData(QByteArray("png"));
    m_context.insert(item);
    const LogCapture log;
    {
        ForeignConnection holder(storeFile());
        holder.execute("BEGIN IMMEDIATE");
        const auto failed = m_context.save();
        ASSERT_FALSE(failed);
        EXPECT_EQ(failed.error().kind, StoreError::Kind::busy);
    }
    EXPECT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(m_context.hasChanges());
    EXPECT_EQ(m_context.fetch({}).value().at(0), item);
    EXPECT_EQ(item->imageData(), QByteArray("png"));
    EXPECT_EQ(savedContents(*m_container), QStringList{});

    m_context.insert(makeText(QStringLiteral("later"), 2));
    ASSERT_TRUE(m_context.save());
    EXPECT_EQ(savedContents(*m_container), (QStringList{QStringLiteral("later"), QStringLiteral("kept")}));
    EXPECT_EQ(item->imageData(), QByteArray("png"));
}

TEST_F(StoreFaultsTest, ADeletionThatCannotBeSavedStandsInMemoryAndIsSavedLater) {
    const auto item = makeText(QStringLiteral("a"), 1);
    m_context.insert(item);
    ASSERT_TRUE(m_context.save());
    const LogCapture log;
    {
        ForeignConnection holder(storeFile());
        holder.execute("BEGIN IMMEDIATE");
        m_context.remove(*item);
        ASSERT_FALSE(m_context.save());
        EXPECT_EQ(m_context.fetchCount({}).value(), 0u);
        EXPECT_EQ(savedContents(*m_container), QStringList{QStringLiteral("a")});
    }
    ASSERT_TRUE(m_context.save());
    EXPECT_EQ(savedContents(*m_container), QStringList{});
}

TEST_F(StoreFaultsTest, TheDatabaseIsSetUpToLoseAndLeakNothing) {
    m_context.insert(makeText(QStringLiteral("a"), 1));
    ASSERT_TRUE(m_context.save());
    // These hold for a connection, so one that is set up as the store's own is asked.
    sqlite::Connection own(storeFile(), std::chrono::seconds{1});
    Schema::prepare(own);
    const auto pragma = [&](const char* sql) {
        sqlite::Statement statement(own, sql);
        EXPECT_TRUE(statement.step());
        return statement.text(0);
    };
    EXPECT_EQ(pragma("PRAGMA journal_mode"), u"wal");
    EXPECT_EQ(pragma("PRAGMA synchronous"), u"2");
    EXPECT_EQ(pragma("PRAGMA secure_delete"), u"1");
    EXPECT_EQ(pragma("PRAGMA foreign_keys"), u"1");

    ForeignConnection reader(storeFile());
    EXPECT_EQ(reader.value(
                  "SELECT count(*) FROM sqlite_schema WHERE type = 'index' AND tbl_name = 'ClipboardItem'"),
              u"0");
    EXPECT_EQ(reader.value("SELECT group_concat(name) FROM pragma_table_info('ClipboardItem')"),
              u"id,content,rawType,width,height,fileURLString,fileSize,createdAt,sourceApp,pinned,ocrText,"
              u"rawSource,"
              u"imageData");
    EXPECT_EQ(reader.value("SELECT group_concat(name) FROM pragma_table_info('KovaCollection')"),
              u"id,name,createdAt,sortOrder,icon,colorHex");
}

TEST_F(StoreFaultsTest, WhatIsDeletedIsNotLeftReadableInTheFile) {
    int deletions = 0;
    m_container->onRowsDeleted = [&] { ++deletions; };
    const auto item = makeText(QStringLiteral("very-secret-words"), 1);
    m_context.insert(item);
    ASSERT_TRUE(m_context.save());
    m_context.remove(*item);
    ASSERT_TRUE(m_context.save());
    EXPECT_EQ(deletions, 1);
    EXPECT_TRUE(m_container->scrub());
    for (const auto& name : {storeFile(), storeFile() + QStringLiteral("-wal")}) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_FALSE(file.readAll().contains("very-secret-words")) << name.toStdString();
    }
}

TEST_F(StoreFaultsTest, ClearingTheLogWaitsForNoReaderAndSaysThatItIsNotDone) {
    const auto item = makeText(QStringLiteral("very-secret-words"), 1);
    m_context.insert(item);
    ASSERT_TRUE(m_context.save());
    ForeignConnection reader(storeFile());
    reader.execute("BEGIN");
    ASSERT_EQ(reader.value("SELECT count(*) FROM ClipboardItem"), u"1");
    m_context.remove(*item);
    ASSERT_TRUE(m_context.save());
    const LogCapture log;
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(m_container->scrub());
    // A step that waits does so for a second.
    EXPECT_LT(timer.elapsed(), 500);
    EXPECT_EQ(log.lines(), QStringList()) << "a reader is no fault";
    reader.execute("COMMIT");
    EXPECT_TRUE(m_container->scrub());
    QFile wal(storeFile() + QStringLiteral("-wal"));
    ASSERT_TRUE(wal.open(QIODevice::ReadOnly));
    EXPECT_FALSE(wal.readAll().contains("very-secret-words"));
}

TEST_F(StoreFaultsTest, AWriteStillWaitsForOthersAfterTheLogWasCleared) {
    ASSERT_TRUE(m_container->scrub());
    ForeignConnection writer(storeFile());
    writer.execute("BEGIN IMMEDIATE");
    QElapsedTimer timer;
    timer.start();
    m_context.insert(makeText(QStringLiteral("words"), 1));
    EXPECT_FALSE(m_context.save());
    EXPECT_GE(timer.elapsed(), 100);
}

TEST_F(StoreFaultsTest, AFailedDeletionLeavesNoPictureBehindInOtherHandles) {
    const auto item = makeText(QStringLiteral("Image"), 1);
    item->setImageData(QByteArray("first"));
    m_context.insert(item);
    ASSERT_TRUE(m_context.save());
    ModelContext elsewhere(*m_container);
    ModelContext third(*m_container);
    const auto held = elsewhere.item(item->id());
    const LogCapture log;
    {
        ForeignConnection holder(storeFile());
        holder.execute("BEGIN IMMEDIATE");
        const auto doomed = third.item(item->id());
        third.remove(*doomed);
        ASSERT_FALSE(third.save());
    }
    item->setImageData(QByteArray("second"));
    ASSERT_TRUE(m_context.save());
    EXPECT_EQ(held->imageData(), QByteArray("second"));
}

TEST_F(StoreFaultsTest, AnItemTooLargeForTheStoreIsDroppedAndCostsTheOthersNothing) {
    const auto item = makeText(QStringLiteral("Image"), 1);
    item->setImageData(QByteArray(1'000'000'000, '\0'));
    m_context.insert(item);
    m_context.insert(makeText(QStringLiteral("small"), 2));
    const LogCapture log;
    ASSERT_TRUE(m_context.save());
    EXPECT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(item->isDeleted());
    EXPECT_EQ(savedContents(*m_container), QStringList{QStringLiteral("small")});
}

} // namespace
} // namespace kestrova
