#include "Kestrova/AppDelegate.h"

#include "Kestrova/clipboard/OwnWrite.h"
#include "tests/support/FakePasteboard.h"
#include "tests/support/InMemoryUserDefaults.h"
#include "tests/support/ManualMainQueue.h"
#include "tests/support/Ports.h"
#include "tests/support/StoreFixture.h"

#include <QFile>

#include <algorithm>
#include <vector>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

class AppDelegateTest : public StoreFixture {
protected:
    AppDelegateTest() { ownWriteChangeCount = 0; }

    const QString cleanlyKey = QStringLiteral("diagnostics.lastSessionEndedCleanly");
    ManualMainQueue m_queue;
    FakePasteboard m_pasteboard;
    FakeWorkspace m_workspace;
    InMemoryUserDefaults m_defaults;
    FakeMachineInfo m_machineInfo;
    FakeSingleInstance m_instance;
    int m_terminations = 0;
    AppDelegate m_delegate{{.modelContainer = *m_container,
                            .mainQueue = m_queue,
                            .pasteboard = m_pasteboard,
                            .workspace = m_workspace,
                            .defaults = m_defaults,
                            .machineInfo = m_machineInfo,
                            .singleInstance = m_instance,
                            .terminate = [this] { ++m_terminations; }}};
};

TEST_F(AppDelegateTest, LaunchesInTheSettledOrder) {
    std::vector<LaunchStep> steps;
    bool servedBefore = false;
    m_delegate.onLaunchStep = [&](LaunchStep step) {
        steps.push_back(step);
        servedBefore |= m_instance.serves;
    };
    m_delegate.applicationDidFinishLaunching();
    EXPECT_EQ(steps,
              (std::vector{LaunchStep::statusItem, LaunchStep::clipboardMonitor, LaunchStep::shelfPanel,
                           LaunchStep::capture, LaunchStep::hotkeys, LaunchStep::hud,
                           LaunchStep::linkPreviewWarmUp, LaunchStep::updater, LaunchStep::diagnostics,
                           LaunchStep::launchAtLoginMigration, LaunchStep::onboarding}));
    EXPECT_FALSE(servedBefore);
    EXPECT_TRUE(m_instance.serves);
}

TEST_F(AppDelegateTest, PollsBeforeTheShelfExists) {
    m_delegate.onLaunchStep = [&](LaunchStep step) {
        EXPECT_EQ(m_queue.isEmpty(), step < LaunchStep::shelfPanel);
    };
    m_delegate.applicationDidFinishLaunching();
}

TEST_F(AppDelegateTest, ACopyBecomesARowWithTheTimerAndAsSoonAsThePasteboardAsks) {
    m_delegate.applicationDidFinishLaunching();
    m_pasteboard.copyElsewhere(QStringLiteral("asked for"));
    EXPECT_EQ(savedContents(*m_container), QStringList{QStringLiteral("asked for")});
    m_pasteboard.onPollDue = nullptr;
    m_pasteboard.copyElsewhere(QStringLiteral("by the timer"));
    m_queue.advance(400ms);
    EXPECT_EQ(savedContents(*m_container).first(), u"by the timer");
}

TEST_F(AppDelegateTest, ACopyFromTheHistoryMakesNoRow) {
    m_delegate.applicationDidFinishLaunching();
    m_pasteboard.copyElsewhere(QStringLiteral("a"));
    EXPECT_EQ(m_instance.onCommand({QStringLiteral("copy"), QStringLiteral("1")}).exitStatus, 0);
    m_queue.advance(1s);
    EXPECT_EQ(savedContents(*m_container).size(), 1);
}

TEST_F(AppDelegateTest, ClearsTheLogOfWhatWasDeletedASecondLater) {
    m_delegate.applicationDidFinishLaunching();
    m_pasteboard.copyElsewhere(QStringLiteral("very-secret-words"));
    m_instance.onCommand({QStringLiteral("delete"), QStringLiteral("1")});
    const auto log = [&] {
        QFile file(storeFile() + QStringLiteral("-wal"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    };
    EXPECT_TRUE(log().contains("very-secret-words"));
    m_queue.advance(1s);
    EXPECT_FALSE(log().contains("very-secret-words"));
}

TEST_F(AppDelegateTest, PreparesTheSearchInSlicesAfterTheLaunch) {
    ModelContext context(*m_container);
    for (int i = 0; i < 450; ++i)
        context.insert(makeText(QStringLiteral("row %1").arg(i), i));
    ASSERT_TRUE(context.save());
    const ItemQuery rows(context);
    const auto folded = [&] {
        return std::ranges::count_if(rows.results(),
                                     [](const auto& item) { return item->values().foldedContent.isMade(); });
    };
    m_delegate.applicationDidFinishLaunching();
    EXPECT_EQ(folded(), 0);
    m_queue.turn();
    EXPECT_EQ(folded(), 200);
    for (int turn = 0; turn < 5; ++turn)
        m_queue.turn();
    EXPECT_EQ(folded(), 450);
}

TEST_F(AppDelegateTest, QuitEndsTheProgramATurnAfterItsAnswer) {
    m_delegate.applicationDidFinishLaunching();
    EXPECT_EQ(m_instance.onCommand({QStringLiteral("quit")}).exitStatus, 0);
    EXPECT_EQ(m_terminations, 0);
    m_queue.turn();
    EXPECT_EQ(m_terminations, 1);
}

TEST_F(AppDelegateTest, StoresThatItEndedCleanlyAndNothingElse) {
    m_delegate.applicationDidFinishLaunching();
    EXPECT_EQ(m_defaults.boolean(cleanlyKey), std::nullopt);
    m_delegate.applicationWillTerminate();
    EXPECT_EQ(m_defaults.boolean(cleanlyKey), true);
}

TEST_F(AppDelegateTest, HasNoPlaceInTheTaskListUnlessShowInDockIsTrue) {
    const QString key = QStringLiteral("showInDock");
    m_delegate.applicationWillFinishLaunching();
    EXPECT_EQ(m_delegate.activationPolicy(), ActivationPolicy::accessory);
    m_defaults.set(key, QStringLiteral("true"));
    m_delegate.applicationWillFinishLaunching();
    EXPECT_EQ(m_delegate.activationPolicy(), ActivationPolicy::accessory);
    m_defaults.set(key, true);
    // Only the next start takes it up.
    EXPECT_EQ(m_delegate.activationPolicy(), ActivationPolicy::accessory);
    m_delegate.applicationWillFinishLaunching();
    EXPECT_EQ(m_delegate.activationPolicy(), ActivationPolicy::regular);
}

} // namespace
} // namespace kestrova
