#include "Platform/x11/ToolkitConnection.h"

#include <QGuiApplication>

namespace kestrova {

xcb_connection_t* toolkitConnection() {
    const auto* const application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    const auto* const x11 =
        application ? application->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

} // namespace kestrova
