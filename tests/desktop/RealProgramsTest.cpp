#include "tests/desktop/RealPrograms.h"
#include "tests/desktop/DesktopTest.h"
#include "tests/desktop/FileSearch.h"
#include "tests/desktop/Pictures.h"
#include "tests/desktop/Rows.h"

#include <QDir>
#include <QFile>
#include <QImage>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;
using namespace realPrograms;

class RealProgramsTest : public DesktopTest {
protected:
    void SetUp() override { ASSERT_TRUE(program.start()); }

    /// Waits for the newest row and compares all of it.
    void expectNewest(const QJsonObject& expected) {
        program.waitForNewest(expected[u"content"].toString());
        const QJsonObject row = program.newestRow();
        EXPECT_EQ(text(withoutIdentity(row)), text(expected));
        EXPECT_TRUE(isMomentOfTheLastMinute(row[u"createdAt"].toString())) << text(row);
    }
};

TEST_F(RealProgramsTest, TextOfAnEditorIsRecordedWithTheEditorsName) {
    copyFromEditor(session, "Grüße aus dem Editor\n하나 둘");
    expectNewest(textRow(u"Grüße aus dem Editor\n하나 둘"_s, u"text"_s, u"org.xfce.mousepad"_s));
}

TEST_F(RealProgramsTest, TextOfAProgramWithoutAWindowHasNoSourceWhenNothingIsInFront) {
    copyFromTerminal(session, "  from a pipe\n", u"UTF8_STRING"_s);
    expectNewest(textRow(u"  from a pipe\n"_s, u"text"_s, QJsonValue::Null));
}

TEST_F(RealProgramsTest, TheStatusNamesTheProgramInFront) {
    copyFromEditor(session, "a note");
    EXPECT_EQ(program.status()[u"frontmostApplication"], u"org.xfce.mousepad"_s);
}

TEST_F(RealProgramsTest, AWebAddressIsRecordedAsSuch) {
    copyFromTerminal(session, "HTTPS://example.org/a?b=c#d", u"UTF8_STRING"_s);
    expectNewest(textRow(u"HTTPS://example.org/a?b=c#d"_s, u"url"_s, QJsonValue::Null));
}

TEST_F(RealProgramsTest, AColourIsRecordedAsSuch) {
    copyFromTerminal(session, " #1e90FF\n", u"UTF8_STRING"_s);
    expectNewest(textRow(u" #1e90FF\n"_s, u"color"_s, QJsonValue::Null));
}

TEST_F(RealProgramsTest, ABitmapIsRecordedByteForByte) {
    const QByteArray picture = pngPicture({120, 80}, 3);
    copyFromTerminal(session, picture, u"image/png"_s);
    expectNewest(bitmapRow(120, 80, QJsonValue::Null));
    const QString file = session.path(u"got.png"_s);
    ASSERT_EQ(
        program.command({u"get"_s, program.newestRow()[u"id"].toString(), u"--image"_s, file}).exitStatus, 0);
    QFile got(file);
    ASSERT_TRUE(got.open(QIODevice::ReadOnly));
    EXPECT_EQ(got.readAll(), picture);
}

TEST_F(RealProgramsTest, APictureOfABrowserIsRecorded) {
    Browser browser(session);
    browser.copyPicture();
    expectNewest(bitmapRow(64, 48, u"chromium"_s));
    const QString file = session.path(u"got.png"_s);
    ASSERT_EQ(
        program.command({u"get"_s, program.newestRow()[u"id"].toString(), u"--image"_s, file}).exitStatus, 0);
    const QImage picture(file);
    EXPECT_EQ(picture.pixelColor(10, 10), QColor(0xf0, 0xa0, 0x00));
    EXPECT_EQ(picture.pixelColor(60, 40), QColor(0x20, 0x40, 0xc0));
}

TEST_F(RealProgramsTest, AnAddressCopiedInABrowserIsRecorded) {
    Browser browser(session);
    browser.copyTypedAddress(u"http://127.0.0.1:9/some/page"_s);
    expectNewest(textRow(u"http://127.0.0.1:9/some/page"_s, u"url"_s, u"chromium"_s));
}

TEST_F(RealProgramsTest, ACopiedImageFileIsRecordedWithItsPicture) {
    const QByteArray picture = pngPicture({90, 60}, 5);
    const QString file = session.writeFile(u"home/shots/a picture (1).png"_s, picture);
    copyAllInFolder(session, session.path(u"home/shots"_s));
    QJsonObject expected = fileRow(file, picture.size(), u"pcmanfm"_s);
    expected[u"rawType"_s] = u"image"_s;
    expected[u"width"_s] = 90;
    expected[u"height"_s] = 60;
    expectNewest(expected);
}

TEST_F(RealProgramsTest, AnImageFileThatDoesNotDecodeIsRecordedAsAFile) {
    const QString file = session.writeFile(u"home/broken/broken.png"_s, "no picture at all");
    copyAllInFolder(session, session.path(u"home/broken"_s));
    expectNewest(fileRow(file, 17, u"pcmanfm"_s));
}

TEST_F(RealProgramsTest, ThreeCopiedFilesMakeOneRowForTheFirst) {
    const QString first = session.writeFile(u"home/three/a 하나.txt"_s, "12345");
    session.writeFile(u"home/three/b.txt"_s, "b");
    session.writeFile(u"home/three/c.txt"_s, "c");
    copyAllInFolder(session, session.path(u"home/three"_s));
    expectNewest(fileRow(first, 5, u"pcmanfm"_s));
    EXPECT_EQ(program.rows().size(), 1);
}

TEST_F(RealProgramsTest, TextOfAWordProcessorIsRecordedAsRichText) {
    copyFromWordProcessor(session, "Dear reader");
    ASSERT_TRUE(program.waitForRows(1));
    QJsonObject row = withoutIdentity(program.newestRow());
    row[u"content"_s] = row[u"content"].toString().trimmed();
    EXPECT_EQ(text(row), text(textRow(u"Dear reader"_s, u"rtf"_s, u"abiword"_s)));
}

TEST_F(RealProgramsTest, APasswordManagersSecretIsNowhere) {
    const QString secret = u"tr0ub4dor-and-3-staples"_s;
    copyPassword(session, secret.toUtf8());
    copyText("a text of no secrecy");
    ASSERT_TRUE(program.waitForNewest(u"a text of no secrecy"_s));
    EXPECT_EQ(program.contents(), QStringList{u"a text of no secrecy"_s});
    for (const QString& folder : {program.dataFolder(), program.configFolder(), program.cacheFolder()})
        EXPECT_EQ(filesHolding(folder, secret), QStringList()) << folder.toStdString();
    EXPECT_FALSE(program.process().standardError().contains(secret.toUtf8()));
    EXPECT_FALSE(program.process().standardOutput().contains(secret.toUtf8()));
    // The search does find what is there.
    EXPECT_NE(filesHolding(program.dataFolder(), u"a text of no secrecy"_s), QStringList());
}

TEST_F(RealProgramsTest, WhatIsCopiedInOneProgramAfterTheOtherIsListedNewestFirst) {
    copyFromEditor(session, "from the editor");
    ASSERT_TRUE(program.waitForRows(1));
    copyFromTerminal(session, "rgb(1, 2, 3)", u"UTF8_STRING"_s);
    ASSERT_TRUE(program.waitForRows(2));
    copyFromTerminal(session, pngPicture({30, 20}, 9), u"image/png"_s);
    ASSERT_TRUE(program.waitForRows(3));
    const QString file = session.writeFile(u"home/one/file.txt"_s, "file");
    copyAllInFolder(session, session.path(u"home/one"_s));
    ASSERT_TRUE(program.waitForRows(4));
    copyPassword(session, "not to be seen");
    copyFromWordProcessor(session, "rich");
    ASSERT_TRUE(program.waitForRows(5));

    const QJsonArray rows = program.rows();
    QStringList kinds;
    QStringList sources;
    for (const QJsonValue row : rows) {
        kinds.append(row[u"rawType"].toString());
        sources.append(row[u"sourceApp"].toString());
    }
    EXPECT_EQ(kinds, (QStringList{u"rtf"_s, u"file"_s, u"image"_s, u"color"_s, u"text"_s}));
    // The two copies from the terminal were made while the editor was in front.
    EXPECT_EQ(sources, (QStringList{u"abiword"_s, u"pcmanfm"_s, u"org.xfce.mousepad"_s,
                                    u"org.xfce.mousepad"_s, u"org.xfce.mousepad"_s}));
}

} // namespace
} // namespace kestrova::test
