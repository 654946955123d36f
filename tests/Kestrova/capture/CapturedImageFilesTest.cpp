#include "Kestrova/capture/CapturedImageFiles.h"

#include "Kestrova/capture/CapturedImagePayload.h"
#include "tests/support/LogCapture.h"
#include "tests/support/ManualMainQueue.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <chrono>
#include <memory>

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class CapturedImageFilesTest : public testing::Test {
protected:
    static QStringList entries(const QString& folder) {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    QStringList folders() const { return entries(directory.path()); }
    QString path(const QString& name) const { return directory.filePath(name); }
    void makeFile(const QString& name) const {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write("bytes"), 5);
    }
    void makeFolderWithFile(const QString& name) const {
        ASSERT_TRUE(QDir().mkpath(path(name)));
        makeFile(name + u"/old.png"_s);
    }
    static QDateTime inSeconds(int seconds) { return QDateTime::currentDateTime().addSecs(seconds); }

    QTemporaryDir directory;
    ManualMainQueue queue;
    std::unique_ptr<CapturedImageFiles> files = std::make_unique<CapturedImageFiles>(queue, directory.path());
    CapturedImagePayload payload{.data = "bytes of a picture", .suggestedName = u"a/b"_s};
};

TEST_F(CapturedImageFilesTest, AFileHasTheBytesAndTheNormalisedNameInAFolderOfItsOwn) {
    const auto url = files->write(payload);
    ASSERT_TRUE(url && url->isLocalFile());
    QFile file(url->toLocalFile());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), payload.data);
    EXPECT_EQ(QFileInfo(file).fileName(), u"a-b.png");
    ASSERT_THAT(folders(), SizeIs(1));
    static const QRegularExpression expected(
        u"^KestrovaThumbnailDrag-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"_s);
    EXPECT_TRUE(expected.match(folders().front()).hasMatch()) << folders().front().toStdString();
    EXPECT_THAT(entries(path(folders().front())), ElementsAre(u"a-b.png"_s)) << "and nothing else";
}

TEST_F(CapturedImageFilesTest, NobodyElseCanReadIt) {
    const auto url = files->write(payload);
    ASSERT_TRUE(url);
    constexpr auto others = QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ExeGroup |
                            QFileDevice::ReadOther | QFileDevice::WriteOther | QFileDevice::ExeOther;
    const QFileInfo file(url->toLocalFile());
    EXPECT_EQ(file.permissions() & (others | QFileDevice::ExeOwner), QFileDevice::Permissions());
    EXPECT_EQ(QFileInfo(file.path()).permissions() & others, QFileDevice::Permissions());
}

TEST_F(CapturedImageFilesTest, EachCallMakesAnotherFile) {
    const auto first = files->write(payload);
    const auto second = files->write(payload);
    ASSERT_TRUE(first && second);
    EXPECT_NE(*first, *second);
    EXPECT_THAT(folders(), SizeIs(2));
}

TEST_F(CapturedImageFilesTest, AFileGoesTenMinutesAfterItWasWritten) {
    files->write(payload);
    queue.advance(300s);
    files->write(payload);
    queue.advance(300s - 1ms);
    EXPECT_THAT(folders(), SizeIs(2));
    queue.advance(1ms);
    EXPECT_THAT(folders(), SizeIs(1));
    queue.advance(300s);
    EXPECT_THAT(folders(), IsEmpty());
}

TEST_F(CapturedImageFilesTest, TheEndOfTheProgramTakesItAtOnce) {
    files->write(payload);
    files.reset();
    EXPECT_THAT(folders(), IsEmpty());
    queue.advance(601s);
}

TEST_F(CapturedImageFilesTest, AFolderThatSomebodyHasAddedToStaysWithWhatIsNotAFile) {
    const auto url = files->write(payload);
    ASSERT_TRUE(url);
    const auto folder = QFileInfo(url->toLocalFile()).path();
    ASSERT_TRUE(QDir(folder).mkdir(u"theirs"_s));
    const LogCapture log;
    queue.advance(600s);
    EXPECT_THAT(entries(folder), ElementsAre(u"theirs"_s));
    EXPECT_THAT(log.lines(),
                ElementsAre(u"[CapturedImageFiles] The file of a drag stays behind in %1"_s.arg(folder)));
}

TEST_F(CapturedImageFilesTest, AFolderThatHasGoneMeanwhileIsNoLossWorthALine) {
    const auto url = files->write(payload);
    ASSERT_TRUE(url);
    ASSERT_TRUE(QDir(QFileInfo(url->toLocalFile()).path()).removeRecursively());
    const LogCapture log;
    queue.advance(600s);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(CapturedImageFilesTest, WhereNothingCanBeWrittenThereIsNoFileAndItIsLogged) {
    ASSERT_TRUE(QDir(directory.path()).removeRecursively());
    const LogCapture log;
    EXPECT_FALSE(files->write(payload));
    ASSERT_THAT(log.lines(), SizeIs(1));
    EXPECT_TRUE(log.lines().front().startsWith(u"[CapturedImageFiles] No file can be written to "_s));
}

TEST_F(CapturedImageFilesTest, ANameThatIsTooLongLeavesNothingBehind) {
    payload.suggestedName = QString(300, u'n');
    const LogCapture log;
    EXPECT_FALSE(files->write(payload));
    EXPECT_THAT(folders(), IsEmpty());
    ASSERT_FALSE(log.lines().isEmpty());
    EXPECT_TRUE(log.lines().back().startsWith(u"[CapturedImageFiles] No file can be written to "_s));
}

TEST_F(CapturedImageFilesTest, WhatAKilledRunHasLeftGoesWhenItIsTenMinutesOld) {
    makeFolderWithFile(u"KestrovaThumbnailDrag-OLD"_s);
    files->removeLeftBehind(inSeconds(590));
    EXPECT_THAT(folders(), SizeIs(1));
    files->removeLeftBehind(inSeconds(610));
    EXPECT_THAT(folders(), IsEmpty());
}

TEST_F(CapturedImageFilesTest, FilesOfThisRunAreNotLeftBehind) {
    files->write(payload);
    files->removeLeftBehind(inSeconds(100'000));
    EXPECT_THAT(folders(), SizeIs(1));
}

TEST_F(CapturedImageFilesTest, NothingElseIsTakenForIt) {
    makeFolderWithFile(u"SomethingElse-1"_s);
    makeFile(u"KestrovaThumbnailDrag-FILE"_s);
    ASSERT_TRUE(QFile::link(path(u"SomethingElse-1"_s), path(u"KestrovaThumbnailDrag-LINK"_s)));
    files->removeLeftBehind(inSeconds(100'000));
    EXPECT_THAT(folders(), SizeIs(3));
    EXPECT_TRUE(QFile::exists(path(u"SomethingElse-1/old.png"_s)));
}

TEST_F(CapturedImageFilesTest, ALinkInAFolderGoesAndWhatItLeadsToStays) {
    makeFolderWithFile(u"Documents"_s);
    makeFolderWithFile(u"KestrovaThumbnailDrag-OLD"_s);
    ASSERT_TRUE(QFile::link(path(u"Documents/old.png"_s), path(u"KestrovaThumbnailDrag-OLD/link.png"_s)));
    files->removeLeftBehind(inSeconds(100'000));
    EXPECT_THAT(folders(), ElementsAre(u"Documents"_s));
    EXPECT_TRUE(QFile::exists(path(u"Documents/old.png"_s)));
}

TEST_F(CapturedImageFilesTest, ItLooksForWhatIsLeftAWhileAfterTheStart) {
    makeFolderWithFile(u"KestrovaThumbnailDrag-NEW"_s);
    queue.advance(10s);
    EXPECT_THAT(folders(), SizeIs(1)) << "it is not old enough";
    EXPECT_TRUE(queue.isEmpty());
}

} // namespace
} // namespace kestrova
