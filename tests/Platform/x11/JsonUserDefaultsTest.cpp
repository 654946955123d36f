#include "Platform/x11/JsonUserDefaults.h"

#include "tests/support/LogCapture.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

class JsonUserDefaultsTest : public testing::Test {
protected:
    QString path() const { return m_directory.filePath(QStringLiteral("config/defaults.json")); }
    void writeByHand(const QByteArray& bytes) {
        QDir().mkpath(QFileInfo(path()).path());
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }
    QByteArray read() const {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Lets events come in until `happened`, or for ten seconds.
    template<typename Happened>
    static bool eventually(Happened happened) {
        for (const QDeadlineTimer deadline(10'000); !happened() && !deadline.hasExpired();)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        return happened();
    }

    const QString key = QStringLiteral("key");
    QTemporaryDir m_directory;
};

TEST_F(JsonUserDefaultsTest, ValuesAreKeptAcrossStarts) {
    {
        JsonUserDefaults defaults(path());
        EXPECT_TRUE(defaults.object(key).isUndefined());
        defaults.set(key, QStringLiteral("값"));
        defaults.set(QStringLiteral("number"), 2000);
        defaults.set(QStringLiteral("gone"), true);
        defaults.set(QStringLiteral("gone"), QJsonValue::Undefined);
    }
    const JsonUserDefaults defaults(path());
    EXPECT_EQ(defaults.text(key), QStringLiteral("값"));
    EXPECT_EQ(defaults.integer(QStringLiteral("number")), 2000);
    EXPECT_TRUE(defaults.object(QStringLiteral("gone")).isUndefined());
    EXPECT_FALSE(QFileInfo(path()).permissions() & (QFile::ReadGroup | QFile::ReadOther));
}

TEST_F(JsonUserDefaultsTest, KeepsKeysThatItDoesNotKnow) {
    writeByHand(R"({"fromTheFuture": {"nested": [1, 2]}})");
    JsonUserDefaults(path()).set(key, 1);
    EXPECT_TRUE(read().contains("fromTheFuture"));
    EXPECT_TRUE(read().contains("nested"));
}

TEST_F(JsonUserDefaultsTest, TakesUpAnEditOfTheFileAndTellsOfIt) {
    JsonUserDefaults defaults(path());
    int told = 0;
    const auto observation = defaults.observe(key, [&] { ++told; });
    writeByHand(R"({"key": false})");
    EXPECT_TRUE(eventually([&] { return defaults.boolean(key) == false; }));
    EXPECT_EQ(told, 1);
    // Editors replace the file as often as they write into it.
    QFile::remove(path());
    writeByHand(R"({"key": true})");
    EXPECT_TRUE(eventually([&] { return defaults.boolean(key) == true; }));
    QFile::remove(path());
    EXPECT_TRUE(eventually([&] { return defaults.object(key).isUndefined(); }));
}

TEST_F(JsonUserDefaultsTest, AFileThatCannotBeUnderstoodIsKeptBesideTheNewOne) {
    writeByHand("{ this is no JSON");
    const LogCapture log;
    JsonUserDefaults defaults(path());
    EXPECT_TRUE(defaults.object(key).isUndefined());
    EXPECT_EQ(log.lines().size(), 1);
    EXPECT_EQ(read(), "{ this is no JSON");
    defaults.set(key, 1);
    EXPECT_EQ(JsonUserDefaults(path()).integer(key), 1);
    const auto kept = QDir(QFileInfo(path()).path()).entryList({QStringLiteral("defaults.json.broken-*")});
    ASSERT_EQ(kept.size(), 1);
    QFile file(QFileInfo(path()).dir().filePath(kept[0]));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "{ this is no JSON");
}

TEST_F(JsonUserDefaultsTest, AnEditThatBreaksTheFileLeavesTheValuesAsTheyWere) {
    JsonUserDefaults defaults(path());
    defaults.set(key, 1);
    const LogCapture log;
    writeByHand("{");
    EXPECT_TRUE(eventually([&] { return !log.lines().isEmpty(); }));
    EXPECT_EQ(defaults.integer(key), 1);
}

TEST_F(JsonUserDefaultsTest, AChangeWhileAnEditorHasEmptiedOrRemovedTheFileKeepsTheOtherValues) {
    JsonUserDefaults defaults(path());
    defaults.set(key, 1);
    writeByHand("");
    defaults.set(QStringLiteral("second"), 2);
    QFile::remove(path());
    defaults.set(QStringLiteral("third"), 3);
    const JsonUserDefaults read(path());
    EXPECT_EQ(read.integer(key), 1);
    EXPECT_EQ(read.integer(QStringLiteral("second")), 2);
    EXPECT_EQ(read.integer(QStringLiteral("third")), 3);
}

TEST_F(JsonUserDefaultsTest, ValuesThatCannotBeWrittenHoldUntilTheEndAndAreWrittenAsSoonAsThatWorks) {
    // A file stands where the folder should be.
    QFile obstacle(m_directory.filePath(QStringLiteral("config")));
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    const LogCapture log;
    JsonUserDefaults defaults(path());
    defaults.set(key, 1);
    defaults.set(QStringLiteral("second"), 2);
    EXPECT_EQ(defaults.integer(key), 1);
    EXPECT_EQ(defaults.integer(QStringLiteral("second")), 2);
    EXPECT_EQ(log.lines().size(), 2);
    obstacle.remove();
    writeByHand(R"({"byHand": true, "key": 7})");
    defaults.set(QStringLiteral("third"), 3);
    const JsonUserDefaults read(path());
    EXPECT_EQ(read.integer(key), 1);
    EXPECT_EQ(read.integer(QStringLiteral("second")), 2);
    EXPECT_EQ(read.integer(QStringLiteral("third")), 3);
    EXPECT_EQ(read.boolean(QStringLiteral("byHand")), true);
}

TEST_F(JsonUserDefaultsTest, AValueThatCannotBeWrittenHoldsUntilTheEndAndIsLogged) {
    // A folder stands where the file should be.
    QDir().mkpath(path());
    const LogCapture log;
    JsonUserDefaults defaults(path());
    defaults.set(key, 1);
    EXPECT_EQ(defaults.integer(key), 1);
    EXPECT_FALSE(log.lines().isEmpty());
}

} // namespace
} // namespace kestrova
