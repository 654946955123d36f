#include "Platform/x11/RootBackground.h"

#include "Platform/x11/Atoms.h"
#include "Platform/x11/CaptureConnection.h"
#include "Platform/x11/PixelReader.h"
#include "Platform/x11/WindowContents.h"
#include "Platform/x11/XcbReply.h"

#include <QPainter>

#include <xcb/composite.h>
#include <xcb/shape.h>

#include <cstring>

namespace kestrova {

namespace {

/// Where programs that set the background leave it for others; XCB_NONE if none did.
xcb_pixmap_t backgroundPixmap(const CaptureConnection& connection) {
    auto* const server = connection.get();
    for (const auto* const name : {"_XROOTPMAP_ID", "ESETROOT_PMAP_ID"}) {
        const XcbReply<xcb_get_property_reply_t> reply{
            xcb_get_property_reply(server,
                                   xcb_get_property(server, 0, connection.screen().root,
                                                    atomNamed(server, name), XCB_ATOM_PIXMAP, 0, 1),
                                   nullptr)};
        xcb_pixmap_t pixmap = XCB_NONE;
        if (reply && reply->format == 32 && reply->value_len == 1)
            std::memcpy(&pixmap, xcb_get_property_value(reply.get()), sizeof pixmap);
        if (pixmap != XCB_NONE)
            return pixmap;
    }
    return XCB_NONE;
}

/// The pixmap repeated from the screen's corner on; null if it has gone.
QImage tiled(const CaptureConnection& connection, xcb_pixmap_t pixmap, const QRect& area) {
    auto* const server = connection.get();
    const XcbReply<xcb_get_geometry_reply_t> geometry{
        xcb_get_geometry_reply(server, xcb_get_geometry(server, pixmap), nullptr)};
    if (!geometry)
        return {};
    const QRect whole(0, 0, geometry->width, geometry->height);
    PixelReader reader(connection);
    // Most are of the screen's size, of which no more is fetched than what is needed.
    if (whole.contains(area))
        return reader.read(pixmap, geometry->depth, area);
    const auto tile = reader.read(pixmap, geometry->depth, whole);
    if (tile.isNull())
        return {};
    QImage background(area.size(), QImage::Format_RGB32);
    QPainter painter(&background);
    painter.setBrushOrigin(-area.topLeft());
    painter.fillRect(background.rect(), QBrush(tile));
    return background;
}

/// A window that shows its parent's background, painted by the server where nobody sees it. Null where a
/// compositor would show it. With the server grabbed.
QImage seenThroughWindow(const CaptureConnection& connection, const QRect& area) {
    if (!connection.hasComposite())
        return {};
    auto* const server = connection.get();
    const auto window = xcb_generate_id(server);
    const std::uint32_t values[]{XCB_BACK_PIXMAP_PARENT_RELATIVE, 1};
    xcb_create_window(server, XCB_COPY_FROM_PARENT, window, connection.screen().root,
                      static_cast<std::int16_t>(area.x()), static_cast<std::int16_t>(area.y()),
                      static_cast<std::uint16_t>(area.width()), static_cast<std::uint16_t>(area.height()), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT, values);
    const XcbReply<xcb_generic_error_t> refusal{xcb_request_check(
        server, xcb_composite_redirect_window_checked(server, window, XCB_COMPOSITE_REDIRECT_MANUAL))};
    QImage background;
    if (!refusal) {
        // The pointer stays in the window in which it is.
        xcb_shape_rectangles(server, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, window,
                             0, 0, 0, nullptr);
        xcb_map_window(server, window);
        PixelReader reader(connection);
        background = WindowContents(connection, window).pixels(QRect(QPoint(), area.size()), reader);
    }
    xcb_destroy_window(server, window);
    return background;
}

} // namespace

QImage rootBackground(const CaptureConnection& connection, const QRect& area) {
    QImage background;
    if (const auto pixmap = backgroundPixmap(connection); pixmap != XCB_NONE)
        background = tiled(connection, pixmap, area);
    if (background.isNull())
        background = seenThroughWindow(connection, area);
    return background;
}

} // namespace kestrova
