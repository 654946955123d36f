#include "Platform/x11/X11SystemTray.h"

#include "Platform/x11/XcbReply.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>

namespace kestrova {
namespace {

const QString notifierWatcher = QStringLiteral("org.kde.StatusNotifierWatcher");
// A watcher that has no host yet is one of a session that is just starting.
constexpr std::chrono::milliseconds betweenQuestions{1000};

xcb_atom_t atom(xcb_connection_t* connection, QByteArrayView name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const XcbReply<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(connection, cookie, nullptr)};
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

QByteArray traySelection() {
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    xcb_parse_display(nullptr, &host, &display, &screen);
    std::free(host);
    return "_NET_SYSTEM_TRAY_S" + QByteArray::number(screen);
}

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
    const auto* const application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!application)
        return;
    m_connection = application->connection();
    m_managerAtom = atom(m_connection, "MANAGER");
    m_traySelectionAtom = atom(m_connection, traySelection());
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
    if (!QDBusConnection::sessionBus().isConnected())
        return;
    auto* const watcher = new QDBusServiceWatcher(notifierWatcher, QDBusConnection::sessionBus(),
                                                  QDBusServiceWatcher::WatchForRegistration, &m_bus);
    QObject::connect(watcher, &QDBusServiceWatcher::serviceRegistered, &m_bus,
                     [this] { askForNotifierHost(); });
    askForNotifierHost();
}

void X11SystemTray::askForNotifierHost() {
    if (m_announcement)
        return;
    auto question = QDBusMessage::createMethodCall(notifierWatcher, QStringLiteral("/StatusNotifierWatcher"),
                                                   QStringLiteral("org.freedesktop.DBus.Properties"),
                                                   QStringLiteral("Get"));
    question.setAutoStartService(false);
    question.setArguments({notifierWatcher, QStringLiteral("IsStatusNotifierHostRegistered")});
    auto* const answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), &m_bus);
    QObject::connect(
        answer, &QDBusPendingCallWatcher::finished, &m_bus, [this](QDBusPendingCallWatcher* call) {
            call->deleteLater();
            const QDBusPendingReply<QDBusVariant> reply = *call;
            // Nobody there: whoever comes is told of by the bus.
            if (reply.isError())
                return;
            if (reply.value().variant().toBool())
                appear();
            else
                m_nextQuestion =
                    m_mainQueue.afterUnlessCancelled(betweenQuestions, [this] { askForNotifierHost(); });
        });
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
