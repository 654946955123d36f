#include "Platform/x11/FileType.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class FileTypeTest : public ::testing::Test {
protected:
    QString put(const QString& name, const QByteArray& bytes) const {
        const auto path = m_directory.filePath(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(bytes), bytes.size());
        return path;
    }
    static QString typeOf(const QString& path) {
        return typeOfFile(path, lookAtFile(QFile::encodeName(path), FirstBytes::asWell)).name();
    }

    const QTemporaryDir m_directory;
};

TEST_F(FileTypeTest, ANameThatTellsTheTypeDecides) {
    EXPECT_EQ(typeOf(put(u"메모.txt"_s, "\x89PNG\r\n\x1a\n")), u"text/plain"_s);
}

TEST_F(FileTypeTest, WithoutSuchANameTheContentDecides) {
    EXPECT_EQ(typeOf(put(u"picture"_s, "\x89PNG\r\n\x1a\n")), u"image/png"_s);
    EXPECT_EQ(typeOf(put(u"words"_s, "some words\n")), u"text/plain"_s);
}

TEST_F(FileTypeTest, AFileThatIsNotThereIsWhatItsNameSays) {
    EXPECT_EQ(typeOf(m_directory.filePath(u"gone.pdf"_s)), u"application/pdf"_s);
    EXPECT_EQ(typeOf(m_directory.filePath(u"gone"_s)), u"application/octet-stream"_s);
}

TEST_F(FileTypeTest, ALinkIsWhatItLeadsTo) {
    const auto picture = put(u"picture"_s, "\x89PNG\r\n\x1a\n");
    const auto link = m_directory.filePath(u"link"_s);
    ASSERT_TRUE(QFile::link(picture, link));
    EXPECT_EQ(typeOf(link), u"image/png"_s);
}

TEST_F(FileTypeTest, ALinkThatLeadsNowhereIsWhatItsNameSays) {
    const auto link = m_directory.filePath(u"link.pdf"_s);
    ASSERT_TRUE(QFile::link(m_directory.filePath(u"gone"_s), link));
    EXPECT_EQ(typeOf(link), u"application/pdf"_s);
}

TEST_F(FileTypeTest, AFolderIsAFolderWhateverItsName) {
    const auto folder = m_directory.filePath(u"folder.pdf"_s);
    ASSERT_EQ(::mkdir(QFile::encodeName(folder).constData(), 0700), 0);
    EXPECT_EQ(typeOf(folder), u"inode/directory"_s);
}

TEST_F(FileTypeTest, APipeIsNotWaitedFor) {
    const auto pipe = m_directory.filePath(u"pipe.txt"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_EQ(typeOf(pipe), u"inode/fifo"_s);
}

TEST_F(FileTypeTest, ASocketIsASocket) {
    const auto path = QFile::encodeName(m_directory.filePath(u"socket"_s));
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    ASSERT_LT(path.size(), qsizetype{sizeof address.sun_path});
    std::ranges::copy(path, address.sun_path);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(typeOf(QFile::decodeName(path)), u"inode/socket"_s);
    ::close(socket);
}

TEST_F(FileTypeTest, ADeviceIsADevice) {
    EXPECT_EQ(typeOf(u"/dev/null"_s), u"inode/chardevice"_s);
}

TEST_F(FileTypeTest, TheFirstBytesAreReadOnlyIfTheyAreAskedFor) {
    const auto path = QFile::encodeName(put(u"words"_s, "some words\n"));
    EXPECT_EQ(lookAtFile(path, FirstBytes::asWell).firstBytes, "some words\n");
    EXPECT_EQ(lookAtFile(path, FirstBytes::leftOut).firstBytes, std::nullopt);
}

TEST_F(FileTypeTest, ANameWithOneTypeTellsIt) {
    EXPECT_TRUE(isTypeToldByName(u"/a/b.png"_s));
    EXPECT_FALSE(isTypeToldByName(u"/a.png/b"_s));
}

TEST_F(FileTypeTest, IconsGoFromTheTypeToWhatFitsEveryFile) {
    EXPECT_EQ(iconNamesOf(typeOfFile(u"a.pdf"_s, {})),
              (QStringList{u"application-pdf"_s, u"x-office-document"_s, u"unknown"_s, u"text-x-generic"_s}));
    EXPECT_EQ(iconNamesOf(typeOfFile(u"a.sh"_s, {})),
              (QStringList{u"application-x-shellscript"_s, u"text-x-script"_s, u"text-x-generic"_s,
                           u"unknown"_s, u"text-x-generic"_s}));
    EXPECT_TRUE(iconNamesOf(typeOfFile(u"a"_s, {.kind = FileFacts::Kind::directory, .firstBytes = {}}))
                    .contains(u"folder"_s));
}

} // namespace
} // namespace kestrova
