#include "Kestrova/capture/HUDController.h"

#include "Kestrova/capture/HUDPanel.h"
#include "KestrovaCore/ClipboardItem.h"
#include "Platform/UserDefaults.h"

#include <QLoggingCategory>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace kestrova {

namespace {

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(lcCapture, "kestrova.capture")

constexpr std::int64_t shortestMs = 500;
constexpr std::int64_t longestMs = 3000;
constexpr std::int64_t ordinaryMs = 1000;

// Where the shelf would stand on the toast's own screen.
constexpr double shelfHeight = 540;
constexpr double shelfTopGap = 0.15;
constexpr double gapUnderShelf = 8;

constexpr double rise = 6;
constexpr auto revealDuration = 180ms;
constexpr double riseOnHiding = 4;
constexpr auto hideDuration = 220ms;

ScreenRect movedUp(ScreenRect rect, double distance) {
    rect.y += distance;
    return rect;
}

/// The callback may set itself anew within the call.
void tell(const HUDController::ItemCallback& callback, const std::shared_ptr<ClipboardItem>& item) {
    if (const auto kept = callback)
        kept(item);
}

} // namespace

HUDController::HUDController(Surroundings surroundings)
    : m_surroundings(std::move(surroundings)), m_self(std::make_shared<HUDController*>(this)) {}

HUDController::~HUDController() = default;

void HUDController::show(const std::shared_ptr<ClipboardItem>& item, HUDEvent event) {
    m_dismissWorkItem.cancel();
    updateContent(item, event);
    positionAndReveal();
    scheduleDismiss();
    tell(onShow, item);
}

void HUDController::updateContent(const std::shared_ptr<ClipboardItem>& item, HUDEvent event) {
    if (!m_panel)
        m_panel = m_surroundings.makePanel();
    m_item = item;
    m_panel->setContent(event, whileAlive([](HUDController& controller) { controller.tapped(); }));
}

void HUDController::positionAndReveal() {
    const auto place = target();
    if (!place) {
        qCWarning(lcCapture, "[HUDController] There is no screen to show the toast on");
        return;
    }
    if (m_panel->isVisible()) {
        m_panel->setFrame(*place);
        m_panel->setAlpha(1);
        return;
    }
    m_panel->setAlpha(0);
    m_panel->setFrame(movedUp(*place, -rise));
    m_panel->orderFrontRegardless();
    if (m_panel->isVisible())
        m_panel->animate(*place, 1, revealDuration, AnimationTiming::easeOut);
}

std::optional<ScreenRect> HUDController::target() const {
    auto screen = m_surroundings.screens.mainScreen();
    if (!screen) {
        const auto screens = m_surroundings.screens.screens();
        if (screens.empty())
            return {};
        screen = screens.front();
    }
    const auto& visible = screen->visibleFrame;
    const auto size = m_panel->fittingSize();
    const auto shelf = shelfPanelBottomY ? shelfPanelBottomY() : std::nullopt;
    const double anchor = shelf.value_or(visible.maxY() - shelfHeight - shelfTopGap * visible.height);
    return ScreenRect{.x = visible.midX() - size.width() / 2,
                      .y = anchor - gapUnderShelf - size.height(),
                      .width = size.width(),
                      .height = size.height()};
}

MainQueue::Duration HUDController::duration() const {
    const auto stored = m_surroundings.defaults.integer(QStringLiteral("hudDurationMs"));
    return MainQueue::Duration(std::clamp(stored.value_or(ordinaryMs), shortestMs, longestMs));
}

void HUDController::scheduleDismiss() {
    m_dismissWorkItem = m_surroundings.mainQueue.afterUnlessCancelled(
        duration(), whileAlive([](HUDController& controller) { controller.hide(); }));
}

void HUDController::hide() {
    if (m_isHiding)
        return;
    if (!m_panel->isVisible()) {
        m_item.reset();
        return;
    }
    m_isHiding = true;
    m_panel->animate(movedUp(m_panel->frame(), riseOnHiding), 0, hideDuration, AnimationTiming::easeOut);
    // Whatever happens meanwhile: a show within the fade goes with it.
    m_surroundings.mainQueue.after(hideDuration, whileAlive([](HUDController& controller) {
                                       controller.m_panel->orderOut();
                                       controller.m_isHiding = false;
                                       controller.m_item.reset();
                                   }));
}

void HUDController::tapped() {
    // An assistive program can press one that has gone.
    if (!m_panel->isVisible())
        return;
    m_dismissWorkItem.cancel();
    const auto item = m_item;
    hide();
    tell(onItemTapped, item);
}

std::function<void()> HUDController::whileAlive(std::function<void(HUDController&)> act) {
    return [self = std::weak_ptr(m_self), act = std::move(act)] {
        if (const auto controller = self.lock())
            act(**controller);
    };
}

} // namespace kestrova
