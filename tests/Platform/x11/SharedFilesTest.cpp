#include "Platform/x11/SharedFiles.h"

#include "tests/support/LogCapture.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>
#include <fcntl.h>
#include <sys/stat.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class SharedFilesTest : public ::testing::Test {
protected:
    static unsigned modeOf(const QString& path) {
        struct stat status {};
        EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
        return status.st_mode & 0777;
    }
    static QByteArray bytesOf(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    static void setAge(const QString& path, qint64 seconds) {
        const auto moment = QDateTime::currentSecsSinceEpoch() - seconds;
        const std::array<timespec, 2> times{timespec{moment, 0}, timespec{moment, 0}};
        ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times.data(), 0), 0);
    }

    QTemporaryDir m_cache;
    const QString m_directory = m_cache.filePath(u"Kestrova/Shared"_s);
    const SharedFiles m_files{m_directory};
};

TEST_F(SharedFilesTest, AFileHoldsTheBytesAndOnlyThePersonCanReadIt) {
    const auto url = m_files.write("secret", u"txt"_s);
    ASSERT_TRUE(url);
    const QFileInfo file(url->toLocalFile());
    EXPECT_EQ(bytesOf(file.filePath()), "secret");
    EXPECT_EQ(modeOf(file.filePath()), 0600U);
    EXPECT_EQ(modeOf(file.path()), 0700U);
    EXPECT_EQ(modeOf(m_directory), 0700U);
}

TEST_F(SharedFilesTest, TheNameTellsProgramMomentAndKind) {
    const auto url = m_files.write("bytes", u"png"_s);
    ASSERT_TRUE(url);
    EXPECT_TRUE(QRegularExpression(u"^Kestrova \\d{4}-\\d\\d-\\d\\d \\d\\d\\.\\d\\d\\.\\d\\d\\.png$"_s)
                    .match(url->fileName())
                    .hasMatch())
        << url->fileName().toStdString();
}

TEST_F(SharedFilesTest, TwoWithinASecondDoNotMeet) {
    const auto first = m_files.write("1", u"txt"_s);
    const auto second = m_files.write("2", u"txt"_s);
    ASSERT_TRUE(first && second);
    EXPECT_EQ(bytesOf(first->toLocalFile()), "1");
    EXPECT_EQ(bytesOf(second->toLocalFile()), "2");
}

TEST_F(SharedFilesTest, NothingIsMadeUntilAFileIsWritten) {
    EXPECT_FALSE(m_files.removeWrittenBefore(QDateTime::currentDateTime()));
    EXPECT_FALSE(QFileInfo::exists(m_directory));
}

TEST_F(SharedFilesTest, ThoseThatWereWrittenBeforeTheMomentGoAndTheOthersStay) {
    const auto old = m_files.write("old", u"txt"_s);
    const auto recent = m_files.write("recent", u"txt"_s);
    ASSERT_TRUE(old && recent);
    setAge(QFileInfo(old->toLocalFile()).path(), 100);
    EXPECT_TRUE(m_files.removeWrittenBefore(QDateTime::currentDateTime().addSecs(-50)));
    EXPECT_FALSE(QFileInfo::exists(QFileInfo(old->toLocalFile()).path()));
    EXPECT_TRUE(QFileInfo::exists(recent->toLocalFile()));
    EXPECT_FALSE(m_files.removeWrittenBefore(QDateTime::currentDateTime().addSecs(50)));
    EXPECT_FALSE(QFileInfo::exists(recent->toLocalFile()));
}

TEST_F(SharedFilesTest, InTheEndAllOfThemGo) {
    ASSERT_TRUE(m_files.write("words", u"txt"_s));
    m_files.removeAll();
    EXPECT_FALSE(QFileInfo::exists(m_directory));
}

TEST_F(SharedFilesTest, ADirectoryThatCannotBeMadeIsLoggedWithoutTheContent) {
    QFile obstacle(m_cache.filePath(u"Kestrova"_s));
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    const LogCapture log;
    EXPECT_FALSE(m_files.write("secret", u"txt"_s));
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_FALSE(log.lines().first().contains(u"secret"_s));
}

} // namespace
} // namespace kestrova
