#include "tests/desktop/PaintedWindow.h"

#include "tests/desktop/Waiting.h"

#include <xcb/shape.h>

#include <array>
#include <stdexcept>
#include <utility>
#include <vector>

namespace kestrova::test {

namespace {

constexpr const char* kEndMessage = "KESTROVA_TEST_END";
constexpr std::uint8_t kTranslucentDepth = 32;

const xcb_screen_t& screenOf(const XConnection& x) {
    return *xcb_setup_roots_iterator(xcb_get_setup(x.get())).data;
}

/// The screen's visual with an alpha channel.
xcb_visualid_t translucentVisual(const xcb_screen_t& screen) {
    for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0; xcb_depth_next(&depth)) {
        if (depth.data->depth == kTranslucentDepth)
            return xcb_depth_visuals_iterator(depth.data).data->visual_id;
    }
    throw std::runtime_error("the display has no transparency");
}

void sync(const XConnection& x) {
    const XReply<xcb_get_input_focus_reply_t> carriedOut(
        xcb_get_input_focus_reply(x.get(), xcb_get_input_focus(x.get()), nullptr));
}

} // namespace

std::uint32_t pixelOf(const QColor& color) {
    return qPremultiply(color.rgba());
}

PaintedWindow::PaintedWindow(const QByteArray& display, PaintedWindowSpec spec)
    : m_spec(std::move(spec)), m_painter(display), m_asker(display) {
    create();
    m_thread = std::thread([this] { run(); });
    if (!eventually([this] { return isViewable() && m_isPainted; })) {
        end();
        throw std::runtime_error("the window did not come to the screen");
    }
}

PaintedWindow::~PaintedWindow() {
    end();
}

void PaintedWindow::end() {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = m_window;
    message.type = m_asker.atom(kEndMessage);
    xcb_send_event(m_asker.get(), 0, m_window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(m_asker.get());
    m_thread.join();
}

void PaintedWindow::create() {
    auto* const server = m_painter.get();
    const auto& screen = screenOf(m_painter);
    const bool isTranslucent = m_spec.color.alpha() < 255;
    const auto visual = isTranslucent ? translucentVisual(screen) : screen.root_visual;
    const auto colormap = xcb_generate_id(server);
    xcb_create_colormap(server, XCB_COLORMAP_ALLOC_NONE, colormap, screen.root, visual);
    m_window = xcb_generate_id(server);
    const std::array<std::uint32_t, 5> values{XCB_BACK_PIXMAP_NONE, 0, m_spec.isUnmanaged ? 1U : 0U,
                                              XCB_EVENT_MASK_EXPOSURE, colormap};
    xcb_create_window(server, isTranslucent ? kTranslucentDepth : screen.root_depth, m_window, screen.root,
                      static_cast<std::int16_t>(m_spec.rect.x()), static_cast<std::int16_t>(m_spec.rect.y()),
                      static_cast<std::uint16_t>(m_spec.rect.width()),
                      static_cast<std::uint16_t>(m_spec.rect.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      visual,
                      XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT |
                          XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
                      values.data());
    setTexts();
    setShape();
    xcb_map_window(server, m_window);
    sync(m_painter);
}

void PaintedWindow::setTexts() {
    auto* const server = m_painter.get();
    const auto title = m_spec.title.toUtf8();
    xcb_change_property(server, XCB_PROP_MODE_REPLACE, m_window, m_painter.atom("_NET_WM_NAME"),
                        m_painter.atom("UTF8_STRING"), 8, static_cast<std::uint32_t>(title.size()),
                        title.constData());
    constexpr char kClass[] = "painted\0Painted";
    xcb_change_property(server, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        sizeof kClass, kClass);
    // Flags and padding, then nothing: the place and the size are the person's wish.
    constexpr std::uint32_t kPlaceAndSize = 3;
    std::array<std::uint32_t, 18> hints{kPlaceAndSize};
    xcb_change_property(server, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_NORMAL_HINTS,
                        XCB_ATOM_WM_SIZE_HINTS, 32, hints.size(), hints.data());
    if (!m_spec.type.isEmpty()) {
        const auto type = m_painter.atom(m_spec.type);
        xcb_change_property(server, XCB_PROP_MODE_REPLACE, m_window, m_painter.atom("_NET_WM_WINDOW_TYPE"),
                            XCB_ATOM_ATOM, 32, 1, &type);
    }
    if (m_spec.shadow > 0) {
        const std::array<std::uint32_t, 4> extents{m_spec.shadow, m_spec.shadow, m_spec.shadow,
                                                   m_spec.shadow};
        xcb_change_property(server, XCB_PROP_MODE_REPLACE, m_window, m_painter.atom("_GTK_FRAME_EXTENTS"),
                            XCB_ATOM_CARDINAL, 32, extents.size(), extents.data());
    }
}

void PaintedWindow::setShape() {
    if (!m_spec.shape)
        return;
    std::vector<xcb_rectangle_t> rectangles;
    for (const auto& rect : *m_spec.shape)
        rectangles.push_back({static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
                              static_cast<std::uint16_t>(rect.width()),
                              static_cast<std::uint16_t>(rect.height())});
    xcb_shape_rectangles(m_painter.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED,
                         m_window, 0, 0, static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

void PaintedWindow::run() {
    while (const XReply<xcb_generic_event_t> event{xcb_wait_for_event(m_painter.get())}) {
        constexpr std::uint8_t kTypeMask = 0x7f;
        const auto type = event->response_type & kTypeMask;
        if (type == XCB_CLIENT_MESSAGE)
            break;
        if (type != XCB_EXPOSE)
            continue;
        paint(reinterpret_cast<const xcb_expose_event_t&>(*event));
        m_isPainted = true;
    }
    // The server closes the window with it.
    m_painter.close();
}

void PaintedWindow::paint(const xcb_expose_event_t& part) {
    auto* const server = m_painter.get();
    const auto context = xcb_generate_id(server);
    const std::uint32_t pixel = pixelOf(m_spec.color);
    xcb_create_gc(server, context, m_window, XCB_GC_FOREGROUND, &pixel);
    const xcb_rectangle_t rectangle{static_cast<std::int16_t>(part.x), static_cast<std::int16_t>(part.y),
                                    part.width, part.height};
    xcb_poly_fill_rectangle(server, m_window, context, 1, &rectangle);
    xcb_free_gc(server, context);
    sync(m_painter);
}

bool PaintedWindow::isViewable() const {
    const XReply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        m_asker.get(), xcb_get_window_attributes(m_asker.get(), m_window), nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

xcb_window_t PaintedWindow::frameWindow() const {
    xcb_window_t at = m_window;
    for (;;) {
        const XReply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(m_asker.get(), xcb_query_tree(m_asker.get(), at), nullptr));
        if (!tree || tree->parent == tree->root)
            return at;
        at = tree->parent;
    }
}

QRect PaintedWindow::rectOf(xcb_window_t window) const {
    const XReply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(m_asker.get(), xcb_get_geometry(m_asker.get(), window), nullptr));
    const XReply<xcb_translate_coordinates_reply_t> corner(xcb_translate_coordinates_reply(
        m_asker.get(), xcb_translate_coordinates(m_asker.get(), window, m_asker.root(), 0, 0), nullptr));
    return geometry && corner ? QRect(corner->dst_x, corner->dst_y, geometry->width, geometry->height)
                              : QRect();
}

QRect PaintedWindow::frame() const {
    return rectOf(frameWindow());
}

QRect PaintedWindow::inner() const {
    return rectOf(m_window);
}

void PaintedWindow::raise() {
    m_asker.requestActivation(m_window);
}

void PaintedWindow::tellRoot(const char* message, std::uint32_t value) const {
    constexpr std::uint32_t kFromPager = 2;
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = m_window;
    event.type = m_asker.atom(message);
    event.data.data32[0] = value;
    event.data.data32[1] = kFromPager;
    xcb_send_event(m_asker.get(), 0, m_asker.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(m_asker.get());
    if (!eventually([this] { return !isViewable(); }))
        throw std::runtime_error("the window stays on the screen");
}

void PaintedWindow::minimise() {
    constexpr std::uint32_t kIconic = 3;
    tellRoot("WM_CHANGE_STATE", kIconic);
}

void PaintedWindow::moveToDesktop(std::uint32_t desktop) {
    tellRoot("_NET_WM_DESKTOP", desktop);
}

} // namespace kestrova::test
