#include "Platform/x11/X11SystemTray.h"

#include "Platform/x11/Atoms.h"
#include "Platform/x11/Display.h"
#include "Platform/x11/ToolkitConnection.h"
#include "Platform/x11/XcbReply.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QTimer>

#include <xcb/xcb.h>

#include <algorithm>

namespace kestrova {
namespace {

const QString notifierWatcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString notifierPath = QStringLiteral("/StatusNotifierWatcher");

} // namespace

X11SystemTray::X11SystemTray(MainQueue& mainQueue) : m_mainQueue(mainQueue) {}

X11SystemTray::~X11SystemTray() {
    QCoreApplication::instance()->removeNativeEventFilter(this);
}

void X11SystemTray::await() {
    awaitManager();
    awaitNotifierHost();
}

void X11SystemTray::awaitManager() {
    m_connection = toolkitConnection();
    if (!m_connection)
        return;
    m_managerAtom = atomNamed(m_connection, "MANAGER");
    m_traySelectionAtom = atomNamed(m_connection, "_NET_SYSTEM_TRAY_S" + QByteArray::number(screenNumber()));
    // Before the question, so that no manager comes between the two.
    QCoreApplication::instance()->installNativeEventFilter(this);
    const auto cookie = xcb_get_selection_owner(m_connection, m_traySelectionAtom);
    const XcbReply<xcb_get_selection_owner_reply_t> reply{
        xcb_get_selection_owner_reply(m_connection, cookie, nullptr)};
    if (reply && reply->owner != XCB_WINDOW_NONE)
        appear();
}

bool X11SystemTray::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
    // The toolkit listens to the root window, where a new manager says so.
    const auto* const event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE)
        return false;
    const auto* const clientMessage = reinterpret_cast<const xcb_client_message_event_t*>(event);
    if (clientMessage->type == m_managerAtom && clientMessage->data.data32[1] == m_traySelectionAtom)
        appear();
    return false;
}

void X11SystemTray::awaitNotifierHost() {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    auto* const watcher =
        new QDBusServiceWatcher(notifierWatcher, bus, QDBusServiceWatcher::WatchForRegistration, &m_bus);
    QObject::connect(watcher, &QDBusServiceWatcher::serviceRegistered, &m_bus, [this] {
        m_pause = firstPause;
        askForNotifierHost();
    });
    // The bus calls a slot by its name; the timer has one that fits. Whoever sends this, the watcher is
    // asked.
    auto* const registered = new QTimer(&m_bus);
    registered->setSingleShot(true);
    QObject::connect(registered, &QTimer::timeout, &m_bus, [this] { askForNotifierHost(); });
    bus.connect(QString(), notifierPath, notifierWatcher, QStringLiteral("StatusNotifierHostRegistered"),
                registered, SLOT(start()));
    // After that, so that no host comes between the two.
    askForNotifierHost();
}

void X11SystemTray::askForNotifierHost() {
    if (m_announcement)
        return;
    m_nextQuestion.cancel();
    auto question = QDBusMessage::createMethodCall(notifierWatcher, notifierPath,
                                                   QStringLiteral("org.freedesktop.DBus.Properties"),
                                                   QStringLiteral("Get"));
    question.setAutoStartService(false);
    question.setArguments({notifierWatcher, QStringLiteral("IsStatusNotifierHostRegistered")});
    auto* const answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), &m_bus);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, &m_bus,
                     [this](QDBusPendingCallWatcher* call) {
                         call->deleteLater();
                         onAnswer(*call);
                     });
}

void X11SystemTray::onAnswer(const QDBusPendingCallWatcher& call) {
    const QDBusPendingReply<QDBusVariant> answer = call;
    if (!answer.isError()) {
        // A host that comes later is told of.
        if (answer.value().variant().toBool())
            appear();
        return;
    }
    const auto error = answer.error();
    // Nobody there: whoever comes is told of by the bus.
    if (error.type() == QDBusError::ServiceUnknown ||
        error.name() == QLatin1StringView("org.freedesktop.DBus.Error.NameHasNoOwner"))
        return;
    m_nextQuestion = m_mainQueue.afterUnlessCancelled(m_pause, [this] { askForNotifierHost(); });
    m_pause = std::min(2 * m_pause, longestPause);
}

void X11SystemTray::appear() {
    if (m_announcement)
        return;
    m_announcement = m_mainQueue.afterUnlessCancelled({}, [this] {
        QCoreApplication::instance()->removeNativeEventFilter(this);
        // Whatever hung on the bus has done its work; this runs within none of it.
        for (auto* const child : m_bus.children())
            child->deleteLater();
        m_nextQuestion.cancel();
        if (onDidAppear)
            onDidAppear();
    });
}

} // namespace kestrova
