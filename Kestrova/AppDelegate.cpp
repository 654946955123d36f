#include "Kestrova/AppDelegate.h"

#include "Kestrova/clipboard/ClipboardMonitor.h"
#include "Kestrova/commandline/CommandHandler.h"
#include "KestrovaCore/ModelContainer.h"
#include "Platform/MainQueue.h"
#include "Platform/Pasteboard.h"
#include "Platform/SingleInstance.h"
#include "Platform/UserDefaults.h"

#include <utility>

namespace kestrova {

namespace {

constexpr std::chrono::seconds scrubDelay{1};
// Well under a millisecond.
constexpr std::size_t rowsFoldedATurn = 200;

} // namespace

AppDelegate::AppDelegate(Host host) : m_host(std::move(host)) {}

AppDelegate::~AppDelegate() {
    m_host.modelContainer.onRowsDeleted = nullptr;
    m_host.pasteboard.onPollDue = nullptr;
}

void AppDelegate::applicationWillFinishLaunching() {
    m_activationPolicy = m_host.defaults.boolean(QStringLiteral("showInDock")).value_or(false)
                             ? ActivationPolicy::regular
                             : ActivationPolicy::accessory;
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
    case LaunchStep::clipboardMonitor:
        startClipboardMonitor();
        break;
    // Steps whose subsystem this build does not have keep their place.
    case LaunchStep::statusItem:
    case LaunchStep::shelfPanel:
    case LaunchStep::capture:
    case LaunchStep::hotkeys:
    case LaunchStep::hud:
    case LaunchStep::linkPreviewWarmUp:
    case LaunchStep::updater:
    case LaunchStep::diagnostics:
    case LaunchStep::launchAtLoginMigration:
    case LaunchStep::onboarding:
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
            m_scrub = m_host.mainQueue.afterUnlessCancelled(scrubDelay, [this] {
                m_scrub = {};
                m_host.modelContainer.scrub();
            });
    };
    m_host.pasteboard.onPollDue = [this] { m_clipboardMonitor->poll(); };
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
