#pragma once

#include "Kestrova/MenuBarIcon.h"
#include "Kestrova/StatusItemMenu.h"
#include "Platform/MainQueue.h"

#include <QSystemTrayIcon>

#include <functional>
#include <memory>

namespace kestrova {

class SystemTray;

/// The program's icon in the desktop's tray, with its menu. It comes a moment after the start or as soon as
/// there is a tray, and again whenever the tray comes back; until then it costs nothing. Main thread only.
class StatusItem {
public:
    /// The ports outlive the object.
    StatusItem(MainQueue& mainQueue, SystemTray& tray, StatusMenu menu);
    StatusItem(const StatusItem&) = delete;
    StatusItem& operator=(const StatusItem&) = delete;
    ~StatusItem();

    /// As those of StatusItemMenu; to be set within the turn that makes the object.
    std::function<void(StatusMenu&)> onMenuNeedsUpdate;
    std::function<void(StatusMenuAction)> onAction;
    std::function<QIcon(const QString& symbol)> symbolImage;

    /// Fades the icon and brings it back. A pulse that is under way starts anew; without a tray nothing
    /// happens.
    void pulse();

    /// Null until there is a tray.
    QSystemTrayIcon* icon() const { return m_shown ? &m_shown->icon : nullptr; }
    StatusItemMenu* menu() const { return m_shown ? &m_shown->menu : nullptr; }

private:
    struct Shown {
        explicit Shown(StatusMenu entries) : menu(std::move(entries)) {}

        MenuBarIcon picture;
        StatusItemMenu menu;
        QSystemTrayIcon icon;
    };

    void show();
    void toggleMenu();
    QPoint menuPosition() const;
    void drawPulse();

    MainQueue& m_mainQueue;
    SystemTray& m_tray;
    StatusMenu m_menu;
    std::unique_ptr<Shown> m_shown;
    std::chrono::milliseconds m_pulseElapsed{};
    ScheduledBlock m_start;
    ScheduledBlock m_pulse;
};

} // namespace kestrova
