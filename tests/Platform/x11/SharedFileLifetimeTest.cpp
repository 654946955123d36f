#include "Platform/x11/XdgSharing.h"

#include "tests/support/LogCapture.h"
#include "tests/support/ManualMainQueue.h"

#include <QDirIterator>
#include <QTemporaryDir>

#include <array>
#include <chrono>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// Files that are handed over and what becomes of them. The applications are those of whoever runs the test;
/// one that is not there gets a file all the same.
class SharedFileLifetimeTest : public ::testing::Test {
protected:
    SharedFileLifetimeTest() { start(); }

    void start() { m_sharing.emplace(m_queue, u"org.example.Kestrova"_s, m_directory); }
    QString write(const QByteArray& bytes) {
        const auto url = SharedFiles(m_directory).write(bytes, u"txt"_s);
        EXPECT_TRUE(url);
        return url->toLocalFile();
    }
    static void setAge(const QString& path, std::chrono::seconds age) {
        const auto moment = QDateTime::currentSecsSinceEpoch() - age.count();
        const std::array<timespec, 2> times{timespec{moment, 0}, timespec{moment, 0}};
        const auto folder = QFileInfo(path).path();
        ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(folder).constData(), times.data(), 0), 0);
    }

    QTemporaryDir m_cache;
    const QString m_directory = m_cache.filePath(u"Kestrova/Shared"_s);
    ManualMainQueue m_queue;
    std::optional<XdgSharing> m_sharing;
};

TEST_F(SharedFileLifetimeTest, ThoseThatAnEarlierProgramLeftBehindGoSoonAfterTheStart) {
    const auto left = write("left behind");
    setAge(left, 1min);
    m_queue.advance(9s);
    EXPECT_TRUE(QFile::exists(left));
    m_queue.advance(1s);
    EXPECT_FALSE(QFile::exists(left));
    EXPECT_TRUE(m_queue.isEmpty()) << "there is nothing more to look after";
}

TEST_F(SharedFileLifetimeTest, ThoseOfThisRunGoWhenTheyAreAnHourOldAndNotBefore) {
    const auto older = write("older");
    const auto newer = write("newer");
    m_queue.advance(10s);
    EXPECT_TRUE(QFile::exists(older)) << "it was written since the start";
    setAge(older, 61min);
    setAge(newer, 59min);
    m_queue.advance(59min);
    EXPECT_TRUE(QFile::exists(older));
    m_queue.advance(1min);
    EXPECT_FALSE(QFile::exists(older));
    EXPECT_TRUE(QFile::exists(newer));
    setAge(newer, 61min);
    m_queue.advance(1h);
    EXPECT_FALSE(QFile::exists(newer));
    EXPECT_TRUE(m_queue.isEmpty());
}

TEST_F(SharedFileLifetimeTest, AllGoWithTheProgram) {
    const auto recent = write("recent");
    m_sharing.reset();
    EXPECT_FALSE(QFile::exists(recent));
    EXPECT_TRUE(m_queue.isEmpty());
}

} // namespace
} // namespace kestrova
