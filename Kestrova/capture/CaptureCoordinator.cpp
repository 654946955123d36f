#include "Kestrova/capture/CaptureCoordinator.h"

#include "Kestrova/capture/CaptureDiagnostics.h"
#include "Kestrova/capture/HUD.h"
#include "Kestrova/capture/ScreenshotCapture.h"
#include "Kestrova/capture/ScreenshotSaver.h"
#include "Kestrova/clipboard/OwnWrite.h"
#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/ModelContext.h"
#include "Platform/MachineInfo.h"
#include "Platform/MainQueue.h"
#include "Platform/Pasteboard.h"
#include "Platform/PngEncoder.h"
#include "Platform/ScreenContent.h"
#include "Platform/SoundPlayer.h"
#include "Platform/UserDefaults.h"

#include <QDateTime>
#include <QLoggingCategory>
#include <QUrl>

#include <algorithm>
#include <utility>
#include <variant>

namespace kestrova {
namespace {

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(lcCapture, "kestrova.capture")

// Until the windows of the selection, which were just ordered out, have gone from the screen too.
constexpr auto untilTheOverlayHasGone = 80ms;
// In points; what is not larger than this in both directions was a slip of the hand.
constexpr double smallestSide = 4.0;

bool isWorthCapturing(const CaptureSelection& selection) {
    const auto* const area = std::get_if<AreaSelection>(&selection);
    return !area || (area->rect.width > smallestSide && area->rect.height > smallestSide);
}

std::optional<Screen> screenUnderMouse(const Screens& screens) {
    const auto mouse = screens.mouseLocation();
    const auto all = screens.screens();
    const auto found =
        std::ranges::find_if(all, [&](const Screen& each) { return each.frame.contains(mouse); });
    return found == all.end() ? screens.mainScreen() : *found;
}

QString defaultSuggestedName() {
    return ScreenshotSaver::datedName(QDateTime::currentDateTime()) + QStringLiteral(".png");
}

} // namespace

CaptureCoordinator::CaptureCoordinator(Surroundings surroundings) : m_surroundings(std::move(surroundings)) {}

CaptureCoordinator::Ports CaptureCoordinator::ports() const {
    return {m_surroundings.mainQueue, m_surroundings.screenContent, m_surroundings.screens};
}

bool CaptureCoordinator::mayCapture() const {
    if (m_surroundings.screenContent.preflightAccess())
        return true;
    m_surroundings.screenContent.requestAccess();
    return false;
}

void CaptureCoordinator::beginSession(CaptureMode mode) {
    if (m_session || !mayCapture())
        return;
    m_session = m_surroundings.makeSession(mode);
    if (onCaptureSessionWillStart)
        onCaptureSessionWillStart();
    runSession(weak_from_this(), ports(), m_session);
}

void CaptureCoordinator::captureFullScreen() {
    if (!mayCapture())
        return;
    if (const auto screen = screenUnderMouse(m_surroundings.screens))
        runFullScreen(weak_from_this(), ports(), *screen);
}

QCoro::Task<> CaptureCoordinator::runSession(Self weakSelf, Ports ports,
                                             std::shared_ptr<CaptureSession> session) {
    co_await ports.mainQueue.nextTurn();
    const auto selection = co_await session->select();
    if (const auto self = weakSelf.lock()) {
        // Before the pixels are taken: the next session need not wait for them.
        self->m_session.reset();
        if (self->onCaptureSessionDidEnd)
            self->onCaptureSessionDidEnd();
    }
    if (weakSelf.expired() || !selection || !isWorthCapturing(*selection))
        co_return;
    co_await finishOrReport(weakSelf, picture(ports, *selection), selection);
}

QCoro::Task<> CaptureCoordinator::runFullScreen(Self weakSelf, Ports ports, Screen screen) {
    co_await ports.mainQueue.nextTurn();
    if (weakSelf.expired())
        co_return;
    co_await finishOrReport(weakSelf, ScreenshotCapture::captureDisplay(ports.screenContent, screen),
                            std::nullopt);
}

QCoro::Task<QImage> CaptureCoordinator::picture(Ports ports, CaptureSelection selection) {
    const auto* const area = std::get_if<AreaSelection>(&selection);
    if (area && area->frozen)
        co_return ScreenshotCapture::cropFrozen(*area->frozen, area->rect, ports.screens);
    co_await ports.mainQueue.delay(untilTheOverlayHasGone);
    if (area)
        co_return co_await ScreenshotCapture::captureArea(ports.screenContent, ports.screens, area->rect);
    co_return co_await ScreenshotCapture::captureWindow(ports.screenContent, ports.screens,
                                                        std::get<WindowSelection>(selection).window);
}

QCoro::Task<> CaptureCoordinator::finishOrReport(Self weakSelf, QCoro::Task<QImage> capture,
                                                 std::optional<CaptureSelection> selection) {
    try {
        const QImage image = co_await std::move(capture);
        if (const auto self = weakSelf.lock())
            self->finishCapture(image, selection);
    } catch (const MainQueueClosed&) {
        throw;
    } catch (const std::exception& error) {
        if (const auto self = weakSelf.lock())
            self->reportFailure(error, selection);
    }
}

void CaptureCoordinator::finishCapture(const QImage& image,
                                       const std::optional<CaptureSelection>& selection) {
    try {
        playCaptureSound();
    } catch (const std::exception& error) {
        // A picture without its sound is still a picture.
        reportFailure(error, selection);
    }
    const QByteArray png = pngData(image);
    if (png.isEmpty())
        return;
    m_surroundings.pasteboard.write(PngData{png});
    ownWriteChangeCount = m_surroundings.pasteboard.changeCount();
    const auto savedURL =
        ScreenshotSaver::saveIfEnabled(m_surroundings.defaults, png, QDateTime::currentDateTime());

    ModelContext context(m_surroundings.modelContainer);
    const auto item = std::make_shared<ClipboardItem>(QStringLiteral("Screenshot"), ClipboardItemType::image,
                                                      m_surroundings.machineInfo.bundleIdentifier(),
                                                      currentTimestamp(), false, ItemSource::screenshot);
    item->setImageData(png);
    item->setWidth(image.width());
    item->setHeight(image.height());
    if (savedURL)
        item->setFileURLString(savedURL->toString(QUrl::FullyEncoded));
    context.insert(item);
    // The store has logged a failure; the picture is on the pasteboard all the same, and in its file.
    static_cast<void>(context.save());

    if (!m_surroundings.defaults.boolean(QStringLiteral("captureThumbnailEnabled")).value_or(true))
        m_surroundings.hud.show(item, HUDEvent::captured);
    if (onDidCapture)
        onDidCapture(image, png, savedURL ? savedURL->fileName() : defaultSuggestedName());
}

void CaptureCoordinator::playCaptureSound() const {
    const auto& defaults = m_surroundings.defaults;
    if (!defaults.boolean(QStringLiteral("captureSoundEnabled")).value_or(true))
        return;
    m_surroundings.soundPlayer.play(
        defaults.text(QStringLiteral("captureSoundName")).value_or(QStringLiteral("Glass")));
}

void CaptureCoordinator::reportFailure(const std::exception& error,
                                       const std::optional<CaptureSelection>& selection) {
    qCWarning(lcCapture, "[CaptureCoordinator] capture failed: %s", error.what());
    m_surroundings.diagnostics.reportCaptureFailure(error, selection);
}

} // namespace kestrova
