#include "Platform/x11/WindowContents.h"

#include "Platform/x11/Atoms.h"
#include "Platform/x11/CaptureConnection.h"
#include "Platform/x11/XcbReply.h"

#include <xcb/composite.h>
#include <xcb/shape.h>

#include <cstring>
#include <limits>

namespace kestrova {

WindowContents::WindowContents(const CaptureConnection& connection, xcb_window_t window)
    : m_connection(connection), m_pixmap(XCB_NONE) {
    if (!connection.hasComposite())
        return;
    auto* const server = connection.get();
    const auto pixmap = xcb_generate_id(server);
    const auto naming = xcb_composite_name_window_pixmap_checked(server, window, pixmap);
    const auto measuring = xcb_get_geometry(server, pixmap);
    const XcbReply<xcb_generic_error_t> error{xcb_request_check(server, naming)};
    const XcbReply<xcb_get_geometry_reply_t> geometry{xcb_get_geometry_reply(server, measuring, nullptr)};
    if (error)
        return;
    m_pixmap = pixmap;
    if (!geometry)
        return;
    m_size = {geometry->width, geometry->height};
    m_depth = geometry->depth;
}

WindowContents::~WindowContents() {
    if (m_pixmap != XCB_NONE)
        xcb_free_pixmap(m_connection.get(), m_pixmap);
}

QImage WindowContents::pixels(const QRect& area, PixelReader& reader) const {
    if (!areKept())
        return {};
    return reader.read(m_pixmap, m_depth, area & QRect(QPoint(), m_size));
}

std::optional<QRegion> shapeOf(const CaptureConnection& connection, const RootChild& child) {
    auto* const server = connection.get();
    const auto* const extension = xcb_get_extension_data(server, &xcb_shape_id);
    if (!extension || extension->present == 0)
        return {};
    const auto extents = xcb_shape_query_extents(server, child.window);
    const auto rectangles = xcb_shape_get_rectangles(server, child.window, XCB_SHAPE_SK_BOUNDING);
    const XcbReply<xcb_shape_query_extents_reply_t> extentsReply{
        xcb_shape_query_extents_reply(server, extents, nullptr)};
    const XcbReply<xcb_shape_get_rectangles_reply_t> reply{
        xcb_shape_get_rectangles_reply(server, rectangles, nullptr)};
    if (!extentsReply || !reply || extentsReply->bounding_shaped == 0)
        return {};
    QRegion shape;
    for (auto rectangle = xcb_shape_get_rectangles_rectangles_iterator(reply.get()); rectangle.rem > 0;
         xcb_rectangle_next(&rectangle)) {
        const auto& each = *rectangle.data;
        shape += QRect(each.x, each.y, each.width, each.height);
    }
    return shape.translated(child.borderWidth, child.borderWidth);
}

QRegion regionOf(const CaptureConnection& connection, const RootChild& child) {
    const auto shape = shapeOf(connection, child);
    return shape ? shape->translated(child.pixels.topLeft()) & child.pixels : QRegion(child.pixels);
}

double opacityOf(const CaptureConnection& connection, xcb_window_t window) {
    auto* const server = connection.get();
    const auto property = atomNamed(server, "_NET_WM_WINDOW_OPACITY");
    const XcbReply<xcb_get_property_reply_t> reply{xcb_get_property_reply(
        server, xcb_get_property(server, 0, window, property, XCB_ATOM_CARDINAL, 0, 1), nullptr)};
    if (!reply || reply->format != 32 || reply->value_len < 1)
        return 1;
    std::uint32_t opacity = 0;
    std::memcpy(&opacity, xcb_get_property_value(reply.get()), sizeof opacity);
    return double{1} * opacity / std::numeric_limits<std::uint32_t>::max();
}

} // namespace kestrova
