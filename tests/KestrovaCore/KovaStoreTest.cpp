#include "KestrovaCore/KovaStore.h"

#include "tests/support/LogCapture.h"
#include "tests/support/StoreFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

class KovaStoreTest : public testing::Test {
protected:
    QString directory() const { return m_root.filePath(QStringLiteral("share/com.brelvane.Kestrova")); }
    QString file(const QString& name) const { return directory() + u'/' + name; }
    void write(const QString& name, const QByteArray& bytes) {
        QDir().mkpath(directory());
        QFile out(file(name));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        ASSERT_EQ(out.write(bytes), bytes.size());
    }
    QByteArray read(const QString& name) const {
        QFile in(file(name));
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }
    static Timestamp fixedNow() { return Timestamp{std::chrono::milliseconds{1'700'000'000'999}}; }
    /// Opens the store and adds a row to it.
    static void expectUsable(KovaStore& store) {
        const auto container = store.container();
        ASSERT_TRUE(container) << container.error().message.toStdString();
        ModelContext context(*container.value());
        context.insert(makeText(QStringLiteral("new"), 1));
        EXPECT_TRUE(context.save());
    }
    void makeStoreOfManyPages() {
        KovaStore store(directory());
        ASSERT_TRUE(store.container());
        ModelContext context(*store.container().value());
        for (int i = 0; i < 200; ++i)
            context.insert(makeText(QString(400, u'x'), i));
        ASSERT_TRUE(context.save());
    }
    void expectMovedAside(const QByteArray& old) {
        KovaStore store(directory(), fixedNow);
        const LogCapture log;
        expectUsable(store);
        ASSERT_EQ(log.lines().size(), 1);
        EXPECT_TRUE(log.lines()[0].startsWith(QStringLiteral("[KovaStore] migration failed (")));
        EXPECT_TRUE(log.lines()[0].endsWith(QStringLiteral("). Resetting store.")));
        EXPECT_EQ(read(QStringLiteral("store.backup-1700000000.sqlite")), old);
        EXPECT_EQ(savedContents(*store.container().value()), QStringList{QStringLiteral("new")});
    }

    QTemporaryDir m_root;
};

TEST_F(KovaStoreTest, AFirstStartMakesTheDirectoryAndAnEmptyStoreForThisUserAlone) {
    KovaStore store(directory());
    const LogCapture log;
    ASSERT_TRUE(store.container());
    EXPECT_EQ(savedContents(*store.container().value()), QStringList{});
    EXPECT_TRUE(QFileInfo::exists(store.filePath()));
    EXPECT_EQ(QFileInfo(store.filePath()).fileName(), u"store.sqlite");
    const auto othersMay = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    EXPECT_FALSE(QFileInfo(directory()).permissions() & othersMay);
    for (const auto& entry : QDir(directory()).entryInfoList(QDir::Files))
        EXPECT_FALSE(entry.permissions() & othersMay) << entry.fileName().toStdString();
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(KovaStoreTest, GivesOneContainerForItsWholeLife) {
    KovaStore store(directory());
    ASSERT_TRUE(store.container());
    EXPECT_EQ(store.container().value(), store.container().value());
}

TEST_F(KovaStoreTest, RowsSurviveARestart) {
    {
        KovaStore store(directory());
        expectUsable(store);
    }
    KovaStore store(directory());
    EXPECT_EQ(savedContents(*store.container().value()), QStringList{QStringLiteral("new")});
}

TEST_F(KovaStoreTest, AFileThatIsNoDatabaseIsMovedAsideAsItWas) {
    const QByteArray garbage = QByteArray("this is no database, ").repeated(500);
    write(QStringLiteral("store.sqlite"), garbage);
    expectMovedAside(garbage);
}

TEST_F(KovaStoreTest, ADatabaseWithAForeignSchemaIsMovedAsideAsItWas) {
    QDir().mkpath(directory());
    {
        ForeignConnection foreign(file(QStringLiteral("store.sqlite")));
        foreign.execute("CREATE TABLE Recipe (id INTEGER PRIMARY KEY, title TEXT)");
        foreign.execute("INSERT INTO Recipe (title) VALUES ('Kimchi')");
    }
    expectMovedAside(read(QStringLiteral("store.sqlite")));
}

TEST_F(KovaStoreTest, AStoreWithoutARequiredColumnIsMovedAside) {
    QDir().mkpath(directory());
    {
        ForeignConnection foreign(file(QStringLiteral("store.sqlite")));
        foreign.execute(
            "CREATE TABLE ClipboardItem (id INTEGER PRIMARY KEY AUTOINCREMENT, content TEXT NOT NULL)");
        foreign.execute("PRAGMA user_version = 1");
    }
    expectMovedAside(read(QStringLiteral("store.sqlite")));
}

TEST_F(KovaStoreTest, AStoreOfANewerVersionIsMovedAside) {
    {
        KovaStore store(directory());
        expectUsable(store);
    }
    ForeignConnection(file(QStringLiteral("store.sqlite"))).execute("PRAGMA user_version = 2");
    ForeignConnection(file(QStringLiteral("store.sqlite"))).execute("PRAGMA wal_checkpoint(TRUNCATE)");
    expectMovedAside(read(QStringLiteral("store.sqlite")));
}

TEST_F(KovaStoreTest, AStoreThatIsDamagedWithinItsRowsIsMovedAside) {
    makeStoreOfManyPages();
    auto bytes = read(QStringLiteral("store.sqlite"));
    ASSERT_GT(bytes.size(), 40000);
    bytes.replace(20000, 16000, QByteArray(16000, '\x55'));
    write(QStringLiteral("store.sqlite"), bytes);
    expectMovedAside(bytes);
}

/// Offsets and meanings as in SQLite's "Database File Format", section 1.3.
TEST_F(KovaStoreTest, AStoreInAFormatThatTheDatabaseDoesNotKnowIsMovedAside) {
    struct Row {
        int offset;
        char value;
    };
    for (const auto& [offset, value] : {Row{47, 9}, Row{18, 3}}) {
        QDir(directory()).removeRecursively();
        {
            KovaStore store(directory());
            expectUsable(store);
        }
        auto bytes = read(QStringLiteral("store.sqlite"));
        bytes[offset] = value;
        write(QStringLiteral("store.sqlite"), bytes);
        expectMovedAside(bytes);
    }
}

TEST_F(KovaStoreTest, AViewThatBearsTheNameOfATableIsAForeignSchema) {
    QDir().mkpath(directory());
    {
        ForeignConnection foreign(file(QStringLiteral("store.sqlite")));
        foreign.execute(
            "CREATE VIEW ClipboardItem AS SELECT 1 AS id, 'x' AS content, 1 AS createdAt, 0 AS pinned");
        foreign.execute("PRAGMA user_version = 1");
    }
    expectMovedAside(read(QStringLiteral("store.sqlite")));
}

TEST_F(KovaStoreTest, ATruncatedStoreIsMovedAside) {
    makeStoreOfManyPages();
    const auto half = read(QStringLiteral("store.sqlite")).left(40'000);
    write(QStringLiteral("store.sqlite"), half);
    expectMovedAside(half);
}

TEST_F(KovaStoreTest, SideFilesOfAMovedStoreAreRemoved) {
    write(QStringLiteral("store.sqlite"), QByteArray(5000, 'x'));
    write(QStringLiteral("store.sqlite-wal"), QByteArray("old log"));
    write(QStringLiteral("store.sqlite-shm"), QByteArray("old index"));
    expectMovedAside(QByteArray(5000, 'x'));
    EXPECT_NE(read(QStringLiteral("store.sqlite-wal")), "old log");
    EXPECT_NE(read(QStringLiteral("store.sqlite-shm")), "old index");
}

TEST_F(KovaStoreTest, AFileOfNoLengthIsANewStore) {
    write(QStringLiteral("store.sqlite"), QByteArray());
    KovaStore store(directory(), fixedNow);
    const LogCapture log;
    expectUsable(store);
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_TRUE(QDir(directory()).entryList({QStringLiteral("*backup*")}).isEmpty());
}

TEST_F(KovaStoreTest, AColumnThatAnOlderBuildDidNotHaveIsAdded) {
    QDir().mkpath(directory());
    {
        ForeignConnection older(file(QStringLiteral("store.sqlite")));
        older.execute(
            "CREATE TABLE ClipboardItem (id INTEGER PRIMARY KEY AUTOINCREMENT, content TEXT NOT NULL, "
            "rawType TEXT, width INTEGER, height INTEGER, fileURLString TEXT, fileSize INTEGER, "
            "createdAt INTEGER NOT NULL, sourceApp TEXT, pinned INTEGER NOT NULL, imageData BLOB)");
        older.execute(
            "CREATE TABLE KovaCollection (id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL, "
            "createdAt INTEGER NOT NULL, sortOrder INTEGER NOT NULL)");
        older.execute(
            "CREATE TABLE ClipboardItem_collections (item INTEGER NOT NULL, collection INTEGER NOT NULL)");
        older.execute("INSERT INTO ClipboardItem (content, createdAt, pinned) VALUES ('old row', 5, 1)");
        older.execute("PRAGMA user_version = 1");
    }
    KovaStore store(directory(), fixedNow);
    const LogCapture log;
    expectUsable(store);
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_EQ(savedContents(*store.container().value()),
              (QStringList{QStringLiteral("new"), QStringLiteral("old row")}));
}

TEST_F(KovaStoreTest, TwoResetsInTheSameSecondFailAndLoseNothing) {
    write(QStringLiteral("store.backup-1700000000.sqlite"), QByteArray("the first backup"));
    const QByteArray garbage(5000, 'x');
    write(QStringLiteral("store.sqlite"), garbage);
    KovaStore store(directory(), fixedNow);
    const LogCapture log;
    const auto container = store.container();
    ASSERT_FALSE(container);
    EXPECT_EQ(container.error().kind, StoreError::Kind::unusable);
    EXPECT_EQ(read(QStringLiteral("store.sqlite")), garbage);
    EXPECT_EQ(read(QStringLiteral("store.backup-1700000000.sqlite")), "the first backup");
}

TEST_F(KovaStoreTest, AFileThatCannotBeOpenedIsNotMovedAside) {
    // A folder stands where the file should be: no database will ever be read there, and nothing may be
    // thrown away.
    QDir().mkpath(file(QStringLiteral("store.sqlite/inside")));
    KovaStore store(directory(), fixedNow);
    const LogCapture log;
    const auto container = store.container();
    ASSERT_FALSE(container);
    EXPECT_NE(container.error().kind, StoreError::Kind::unusable);
    EXPECT_TRUE(QFileInfo(file(QStringLiteral("store.sqlite/inside"))).isDir());
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(KovaStoreTest, TwoProcessesMayMakeTheStoreAtOnce) {
    KovaStore a(directory());
    KovaStore b(directory());
    ASSERT_TRUE(a.container());
    ASSERT_TRUE(b.container());
    expectUsable(a);
    EXPECT_EQ(savedContents(*b.container().value()), QStringList{QStringLiteral("new")});
}

} // namespace
} // namespace kestrova
