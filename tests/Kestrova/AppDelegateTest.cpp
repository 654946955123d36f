#include "tests/Kestrova/AppDelegateFixture.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>

#include <algorithm>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

class AppDelegateTest : public AppDelegateFixture {};

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
        if (step != LaunchStep::shelfPanel)
            return;
        EXPECT_EQ(m_panel.content, nullptr);
        m_pasteboard.copyElsewhere(QStringLiteral("early"));
    };
    m_delegate.applicationDidFinishLaunching();
    EXPECT_EQ(savedContents(*m_container), QStringList{QStringLiteral("early")});
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

TEST_F(AppDelegateTest, WhileSomebodyReadsItTriesToClearTheLogAgainASecondLater) {
    m_delegate.applicationDidFinishLaunching();
    m_pasteboard.copyElsewhere(QStringLiteral("very-secret-words"));
    ForeignConnection reader(storeFile());
    reader.execute("BEGIN");
    ASSERT_EQ(reader.value("SELECT count(*) FROM ClipboardItem"), u"1");
    m_instance.onCommand({QStringLiteral("delete"), QStringLiteral("1")});
    const auto log = [&] {
        QFile file(storeFile() + QStringLiteral("-wal"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    };
    m_queue.advance(2s);
    EXPECT_TRUE(log().contains("very-secret-words"));
    reader.execute("COMMIT");
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
    for (const QJsonValue& other : {QJsonValue(QStringLiteral("true")), QJsonValue(false)}) {
        m_defaults.set(key, other);
        m_delegate.applicationWillFinishLaunching();
        EXPECT_EQ(m_delegate.activationPolicy(), ActivationPolicy::accessory);
    }
    EXPECT_EQ(m_taskListPresence.appearances, 0);
    m_defaults.set(key, true);
    // Only the next start takes it up.
    EXPECT_EQ(m_delegate.activationPolicy(), ActivationPolicy::accessory);
    EXPECT_EQ(m_taskListPresence.appearances, 0);
    m_delegate.applicationWillFinishLaunching();
    EXPECT_EQ(m_delegate.activationPolicy(), ActivationPolicy::regular);
    EXPECT_EQ(m_taskListPresence.appearances, 1);
}

TEST_F(AppDelegateTest, BeingChosenInTheTaskListShowsTheShelfOnce) {
    m_defaults.set(QStringLiteral("showInDock"), true);
    m_delegate.applicationWillFinishLaunching();
    // There is no shelf yet, and nothing to do.
    m_taskListPresence.onActivate();
    m_delegate.applicationDidFinishLaunching();
    m_taskListPresence.onActivate();
    EXPECT_TRUE(m_panel.visible);
    m_trace.take();
    m_taskListPresence.onActivate();
    EXPECT_EQ(m_trace.take(), QStringList());
}

TEST_F(AppDelegateTest, AskingForAShelfBehindAnotherWindowGivesItTheKeyboardAndThatWindowThePaste) {
    m_delegate.applicationDidFinishLaunching();
    m_instance.onCommand({QStringLiteral("show")});
    RunningApplication editor;
    editor.bundleIdentifier = QStringLiteral("editor");
    m_workspace.frontmost = editor;
    m_trace.take();
    m_instance.onCommand({QStringLiteral("show")});
    EXPECT_THAT(m_trace.take(), testing::Contains(QStringLiteral("0 workspace.activateOwnWindow 77")));
    m_instance.onCommand({QStringLiteral("hide")});
    EXPECT_THAT(m_trace.take(), testing::Contains(QStringLiteral("0 workspace.activate editor")));
}

TEST_F(AppDelegateTest, TheEffectsOfALaunch) {
    m_delegate.onLaunchStep = [&](LaunchStep step) {
        if (step == LaunchStep::hotkeys) {
            EXPECT_TRUE(m_hotKeys.live.empty()) << "before its step";
        }
    };
    m_delegate.applicationDidFinishLaunching();
    m_queue.turn();
    // A launch shows nothing, takes no focus and writes nothing; it fills the hidden panel and takes its
    // keys.
    EXPECT_THAT(m_trace.take(), testing::ElementsAre(QStringLiteral("0 panel.setContent")));
    EXPECT_EQ(
        m_hotKeys.combinations(),
        (std::vector<FakeHotKeys::Combination>{
            {keyV, commandAndShift}, {21, commandAndShift}, {20, commandAndShift}, {22, commandAndShift}}));
}

TEST_F(AppDelegateTest, TheShortcutOpensTheShelfAndClosesIt) {
    m_delegate.applicationDidFinishLaunching();
    EXPECT_TRUE(m_hotKeys.press(keyV, commandAndShift));
    EXPECT_TRUE(m_panel.isVisible());
    EXPECT_TRUE(m_hotKeys.press(keyV, commandAndShift));
    m_queue.advance(120ms);
    EXPECT_FALSE(m_panel.isVisible());
}

TEST_F(AppDelegateTest, TheMenuOpensAndClosesTheShelfAndEndsTheProgram) {
    m_delegate.applicationDidFinishLaunching();
    m_queue.advance(1s);
    EXPECT_TRUE(m_systemTray.isAwaited);
    m_delegate.perform(StatusMenuAction::togglePanel);
    EXPECT_TRUE(m_panel.isVisible());
    m_delegate.perform(StatusMenuAction::togglePanel);
    m_queue.advance(120ms);
    EXPECT_FALSE(m_panel.isVisible());
    EXPECT_EQ(m_terminations, 0);
    m_delegate.perform(StatusMenuAction::terminate);
    EXPECT_EQ(m_terminations, 1);
}

TEST_F(AppDelegateTest, ACopyShowsTheToastUnderTheShelfsPlace) {
    m_delegate.applicationDidFinishLaunching();
    EXPECT_EQ(m_toast, nullptr) << "nothing of it is made before it is needed";
    m_trace.take();
    m_pasteboard.copyElsewhere(QStringLiteral("words"));
    EXPECT_THAT(m_trace.take(),
                testing::ElementsAre(QStringLiteral("0 toast.setContent 0"),
                                     QStringLiteral("0 toast.setAlpha 0"),
                                     QStringLiteral("0 toast.setFrame 910,266 100x30"),
                                     QStringLiteral("0 toast.orderFrontRegardless"),
                                     QStringLiteral("0 toast.animate 910,272 100x30 to alpha 1 in 180")));
}

TEST_F(AppDelegateTest, TheToastStandsUnderTheShelfWhereTheMouseIs) {
    m_screens.all.push_back(
        {.identifier = 2, .frame = {1920, 0, 1000, 2000}, .visibleFrame = {1920, 0, 1000, 2000}, .scale = 1});
    m_screens.mouse = {2000, 100};
    m_screens.main = m_screens.all.front();
    m_delegate.applicationDidFinishLaunching();
    m_pasteboard.copyElsewhere(QStringLiteral("words"));
    ASSERT_NE(m_toast, nullptr);
    EXPECT_EQ(m_toast->rect, (ScreenRect{910, 2000 - 540 - 300 - 8 - 30, 100, 30}));
}

TEST_F(AppDelegateTest, ATapOnTheToastShowsTheShelfAndShowsItAgainIfItIsUp) {
    m_delegate.applicationDidFinishLaunching();
    m_pasteboard.copyElsewhere(QStringLiteral("words"));
    ASSERT_NE(m_toast, nullptr);
    RunningApplication editor;
    editor.bundleIdentifier = QStringLiteral("editor");
    m_workspace.frontmost = editor;
    m_toast->onTap();
    EXPECT_TRUE(m_panel.isVisible());
    m_queue.advance(1s);
    m_pasteboard.copyElsewhere(QStringLiteral("more words"));
    m_workspace.frontmost->bundleIdentifier = QStringLiteral("com.brelvane.Kestrova");
    m_workspace.frontmost->window = static_cast<std::uint32_t>(m_panel.windowNumber());
    m_trace.take();
    m_toast->onTap();
    EXPECT_THAT(m_trace.take(),
                testing::ElementsAre(QStringLiteral("1000 toast.animate 910,276 100x30 to alpha 0 in 220"),
                                     QStringLiteral("1000 panel.setFrame"),
                                     QStringLiteral("1000 panel.setAlpha 0"),
                                     QStringLiteral("1000 panel.orderFrontRegardless"),
                                     QStringLiteral("1000 workspace.activateOwnWindow 77"),
                                     QStringLiteral("1000 panel.animateAlpha 1 160 easeOut"),
                                     QStringLiteral("1000 monitors.addGlobal 10"),
                                     QStringLiteral("1000 monitors.removeGlobal")));
    // And the keyboard goes back to where it came from.
    EXPECT_EQ(m_instance.onCommand({QStringLiteral("hide")}).exitStatus, 0);
    EXPECT_THAT(m_trace.take().filter(QStringLiteral("workspace.")),
                testing::ElementsAre(QStringLiteral("1000 workspace.activate editor")));
}

TEST_F(AppDelegateTest, TheToastIsJoinedInItsStepOfTheLaunch) {
    m_delegate.onLaunchStep = [&](LaunchStep step) {
        if (step != LaunchStep::hud)
            return;
        m_pasteboard.copyElsewhere(QStringLiteral("early"));
        ASSERT_NE(m_toast, nullptr);
        m_toast->onTap();
        EXPECT_FALSE(m_panel.isVisible()) << "before its step";
    };
    m_delegate.applicationDidFinishLaunching();
    m_toast->onTap();
    EXPECT_TRUE(m_panel.isVisible());
}

TEST_F(AppDelegateTest, TheCopyCommandShowsTheToast) {
    m_delegate.applicationDidFinishLaunching();
    m_pasteboard.copyElsewhere(QStringLiteral("words"));
    m_queue.advance(2s);
    ASSERT_FALSE(m_toast->visible);
    EXPECT_EQ(m_instance.onCommand({QStringLiteral("copy"), QStringLiteral("1")}).exitStatus, 0);
    EXPECT_TRUE(m_toast->visible);
    EXPECT_EQ(m_toast->event, HUDEvent::copied);
}

TEST_F(AppDelegateTest, TheCommandsOpenAndCloseTheShelf) {
    m_delegate.applicationDidFinishLaunching();
    const auto run = [&](const char* word) {
        EXPECT_EQ(m_instance.onCommand({QString::fromLatin1(word)}).exitStatus, 0);
        m_queue.advance(120ms);
        return m_panel.isVisible();
    };
    EXPECT_FALSE(run("hide"));
    EXPECT_TRUE(run("toggle"));
    EXPECT_FALSE(run("toggle"));
    EXPECT_TRUE(run("show"));
    m_trace.take();
    EXPECT_TRUE(run("show"));
    EXPECT_TRUE(m_trace.take().isEmpty()) << "it is open already";
    EXPECT_FALSE(run("hide"));
}

TEST_F(AppDelegateTest, ThePasteCommandAimsAtTheApplicationInFrontAndMakesNoPanelKey) {
    RunningApplication editor;
    editor.processIdentifier = 1;
    editor.bundleIdentifier = QStringLiteral("editor");
    m_workspace.frontmost = editor;
    m_delegate.applicationDidFinishLaunching();
    m_pasteboard.copyElsewhere(QStringLiteral("words"));
    m_queue.advance(2s);
    m_trace.take();
    EXPECT_EQ(m_instance.onCommand({QStringLiteral("paste"), QStringLiteral("1")}).exitStatus, 0);
    m_queue.advance(500ms);
    EXPECT_THAT(m_trace.take(),
                testing::ElementsAre(QStringLiteral("2000 accessibility.setSelectedText editor words"),
                                     QStringLiteral("2000 toast.setContent 1"),
                                     QStringLiteral("2000 toast.setAlpha 0"),
                                     QStringLiteral("2000 toast.setFrame 910,266 100x30"),
                                     QStringLiteral("2000 toast.orderFrontRegardless"),
                                     QStringLiteral("2000 toast.animate 910,272 100x30 to alpha 1 in 180"),
                                     QStringLiteral("2050 pasteboard.write words"),
                                     QStringLiteral("2050 workspace.activate editor"),
                                     QStringLiteral("2100 keys.postPaste editor")));
    EXPECT_EQ(savedContents(*m_container).size(), 1) << "an own write makes no row";
}

TEST_F(AppDelegateTest, StatusTellsAShortcutThatAnotherProgramHolds) {
    m_hotKeys.refused[{keyV, commandAndShift}] = {HotKeys::alreadyHeld, {}};
    m_delegate.applicationDidFinishLaunching();
    const auto status = m_instance.onCommand({QStringLiteral("status"), QStringLiteral("--json")});
    const auto refused =
        QJsonDocument::fromJson(status.standardOutput).object().value(u"refusedShortcuts").toArray();
    ASSERT_EQ(refused.size(), 1);
    EXPECT_TRUE(refused[0].toString().startsWith(u"togglePanel "));
    EXPECT_NE(m_defaults.text(QStringLiteral("KeyboardShortcuts_togglePanel")), std::nullopt);
}

} // namespace
} // namespace kestrova
