#pragma once

#include "Platform/MainQueue.h"
#include "Platform/SystemTray.h"

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <cstdint>

class QDBusPendingCallWatcher;
struct xcb_connection_t;

namespace kestrova {

/// Knows both kinds of trays: a host of status notifier items on the session bus, and a manager of tray
/// windows on the display.
///
/// The toolkit settles for good which kind it serves when its first icon is made, so an icon must not be made
/// before one of them is there.
class X11SystemTray final : public SystemTray, private QAbstractNativeEventFilter {
public:
    /// After the application object. `mainQueue` outlives the object.
    explicit X11SystemTray(MainQueue& mainQueue);
    X11SystemTray(const X11SystemTray&) = delete;
    X11SystemTray& operator=(const X11SystemTray&) = delete;
    ~X11SystemTray() override;

    void await() override;

private:
    // A watcher that does not answer may still be starting; one that never does is asked once a minute.
    static constexpr MainQueue::Duration firstPause{1000};
    static constexpr MainQueue::Duration longestPause{60000};

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void awaitManager();
    void awaitNotifierHost();
    void askForNotifierHost();
    void onAnswer(const QDBusPendingCallWatcher& call);
    void appear();

    MainQueue& m_mainQueue;
    xcb_connection_t* m_connection = nullptr;
    std::uint32_t m_managerAtom = 0;
    std::uint32_t m_traySelectionAtom = 0;
    // The context of what is asked for on the bus: answers that come later are dropped.
    QObject m_bus;
    // Until a question that was not answered is asked again.
    MainQueue::Duration m_pause = firstPause;
    ScheduledBlock m_nextQuestion;
    ScheduledBlock m_announcement;
};

} // namespace kestrova
