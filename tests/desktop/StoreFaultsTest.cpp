#include "tests/desktop/CommandConnection.h"
#include "tests/desktop/DesktopTest.h"
#include "tests/desktop/SmallDisk.h"
#include "tests/desktop/StoreFile.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <optional>

namespace kestrova::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

class StoreFaultsTest : public DesktopTest {
protected:
    static constexpr QLatin1StringView kStore{"data/com.brelvane.Kestrova/store.sqlite"};

    /// A history of three rows, made by the program, which has ended.
    void makeHistory() {
        ASSERT_TRUE(program.start());
        for (const QString& text : {u"one"_s, u"two"_s, u"three"_s})
            ASSERT_EQ(program.command({u"add"_s, text}).exitStatus, 0);
        ASSERT_TRUE(program.quit());
    }

    void expectMovedAside(const QByteArray& oldBytes) {
        ASSERT_TRUE(program.start()) << program.process().standardError().toStdString();
        EXPECT_TRUE(program.rows().isEmpty());
        const QStringList backups = program.backups();
        ASSERT_EQ(backups.size(), 1);
        EXPECT_TRUE(QRegularExpression(u"^store\\.backup-\\d{10,}\\.sqlite$"_s).match(backups[0]).hasMatch())
            << backups[0].toStdString();
        EXPECT_EQ(bytesOf(program.dataFolder() + u'/' + backups[0]), oldBytes);
        EXPECT_TRUE(
            QRegularExpression(u"^\\[KovaStore\\] migration failed \\(.+\\)\\. Resetting store\\.\\n$"_s)
                .match(QString::fromUtf8(program.process().standardError()))
                .hasMatch())
            << program.process().standardError().toStdString();
        // What follows is recorded in the new store.
        copyText("a new beginning");
        EXPECT_TRUE(program.waitForNewest(u"a new beginning"_s));
    }

    void expectEndsWithOneMessage(Process& process) {
        ASSERT_TRUE(process.waitForEnd(kGenerously));
        const ProcessResult result = process.result();
        EXPECT_NE(result.exitStatus, 0);
        EXPECT_LT(result.exitStatus, 128) << "ended by a signal";
        EXPECT_EQ(result.standardError.count('\n'), 1) << result.standardError.toStdString();
        EXPECT_TRUE(result.standardError.contains("store.sqlite")) << result.standardError.toStdString();
        EXPECT_EQ(program.backups(), QStringList());
    }
};

TEST_F(StoreFaultsTest, AFirstStartMakesTheFolderAndAnEmptyHistory) {
    ASSERT_FALSE(QDir(program.dataFolder()).exists());
    ASSERT_TRUE(program.start());
    EXPECT_TRUE(QFile::exists(program.storeFile()));
    EXPECT_TRUE(program.rows().isEmpty());
    EXPECT_EQ(program.process().standardError(), "");
}

TEST_F(StoreFaultsTest, AFileThatIsNoDatabaseIsMovedAside) {
    const QByteArray garbage = QByteArray("this is no database\n").repeated(500);
    session.writeFile(kStore, garbage);
    expectMovedAside(garbage);
}

TEST_F(StoreFaultsTest, ADatabaseOfAnotherProgramIsMovedAside) {
    QDir().mkpath(program.dataFolder());
    StoreFile(program.storeFile())
        .execute("CREATE TABLE bookmark(url TEXT NOT NULL); INSERT INTO bookmark VALUES ('x')");
    expectMovedAside(bytesOf(program.storeFile()));
}

TEST_F(StoreFaultsTest, AHistoryWhoseRequiredColumnIsMissingIsMovedAside) {
    makeHistory();
    StoreFile(program.storeFile())
        .execute("ALTER TABLE ClipboardItem DROP COLUMN content; PRAGMA journal_mode=DELETE");
    expectMovedAside(bytesOf(program.storeFile()));
}

TEST_F(StoreFaultsTest, AHistoryWithADamagedFirstPageIsMovedAside) {
    makeHistory();
    QByteArray bytes = bytesOf(program.storeFile());
    bytes.replace(0, 512, QByteArray(512, '\xa5'));
    session.writeFile(kStore, bytes);
    expectMovedAside(bytes);
}

TEST_F(StoreFaultsTest, AnEmptyFileBecomesANewStore) {
    session.writeFile(kStore, "");
    ASSERT_TRUE(program.start());
    EXPECT_EQ(program.backups(), QStringList());
    EXPECT_EQ(program.process().standardError(), "");
    copyText("first");
    EXPECT_TRUE(program.waitForNewest(u"first"_s));
}

TEST_F(StoreFaultsTest, AStoreThatMayOnlyBeReadEndsTheStartAndStaysAsItIs) {
    makeHistory();
    const QByteArray before = bytesOf(program.storeFile());
    ASSERT_TRUE(QFile::setPermissions(program.storeFile(), QFile::ReadOwner));
    const auto permissions = QFile::permissions(program.storeFile());
    expectEndsWithOneMessage(program.launchObeyingFilePermissions());
    EXPECT_EQ(bytesOf(program.storeFile()), before);
    EXPECT_EQ(QFile::permissions(program.storeFile()), permissions);
}

TEST_F(StoreFaultsTest, AStoreThatMayNotBeReadEndsTheStartAndStaysAsItIs) {
    makeHistory();
    const QByteArray before = bytesOf(program.storeFile());
    ASSERT_TRUE(QFile::setPermissions(program.storeFile(), QFile::Permissions()));
    expectEndsWithOneMessage(program.launchObeyingFilePermissions());
    EXPECT_FALSE(QFile::permissions(program.storeFile()).testAnyFlags(QFile::ReadOwner | QFile::WriteOwner));
    ASSERT_TRUE(QFile::setPermissions(program.storeFile(), QFile::ReadOwner));
    EXPECT_EQ(bytesOf(program.storeFile()), before);
}

TEST_F(StoreFaultsTest, AFullDiskAtStartEndsTheStartAndEveryByteStays) {
    QDir().mkpath(program.dataFolder());
    SmallDisk disk(program.dataFolder(), 1024);
    makeHistory();
    const QByteArray before = bytesOf(program.storeFile());
    disk.fill();
    expectEndsWithOneMessage(program.launch());
    EXPECT_EQ(bytesOf(program.storeFile()), before);
    disk.makeRoom();
    ASSERT_TRUE(program.start());
    EXPECT_EQ(program.contents(), (QStringList{u"three"_s, u"two"_s, u"one"_s}));
}

TEST_F(StoreFaultsTest, ADiskThatIsFullForAWhileCostsNoRow) {
    QDir().mkpath(program.dataFolder());
    SmallDisk disk(program.dataFolder(), 8 * 1024);
    ASSERT_TRUE(program.start());
    copyText("one");
    ASSERT_TRUE(program.waitForRows(1));
    disk.fill();

    // Too large for whatever room the log has left.
    const QByteArray two = "two " + QByteArray(1'000'000, '2');
    const qint64 count = program.changeCount();
    copyText(two);
    ASSERT_TRUE(eventually([this, count] { return program.changeCount() == count + 1; }));
    // The counter moves on once the copy before was looked at, so the attempt to save it has then been made.
    copyText("three");
    ASSERT_TRUE(eventually([this, count] { return program.changeCount() == count + 2; }));
    EXPECT_TRUE(program.process().isRunning());
    EXPECT_EQ(StoreFile(program.storeFile()).query("SELECT count(*) FROM ClipboardItem"),
              QStringList{u"1"_s});

    disk.makeRoom();
    copyText("four");
    ASSERT_TRUE(program.waitForNewest(u"four"_s));
    const QStringList all{u"four"_s, u"three"_s, QString::fromLatin1(two), u"one"_s};
    EXPECT_TRUE(program.contents() == all) << program.contents().size() << " rows";
    ASSERT_TRUE(program.quit());
    ASSERT_TRUE(program.start());
    EXPECT_TRUE(program.contents() == all) << program.contents().size() << " rows";
    EXPECT_EQ(program.backups(), QStringList());
}

TEST_F(StoreFaultsTest, AStoreThatAnotherProcessHoldsForTwoSecondsIsWaitedFor) {
    makeHistory();
    std::optional<StoreFile> holder(program.storeFile());
    holder->execute("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE");
    Process& process = program.launch();
    EXPECT_TRUE(throughout(2s, [&process] { return process.isRunning(); }));
    EXPECT_FALSE(CommandConnection(session.busAddress()).run({u"status"_s}));
    holder.reset();
    ASSERT_TRUE(program.waitReady()) << process.standardError().toStdString();
    EXPECT_EQ(program.contents(), (QStringList{u"three"_s, u"two"_s, u"one"_s}));
    EXPECT_EQ(program.backups(), QStringList());
}

TEST_F(StoreFaultsTest, ACopyMadeWhileAnotherProcessWritesIsRecordedWhenItHasFinished) {
    ASSERT_TRUE(program.start());
    StoreFile writer(program.storeFile());
    writer.execute("BEGIN IMMEDIATE");
    const SelectionOwner& owner = copyText("in the meantime");
    ASSERT_TRUE(eventually([&owner] { return owner.requestsFor("UTF8_STRING") > 0; }));
    EXPECT_TRUE(throughout(500ms, [this] { return program.process().isRunning(); }));
    writer.execute("COMMIT");
    EXPECT_TRUE(program.waitForNewest(u"in the meantime"_s));
}

} // namespace
} // namespace kestrova::test
