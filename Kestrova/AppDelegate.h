#pragma once

#include "Kestrova/LaunchSequence.h"
#include "Kestrova/StatusMenu.h"
#include "Kestrova/capture/CaptureDiagnostics.h"
#include "Kestrova/capture/CaptureSession.h"
#include "Kestrova/capture/CapturedThumbnailController.h"
#include "Kestrova/capture/HUDController.h"
#include "Kestrova/clipboard/TextRecognizer.h"
#include "Kestrova/services/LinkPreviewCache.h"
#include "Platform/MainQueue.h"

#include <QStringList>

#include <functional>
#include <memory>

namespace kestrova {

class Accessibility;
class CaptureCoordinator;
class ClipboardMonitor;
class CommandHandler;
class EventMonitors;
class HUDPanel;
class HotKeys;
class HotkeyManager;
class KeyPoster;
class KeyboardLayout;
class KeyboardShortcuts;
class MachineInfo;
class MenuTracking;
class ModelContainer;
class Pasteboard;
class ScreenContent;
class Screens;
class ShelfPanel;
class ShelfPanelController;
class Sharing;
class SingleInstance;
class SoundPlayer;
class StatusItem;
class SystemTray;
class TaskListPresence;
class ThumbnailPanel;
class UserDefaults;
class Workspace;

/// Whether the program has a place of its own in the desktop's task list and switcher.
enum class ActivationPolicy { regular, accessory };

/// The composition root: owns every long-lived object and is the only place where subsystems are joined.
/// Main thread only.
class AppDelegate {
public:
    /// The host's adapters and the open store; all of it outlives the delegate.
    struct Host {
        ModelContainer& modelContainer;
        MainQueue& mainQueue;
        Pasteboard& pasteboard;
        Workspace& workspace;
        const Screens& screens;
        ScreenContent& screenContent;
        SoundPlayer& soundPlayer;
        EventMonitors& eventMonitors;
        KeyPoster& keyPoster;
        Accessibility& accessibility;
        HotKeys& hotKeys;
        const KeyboardLayout& keyboardLayout;
        MenuTracking& menuTracking;
        UserDefaults& defaults;
        const MachineInfo& machineInfo;
        SingleInstance& singleInstance;
        SystemTray& systemTray;
        TaskListPresence& taskListPresence;
        ShelfPanel& shelfPanel;
        Sharing& sharing;
        /// Makes the toast's window when it is first needed.
        std::function<std::unique_ptr<HUDPanel>()> makeHUDPanel;
        /// Makes the window of the previews whenever they come up.
        std::function<std::unique_ptr<ThumbnailPanel>()> makeThumbnailPanel;
        /// Makes what lets the person select an area or a window.
        std::function<std::shared_ptr<CaptureSession>(CaptureMode)> makeCaptureSession;
        /// Ends the event loop.
        std::function<void()> terminate;
    };

    explicit AppDelegate(Host host);
    ~AppDelegate();

    /// Settles the activation policy from `showInDock`; a later change takes effect at the next start.
    void applicationWillFinishLaunching();
    void applicationDidFinishLaunching();
    /// Stores that the session ended cleanly; nothing else needs closing.
    void applicationWillTerminate();

    /// What the entries of the status item's menu do.
    void perform(StatusMenuAction action);

    ActivationPolicy activationPolicy() const { return m_activationPolicy; }

    /// Told of each step of the launch as it begins.
    std::function<void(LaunchStep)> onLaunchStep;

private:
    void launch(LaunchStep step);
    void makeStatusItem();
    void startClipboardMonitor();
    void scrubLater();
    void makeShelfPanelController();
    void makeCaptureCoordinator();
    void joinThumbnails();
    void makeHotkeyManager();
    void joinHUD();
    void togglePanel();
    /// Leaves one that is up alone.
    void showPanel();
    QStringList shortcutsHeldByOthers() const;
    void serveCommands();
    /// A slice a turn, so that nobody waits for it.
    void foldForSearch(std::size_t from);

    Host m_host;
    ActivationPolicy m_activationPolicy = ActivationPolicy::accessory;
    HUDController m_hud;
    CapturedThumbnailController m_thumbnails;
    NoCaptureDiagnostics m_captureDiagnostics;
    NoTextRecognition m_textRecognizer;
    NoLinkPreviews m_linkPreviews;
    ScheduledBlock m_scrub;
    ScheduledBlock m_folding;
    std::unique_ptr<StatusItem> m_statusItem;
    std::unique_ptr<ClipboardMonitor> m_clipboardMonitor;
    std::unique_ptr<ShelfPanelController> m_panelController;
    std::shared_ptr<CaptureCoordinator> m_captureCoordinator;
    std::unique_ptr<KeyboardShortcuts> m_keyboardShortcuts;
    std::unique_ptr<HotkeyManager> m_hotkeys;
    std::unique_ptr<CommandHandler> m_commandHandler;
};

} // namespace kestrova
