#include "tests/support/LogCapture.h"
#include "tests/support/StoreFixture.h"

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
    ForeignConnection reader(storeFile());
    EXPECT_EQ(reader.value("PRAGMA journal_mode"), u"wal");
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
    const auto item = makeText(QStringLiteral("very-secret-words"), 1);
    m_context.insert(item);
    ASSERT_TRUE(m_context.save());
    m_context.remove(*item);
    ASSERT_TRUE(m_context.save());
    ForeignConnection(storeFile()).execute("PRAGMA wal_checkpoint(TRUNCATE)");
    QFile file(storeFile());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_FALSE(file.readAll().contains("very-secret-words"));
}

} // namespace
} // namespace kestrova
