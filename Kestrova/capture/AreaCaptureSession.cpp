#include "Kestrova/capture/AreaCaptureSession.h"

#include "Kestrova/capture/DisplayCoordinates.h"
#include "Kestrova/capture/OverlayPanel.h"
#include "Kestrova/capture/ScreenshotCapture.h"
#include "Kestrova/capture/SelectionOverlayView.h"
#include "Platform/EventMonitors.h"
#include "Platform/MachineInfo.h"
#include "Platform/Workspace.h"

#include <QLoggingCategory>

#include <algorithm>
#include <array>
#include <chrono>
#include <unordered_map>
#include <utility>

namespace kestrova {

namespace {

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(lcAreaCapture, "kestrova.areacapture")

constexpr MainQueue::Duration untilCursorIsOwned = 50ms;
/// In points. What is not larger than that is a click.
constexpr double largestClick = 4;
constexpr double smallestWindow = 1;

/// The right and the lower edge do not belong to it.
bool contains(const QRectF& frame, QPointF point) {
    return point.x() >= frame.left() && point.x() < frame.right() && point.y() >= frame.top() &&
           point.y() < frame.bottom();
}

} // namespace

struct AreaCaptureSession::KeyBinding {
    std::uint16_t keyCode;
    void (AreaCaptureSession::*effect)();

    static const KeyBinding* find(std::uint16_t keyCode);
};

const AreaCaptureSession::KeyBinding* AreaCaptureSession::KeyBinding::find(std::uint16_t keyCode) {
    static constexpr std::array all{KeyBinding{VirtualKey::escape, &AreaCaptureSession::cancel},
                                    KeyBinding{VirtualKey::space, &AreaCaptureSession::toggleMode},
                                    KeyBinding{VirtualKey::f, &AreaCaptureSession::toggleFreeze}};
    const auto* const found = std::ranges::find(all, keyCode, &KeyBinding::keyCode);
    return found == all.end() ? nullptr : found;
}

AreaCaptureSession::AreaCaptureSession(CaptureMode mode, Surroundings surroundings)
    : m_surroundings(std::move(surroundings)), m_mode(mode) {}

AreaCaptureSession::~AreaCaptureSession() {
    for (const auto& view : m_overlayViews)
        view->setPanel(nullptr);
}

QCoro::Task<std::optional<CaptureSelection>> AreaCaptureSession::select() {
    return select(shared_from_this());
}

QCoro::Task<std::optional<CaptureSelection>> AreaCaptureSession::select(Self self) {
    co_await freeze(self);
    // What the frame holds is enough: it is there for as long as it is suspended.
    co_await self->m_surroundings.mainQueue.suspension(
        [session = self.get()](MainQueue::Continuation continuation) {
            session->m_continuation = continuation;
            session->start();
            if (session->m_mode == CaptureMode::window)
                startLater(session->shared_from_this(), &loadWindows);
        });
    co_return std::move(self->m_result);
}

QCoro::Task<> AreaCaptureSession::freeze(Self self) {
    try {
        self->m_frozenByDisplay = co_await ScreenshotCapture::captureAllDisplays(
            self->m_surroundings.screenContent, self->m_surroundings.screens);
    } catch (const MainQueueClosed&) {
        throw;
    } catch (const std::exception& error) {
        qCWarning(lcAreaCapture, "[AreaCaptureSession] The screen cannot be frozen: %s", error.what());
    }
}

QCoro::Task<> AreaCaptureSession::startLater(Self self, QCoro::Task<> (*task)(Self)) {
    co_await self->m_surroundings.mainQueue.nextTurn();
    co_await task(self);
}

void AreaCaptureSession::start() {
    for (const auto& screen : m_surroundings.screens.screens())
        addOverlay(screen);
    setCursorRepeatedly();
    installKeyboard();
    observeActivations();
}

void AreaCaptureSession::addOverlay(const Screen& screen) {
    auto panel = m_surroundings.makePanel(screen);
    auto view = std::make_shared<SelectionOverlayView>(screen);
    view->setSession(weak_from_this());
    view->setMode(m_mode);
    if (const auto frozen = m_frozenByDisplay.find(screen.identifier); frozen != m_frozenByDisplay.end())
        view->setFrozenImage(frozen->second);
    panel->setContentView(view);
    view->setPanel(panel.get());
    panel->orderFrontRegardless();
    panel->makeKey();
    m_overlayPanels.push_back(std::move(panel));
    m_overlayViews.push_back(std::move(view));
}

void AreaCaptureSession::setCursor(OverlayCursor cursor) const {
    for (const auto& panel : m_overlayPanels)
        panel->setCursor(cursor);
}

void AreaCaptureSession::setCursorRepeatedly() {
    // A panel of a program that is not in front does not have the pointer at once.
    const auto setAgain = [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->setCursor(cursorOf(self->m_mode));
    };
    setAgain();
    m_surroundings.mainQueue.post(setAgain);
    m_surroundings.mainQueue.after(untilCursorIsOwned, setAgain);
}

void AreaCaptureSession::installKeyboard() {
    const auto handleLater = [weak = weak_from_this()](std::uint16_t keyCode) {
        if (const auto self = weak.lock())
            self->m_surroundings.mainQueue.post([self, keyCode] { self->handleKey(keyCode); });
    };
    m_eventTap = m_surroundings.eventMonitors.tapKeyDowns(handleLater);
    if (m_eventTap)
        return;
    m_keyMonitor = m_surroundings.eventMonitors.addGlobalKeyDownMonitor([handleLater](std::uint16_t keyCode) {
        if (KeyBinding::find(keyCode))
            handleLater(keyCode);
    });
}

void AreaCaptureSession::observeActivations() {
    m_activationObserver = m_surroundings.workspace.observeActivations([weak = weak_from_this()] {
        if (auto self = weak.lock())
            startLater(std::move(self), &refreshWindows);
    });
}

void AreaCaptureSession::handleKey(std::uint16_t keyCode) {
    if (const auto* const binding = KeyBinding::find(keyCode))
        (this->*binding->effect)();
}

void AreaCaptureSession::toggleFreeze() {
    if (m_mode == CaptureMode::window || m_frozenByDisplay.empty())
        return;
    m_frozenActive = !m_frozenActive;
    for (const auto& view : m_overlayViews)
        view->setShowsFrozen(m_frozenActive);
}

void AreaCaptureSession::toggleMode() {
    m_mode = m_mode == CaptureMode::area ? CaptureMode::window : CaptureMode::area;
    m_startScreen.reset();
    m_startGlobalPoint.reset();
    m_hoveredWindow.reset();
    m_frozenActive = false;
    for (const auto& view : m_overlayViews) {
        view->setMode(m_mode);
        view->setSelectionRectGlobal({});
        view->setHoveredWindowFrameGlobal(std::nullopt);
        view->setShowsFrozen(false);
    }
    setCursor(cursorOf(m_mode));
    if (m_mode == CaptureMode::window)
        startLater(shared_from_this(), &loadWindowsAndHover);
}

QCoro::Task<> AreaCaptureSession::loadWindows(Self self) {
    if (self->m_availableWindows)
        co_return;
    auto& screenContent = self->m_surroundings.screenContent;
    try {
        auto content = co_await screenContent.shareableContent();
        self->m_availableWindows = self->candidates(std::move(content.windows));
    } catch (const MainQueueClosed&) {
        throw;
    } catch (const std::exception& error) {
        qCWarning(lcAreaCapture, "[AreaCaptureSession] No windows to choose from: %s", error.what());
        self->m_availableWindows.emplace();
    }
}

QCoro::Task<> AreaCaptureSession::loadWindowsAndHover(Self self) {
    co_await loadWindows(self);
    self->updateHover(self->m_surroundings.screens.mouseLocation());
}

QCoro::Task<> AreaCaptureSession::refreshWindows(Self self) {
    if (self->m_mode != CaptureMode::window)
        co_return;
    self->m_availableWindows.reset();
    co_await loadWindowsAndHover(self);
}

std::vector<ShareableWindow> AreaCaptureSession::candidates(std::vector<ShareableWindow> windows) const {
    const auto own = m_surroundings.machineInfo.bundleIdentifier();
    const auto isCandidate = [&](const ShareableWindow& window) {
        const auto& application = window.owningApplication;
        return window.windowLayer == 0 && window.isOnScreen &&
               (!application || own.isEmpty() || application->bundleIdentifier != own) &&
               window.frame.width() > smallestWindow && window.frame.height() > smallestWindow;
    };
    std::unordered_map<std::uint32_t, ShareableWindow> kept;
    for (auto& window : windows) {
        if (isCandidate(window))
            kept.insert_or_assign(window.windowID, std::move(window));
    }
    std::vector<ShareableWindow> ordered;
    for (const auto windowID : m_surroundings.screenContent.windowOrder()) {
        if (const auto found = kept.find(windowID); found != kept.end())
            ordered.push_back(found->second);
    }
    return ordered;
}

void AreaCaptureSession::updateHover(QPointF globalPoint) {
    if (!m_availableWindows)
        return;
    const auto point = appKitToGlobal(globalPoint, m_surroundings.screens);
    const auto hit = std::ranges::find_if(
        *m_availableWindows, [&](const ShareableWindow& window) { return contains(window.frame, point); });
    if (hit == m_availableWindows->end()) {
        if (m_hoveredWindow)
            setHoveredWindow(std::nullopt);
    } else if (!m_hoveredWindow || m_hoveredWindow->windowID != hit->windowID) {
        setHoveredWindow(*hit);
    }
}

void AreaCaptureSession::setHoveredWindow(std::optional<ShareableWindow> window) {
    m_hoveredWindow = std::move(window);
    std::optional<ScreenRect> frame;
    std::optional<QString> title;
    if (m_hoveredWindow) {
        frame = globalToAppKit(m_hoveredWindow->frame, m_surroundings.screens);
        title = windowLabel(*m_hoveredWindow);
    }
    for (const auto& view : m_overlayViews) {
        view->setHoveredWindowFrameGlobal(frame);
        view->setHoveredWindowTitle(title);
    }
}

void AreaCaptureSession::handleMouseDown(const SelectionOverlayView& view, QPointF point) {
    const auto globalPoint = view.convertPointToScreen(point);
    if (m_mode == CaptureMode::area) {
        m_startScreen = view.screen();
        m_startGlobalPoint = globalPoint;
        return;
    }
    updateHover(globalPoint);
    if (m_hoveredWindow)
        finish(WindowSelection{*m_hoveredWindow});
}

void AreaCaptureSession::handleMouseUp(const SelectionOverlayView& view, QPointF point) {
    if (m_mode == CaptureMode::window)
        return;
    if (!m_startGlobalPoint)
        return cancel();
    auto rect = rectBetween(*m_startGlobalPoint, view.convertPointToScreen(point));
    if (m_startScreen)
        rect = intersection(rect, m_startScreen->frame).value_or(ScreenRect{});
    if (rect.width <= largestClick || rect.height <= largestClick)
        return cancel();
    AreaSelection selection{.rect = rect, .frozen = std::nullopt};
    if (m_frozenActive && m_startScreen) {
        if (const auto frozen = m_frozenByDisplay.find(m_startScreen->identifier);
            frozen != m_frozenByDisplay.end())
            selection.frozen = frozen->second;
    }
    finish(std::move(selection));
}

void AreaCaptureSession::finish(std::optional<CaptureSelection> result) {
    tearDown();
    if (const auto continuation = std::exchange(m_continuation, std::nullopt)) {
        m_result = std::move(result);
        continuation->resume();
    }
}

void AreaCaptureSession::tearDown() {
    m_eventTap.reset();
    m_keyMonitor.reset();
    m_activationObserver.reset();
    setCursor(OverlayCursor::arrow);
    for (const auto& panel : m_overlayPanels)
        panel->orderOut();
    // One that is still within an event has nothing to show any more.
    for (const auto& view : m_overlayViews)
        view->setPanel(nullptr);
    m_overlayPanels.clear();
    m_overlayViews.clear();
    m_startScreen.reset();
    m_startGlobalPoint.reset();
    m_hoveredWindow.reset();
    m_availableWindows.reset();
    m_frozenByDisplay.clear();
    m_frozenActive = false;
}

std::optional<QString> windowLabel(const ShareableWindow& window) {
    if (window.title && !window.title->isEmpty())
        return window.title;
    if (window.owningApplication)
        return window.owningApplication->applicationName;
    return std::nullopt;
}

} // namespace kestrova
