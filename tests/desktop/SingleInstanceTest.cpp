#include "tests/desktop/DesktopTest.h"

#include <algorithm>
#include <csignal>
#include <vector>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

class SingleInstanceTest : public DesktopTest {
protected:
    static constexpr QLatin1StringView kEndedCleanly{"diagnostics.lastSessionEndedCleanly"};
};

TEST_F(SingleInstanceTest, ASecondStartEndsAndTheFirstRunsOn) {
    ASSERT_TRUE(program.start());
    const qint64 first = program.process().pid();
    const ProcessResult second = program.command({});
    EXPECT_EQ(second.exitStatus, 0);
    EXPECT_EQ(program.status()[u"pid"].toInteger(), first);
}

TEST_F(SingleInstanceTest, OfManyStartsAtOnceOneRuns) {
    std::vector<Process*> started;
    for (int number = 0; number < 5; ++number)
        started.push_back(&program.launch());
    const auto running = [&started] {
        return std::ranges::count_if(started, [](Process* process) { return process->isRunning(); });
    };
    ASSERT_TRUE(eventually([this] { return program.isReady(); }));
    EXPECT_TRUE(eventually([&running] { return running() == 1; }));
    const auto survivor =
        std::ranges::find_if(started, [](Process* process) { return process->isRunning(); });
    ASSERT_NE(survivor, started.end());
    EXPECT_EQ(program.status()[u"pid"].toInteger(), (*survivor)->pid());
}

TEST_F(SingleInstanceTest, AStartAfterAKillIsNotHinderedByWhatWasLeft) {
    ASSERT_TRUE(program.start());
    ASSERT_EQ(program.command({u"add"_s, u"kept"_s}).exitStatus, 0);
    program.killNow();
    ASSERT_TRUE(program.start());
    EXPECT_EQ(program.contents(), QStringList{u"kept"_s});
}

TEST_F(SingleInstanceTest, QuitEndsItAndSaysThatTheSessionEndedCleanly) {
    ASSERT_TRUE(program.start());
    EXPECT_FALSE(program.defaults()[kEndedCleanly].toBool());
    ASSERT_TRUE(program.quit());
    EXPECT_EQ(program.process().result().exitStatus, 0);
    EXPECT_TRUE(program.defaults()[kEndedCleanly].toBool());
    EXPECT_EQ(program.command({u"status"_s}).exitStatus, 3);
}

TEST_F(SingleInstanceTest, ATerminationSignalEndsItCleanlyToo) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        program.editDefault(kEndedCleanly, false);
        ASSERT_TRUE(program.start());
        program.process().signal(signal);
        ASSERT_TRUE(program.process().waitForEnd(kGenerously)) << signal;
        EXPECT_EQ(program.process().result().exitStatus, 0) << signal;
        EXPECT_TRUE(program.defaults()[kEndedCleanly].toBool()) << signal;
    }
}

TEST_F(SingleInstanceTest, TwoSessionsSideBySideKeepTheirOwnHistories) {
    ASSERT_TRUE(program.start());
    DesktopSession otherSession;
    KestrovaProgram other(otherSession);
    ASSERT_TRUE(other.start());
    copyText("here");
    const SelectionOwner there(otherSession.display(), plainText("there"));
    ASSERT_TRUE(program.waitForRows(1));
    ASSERT_TRUE(other.waitForRows(1));
    EXPECT_EQ(program.contents(), QStringList{u"here"_s});
    EXPECT_EQ(other.contents(), QStringList{u"there"_s});
    ASSERT_TRUE(other.quit());
    EXPECT_TRUE(program.isReady());
}

TEST(WithoutSessionBusTest, CommandsReachTheProgramAllTheSame) {
    DesktopSession session(DesktopSession::Bus::None);
    KestrovaProgram program(session);
    ASSERT_TRUE(program.start());
    const SelectionOwner owner(session.display(), plainText("without a bus"));
    ASSERT_TRUE(program.waitForRows(1));
    EXPECT_EQ(program.contents(), QStringList{u"without a bus"_s});
    EXPECT_EQ(program.command({}).exitStatus, 0);
    EXPECT_EQ(program.status()[u"pid"].toInteger(), program.process().pid());
    EXPECT_TRUE(program.quit());
}

TEST(WithoutSessionBusTest, NoneIsStartedForTheProgram) {
    DesktopSession session(DesktopSession::Bus::None);
    KestrovaProgram program(session);
    ASSERT_TRUE(program.start());
    EXPECT_EQ(session.commandsRunning(), (QStringList{u"Xvfb"_s, u"kestrova"_s, u"openbox"_s}));
}

TEST(WithoutSessionBusTest, AProgramOnTheBusIsReachedByACommandWithoutIt) {
    DesktopSession session;
    KestrovaProgram program(session);
    ASSERT_TRUE(program.start());
    session.environment().remove(u"DBUS_SESSION_BUS_ADDRESS"_s);
    EXPECT_EQ(program.command({u"status"_s}).exitStatus, 0);
    EXPECT_TRUE(program.quit());
}

TEST(WithoutDisplayTest, TheStartEndsWithOneClearMessage) {
    DesktopSession session;
    session.environment().insert(u"DISPLAY"_s, u":4711"_s);
    KestrovaProgram program(session);
    Process& process = program.launch();
    ASSERT_TRUE(process.waitForEnd(kGenerously));
    const ProcessResult result = process.result();
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.standardError.count('\n'), 1) << result.standardError.toStdString();
}

} // namespace
} // namespace kestrova::test
