#include "Kestrova/AppDelegate.h"
#include "Kestrova/CommandClient.h"
#include "Kestrova/MenuBarIcon.h"
#include "Kestrova/capture/AreaCaptureSession.h"
#include "Kestrova/capture/CapturedImageFiles.h"
#include "Kestrova/capture/widgets/CrosshairCursor.h"
#include "Kestrova/capture/widgets/HUDPanelWidget.h"
#include "Kestrova/capture/widgets/OverlayPanelWidget.h"
#include "Kestrova/capture/widgets/ThumbnailPanelWidget.h"
#include "Kestrova/clipboard/ClipboardMonitor.h"
#include "Kestrova/commandline/Command.h"
#include "Kestrova/shelf/widgets/ShelfPanelWidget.h"
#include "KestrovaCore/KovaStore.h"
#include "Platform/x11/Allocator.h"
#include "Platform/x11/AtspiAccessibility.h"
#include "Platform/x11/CanberraSoundPlayer.h"
#include "Platform/x11/DesktopEntries.h"
#include "Platform/x11/Display.h"
#include "Platform/x11/FontMemory.h"
#include "Platform/x11/FrameDropForwarding.h"
#include "Platform/x11/IconicWindow.h"
#include "Platform/x11/InstanceClient.h"
#include "Platform/x11/JsonUserDefaults.h"
#include "Platform/x11/LinuxMachineInfo.h"
#include "Platform/x11/LinuxSingleInstance.h"
#include "Platform/x11/PortalAppearance.h"
#include "Platform/x11/ProgramMemory.h"
#include "Platform/x11/QtMainQueue.h"
#include "Platform/x11/QtMenuTracking.h"
#include "Platform/x11/SessionBus.h"
#include "Platform/x11/TerminationSignals.h"
#include "Platform/x11/X11EventMonitors.h"
#include "Platform/x11/X11HotKeys.h"
#include "Platform/x11/X11KeyPoster.h"
#include "Platform/x11/X11KeyboardLayout.h"
#include "Platform/x11/X11Keymap.h"
#include "Platform/x11/X11Pasteboard.h"
#include "Platform/x11/X11ScreenContent.h"
#include "Platform/x11/X11Screens.h"
#include "Platform/x11/X11SystemTray.h"
#include "Platform/x11/X11WindowManagement.h"
#include "Platform/x11/X11Workspace.h"
#include "Platform/x11/XdgSharing.h"

#include <QApplication>
#include <QDir>
#include <QStandardPaths>

#include <cstdio>
#include <memory>

using namespace kestrova;

namespace {

QString programDirectory(QStandardPaths::StandardLocation location, const MachineInfo& machineInfo) {
    return QStandardPaths::writableLocation(location) + u'/' + machineInfo.bundleIdentifier();
}

/// Under the program's name as people know it: what is there may be deleted by anyone who finds it.
QString cacheDirectory(const QString& purpose) {
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QStringLiteral("/Kestrova/") + purpose;
}

int refuseToStart(const QString& reason) {
    std::fprintf(stderr, "kestrova: %s\n", qUtf8Printable(reason));
    return ExitStatus::failure;
}

QRect toolkitRect(const ScreenRect& rect) {
    const auto place = X11Screens::geometry().windowPlace(rect);
    return place ? place->geometry : QRect();
}

ScreenRect screenRect(const QRect& rect) {
    return X11Screens::geometry().rectOfToolkit(rect);
}

/// Over that display, as the displays are now.
std::unique_ptr<OverlayPanel> makeOverlayPanel(const Screen& screen, MainQueue& mainQueue,
                                               WindowManagement& windowManagement,
                                               CrosshairCursor& crosshair) {
    const auto displays = X11Screens::geometry();
    const auto pixels = displays.pixelsOf(screen.identifier);
    auto* const toolkitScreen = X11Screens::toolkitScreen(screen.identifier);
    std::optional<OverlayPanelWidget::Place> place;
    if (pixels && toolkitScreen)
        place = {.screen = toolkitScreen, .pixels = *pixels};
    using PixelPoint = OverlayPanelWidget::PixelPoint;
    return std::make_unique<OverlayPanelWidget>(OverlayPanelWidget::Surroundings{
        .mainQueue = mainQueue,
        .windowManagement = windowManagement,
        .crosshair = crosshair,
        .place = place,
        .pointOfPixel =
            [displays, display = screen.identifier](QPoint pixel, PixelPoint meaning) {
                return meaning == PixelPoint::centre ? displays.pointOfPixel(pixel)
                                                     : displays.cornerOfPixel(display, pixel);
            },
        .onRest = letGoOfFontPages});
}

/// Unlike `quit`, which any open window can refuse.
void endEventLoop() {
    QApplication::exit();
}

int runProgram(int argc, char* argv[], SingleInstance& singleInstance, const MachineInfo& machineInfo) {
    if (const auto missing = whyDisplayIsOutOfReach())
        return refuseToStart(*missing);
    KovaStore store(programDirectory(QStandardPaths::GenericDataLocation, machineInfo));
    const auto container = store.container();
    if (!container)
        return refuseToStart(QStringLiteral("the history at %1 cannot be opened: %2.")
                                 .arg(store.filePath(), container.error().message));

    holdTerminationSignals();
    returnLargeBlocksAtOnce();
    keepSessionBusFromBeingStarted();
    chooseDisplayPlugin();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("kestrova"));
    QApplication::setApplicationDisplayName(QStringLiteral("Kestrova"));
    QApplication::setDesktopFileName(machineInfo.bundleIdentifier());
    QApplication::setQuitOnLastWindowClosed(false);

    QtMainQueue mainQueue;
    JsonUserDefaults defaults(programDirectory(QStandardPaths::GenericConfigLocation, machineInfo) +
                              QStringLiteral("/defaults.json"));
    DesktopEntries desktopEntries;
    X11Pasteboard pasteboard(mainQueue, desktopEntries, machineInfo.bundleIdentifier(),
                             ClipboardMonitor::imageFileExtensions());
    X11Workspace workspace(mainQueue, desktopEntries, machineInfo.bundleIdentifier());
    const X11Screens screens;
    X11ScreenContent screenContent(mainQueue, desktopEntries, machineInfo.bundleIdentifier());
    CanberraSoundPlayer soundPlayer(QApplication::applicationDirPath(), machineInfo.bundleIdentifier());
    X11Keymap keymap;
    X11HotKeys hotKeys(mainQueue, keymap);
    X11EventMonitors eventMonitors(keymap, hotKeys);
    X11KeyPoster keyPoster(mainQueue, workspace, keymap,
                           [&pasteboard] { return pasteboard.ownPrimarySelectionToo(); });
    AtspiAccessibility accessibility(mainQueue);
    const X11KeyboardLayout keyboardLayout(keymap);
    QtMenuTracking menuTracking;
    X11SystemTray systemTray(mainQueue);
    X11WindowManagement windowManagement(hotKeys);
    const FrameDropForwarding frameDropForwarding;
    PortalAppearance appearance(mainQueue);
    IconicWindow iconicWindow([] { return MenuBarIcon().icon(); });
    ShelfPanelWidget shelfPanel({.mainQueue = mainQueue,
                                 .windowManagement = windowManagement,
                                 .appearance = appearance,
                                 .toolkitRect = toolkitRect,
                                 .screenRect = screenRect,
                                 .onDisuse = letGoOfProgramPages,
                                 .onRest = letGoOfFontPages});
    CrosshairCursor crosshair;
    const auto makeCaptureSession = [&](CaptureMode mode) -> std::shared_ptr<CaptureSession> {
        return std::make_shared<AreaCaptureSession>(
            mode, AreaCaptureSession::Surroundings{.mainQueue = mainQueue,
                                                   .screenContent = screenContent,
                                                   .screens = screens,
                                                   .eventMonitors = eventMonitors,
                                                   .workspace = workspace,
                                                   .machineInfo = machineInfo,
                                                   .makePanel = [&](const Screen& screen) {
                                                       return makeOverlayPanel(screen, mainQueue,
                                                                               windowManagement, crosshair);
                                                   }});
    };
    XdgSharing sharing(mainQueue, machineInfo.bundleIdentifier(), cacheDirectory(QStringLiteral("Shared")));
    CapturedImageFiles capturedImageFiles(mainQueue, QDir::tempPath());
    AppDelegate delegate({.modelContainer = *container.value(),
                          .mainQueue = mainQueue,
                          .pasteboard = pasteboard,
                          .workspace = workspace,
                          .screens = screens,
                          .screenContent = screenContent,
                          .soundPlayer = soundPlayer,
                          .eventMonitors = eventMonitors,
                          .keyPoster = keyPoster,
                          .accessibility = accessibility,
                          .hotKeys = hotKeys,
                          .keyboardLayout = keyboardLayout,
                          .menuTracking = menuTracking,
                          .defaults = defaults,
                          .machineInfo = machineInfo,
                          .singleInstance = singleInstance,
                          .systemTray = systemTray,
                          .taskListPresence = iconicWindow,
                          .shelfPanel = shelfPanel,
                          .sharing = sharing,
                          .makeHUDPanel =
                              [&windowManagement] {
                                  return std::make_unique<HUDPanelWidget>(
                                      HUDPanelWidget::Surroundings{.windowManagement = windowManagement,
                                                                   .toolkitRect = toolkitRect,
                                                                   .onRest = letGoOfFontPages});
                              },
                          .makeThumbnailPanel =
                              [&] {
                                  return std::make_unique<ThumbnailPanelWidget>(
                                      ThumbnailPanelWidget::Surroundings{.mainQueue = mainQueue,
                                                                         .windowManagement = windowManagement,
                                                                         .files = capturedImageFiles,
                                                                         .toolkitRect = toolkitRect,
                                                                         .onRest = letGoOfFontPages});
                              },
                          .makeCaptureSession = makeCaptureSession,
                          .terminate = endEventLoop});
    const TerminationSignals signals(endEventLoop);
    delegate.applicationWillFinishLaunching();
    delegate.applicationDidFinishLaunching();
    const int status = QApplication::exec();
    delegate.applicationWillTerminate();
    return status;
}

} // namespace

int main(int argc, char* argv[]) {
    // Lines of the log are for people who look for one of ours; the prefix is part of the text.
    qSetMessagePattern(QStringLiteral("%{message}"));
    const LinuxMachineInfo machineInfo;
    const QString dataDirectory = programDirectory(QStandardPaths::GenericDataLocation, machineInfo);
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));

    const CommandClient client([&](const QStringList& words) -> std::optional<CommandReply> {
        const QCoreApplication application(argc, argv);
        return InstanceClient(dataDirectory).send(words);
    });
    if (const auto status = client.run(arguments))
        return *status;
    LinuxSingleInstance singleInstance(dataDirectory);
    if (!singleInstance.claim())
        return client.greetRunningProgram();
    return runProgram(argc, argv, singleInstance, machineInfo);
}
