#include "Kestrova/shelf/ShelfPanelController.h"

#include "Kestrova/capture/HUD.h"
#include "Kestrova/shelf/ShelfDrags.h"
#include "Kestrova/shelf/ShelfPanel.h"
#include "Kestrova/shelf/ShelfPanelView.h"
#include "KestrovaCore/ClipboardItem.h"
#include "Platform/EventMonitors.h"
#include "Platform/UserDefaults.h"
#include "Platform/Workspace.h"

#include <algorithm>
#include <utility>

namespace kestrova {

namespace {

using namespace std::chrono_literals;

constexpr double panelHeight = ShelfFrame::height;
// Of the visible height: the gap above the panel.
constexpr double topGap = 0.15;
constexpr auto fadeInDuration = 160ms;
constexpr auto fadeOutDuration = 120ms;
constexpr auto widthChangeDuration = 280ms;
// Window managers answer a press within a few milliseconds.
constexpr auto settlingOfAPress = 50ms;

} // namespace

ShelfPanelController::ShelfPanelController(const Surroundings& surroundings)
    : m_surroundings(surroundings),
      m_pasteSequence({.mainQueue = surroundings.mainQueue,
                       .pasteboard = surroundings.pasteboard,
                       .workspace = surroundings.workspace,
                       .keyPoster = surroundings.keyPoster,
                       .accessibility = surroundings.accessibility,
                       .hud = surroundings.hud}),
      // The view is not asked: with a sidebar that was hidden in an earlier run the window is wider than its
      // content until the first change.
      m_currentWidth(ShelfFrame::width),
      m_self(std::make_shared<ShelfPanelController*>(this)) {
    using Item = std::shared_ptr<ClipboardItem>;
    const std::weak_ptr self = m_self;
    ShelfPanelView::Callbacks callbacks;
    callbacks.onSelect = [self](const Item& item) {
        if (const auto controller = self.lock())
            (*controller)->paste(item);
    };
    callbacks.onDismiss = whileAlive([](ShelfPanelController& controller) { controller.hidePanel(); });
    callbacks.onEditImage = [self](const Item& item) {
        const auto controller = self.lock();
        if (!controller)
            return;
        (*controller)->hidePanel();
        if ((*controller)->onEditImageRequested)
            (*controller)->onEditImageRequested(item);
    };
    callbacks.onPanelWidthChange = [self](double width) {
        if (const auto controller = self.lock())
            (*controller)->changeWidth(width);
    };
    // Not `hidePanel`: the application that was in front before would cover the one that is opened.
    callbacks.onStepAside = whileAlive([](ShelfPanelController& controller) { controller.fadeOut(); });
    m_view = std::make_unique<ShelfPanelView>(
        ShelfPanelView::Surroundings{.container = surroundings.modelContainer,
                                     .mainQueue = surroundings.mainQueue,
                                     .pasteboard = surroundings.pasteboard,
                                     .defaults = surroundings.defaults,
                                     .eventMonitors = surroundings.eventMonitors,
                                     .hud = surroundings.hud,
                                     .panel = surroundings.panel,
                                     .workspace = surroundings.workspace,
                                     .sharing = surroundings.sharing,
                                     .screens = surroundings.screens,
                                     .linkPreviews = surroundings.linkPreviews},
        std::move(callbacks));
    surroundings.panel.setContent(*m_view);
    surroundings.hud.shelfPanelBottomY = [self]() -> std::optional<double> {
        const auto controller = self.lock();
        if (!controller)
            return {};
        const auto frame = (*controller)->frame();
        return frame ? frame->y : 0.0;
    };
}

ShelfPanelController::~ShelfPanelController() = default;

std::function<void()> ShelfPanelController::whileAlive(std::function<void(ShelfPanelController&)> act) {
    return [self = std::weak_ptr(m_self), act = std::move(act)] {
        if (const auto controller = self.lock())
            act(**controller);
    };
}

std::optional<ScreenRect> ShelfPanelController::frame() const {
    const auto screens = m_surroundings.screens.screens();
    const auto mouse = m_surroundings.screens.mouseLocation();
    const auto underMouse = std::find_if(screens.begin(), screens.end(), [mouse](const Screen& screen) {
        return screen.frame.contains(mouse);
    });
    auto chosen =
        underMouse != screens.end() ? std::optional(*underMouse) : m_surroundings.screens.mainScreen();
    if (!chosen && !screens.empty())
        chosen = screens.front();
    if (!chosen)
        return {};
    const auto& visible = chosen->visibleFrame;
    return ScreenRect{.x = visible.midX() - 0.5 * m_currentWidth,
                      .y = visible.maxY() - panelHeight - topGap * visible.height,
                      .width = m_currentWidth,
                      .height = panelHeight};
}

bool ShelfPanelController::isPanelVisible() const {
    return m_surroundings.panel.isVisible();
}

bool ShelfPanelController::isPanelInFront() const {
    return isPanelVisible() && !isAnotherInFront();
}

void ShelfPanelController::togglePanel() {
    if (isPanelVisible())
        hidePanel();
    else
        showPanel();
}

void ShelfPanelController::showPanel() {
    auto& panel = m_surroundings.panel;
    notePreviousApp();
    if (const auto place = frame())
        panel.setFrame(*place);
    panel.setAlpha(0);
    panel.orderFrontRegardless();
    // The search field needs the keyboard for good, not for a moment; `previousApp` gives it back later.
    activatePanel();
    if (!std::exchange(m_viewHasAppeared, true))
        m_view->viewAppears();
    m_view->shelfPanelDidShow();
    panel.animateAlpha(1, fadeInDuration, AnimationTiming::easeOut);
    installMouseMonitor();
}

void ShelfPanelController::notePreviousApp() {
    auto front = m_surroundings.workspace.frontmostApplication();
    // A panel that is up already is where the person pastes from, never into.
    if (!front || front->window != m_surroundings.panel.windowNumber())
        m_previousApp = std::move(front);
}

void ShelfPanelController::hidePanel() {
    fadeOut();
    if (m_previousApp)
        m_surroundings.workspace.activate(*m_previousApp);
}

void ShelfPanelController::pressedElsewhere() {
    // By another button, while the first one holds something of the shelf.
    if (m_view->drags().isUnderWay())
        return;
    fadeOut();
    // The press is on its way to the window manager too. If it chose a window, that one has the keyboard by
    // then and keeps it: the person must not come to type into another one.
    m_surroundings.mainQueue.after(settlingOfAPress, whileAlive([](ShelfPanelController& controller) {
                                       if (controller.m_previousApp && !controller.isAnotherInFront())
                                           controller.m_surroundings.workspace.activate(
                                               *controller.m_previousApp);
                                   }));
}

bool ShelfPanelController::isAnotherInFront() const {
    const auto front = m_surroundings.workspace.frontmostApplication();
    return front && front->window != m_surroundings.panel.windowNumber();
}

void ShelfPanelController::fadeOut() {
    m_globalMouseMonitor.reset();
    m_surroundings.panel.animateAlpha(0, fadeOutDuration, AnimationTiming::easeIn);
    // Whatever happens meanwhile: a show within the fade goes with it.
    m_surroundings.mainQueue.after(fadeOutDuration, whileAlive([](ShelfPanelController& controller) {
                                       controller.m_surroundings.panel.orderOut();
                                   }));
}

void ShelfPanelController::activatePanel() {
    m_surroundings.workspace.activateOwnWindow(m_surroundings.panel.windowNumber());
}

void ShelfPanelController::installMouseMonitor() {
    m_globalMouseMonitor = m_surroundings.eventMonitors.addGlobalMonitor(
        EventMask::leftMouseDown | EventMask::rightMouseDown,
        whileAlive([](ShelfPanelController& controller) { controller.pressedElsewhere(); }));
}

void ShelfPanelController::changeWidth(double width) {
    if (width == m_currentWidth)
        return;
    m_currentWidth = width;
    const auto place = frame();
    if (!place)
        return;
    if (isPanelVisible())
        m_surroundings.panel.animateFrame(*place, widthChangeDuration, AnimationTiming::easeInEaseOut);
    else
        m_surroundings.panel.setFrame(*place);
}

void ShelfPanelController::enterCaptureMode() {
    if (std::exchange(m_isCaptureModeActive, true))
        return;
    m_globalMouseMonitor.reset();
    m_surroundings.panel.setIgnoresMouseEvents(true);
}

void ShelfPanelController::exitCaptureMode() {
    if (!std::exchange(m_isCaptureModeActive, false))
        return;
    m_surroundings.panel.setIgnoresMouseEvents(false);
    if (isPanelVisible())
        installMouseMonitor();
}

void ShelfPanelController::paste(const std::shared_ptr<ClipboardItem>& item) {
    const bool staysOpen =
        m_surroundings.defaults.boolean(QStringLiteral("shelfStayOpenAfterPaste")).value_or(true);
    if (staysOpen) {
        m_pasteSequence.pasteInto(item, m_previousApp, whileAlive([](ShelfPanelController& controller) {
                                      controller.activatePanel();
                                  }));
        return;
    }
    m_globalMouseMonitor.reset();
    m_surroundings.panel.orderOut();
    m_pasteSequence.pasteAfterClosing(item, m_previousApp);
}

} // namespace kestrova
