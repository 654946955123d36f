#include "tests/desktop/DesktopTest.h"
#include "tests/desktop/Pictures.h"
#include "tests/desktop/ProcessorTime.h"
#include "tests/desktop/ResponseProbe.h"
#include "tests/desktop/Rows.h"

#include <QFile>

#include <algorithm>

namespace kestrova::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// The most memory that the process has ever had resident.
qint64 peakKilobytes(qint64 pid) {
    QFile status(u"/proc/%1/status"_s.arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray text = status.readAll();
    const qsizetype line = text.indexOf("VmHWM:");
    return text.mid(line + 6, text.indexOf("kB", line) - line - 6).trimmed().toLongLong();
}

/// Each test lets one owner misbehave. Whatever it does, the program answers all the while, records the next
/// copy and then rests.
class MisbehavingOwnersTest : public DesktopTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(program.start());
        m_probe.emplace(session.busAddress());
    }

    /// An ordinary copy follows; then the history must hold it and, below it, `recorded`.
    void expectNothingButAfterAnOrdinaryCopy(const QStringList& recorded) {
        copyText("afterwards");
        ASSERT_TRUE(program.waitForNewest(u"afterwards"_s));
        expectPrompt(m_probe->stop());
        EXPECT_EQ(program.contents(), QStringList{u"afterwards"_s} + recorded);
        EXPECT_TRUE(becomesQuiet(program.process().pid(), 1s));
    }

    /// An owner that cannot be recorded and is still asked when the next one comes.
    void expectAsked(const SelectionOwner& owner, const QByteArray& target) {
        ASSERT_TRUE(eventually([&] { return owner.requestsFor(target) > 0; }));
    }

private:
    std::optional<ResponseProbe> m_probe;
};

TEST_F(MisbehavingOwnersTest, OneThatNeverAnswersIsGivenUp) {
    const auto& owner =
        copy({.offers = {{.target = "UTF8_STRING", .bytes = "silent"}}, .targetsAnswer = Answer::Silence});
    expectAsked(owner, "TARGETS");
    expectNothingButAfterAnOrdinaryCopy({});
}

TEST_F(MisbehavingOwnersTest, OneThatTellsItsTargetsButNeverGivesDataIsGivenUp) {
    const auto& owner =
        copy({.offers = {{.target = "UTF8_STRING", .bytes = "silent", .answer = Answer::Silence}}});
    expectAsked(owner, "UTF8_STRING");
    expectNothingButAfterAnOrdinaryCopy({});
}

TEST_F(MisbehavingOwnersTest, OneThatNeverAnswersCostsNothingWhileNobodyElseCopies) {
    const auto& owner =
        copy({.offers = {{.target = "UTF8_STRING", .bytes = "silent"}}, .targetsAnswer = Answer::Silence});
    expectAsked(owner, "TARGETS");
    // Until it is given up, the program says so once.
    EXPECT_TRUE(eventually([this] { return program.process().standardError().count('\n') == 1; }));
    EXPECT_EQ(owner.requests().size(), 1U);
    expectNothingButAfterAnOrdinaryCopy({});
}

TEST_F(MisbehavingOwnersTest, OneThatDiesInTheMiddleOfATransferLeavesNothing) {
    copy({.offers = {{.target = "UTF8_STRING",
                      .bytes = QByteArray(1'000'000, 'd'),
                      .answer = Answer::DieMidTransfer}}});
    const XConnection x(session.display());
    ASSERT_TRUE(eventually([&x] { return x.clipboardOwner() == XCB_WINDOW_NONE; }));
    expectNothingButAfterAnOrdinaryCopy({});
}

TEST_F(MisbehavingOwnersTest, OneThatStallsInTheMiddleOfATransferIsGivenUp) {
    const auto& owner = copy({.offers = {{.target = "UTF8_STRING",
                                          .bytes = QByteArray(1'000'000, 's'),
                                          .answer = Answer::StallMidTransfer}}});
    expectAsked(owner, "UTF8_STRING");
    expectNothingButAfterAnOrdinaryCopy({});
}

TEST_F(MisbehavingOwnersTest, OneThatSendsLessThanItPromisedIsRecordedWithWhatItSent) {
    copy({.offers = {{.target = "UTF8_STRING", .bytes = "a little", .promisedSize = 10'000'000}}});
    ASSERT_TRUE(program.waitForNewest(u"a little"_s));
    expectNothingButAfterAnOrdinaryCopy({u"a little"_s});
}

TEST_F(MisbehavingOwnersTest, OneThatSendsMoreThanItPromisedIsRecordedWithWhatItSent) {
    const QByteArray much(300'000, 'm');
    copy({.offers = {{.target = "UTF8_STRING", .bytes = much, .promisedSize = 10}}});
    ASSERT_TRUE(program.waitForNewest(QString::fromLatin1(much)));
    expectNothingButAfterAnOrdinaryCopy({QString::fromLatin1(much)});
}

TEST_F(MisbehavingOwnersTest, APromiseOfFourGigabytesReservesNothing) {
    copy({.offers = {{.target = "UTF8_STRING", .bytes = "tiny", .promisedSize = 0xffffffffU}}});
    ASSERT_TRUE(program.waitForNewest(u"tiny"_s));
    EXPECT_LT(peakKilobytes(program.process().pid()), 500'000);
    expectNothingButAfterAnOrdinaryCopy({u"tiny"_s});
}

TEST_F(MisbehavingOwnersTest, OneThatOffersFiftyTargetsIsAskedForTheTextAlone) {
    SelectionScript script;
    for (int number = 0; number < 49; ++number)
        script.offers.push_back(
            {.target = "application/x-odd-" + QByteArray::number(number), .bytes = "odd"});
    script.offers.push_back({.target = "UTF8_STRING", .bytes = "among fifty"});
    const auto& owner = copy(script);
    ASSERT_TRUE(program.waitForNewest(u"among fifty"_s));
    EXPECT_EQ(owner.requests(), (std::vector<QByteArray>{"TARGETS", "UTF8_STRING"}));
    expectNothingButAfterAnOrdinaryCopy({u"among fifty"_s});
}

TEST_F(MisbehavingOwnersTest, OneThatRefusesEverythingLeavesNothing) {
    const auto& owner =
        copy({.offers = {{.target = "UTF8_STRING", .bytes = "refused"}}, .targetsAnswer = Answer::Refuse});
    expectAsked(owner, "TARGETS");
    expectNothingButAfterAnOrdinaryCopy({});
}

TEST_F(MisbehavingOwnersTest, OneThatRefusesAllThatItOffersLeavesNothing) {
    const auto& owner =
        copy({.offers = {{.target = "image/png", .bytes = pngPicture({4, 4}, 1), .answer = Answer::Refuse},
                         {.target = "UTF8_STRING", .bytes = "refused", .answer = Answer::Refuse}}});
    expectAsked(owner, "UTF8_STRING");
    expectNothingButAfterAnOrdinaryCopy({});
}

TEST_F(MisbehavingOwnersTest, OneThatRefusesTheFirstRequestIsAskedAgain) {
    copy({.offers = {{.target = "UTF8_STRING", .bytes = "at second asking", .answer = Answer::RefuseFirst}}});
    ASSERT_TRUE(program.waitForNewest(u"at second asking"_s));
    expectNothingButAfterAnOrdinaryCopy({u"at second asking"_s});
}

TEST_F(MisbehavingOwnersTest, OneThatRefusesItsPictureIsRecordedWithItsText) {
    copy({.offers = {{.target = "image/png", .bytes = pngPicture({4, 4}, 1), .answer = Answer::Refuse},
                     {.target = "UTF8_STRING", .bytes = "the text"}}});
    ASSERT_TRUE(program.waitForNewest(u"the text"_s));
    expectNothingButAfterAnOrdinaryCopy({u"the text"_s});
}

TEST_F(MisbehavingOwnersTest, OneWhosePictureDoesNotDecodeIsRecordedWithItsText) {
    copy({.offers = {{.target = "image/png", .bytes = pngPicture({40, 40}, 1).left(90)},
                     {.target = "UTF8_STRING", .bytes = "the text"}}});
    ASSERT_TRUE(program.waitForNewest(u"the text"_s));
    expectNothingButAfterAnOrdinaryCopy({u"the text"_s});
}

TEST_F(MisbehavingOwnersTest, TextThatIsNoValidUtf8IsStillRecorded) {
    copy({.offers = {{.target = "UTF8_STRING", .bytes = "caf\xe9 au lait"}}});
    ASSERT_TRUE(program.waitForRows(1));
    const QString recorded = program.newestRow()[u"content"].toString();
    EXPECT_TRUE(recorded.startsWith(u"caf")) << recorded.toStdString();
    EXPECT_TRUE(recorded.endsWith(u" au lait")) << recorded.toStdString();
    expectNothingButAfterAnOrdinaryCopy({recorded});
}

} // namespace
} // namespace kestrova::test
