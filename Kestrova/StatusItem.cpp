#include "Kestrova/StatusItem.h"

#include "Kestrova/StatusItemPulse.h"
#include "Platform/SystemTray.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <utility>

namespace kestrova {
namespace {

// A panel fetches the whole picture anew for each one.
constexpr std::chrono::milliseconds pulseStep{40};
// Making the icon takes as long as much of the rest of the start, and nobody looks for it in this moment.
constexpr std::chrono::milliseconds untilTheStartIsOver{300};

} // namespace

StatusItem::StatusItem(MainQueue& mainQueue, SystemTray& tray, StatusMenu menu)
    : m_mainQueue(mainQueue), m_tray(tray), m_menu(std::move(menu)) {
    m_tray.onDidAppear = [this] { show(); };
    m_start = m_mainQueue.afterUnlessCancelled(untilTheStartIsOver, [this] { m_tray.await(); });
}

StatusItem::~StatusItem() {
    m_tray.onDidAppear = nullptr;
}

void StatusItem::pulse() {
    if (!m_shown)
        return;
    m_pulseElapsed = {};
    m_pulse = m_mainQueue.every(pulseStep, [this] { drawPulse(); });
}

void StatusItem::show() {
    if (m_shown)
        return;
    m_shown = std::make_unique<Shown>(m_menu);
    auto& [picture, menu, icon] = *m_shown;
    menu.onNeedsUpdate = [this](StatusMenu& entries) {
        if (onMenuNeedsUpdate)
            onMenuNeedsUpdate(entries);
    };
    menu.onAction = [this](StatusMenuAction action) {
        if (onAction)
            onAction(action);
    };
    menu.symbolImage = [this](const QString& symbol) { return symbolImage ? symbolImage(symbol) : QIcon(); };
    icon.setIcon(picture.icon());
    icon.setToolTip(QStringLiteral("Kestrova"));
    icon.setContextMenu(&menu);
    QObject::connect(&icon, &QSystemTrayIcon::activated, &icon,
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger)
                             toggleMenu();
                     });
    icon.show();
}

void StatusItem::toggleMenu() {
    auto& menu = m_shown->menu;
    if (menu.isVisible())
        menu.close();
    else
        menu.popup(menuPosition());
}

QPoint StatusItem::menuPosition() const {
    const QRect place = m_shown->icon.geometry();
    const auto* const screen = QGuiApplication::screenAt(place.center());
    // Some panels do not say where the icon is.
    if (place.isEmpty() || !screen)
        return QCursor::pos();
    // Beside the icon, which stays in reach: a click on it closes the menu again.
    const bool isAtTop = place.center().y() < screen->geometry().center().y();
    return isAtTop ? place.bottomLeft() + QPoint(0, 1)
                   : place.topLeft() - QPoint(0, m_shown->menu.sizeHint().height());
}

void StatusItem::drawPulse() {
    m_pulseElapsed += pulseStep;
    m_shown->icon.setIcon(m_shown->picture.icon(StatusItemPulse::opacity(m_pulseElapsed)));
    if (m_pulseElapsed >= StatusItemPulse::duration)
        m_pulse.cancel();
}

} // namespace kestrova
