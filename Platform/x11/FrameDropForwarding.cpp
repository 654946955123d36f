#include "Platform/x11/FrameDropForwarding.h"

#include "Platform/x11/Atoms.h"
#include "Platform/x11/ToolkitConnection.h"
#include "Platform/x11/XcbReply.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QRect>

#include <xcb/shape.h>

namespace kestrova {
namespace {

constexpr std::uint8_t kindOfEvent = 0x7F;
constexpr std::uint8_t propertyBits = 32;
constexpr std::uint8_t textBits = 8;

/// Whether that shape is all of the window, given or not.
bool isWhole(xcb_connection_t* connection, xcb_window_t window, xcb_shape_sk_t kind, QSize size) {
    const XcbReply<xcb_shape_get_rectangles_reply_t> shape{xcb_shape_get_rectangles_reply(
        connection, xcb_shape_get_rectangles(connection, window, kind), nullptr)};
    if (!shape || xcb_shape_get_rectangles_rectangles_length(shape.get()) != 1)
        return false;
    const auto& only = *xcb_shape_get_rectangles_rectangles(shape.get());
    return QRect(only.x, only.y, only.width, only.height) == QRect(QPoint(), size);
}

/// Tells of the window's shape without changing it.
void tellShape(xcb_connection_t* connection, xcb_window_t window, xcb_shape_sk_t kind, QSize size) {
    if (!isWhole(connection, window, kind, size)) {
        xcb_shape_combine(connection, XCB_SHAPE_SO_UNION, kind, kind, window, 0, 0, window);
        return;
    }
    const xcb_rectangle_t all{.x = 0,
                              .y = 0,
                              .width = static_cast<std::uint16_t>(size.width()),
                              .height = static_cast<std::uint16_t>(size.height())};
    xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_UNSORTED, window, 0, 0, 1,
                         &all);
    // A shape that was given would stay as it is when the window grows.
    xcb_shape_mask(connection, XCB_SHAPE_SO_SET, kind, window, 0, 0, XCB_NONE);
}

} // namespace

FrameDropForwarding::FrameDropForwarding() : m_connection(toolkitConnection()) {
    if (!m_connection)
        return;
    m_root = screenOf(m_connection).root;
    const auto aware = askForAtom(m_connection, "XdndAware");
    const auto proxy = askForAtom(m_connection, "XdndProxy");
    m_aware = atomOf(m_connection, aware);
    m_proxy = atomOf(m_connection, proxy);
    qApp->installNativeEventFilter(this);
}

FrameDropForwarding::~FrameDropForwarding() {
    if (m_connection)
        qApp->removeNativeEventFilter(this);
}

bool FrameDropForwarding::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    if ((event.response_type & kindOfEvent) != XCB_REPARENT_NOTIFY)
        return false;
    const auto& reparented = reinterpret_cast<const xcb_reparent_notify_event_t&>(event);
    if (reparented.parent != m_root && takesDrops(reparented.window))
        forwardTo(reparented.window, reparented.parent);
    return false;
}

void FrameDropForwarding::forwardTo(xcb_window_t window, xcb_window_t parent) const {
    const xcb_window_t frame = topmost(parent);
    if (frame == XCB_NONE)
        return;
    // Windows without a name are passed over as if they were none.
    const auto named = xcb_change_property_checked(m_connection, XCB_PROP_MODE_REPLACE, frame,
                                                   XCB_ATOM_WM_NAME, XCB_ATOM_STRING, textBits, 0, nullptr);
    const auto forwarded = xcb_change_property_checked(m_connection, XCB_PROP_MODE_REPLACE, frame, m_proxy,
                                                       XCB_ATOM_WINDOW, propertyBits, 1, &window);
    // A frame that has gone by now needs neither.
    xcb_discard_reply(m_connection, named.sequence);
    xcb_discard_reply(m_connection, forwarded.sequence);
    tellShapes(window);
    xcb_flush(m_connection);
}

void FrameDropForwarding::tellShapes(xcb_window_t window) const {
    const XcbReply<xcb_get_geometry_reply_t> geometry{
        xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr)};
    if (!geometry)
        return;
    // A frame begins as a single pixel, and its shape is noted as that until it changes: window managers
    // shape their frames after what is in them.
    for (const auto kind : {XCB_SHAPE_SK_BOUNDING, XCB_SHAPE_SK_INPUT})
        tellShape(m_connection, window, kind, {geometry->width, geometry->height});
}

bool FrameDropForwarding::takesDrops(xcb_window_t window) const {
    const XcbReply<xcb_get_property_reply_t> reply{xcb_get_property_reply(
        m_connection, xcb_get_property(m_connection, 0, window, m_aware, XCB_GET_PROPERTY_TYPE_ANY, 0, 0),
        nullptr)};
    return reply && reply->type != XCB_NONE;
}

xcb_window_t FrameDropForwarding::topmost(xcb_window_t window) const {
    while (true) {
        const XcbReply<xcb_query_tree_reply_t> tree{
            xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, window), nullptr)};
        if (!tree)
            return XCB_NONE;
        if (tree->parent == m_root || tree->parent == XCB_NONE)
            return window;
        window = tree->parent;
    }
}

} // namespace kestrova
