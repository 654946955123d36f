#include "Platform/x11/OwnWindows.h"

#include <QGuiApplication>

namespace kestrova {

OwnWindows::OwnWindows(xcb_connection_t* toolkit) {
    if (const auto* const setup = toolkit ? xcb_get_setup(toolkit) : nullptr) {
        m_base = setup->resource_id_base;
        m_mask = setup->resource_id_mask;
    }
}

xcb_connection_t* toolkitConnection() {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

} // namespace kestrova
