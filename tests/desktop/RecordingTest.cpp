#include "tests/desktop/DesktopTest.h"
#include "tests/desktop/Pictures.h"

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

class RecordingTest : public DesktopTest {
protected:
    void copyAndWait(const QByteArray& text) {
        copyText(text);
        ASSERT_TRUE(program.waitForNewest(QString::fromUtf8(text)));
    }
    /// Copies and waits until the program has read it, whether it makes a row of it or not.
    void copyAndWaitUntilRead(SelectionScript script) {
        const qint64 count = program.changeCount();
        copy(std::move(script));
        ASSERT_TRUE(eventually([this, count] { return program.changeCount() == count + 1; }));
    }
    /// Copies something that can be recorded whatever came before, and waits for it: all that was copied
    /// earlier has then been looked at.
    void copyTheLast() { copyAndWait("the last"); }
};

TEST_F(RecordingTest, WhatIsOnTheClipboardAtStartIsNotRecorded) {
    copyText("from before");
    ASSERT_TRUE(program.start());
    copyTheLast();
    EXPECT_EQ(program.contents(), QStringList{u"the last"_s});
}

TEST_F(RecordingTest, CopyingABAMakesThreeRows) {
    ASSERT_TRUE(program.start());
    copyAndWait("A");
    copyAndWait("B");
    copyAndWait("A");
    EXPECT_EQ(program.contents(), (QStringList{u"A"_s, u"B"_s, u"A"_s}));
}

TEST_F(RecordingTest, CopyingTheSameTextTwiceMakesOneRowAndTheFirstTimeStays) {
    ASSERT_TRUE(program.start());
    copyAndWait("same");
    const QJsonObject first = program.newestRow();
    copyAndWaitUntilRead(plainText("same"));
    copyTheLast();
    const QJsonArray rows = program.rows();
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[1].toObject(), first);
}

TEST_F(RecordingTest, TwoDifferentBitmapsInARowMakeOneRow) {
    ASSERT_TRUE(program.start());
    copy({.offers = {{.target = "image/png", .bytes = pngPicture({20, 10}, 1)}}});
    ASSERT_TRUE(program.waitForRows(1));
    copyAndWaitUntilRead({.offers = {{.target = "image/png", .bytes = pngPicture({30, 30}, 2)}}});
    copyTheLast();
    EXPECT_EQ(program.contents(), (QStringList{u"the last"_s, u"Image"_s}));
    EXPECT_EQ(program.rows()[1][u"width"].toInt(), 20);
}

TEST_F(RecordingTest, APictureComesBeforeTheTextBesideIt) {
    ASSERT_TRUE(program.start());
    copyAndWaitUntilRead({.offers = {{.target = "UTF8_STRING", .bytes = "beside"},
                                     {.target = "image/png", .bytes = pngPicture({20, 10}, 1)}}});
    copyTheLast();
    EXPECT_EQ(program.contents(), (QStringList{u"the last"_s, u"Image"_s}));
}

TEST_F(RecordingTest, AFileComesBeforeThePictureBesideIt) {
    ASSERT_TRUE(program.start());
    const QString file = session.writeFile(u"home/report.txt"_s, "report");
    copyAndWaitUntilRead(
        {.offers = {{.target = "image/png", .bytes = pngPicture({20, 10}, 1)},
                    {.target = "text/uri-list", .bytes = "file://" + file.toUtf8() + "\r\n"}}});
    copyTheLast();
    EXPECT_EQ(program.contents(), (QStringList{u"the last"_s, file}));
}

TEST_F(RecordingTest, AFileListThatEndsInAZeroByteIsReadWithoutIt) {
    ASSERT_TRUE(program.start());
    const QString file = session.writeFile(u"home/report.txt"_s, "report");
    copyAndWaitUntilRead(
        {.offers = {{.target = "text/uri-list", .bytes = "file://" + file.toUtf8() + '\0'}}});
    copyTheLast();
    EXPECT_EQ(program.contents(), (QStringList{u"the last"_s, file}));
}

TEST_F(RecordingTest, RichTextBesideTextIsNotedButNotRead) {
    ASSERT_TRUE(program.start());
    SelectionScript script = plainText("plain form");
    script.offers.push_back({.target = "text/rtf", .bytes = "{\\rtf1 rich form}"});
    const auto& owner = copy(script);
    ASSERT_TRUE(program.waitForNewest(u"plain form"_s));
    EXPECT_EQ(program.newestRow()[u"rawType"].toString(), u"rtf"_s);
    EXPECT_EQ(owner.requestsFor("text/rtf"), 0);
}

TEST_F(RecordingTest, AnEmptyTextMakesNoRowAndBlanksMakeOne) {
    ASSERT_TRUE(program.start());
    copyAndWaitUntilRead(plainText(""));
    copyAndWait("  ");
    EXPECT_EQ(program.contents(), QStringList{u"  "_s});
}

TEST_F(RecordingTest, ALargePictureComesThroughWhole) {
    ASSERT_TRUE(program.start());
    const QByteArray picture = noisyPng({1600, 1000}, 4);
    copy({.offers = {{.target = "image/png", .bytes = picture}}});
    ASSERT_TRUE(program.waitForRows(1));
    const ProcessResult got =
        program.command({u"get"_s, program.newestRow()[u"id"].toString(), u"--image"_s, u"-"_s});
    EXPECT_TRUE(got.standardOutput == picture);
}

TEST_F(RecordingTest, WhileRecordingIsOffCopiesMakeNoRowsAndTurningItOnDoesNotBringThemBack) {
    ASSERT_TRUE(program.start());
    copyAndWait("before");
    const QString before = program.newestRow()[u"id"].toString();

    program.editDefault(u"monitorEnabled"_s, false);
    ASSERT_TRUE(eventually([this] { return program.status()[u"monitorEnabled"] == QJsonValue(false); }));
    copyAndWaitUntilRead(plainText("unseen"));
    // A write of the program's own looks at all that waits first.
    ASSERT_EQ(program.command({u"copy"_s, before}).exitStatus, 0);

    program.editDefault(u"monitorEnabled"_s, true);
    ASSERT_TRUE(eventually([this] { return program.status()[u"monitorEnabled"] == QJsonValue(true); }));
    copyTheLast();
    EXPECT_EQ(program.contents(), (QStringList{u"the last"_s, u"before"_s}));
}

TEST_F(RecordingTest, AnEditOfTheHistoryLimitTakesHoldAtTheNextCopy) {
    ASSERT_TRUE(program.start());
    for (const char* text : {"one", "two", "three", "four"})
        copyAndWait(text);
    ASSERT_EQ(program.command({u"pin"_s, program.rows().last()[u"id"].toString()}).exitStatus, 0);
    program.editDefault(u"historyLimit"_s, 2);
    EXPECT_EQ(program.rows().size(), 4);
    // The edit holds from the first copy after the program has noticed it.
    int copies = 0;
    ASSERT_TRUE(eventually([this, &copies] {
        copyText("x" + QByteArray::number(++copies));
        return eventually([this] { return program.rows().size() == 3; }, std::chrono::milliseconds(500));
    }));
    EXPECT_EQ(program.contents().last(), u"one"_s);
}

TEST_F(RecordingTest, CopiesMadeBeforeAQuitAreThereAfterTheNextStart) {
    ASSERT_TRUE(program.start());
    copyAndWait("kept");
    const QJsonArray before = program.rows();
    ASSERT_TRUE(program.quit());
    ASSERT_TRUE(program.start());
    EXPECT_EQ(program.rows(), before);
}

} // namespace
} // namespace kestrova::test
