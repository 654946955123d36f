#pragma once

#include "Kestrova/capture/CaptureSelection.h"
#include "Kestrova/capture/CaptureSession.h"
#include "Kestrova/capture/OverlayPanel.h"
#include "Platform/MainQueue.h"
#include "Platform/ScreenContent.h"
#include "Platform/Screens.h"

#include <QCoroTask>
#include <QImage>
#include <QPointF>
#include <QString>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace kestrova {

class ActivationObserver;
class EventMonitor;
class EventMonitors;
class MachineInfo;
class SelectionOverlayView;
class Workspace;

/// Lets the person choose a rectangle or a window with the mouse, on overlays over every display, with the
/// keyboard taken from everybody else. To be owned by a shared pointer. Main thread only.
///
/// Displays are those of the moment when the overlays appear. One that goes later takes its overlay's place
/// on the screen with it, and the session goes on on the others; one that comes is not covered.
class AreaCaptureSession final : public CaptureSession,
                                 public std::enable_shared_from_this<AreaCaptureSession> {
public:
    struct Surroundings {
        MainQueue& mainQueue;
        ScreenContent& screenContent;
        const Screens& screens;
        EventMonitors& eventMonitors;
        Workspace& workspace;
        const MachineInfo& machineInfo;
        /// A panel that covers that display, not yet on the screen.
        std::function<std::unique_ptr<OverlayPanel>(const Screen&)> makePanel;
    };

    /// What it is given outlives the session and its tasks.
    AreaCaptureSession(CaptureMode mode, Surroundings surroundings);
    ~AreaCaptureSession() override;

    /// Called once. Takes a picture of every display before anything covers it.
    QCoro::Task<std::optional<CaptureSelection>> select() override;

    CaptureMode mode() const { return m_mode; }
    /// Where the drag began, in global points.
    const std::optional<QPointF>& startGlobalPoint() const { return m_startGlobalPoint; }
    /// In the order of the displays.
    const std::vector<std::shared_ptr<SelectionOverlayView>>& overlayViews() const { return m_overlayViews; }
    bool isFrozenActive() const { return m_frozenActive; }
    /// From the front to the back; absent until they are known.
    const std::optional<std::vector<ShareableWindow>>& availableWindows() const { return m_availableWindows; }
    const std::optional<ShareableWindow>& hoveredWindow() const { return m_hoveredWindow; }

    /// `point` in the coordinates of `view`.
    void handleMouseDown(const SelectionOverlayView& view, QPointF point);
    void handleMouseUp(const SelectionOverlayView& view, QPointF point);
    /// In global points.
    void updateHover(QPointF globalPoint);
    /// A virtual key code.
    void handleKey(std::uint16_t keyCode);
    /// Absent cancels. The first call ends the session; what comes after finds nothing to do.
    void finish(std::optional<CaptureSelection> result);

private:
    using Self = std::shared_ptr<AreaCaptureSession>;
    struct KeyBinding;

    // Each holds the session while it runs.
    static QCoro::Task<std::optional<CaptureSelection>> select(Self self);
    static QCoro::Task<> freeze(Self self);
    static QCoro::Task<> loadWindows(Self self);
    static QCoro::Task<> loadWindowsAndHover(Self self);
    static QCoro::Task<> refreshWindows(Self self);
    /// Starts at the next turn.
    static QCoro::Task<> startLater(Self self, QCoro::Task<> (*task)(Self));

    void start();
    void addOverlay(const Screen& screen);
    void setCursor(OverlayCursor cursor) const;
    void setCursorRepeatedly();
    void installKeyboard();
    void observeActivations();
    void cancel() { finish(std::nullopt); }
    void toggleFreeze();
    void toggleMode();
    std::vector<ShareableWindow> candidates(std::vector<ShareableWindow> windows) const;
    void setHoveredWindow(std::optional<ShareableWindow> window);
    void tearDown();

    const Surroundings m_surroundings;
    std::vector<std::unique_ptr<OverlayPanel>> m_overlayPanels;
    std::vector<std::shared_ptr<SelectionOverlayView>> m_overlayViews;
    std::optional<Screen> m_startScreen;
    std::optional<QPointF> m_startGlobalPoint;
    std::optional<MainQueue::Continuation> m_continuation;
    std::optional<CaptureSelection> m_result;
    std::unique_ptr<EventMonitor> m_eventTap;
    std::unique_ptr<EventMonitor> m_keyMonitor;
    std::unique_ptr<ActivationObserver> m_activationObserver;
    CaptureMode m_mode;
    std::map<std::uint32_t, QImage> m_frozenByDisplay;
    bool m_frozenActive = false;
    std::optional<std::vector<ShareableWindow>> m_availableWindows;
    std::optional<ShareableWindow> m_hoveredWindow;
};

/// What the overlay calls a window: its title, else the name of its application; absent if it has neither.
std::optional<QString> windowLabel(const ShareableWindow& window);

} // namespace kestrova
