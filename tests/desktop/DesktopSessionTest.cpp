#include "tests/desktop/DesktopSession.h"
#include "tests/desktop/ClipboardReader.h"
#include "tests/desktop/Pictures.h"
#include "tests/desktop/SelectionOwner.h"
#include "tests/desktop/Waiting.h"

#include <QDir>

#include <csignal>
#include <gtest/gtest.h>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

bool isAlive(qint64 pid) {
    return ::kill(static_cast<pid_t>(pid), 0) == 0;
}

TEST(DesktopSessionTest, AProgramInItSeesNothingOfTheCallersSession) {
    qputenv("KESTROVA_TEST_LEAK", "1");
    DesktopSession session;
    const QByteArrayList seen = session.run(u"env"_s, {}).standardOutput.split('\n');
    EXPECT_TRUE(seen.contains("DISPLAY=" + session.display()));
    EXPECT_TRUE(seen.contains("DBUS_SESSION_BUS_ADDRESS=" + session.busAddress().toLatin1()));
    EXPECT_TRUE(seen.contains("HOME=" + session.path(u"home"_s).toLocal8Bit()));
    EXPECT_FALSE(seen.contains("KESTROVA_TEST_LEAK=1"));
}

TEST(DesktopSessionTest, WithoutABusThereIsNoAddress) {
    DesktopSession session(DesktopSession::Bus::None);
    EXPECT_FALSE(session.run(u"env"_s, {}).standardOutput.contains("DBUS_SESSION_BUS_ADDRESS"));
}

TEST(DesktopSessionTest, TwoSessionsHaveClipboardsOfTheirOwn) {
    DesktopSession one;
    DesktopSession other;
    const SelectionOwner ownerOfOne(one.display(), plainText("first"));
    const SelectionOwner ownerOfOther(other.display(), plainText("second"));
    EXPECT_EQ(ClipboardReader(one.display()).read("UTF8_STRING"), "first");
    EXPECT_EQ(ClipboardReader(other.display()).read("UTF8_STRING"), "second");
}

TEST(DesktopSessionTest, NothingIsLeftOfAnEndedSession) {
    QString folder;
    qint64 leftItsGroup = 0;
    {
        DesktopSession session;
        folder = session.path(u"."_s);
        Process& parent =
            session.start({.program = u"setsid"_s,
                           .arguments = {u"-f"_s, u"sh"_s, u"-c"_s, u"echo $$; exec sleep 1000"_s}});
        ASSERT_TRUE(eventually([&parent] { return parent.standardOutput().contains('\n'); }));
        leftItsGroup = parent.standardOutput().trimmed().toLongLong();
        ASSERT_TRUE(isAlive(leftItsGroup));
    }
    EXPECT_FALSE(QDir(folder).exists());
    EXPECT_FALSE(isAlive(leftItsGroup));
}

TEST(SelectionOwnerTest, ARealProgramPastesWhatItOffers) {
    DesktopSession session;
    const SelectionOwner owner(session.display(), plainText("caf\xc3\xa9"));
    EXPECT_EQ(session.run(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-o"_s}).standardOutput,
              "caf\xc3\xa9");
}

TEST(SelectionOwnerTest, LargeBytesGoByIncr) {
    DesktopSession session;
    const QByteArray picture = noisyPng({700, 500}, 1);
    ASSERT_GT(picture.size(), 1'000'000);
    const SelectionOwner owner(session.display(), {.offers = {{.target = "image/png", .bytes = picture}}});
    EXPECT_EQ(session.run(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-t"_s, u"image/png"_s, u"-o"_s})
                  .standardOutput,
              picture);
    EXPECT_EQ(ClipboardReader(session.display()).read("image/png"), picture);
}

TEST(SelectionOwnerTest, OneThatDiesMidwayTakesTheClipboardAway) {
    DesktopSession session;
    const SelectionOwner owner(session.display(), {.offers = {{.target = "UTF8_STRING",
                                                               .bytes = QByteArray(1'000'000, 'x'),
                                                               .answer = Answer::DieMidTransfer}}});
    const XConnection x(session.display());
    ASSERT_NE(x.clipboardOwner(), 0U);
    session.start({.program = u"xclip"_s, .arguments = {u"-selection"_s, u"clipboard"_s, u"-o"_s}});
    EXPECT_TRUE(eventually([&x] { return x.clipboardOwner() == 0; }));
}

TEST(SelectionOwnerTest, OneThatRefusesFirstServesTheSecondRequest) {
    DesktopSession session;
    const SelectionOwner owner(
        session.display(),
        {.offers = {{.target = "UTF8_STRING", .bytes = "late", .answer = Answer::RefuseFirst}}});
    ClipboardReader reader(session.display());
    EXPECT_EQ(reader.read("UTF8_STRING"), std::nullopt);
    EXPECT_EQ(reader.read("UTF8_STRING"), "late");
    EXPECT_EQ(owner.requestsFor("UTF8_STRING"), 2);
}

TEST(SelectionOwnerTest, AKeeperGivesTheSameBytesAgain) {
    DesktopSession session;
    const SelectionOwner first(session.display(),
                               {.offers = {{.target = "UTF8_STRING", .bytes = "kept"},
                                           {.target = "text/html", .bytes = "<b>kept</b>"}}});
    const SelectionScript all = ClipboardReader(session.display()).readAll();
    const SelectionOwner keeper(session.display(), all);
    EXPECT_TRUE(eventually([&first] { return first.isReplaced(); }));
    EXPECT_EQ(ClipboardReader(session.display()).readAll().offers, all.offers);
    EXPECT_EQ(all.offers.size(), 2U);
}

} // namespace
} // namespace kestrova::test
