#include "tests/desktop/ClipboardReader.h"
#include "tests/desktop/DesktopTest.h"
#include "tests/desktop/Pictures.h"

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

class WriteBackTest : public DesktopTest {
protected:
    void SetUp() override { ASSERT_TRUE(program.start()); }

    /// Waits for the one row of what was just copied, puts something else on the clipboard and copies the row
    /// back.
    void copyBackTheOnlyRow() {
        ASSERT_TRUE(program.waitForRows(1));
        m_id = program.newestRow()[u"id"].toString();
        copyText("something else");
        ASSERT_TRUE(program.waitForRows(2));
        ASSERT_EQ(program.command({u"copy"_s, m_id}).exitStatus, 0);
    }
    QByteArray pasted(const QString& target) {
        return session.run(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-t"_s, target, u"-o"_s})
            .standardOutput;
    }
    /// What the program wrote itself made no row: the next foreign copy stands right above the two rows.
    void expectNoNewRow(const QString& first) {
        copyText("the last");
        ASSERT_TRUE(program.waitForNewest(u"the last"_s));
        EXPECT_EQ(program.contents(), (QStringList{u"the last"_s, u"something else"_s, first}));
    }

private:
    QString m_id;
};

TEST_F(WriteBackTest, ATextIsPastedAsItWasCopied) {
    copyText("Zeile eins\n  Zeile zwei 하나\n");
    copyBackTheOnlyRow();
    EXPECT_EQ(pasted(u"UTF8_STRING"_s), "Zeile eins\n  Zeile zwei 하나\n");
    expectNoNewRow(u"Zeile eins\n  Zeile zwei 하나\n"_s);
}

TEST_F(WriteBackTest, APictureIsPastedByteForByte) {
    const QByteArray picture = pngPicture({300, 200}, 8);
    copy({.offers = {{.target = "image/png", .bytes = picture}}});
    copyBackTheOnlyRow();
    EXPECT_TRUE(pasted(u"image/png"_s) == picture);
    expectNoNewRow(u"Image"_s);
}

TEST_F(WriteBackTest, AFileIsPastedAsAReferenceToIt) {
    const QString file = session.writeFile(u"home/a report.txt"_s, "report");
    copy({.offers = {
              {.target = "text/uri-list", .bytes = "file://" + file.toUtf8().replace(" ", "%20") + "\r\n"}}});
    copyBackTheOnlyRow();
    EXPECT_EQ(pasted(u"text/uri-list"_s).trimmed(), "file://" + file.toUtf8().replace(" ", "%20"));
    expectNoNewRow(file);
}

TEST_F(WriteBackTest, AKeeperThatTakesOverWhatTheProgramWroteMakesNoRow) {
    copyText("kept by a keeper");
    copyBackTheOnlyRow();
    const qint64 count = program.changeCount();
    const SelectionScript all = ClipboardReader(session.display()).readAll();
    ASSERT_FALSE(all.offers.empty());
    const SelectionOwner& keeper = copy(all);
    ASSERT_TRUE(eventually([&keeper] { return keeper.requestsFor("UTF8_STRING") > 0; }));
    expectNoNewRow(u"kept by a keeper"_s);
    EXPECT_EQ(program.changeCount(), count + 1);
}

TEST_F(WriteBackTest, TheCounterHasMovedByOneWhenACopyReturns) {
    copyText("counted");
    ASSERT_TRUE(program.waitForRows(1));
    const QString id = program.newestRow()[u"id"].toString();
    const qint64 count = program.changeCount();
    ASSERT_EQ(program.command({u"copy"_s, id}).exitStatus, 0);
    EXPECT_EQ(program.changeCount(), count + 1);
}

TEST_F(WriteBackTest, AnotherProgramTakesTheClipboardBack) {
    copyText("first");
    copyBackTheOnlyRow();
    copyText("taken back");
    EXPECT_EQ(pasted(u"UTF8_STRING"_s), "taken back");
    ASSERT_TRUE(program.waitForNewest(u"taken back"_s));
}

} // namespace
} // namespace kestrova::test
