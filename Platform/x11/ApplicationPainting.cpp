#include "Platform/x11/ApplicationPainting.h"

#include "Platform/x11/CaptureConnection.h"
#include "Platform/x11/WindowList.h"
#include "Platform/x11/XcbReply.h"

#include <span>
#include <utility>
#include <vector>

namespace kestrova {

namespace {

// A window within windows within windows beyond sense.
constexpr int deepest = 16;

struct Node {
    xcb_window_t window;
    /// Of what lies within its border.
    QPoint corner;
    /// What its ancestors let be seen of it.
    QRect seen;
};

/// What is right within the nodes, lowest first.
std::vector<Node> innerNodes(xcb_connection_t* server, std::span<const Node> nodes) {
    std::vector<xcb_query_tree_cookie_t> asked;
    for (const auto& node : nodes)
        asked.push_back(xcb_query_tree(server, node.window));
    struct Question {
        const Node* outer;
        xcb_window_t window;
        xcb_get_geometry_cookie_t geometry;
    };
    std::vector<Question> questions;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const XcbReply<xcb_query_tree_reply_t> tree{xcb_query_tree_reply(server, asked[i], nullptr)};
        if (!tree)
            continue;
        for (const auto window :
             std::span(xcb_query_tree_children(tree.get()),
                       static_cast<std::size_t>(xcb_query_tree_children_length(tree.get()))))
            questions.push_back({&nodes[i], window, xcb_get_geometry(server, window)});
    }
    std::vector<Node> inner;
    for (const auto& question : questions) {
        const XcbReply<xcb_get_geometry_reply_t> geometry{
            xcb_get_geometry_reply(server, question.geometry, nullptr)};
        if (!geometry)
            continue;
        const auto corner = question.outer->corner + QPoint(geometry->x + geometry->border_width,
                                                            geometry->y + geometry->border_width);
        inner.push_back({question.window, corner,
                         QRect(corner, QSize(geometry->width, geometry->height)) & question.outer->seen});
    }
    return inner;
}

} // namespace

QRegion paintedByApplications(const CaptureConnection& connection, const RootChild& child) {
    auto* const server = connection.get();
    const QMargins border(child.borderWidth, child.borderWidth, child.borderWidth, child.borderWidth);
    const auto whole = child.pixels.marginsRemoved(border);
    std::vector<Node> nodes{{child.window, whole.topLeft(), whole}};
    QRegion painted;
    for (int depth = 0; depth < deepest && !nodes.empty(); ++depth) {
        std::vector<xcb_get_window_attributes_cookie_t> asked;
        for (const auto& node : nodes)
            asked.push_back(xcb_get_window_attributes(server, node.window));
        std::vector<Node> shown;
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            const XcbReply<xcb_get_window_attributes_reply_t> attributes{
                xcb_get_window_attributes_reply(server, asked[i], nullptr)};
            if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
                attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY || nodes[i].seen.isEmpty())
                continue;
            // What lies within or above may not be the application's to paint, but nothing tells of those
            // that paint without being asked.
            if ((attributes->all_event_masks & XCB_EVENT_MASK_EXPOSURE) != 0)
                painted += nodes[i].seen;
            shown.push_back(nodes[i]);
        }
        nodes = innerNodes(server, shown);
    }
    return painted;
}

} // namespace kestrova
