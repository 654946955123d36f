#include "Platform/x11/ToolkitConnection.h"

#include "Platform/x11/Display.h"

#include <QGuiApplication>

namespace kestrova {

xcb_connection_t* toolkitConnection() {
    const auto* const application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    const auto* const x11 =
        application ? application->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

const xcb_screen_t& screenOf(xcb_connection_t* toolkit) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(toolkit));
    for (int before = screenNumber(); screens.rem > 1 && before > 0; --before)
        xcb_screen_next(&screens);
    return *screens.data;
}

} // namespace kestrova
