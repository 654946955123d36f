#pragma once

#include "Kestrova/AppDelegate.h"
#include "Kestrova/clipboard/OwnWrite.h"
#include "tests/support/EffectTrace.h"
#include "tests/support/FakeCaptureSessions.h"
#include "tests/support/FakeHotKeys.h"
#include "tests/support/FakeKeyboardLayout.h"
#include "tests/support/FakeMenuTracking.h"
#include "tests/support/FakeScreenContent.h"
#include "tests/support/FakeSoundPlayer.h"
#include "tests/support/FakeSystemTray.h"
#include "tests/support/FakeTaskListPresence.h"
#include "tests/support/InMemoryUserDefaults.h"
#include "tests/support/ManualMainQueue.h"
#include "tests/support/Ports.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TracedHUDPanel.h"
#include "tests/support/TracedThumbnailPanel.h"

#include <memory>
#include <vector>

namespace kestrova {

// With Super and Shift: the shelf, and the captures of the screen, of an area and of a window.
constexpr std::uint32_t keyV = 9;
constexpr std::uint32_t key3 = 20;
constexpr std::uint32_t key4 = 21;
constexpr std::uint32_t key6 = 22;
constexpr std::uint32_t commandAndShift = 0x300;

/// The whole program on one display, with a store and nothing else that is real.
class AppDelegateFixture : public StoreFixture {
protected:
    AppDelegateFixture() {
        ownWriteChangeCount = 0;
        m_screenContent.add(1, {0, 0, 1920, 1080});
        m_defaults.set(QStringLiteral("screenshotFolder"), m_directory.filePath(QStringLiteral("pictures")));
    }

    std::vector<std::shared_ptr<ClipboardItem>> rows() { return m_reader.fetch({}).value(); }
    CommandReply run(const QString& line) { return m_instance.onCommand(line.split(u' ')); }

    const QString cleanlyKey = QStringLiteral("diagnostics.lastSessionEndedCleanly");
    ModelContext m_reader{*m_container};
    ManualMainQueue m_queue;
    EffectTrace m_trace{m_queue};
    TracedPasteboard m_tracedPasteboard{m_trace};
    FakePasteboard& m_pasteboard = m_tracedPasteboard.inner;
    TracedWorkspace m_workspace{m_trace};
    FakeScreens m_screens;
    FakeScreenContent m_screenContent;
    FakeSoundPlayer m_soundPlayer;
    TracedEventMonitors m_eventMonitors{m_trace};
    TracedKeyPoster m_keyPoster{m_trace};
    TracedAccessibility m_accessibility{m_queue, m_trace};
    FakeHotKeys m_hotKeys;
    FakeKeyboardLayout m_keyboardLayout;
    FakeMenuTracking m_menuTracking;
    FakeSystemTray m_systemTray;
    FakeTaskListPresence m_taskListPresence;
    TracedPanel m_panel{m_trace};
    TracedSharing m_sharing{m_trace};
    InMemoryUserDefaults m_defaults;
    FakeMachineInfo m_machineInfo;
    FakeSingleInstance m_instance;
    TracedHUDPanel* m_toast = nullptr;
    TracedThumbnailPanel* m_previews = nullptr;
    int m_terminations = 0;
    AppDelegate m_delegate{
        {.modelContainer = *m_container,
         .mainQueue = m_queue,
         .pasteboard = m_tracedPasteboard,
         .workspace = m_workspace,
         .screens = m_screens,
         .screenContent = m_screenContent,
         .soundPlayer = m_soundPlayer,
         .eventMonitors = m_eventMonitors,
         .keyPoster = m_keyPoster,
         .accessibility = m_accessibility,
         .hotKeys = m_hotKeys,
         .keyboardLayout = m_keyboardLayout,
         .menuTracking = m_menuTracking,
         .defaults = m_defaults,
         .machineInfo = m_machineInfo,
         .singleInstance = m_instance,
         .systemTray = m_systemTray,
         .taskListPresence = m_taskListPresence,
         .shelfPanel = m_panel,
         .sharing = m_sharing,
         .makeHUDPanel =
             [this] {
                 auto made = std::make_unique<TracedHUDPanel>(m_trace);
                 m_toast = made.get();
                 return made;
             },
         .makeThumbnailPanel =
             [this] {
                 auto made =
                     std::make_unique<TracedThumbnailPanel>(m_trace, 88, [this] { m_previews = nullptr; });
                 m_previews = made.get();
                 return made;
             },
         .makeCaptureSession = [this](CaptureMode mode) { return m_captureSessions.make(mode); },
         .terminate = [this] { ++m_terminations; }}};
    FakeCaptureSessions m_captureSessions;
};

} // namespace kestrova
