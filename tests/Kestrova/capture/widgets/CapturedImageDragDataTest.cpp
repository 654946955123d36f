#include "Kestrova/capture/widgets/CapturedImageDragData.h"

#include "Kestrova/capture/CapturedImageFiles.h"
#include "tests/support/LogCapture.h"
#include "tests/support/ManualMainQueue.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::SizeIs;

class CapturedImageDragDataTest : public testing::Test {
protected:
    int foldersWritten() const {
        return static_cast<int>(
            QDir(directory.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size());
    }

    QTemporaryDir directory;
    ManualMainQueue queue;
    CapturedImageFiles files{queue, directory.path()};
    CapturedImageDragData data{{.data = "bytes of a PNG", .suggestedName = u"a/b"_s}, files};
};

TEST_F(CapturedImageDragDataTest, OffersThePNGFirstAndThenAFile) {
    EXPECT_EQ(data.formats(), (QStringList{u"image/png"_s, u"text/uri-list"_s}));
    EXPECT_TRUE(data.hasFormat(u"image/png"_s));
    EXPECT_TRUE(data.hasUrls());
    EXPECT_FALSE(data.hasImage());
}

TEST_F(CapturedImageDragDataTest, TheBytesNeedNoFile) {
    EXPECT_EQ(data.data(u"image/png"_s), "bytes of a PNG");
    EXPECT_EQ(foldersWritten(), 0);
}

TEST_F(CapturedImageDragDataTest, TheFileIsWrittenOnceWhenSomebodyAsksForIt) {
    const auto urls = data.urls();
    ASSERT_THAT(urls, SizeIs(1));
    QFile file(urls.front().toLocalFile());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "bytes of a PNG");
    EXPECT_EQ(urls.front().fileName(), u"a-b.png");
    EXPECT_EQ(data.data(u"text/uri-list"_s), urls.front().toEncoded() + "\r\n");
    EXPECT_EQ(foldersWritten(), 1);
}

TEST_F(CapturedImageDragDataTest, AFileThatFailsLeavesTheBytes) {
    ASSERT_TRUE(QDir(directory.path()).removeRecursively());
    const LogCapture log;
    EXPECT_TRUE(data.urls().isEmpty());
    EXPECT_TRUE(data.data(u"text/uri-list"_s).isEmpty());
    EXPECT_THAT(log.lines(), SizeIs(1)) << "it is not tried again";
    EXPECT_EQ(data.data(u"image/png"_s), "bytes of a PNG");
}

TEST_F(CapturedImageDragDataTest, NothingElseIsThere) {
    EXPECT_FALSE(data.hasFormat(u"text/plain"_s));
    EXPECT_TRUE(data.data(u"image/jpeg"_s).isEmpty());
    EXPECT_EQ(foldersWritten(), 0);
}

} // namespace
} // namespace kestrova
