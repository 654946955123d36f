#include "Kestrova/AppDelegate.h"

#include "Kestrova/HotkeyManager.h"
#include "Kestrova/StatusItem.h"
#include "Kestrova/capture/CaptureCoordinator.h"
#include "Kestrova/clipboard/ClipboardMonitor.h"
#include "Kestrova/commandline/CommandHandler.h"
#include "Kestrova/shelf/PasteSequence.h"
#include "Kestrova/shelf/ShelfPanelController.h"
#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/ModelContainer.h"
#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "Platform/MainQueue.h"
#include "Platform/Pasteboard.h"
#include "Platform/SingleInstance.h"
#include "Platform/TaskListPresence.h"
#include "Platform/UserDefaults.h"
#include "Platform/Workspace.h"

#include <utility>

namespace kestrova {

namespace {

constexpr std::chrono::seconds scrubDelay{1};
// Well under a millisecond.
constexpr std::size_t rowsFoldedATurn = 200;

} // namespace

AppDelegate::AppDelegate(Host host)
    : m_host(std::move(host)),
      m_hud({.screens = m_host.screens,
             .defaults = m_host.defaults,
             .mainQueue = m_host.mainQueue,
             .makePanel = m_host.makeHUDPanel}),
      m_thumbnails({.screens = m_host.screens,
                    .defaults = m_host.defaults,
                    .mainQueue = m_host.mainQueue,
                    .makePanel = m_host.makeThumbnailPanel}) {}

AppDelegate::~AppDelegate() {
    m_host.modelContainer.onRowsDeleted = nullptr;
    m_host.pasteboard.onPollDue = nullptr;
    m_host.taskListPresence.onActivate = nullptr;
}

void AppDelegate::applicationWillFinishLaunching() {
    m_activationPolicy = m_host.defaults.boolean(QStringLiteral("showInDock")).value_or(false)
                             ? ActivationPolicy::regular
                             : ActivationPolicy::accessory;
    if (m_activationPolicy == ActivationPolicy::accessory)
        return;
    m_host.taskListPresence.onActivate = [this] { showPanel(); };
    m_host.taskListPresence.appear();
}

void AppDelegate::applicationDidFinishLaunching() {
    for (const auto step : launchSequence) {
        if (onLaunchStep)
            onLaunchStep(step);
        launch(step);
    }
    // Last: whoever asks finds a program that is all there.
    serveCommands();
    foldForSearch(0);
}

void AppDelegate::foldForSearch(std::size_t from) {
    m_folding = m_host.mainQueue.afterUnlessCancelled(MainQueue::Duration::zero(), [this, from] {
        if (m_host.modelContainer.foldForSearch(from, rowsFoldedATurn))
            foldForSearch(from + rowsFoldedATurn);
    });
}

void AppDelegate::launch(LaunchStep step) {
    switch (step) {
    case LaunchStep::statusItem:
        makeStatusItem();
        break;
    case LaunchStep::clipboardMonitor:
        startClipboardMonitor();
        break;
    case LaunchStep::shelfPanel:
        makeShelfPanelController();
        break;
    case LaunchStep::capture:
        makeCaptureCoordinator();
        break;
    case LaunchStep::hotkeys:
        makeHotkeyManager();
        break;
    case LaunchStep::hud:
        joinHUD();
        break;
    // Steps whose subsystem this build does not have keep their place.
    case LaunchStep::linkPreviewWarmUp:
    case LaunchStep::updater:
    case LaunchStep::diagnostics:
    case LaunchStep::launchAtLoginMigration:
    case LaunchStep::onboarding:
        break;
    }
}

void AppDelegate::makeStatusItem() {
    m_statusItem = std::make_unique<StatusItem>(m_host.mainQueue, m_host.systemTray, statusMenu({}));
    m_statusItem->onAction = [this](StatusMenuAction action) { perform(action); };
}

void AppDelegate::perform(StatusMenuAction action) {
    switch (action) {
    case StatusMenuAction::togglePanel:
        togglePanel();
        break;
    case StatusMenuAction::captureArea:
        m_captureCoordinator->beginSession(CaptureMode::area);
        break;
    case StatusMenuAction::captureFullScreen:
        m_captureCoordinator->captureFullScreen();
        break;
    case StatusMenuAction::captureWindow:
        m_captureCoordinator->beginSession(CaptureMode::window);
        break;
    case StatusMenuAction::terminate:
        m_host.terminate();
        break;
    // Entries whose subsystem this build does not have are disabled.
    case StatusMenuAction::checkForUpdates:
    case StatusMenuAction::openChangelog:
    case StatusMenuAction::toggleLaunchAtLogin:
    case StatusMenuAction::openSettings:
        break;
    }
}

void AppDelegate::startClipboardMonitor() {
    m_clipboardMonitor = std::make_unique<ClipboardMonitor>(ClipboardMonitor::Surroundings{
        .container = m_host.modelContainer,
        .pasteboard = m_host.pasteboard,
        .mainQueue = m_host.mainQueue,
        .defaults = m_host.defaults,
        .machineInfo = m_host.machineInfo,
        .hud = m_hud,
        .textRecognizer = m_textRecognizer,
        .linkPreviews = m_linkPreviews,
    });
    m_clipboardMonitor->start();
    // The log that the database keeps is cleared a moment later, once for all that is deleted meanwhile.
    m_host.modelContainer.onRowsDeleted = [this] {
        if (!m_scrub)
            scrubLater();
    };
    m_host.pasteboard.onPollDue = [this] { m_clipboardMonitor->poll(); };
}

void AppDelegate::scrubLater() {
    m_scrub = m_host.mainQueue.afterUnlessCancelled(scrubDelay, [this] {
        m_scrub = {};
        if (!m_host.modelContainer.scrub())
            scrubLater();
    });
}

void AppDelegate::makeShelfPanelController() {
    m_panelController = std::make_unique<ShelfPanelController>(
        ShelfPanelController::Surroundings{.modelContainer = m_host.modelContainer,
                                           .mainQueue = m_host.mainQueue,
                                           .pasteboard = m_host.pasteboard,
                                           .workspace = m_host.workspace,
                                           .screens = m_host.screens,
                                           .eventMonitors = m_host.eventMonitors,
                                           .keyPoster = m_host.keyPoster,
                                           .accessibility = m_host.accessibility,
                                           .defaults = m_host.defaults,
                                           .hud = m_hud,
                                           .panel = m_host.shelfPanel,
                                           .sharing = m_host.sharing,
                                           .linkPreviews = m_linkPreviews});
}

void AppDelegate::makeCaptureCoordinator() {
    m_captureCoordinator = std::make_shared<CaptureCoordinator>(
        CaptureCoordinator::Surroundings{.modelContainer = m_host.modelContainer,
                                         .mainQueue = m_host.mainQueue,
                                         .screenContent = m_host.screenContent,
                                         .screens = m_host.screens,
                                         .pasteboard = m_host.pasteboard,
                                         .soundPlayer = m_host.soundPlayer,
                                         .defaults = m_host.defaults,
                                         .machineInfo = m_host.machineInfo,
                                         .hud = m_hud,
                                         .diagnostics = m_captureDiagnostics,
                                         .makeSession = m_host.makeCaptureSession});
    // A capture that is under way holds the coordinator weakly: nobody calls these once the delegate has
    // gone.
    m_captureCoordinator->onCaptureSessionWillStart = [this] { m_panelController->enterCaptureMode(); };
    m_captureCoordinator->onCaptureSessionDidEnd = [this] { m_panelController->exitCaptureMode(); };
    joinThumbnails();
}

void AppDelegate::joinThumbnails() {
    m_captureCoordinator->onDidCapture = [this](const QImage& image, const QByteArray& pngData,
                                                const QString& suggestedName) {
        m_thumbnails.show(image, pngData, suggestedName);
    };
    m_thumbnails.onClick = [this] { showPanel(); };
}

void AppDelegate::makeHotkeyManager() {
    m_keyboardShortcuts = std::make_unique<KeyboardShortcuts>(m_host.hotKeys, m_host.defaults,
                                                              m_host.keyboardLayout, m_host.menuTracking);
    m_hotkeys = std::make_unique<HotkeyManager>(*m_keyboardShortcuts);
    m_hotkeys->onTogglePanel = [this] { togglePanel(); };
    m_hotkeys->onCaptureArea = [this] { perform(StatusMenuAction::captureArea); };
    m_hotkeys->onCaptureFullScreen = [this] { perform(StatusMenuAction::captureFullScreen); };
    m_hotkeys->onCaptureWindow = [this] { perform(StatusMenuAction::captureWindow); };
}

void AppDelegate::joinHUD() {
    m_hud.onShow = [this](const std::shared_ptr<ClipboardItem>&) { m_statusItem->pulse(); };
    m_hud.onItemTapped = [this](const std::shared_ptr<ClipboardItem>&) { m_panelController->showPanel(); };
}

void AppDelegate::togglePanel() {
    m_panelController->togglePanel();
}

void AppDelegate::showPanel() {
    if (m_panelController && !m_panelController->isPanelInFront())
        m_panelController->showPanel();
}

QStringList AppDelegate::shortcutsHeldByOthers() const {
    QStringList held;
    for (const auto& refusal : m_keyboardShortcuts->refusedShortcuts())
        held.append(QStringLiteral("%1 %2").arg(refusal.name.rawValue, refusal.description));
    return held;
}

void AppDelegate::serveCommands() {
    m_commandHandler = std::make_unique<CommandHandler>(CommandHandler::Surroundings{
        .container = m_host.modelContainer,
        .pasteboard = m_host.pasteboard,
        .workspace = m_host.workspace,
        .defaults = m_host.defaults,
        .machineInfo = m_host.machineInfo,
        .hud = m_hud,
    });
    m_commandHandler->onToggle = [this] { togglePanel(); };
    m_commandHandler->onShow = [this] { showPanel(); };
    m_commandHandler->onHide = [this] {
        if (m_panelController->isPanelVisible())
            m_panelController->hidePanel();
    };
    m_commandHandler->mayCapture = [this] { return m_captureCoordinator->mayCapture(); };
    m_commandHandler->onCaptureFullScreen = [this] { perform(StatusMenuAction::captureFullScreen); };
    m_commandHandler->onCaptureArea = [this] { perform(StatusMenuAction::captureArea); };
    m_commandHandler->onCaptureWindow = [this] { perform(StatusMenuAction::captureWindow); };
    m_commandHandler->onPaste = [this](const std::shared_ptr<ClipboardItem>& item) {
        const PasteSequence sequence({.mainQueue = m_host.mainQueue,
                                      .pasteboard = m_host.pasteboard,
                                      .workspace = m_host.workspace,
                                      .keyPoster = m_host.keyPoster,
                                      .accessibility = m_host.accessibility,
                                      .hud = m_hud});
        sequence.pasteInto(item, m_host.workspace.frontmostApplication(), {});
    };
    m_commandHandler->isShelfVisible = [this] { return m_panelController->isPanelVisible(); };
    m_commandHandler->refusedShortcuts = [this] { return shortcutsHeldByOthers(); };
    // A turn later, so that the answer goes out first.
    m_commandHandler->onQuit = [this] { m_host.mainQueue.post(m_host.terminate); };
    m_host.singleInstance.onCommand = [this](const QStringList& arguments) {
        return m_commandHandler->run(arguments);
    };
    m_host.singleInstance.serve();
}

void AppDelegate::applicationWillTerminate() {
    m_host.defaults.set(QStringLiteral("diagnostics.lastSessionEndedCleanly"), true);
}

} // namespace kestrova
