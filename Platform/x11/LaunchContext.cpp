#include "Platform/x11/LaunchContext.h"

#include "Platform/x11/XcbReply.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QSysInfo>
#include <QUuid>

#include <xcb/xcb.h>

#include <array>

namespace kestrova {
namespace {

constexpr const char* tokenVariable = "DESKTOP_STARTUP_ID";
// This program sets them for itself.
constexpr std::array ownVariables{"QT_QPA_PLATFORM", "DBUS_SESSION_BUS_ADDRESS"};

/// The server's clock now; XCB_CURRENT_TIME if no server can be asked.
xcb_timestamp_t serverTime() {
    // A connection of its own: the answer is an event, and those of the toolkit's are the toolkit's.
    int screen = 0;
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, &screen), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0)
        return XCB_CURRENT_TIME;
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
    const auto window = xcb_generate_id(connection.get());
    const std::uint32_t propertyChanges = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window, root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &propertyChanges);
    // Nothing is added, but the property has changed.
    xcb_change_property(connection.get(), XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                        0, nullptr);
    xcb_flush(connection.get());
    while (const XcbReply<xcb_generic_event_t> event{xcb_wait_for_event(connection.get())})
        if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY)
            return reinterpret_cast<const xcb_property_notify_event_t&>(*event).time;
    return XCB_CURRENT_TIME;
}

/// The value that this program was started with; the kernel keeps the environment of the start.
std::optional<QByteArray> valueAtStart(const QByteArray& variable) {
    QFile environment(QStringLiteral("/proc/self/environ"));
    if (!environment.open(QIODevice::ReadOnly))
        return {};
    for (const auto& entry : environment.readAll().split('\0'))
        if (entry.startsWith(variable + '='))
            return entry.mid(variable.size() + 1);
    return {};
}

} // namespace

QByteArray makeActivationToken() {
    return QStringLiteral("kestrova-%1-%2-%3_TIME%4")
        .arg(QCoreApplication::applicationPid())
        .arg(QSysInfo::machineHostName(), QUuid::createUuid().toString(QUuid::Id128))
        .arg(serverTime())
        .toUtf8();
}

GObjectPointer<GAppLaunchContext> makeLaunchContext() {
    GObjectPointer<GAppLaunchContext> context(g_app_launch_context_new());
    for (const auto* const variable : ownVariables) {
        if (const auto value = valueAtStart(variable))
            g_app_launch_context_setenv(context.get(), variable, value->constData());
        else
            g_app_launch_context_unsetenv(context.get(), variable);
    }
    // Also for those whose entries do not ask for one: what does not know it leaves it alone.
    g_app_launch_context_setenv(context.get(), tokenVariable, makeActivationToken().constData());
    return context;
}

} // namespace kestrova
