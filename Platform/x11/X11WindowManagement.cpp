#include "Platform/x11/X11WindowManagement.h"

#include "Platform/x11/Atoms.h"
#include "Platform/x11/Display.h"
#include "Platform/x11/ScreenCover.h"
#include "Platform/x11/ToolkitConnection.h"
#include "Platform/x11/X11HotKeys.h"

#include <QByteArray>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace kestrova {
namespace {

constexpr std::uint32_t addState = 1;
constexpr std::uint32_t allDesktops = 0xFFFFFFFF;
constexpr std::uint32_t fromApplication = 1;

} // namespace

X11WindowManagement::X11WindowManagement(X11HotKeys& hotKeys)
    : m_hotKeys(hotKeys), m_connection(toolkitConnection()) {
    if (!m_connection)
        return;
    m_root = screenOf(m_connection).root;
    const std::array<std::pair<QByteArray, xcb_atom_t*>, 6> wanted{{
        {"_NET_WM_STATE", &m_state},
        {"_NET_WM_STATE_SKIP_TASKBAR", &m_stateSkipTaskbar},
        {"_NET_WM_STATE_SKIP_PAGER", &m_stateSkipPager},
        {"_NET_WM_STATE_ABOVE", &m_stateAbove},
        {"_NET_WM_STATE_STICKY", &m_stateSticky},
        {"_NET_WM_DESKTOP", &m_desktop},
    }};
    std::array<xcb_intern_atom_cookie_t, wanted.size()> cookies{};
    std::ranges::transform(wanted, cookies.begin(),
                           [this](const auto& entry) { return askForAtom(m_connection, entry.first); });
    for (std::size_t i = 0; i < wanted.size(); ++i)
        *wanted[i].second = atomOf(m_connection, cookies[i]);
}

bool X11WindowManagement::isScreenCovered() const {
    return !m_connection || kestrova::isScreenCovered(m_connection, m_root, OwnWindows{m_connection});
}

void X11WindowManagement::standApart(std::uint64_t window) {
    if (!m_connection)
        return;
    const auto id = static_cast<xcb_window_t>(window);
    send(id, m_state, {addState, m_stateSkipTaskbar, m_stateSkipPager, fromApplication, 0});
    send(id, m_state, {addState, m_stateAbove, m_stateSticky, fromApplication, 0});
    send(id, m_desktop, {allDesktops, fromApplication, 0, 0, 0});
    xcb_flush(m_connection);
}

void X11WindowManagement::limitPresses(std::uint64_t window, const QRegion& pixels) {
    setShape(XCB_SHAPE_SK_INPUT, window, pixels);
}

void X11WindowManagement::cutOff(std::uint64_t window, const QRect& pixels) {
    setShape(XCB_SHAPE_SK_BOUNDING, window, pixels);
}

void X11WindowManagement::handOverKeyboard(std::uint64_t window) {
    m_hotKeys.handOverKeyboard(window);
}

void X11WindowManagement::setShape(xcb_shape_sk_t kind, std::uint64_t window, const QRegion& pixels) const {
    if (!m_connection)
        return;
    std::vector<xcb_rectangle_t> rectangles;
    for (const QRect& each : pixels)
        rectangles.push_back({.x = static_cast<std::int16_t>(each.x()),
                              .y = static_cast<std::int16_t>(each.y()),
                              .width = static_cast<std::uint16_t>(each.width()),
                              .height = static_cast<std::uint16_t>(each.height())});
    xcb_shape_rectangles(m_connection, XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_YX_BANDED,
                         static_cast<xcb_window_t>(window), 0, 0,
                         static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
    xcb_flush(m_connection);
}

void X11WindowManagement::send(xcb_window_t window, xcb_atom_t type, const std::uint32_t (&data)[5]) const {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = type;
    std::ranges::copy(data, event.data.data32);
    xcb_send_event(m_connection, 0, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
}

} // namespace kestrova
