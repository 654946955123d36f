#pragma once

#include "Kestrova/capture/HUD.h"
#include "Platform/MainQueue.h"
#include "Platform/Screens.h"

#include <functional>
#include <memory>
#include <optional>

namespace kestrova {

class HUDPanel;
class UserDefaults;

/// Shows the toast just under the shelf's place on the main screen, for as long as `hudDurationMs` says. One
/// panel is made on first use and kept; a new event replaces the one on the screen and starts the time anew.
/// Main thread only.
class HUDController final : public HUD {
public:
    using ItemCallback = std::function<void(const std::shared_ptr<ClipboardItem>&)>;

    struct Surroundings {
        const Screens& screens;
        const UserDefaults& defaults;
        MainQueue& mainQueue;
        /// Called once, by the first show.
        std::function<std::unique_ptr<HUDPanel>()> makePanel;
    };

    /// What it is given outlives it.
    explicit HUDController(Surroundings surroundings);
    ~HUDController() override;

    void show(const std::shared_ptr<ClipboardItem>& item, HUDEvent event) override;

    /// Told after each show.
    ItemCallback onShow;
    /// Told after a tap on the toast.
    ItemCallback onItemTapped;

private:
    void updateContent(const std::shared_ptr<ClipboardItem>& item, HUDEvent event);
    void positionAndReveal();
    void scheduleDismiss();
    void hide();
    void tapped();

    /// Absent if there is no screen.
    std::optional<ScreenRect> target() const;
    MainQueue::Duration duration() const;
    /// Wraps `act` so that it does nothing once the controller has gone.
    std::function<void()> whileAlive(std::function<void(HUDController&)> act);

    Surroundings m_surroundings;
    std::unique_ptr<HUDPanel> m_panel;
    /// What the toast tells of, for as long as it is up: a row that is deleted meanwhile keeps its picture in
    /// memory for whoever holds it.
    std::shared_ptr<ClipboardItem> m_item;
    ScheduledBlock m_dismissWorkItem;
    bool m_isHiding = false;
    std::shared_ptr<HUDController*> m_self;
};

} // namespace kestrova
