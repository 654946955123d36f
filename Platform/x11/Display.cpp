#include "Platform/x11/Display.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace kestrova {

std::optional<QString> whyDisplayIsOutOfReach() {
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return QStringLiteral("no display: DISPLAY is not set");
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0)
        return QStringLiteral("the display %1 cannot be reached").arg(qEnvironmentVariable("DISPLAY"));
    return std::nullopt;
}

int screenNumber() {
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    const bool isParsed = xcb_parse_display(nullptr, &host, &display, &screen) != 0;
    std::free(host);
    return isParsed ? screen : 0;
}

void chooseDisplayPlugin() {
    qputenv("QT_QPA_PLATFORM", "xcb");
}

} // namespace kestrova
