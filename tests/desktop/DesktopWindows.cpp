#include "tests/desktop/DesktopWindows.h"

#include "tests/desktop/Waiting.h"

#include <cstring>
#include <span>

namespace kestrova::test {

namespace {

std::uint32_t number(const QByteArray& bytes) {
    std::uint32_t value = 0;
    if (bytes.size() >= qsizetype{sizeof value})
        std::memcpy(&value, bytes.constData(), sizeof value);
    return value;
}

std::vector<std::uint32_t> numbers(const QByteArray& bytes) {
    std::vector<std::uint32_t> values(static_cast<std::size_t>(bytes.size()) / sizeof(std::uint32_t));
    std::memcpy(values.data(), bytes.constData(), values.size() * sizeof(std::uint32_t));
    return values;
}

} // namespace

QByteArray DesktopWindows::property(xcb_window_t window, const char* name) const {
    constexpr std::uint32_t kWords = 1024;
    const XReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        m_x.get(),
        xcb_get_property(m_x.get(), 0, window, m_x.atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, kWords),
        nullptr));
    return reply ? QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())),
                              xcb_get_property_value_length(reply.get()))
                 : QByteArray();
}

xcb_window_t DesktopWindows::active() const {
    return number(property(m_x.root(), "_NET_ACTIVE_WINDOW"));
}

QString DesktopWindows::title(xcb_window_t window) const {
    return QString::fromUtf8(property(window, "_NET_WM_NAME"));
}

QString DesktopWindows::machine(xcb_window_t window) const {
    return QString::fromLocal8Bit(property(window, "WM_CLIENT_MACHINE"));
}

QSize DesktopWindows::iconSize(xcb_window_t window) const {
    const auto icon = numbers(property(window, "_NET_WM_ICON"));
    return icon.size() < 2 ? QSize() : QSize(static_cast<int>(icon[0]), static_cast<int>(icon[1]));
}

QString DesktopWindows::windowClass(xcb_window_t window) const {
    return QString::fromLatin1(property(window, "WM_CLASS").replace('\0', ' ').trimmed());
}

template<typename Test>
void DesktopWindows::collectVisible(xcb_window_t parent, const Test& test,
                                    std::vector<xcb_window_t>& found) const {
    const XReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(m_x.get(), xcb_query_tree(m_x.get(), parent), nullptr));
    if (!tree)
        return;
    const std::span children(xcb_query_tree_children(tree.get()),
                             static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
    for (const xcb_window_t child : children) {
        const XReply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(m_x.get(), xcb_get_window_attributes(m_x.get(), child), nullptr));
        if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
            attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT)
            continue;
        if (test(child))
            found.push_back(child);
        else
            collectVisible(child, test, found);
    }
}

template<typename Test>
std::vector<xcb_window_t> DesktopWindows::visibleWindows(const Test& test) const {
    std::vector<xcb_window_t> found;
    collectVisible(m_x.root(), test, found);
    return found;
}

std::vector<xcb_window_t> DesktopWindows::ofProcess(qint64 pid) const {
    return visibleWindows(
        [this, pid](xcb_window_t window) { return number(property(window, "_NET_WM_PID")) == pid; });
}

std::vector<xcb_window_t> DesktopWindows::managed(qint64 pid) const {
    std::vector<xcb_window_t> found;
    for (const xcb_window_t window : numbers(property(m_x.root(), "_NET_CLIENT_LIST")))
        if (number(property(window, "_NET_WM_PID")) == pid)
            found.push_back(window);
    return found;
}

std::vector<QByteArray> DesktopWindows::states(xcb_window_t window) const {
    std::vector<QByteArray> names;
    for (const xcb_atom_t state : numbers(property(window, "_NET_WM_STATE")))
        names.push_back(m_x.atomName(state));
    return names;
}

std::vector<xcb_window_t> DesktopWindows::titled(const QString& title) const {
    return visibleWindows([&](xcb_window_t window) { return this->title(window) == title; });
}

QRect DesktopWindows::frame(xcb_window_t window) const {
    const XReply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(m_x.get(), xcb_get_geometry(m_x.get(), window), nullptr));
    const XReply<xcb_translate_coordinates_reply_t> corner(xcb_translate_coordinates_reply(
        m_x.get(), xcb_translate_coordinates(m_x.get(), window, m_x.root(), 0, 0), nullptr));
    return geometry && corner ? QRect(corner->dst_x, corner->dst_y, geometry->width, geometry->height)
                              : QRect();
}

QColor DesktopWindows::colorAt(QPoint pixel) const {
    constexpr std::uint32_t kAllPlanes = 0xFFFFFFFF;
    const XReply<xcb_get_image_reply_t> image(xcb_get_image_reply(
        m_x.get(),
        xcb_get_image(m_x.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_x.root(), static_cast<std::int16_t>(pixel.x()),
                      static_cast<std::int16_t>(pixel.y()), 1, 1, kAllPlanes),
        nullptr));
    if (!image || xcb_get_image_data_length(image.get()) < 4)
        return {};
    const std::uint8_t* const bytes = xcb_get_image_data(image.get());
    return {bytes[2], bytes[1], bytes[0]};
}

bool DesktopWindows::hasKeyboard(xcb_window_t window) const {
    const XReply<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(m_x.get(), xcb_get_input_focus(m_x.get()), nullptr));
    xcb_window_t at = focus ? focus->focus : xcb_window_t{XCB_NONE};
    while (at > XCB_INPUT_FOCUS_POINTER_ROOT && at != m_x.root()) {
        if (at == window)
            return true;
        const XReply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(m_x.get(), xcb_query_tree(m_x.get(), at), nullptr));
        at = tree ? tree->parent : xcb_window_t{XCB_NONE};
    }
    return false;
}

bool DesktopWindows::isKeyboardHeld() const {
    const XReply<xcb_grab_keyboard_reply_t> reply(
        xcb_grab_keyboard_reply(m_x.get(),
                                xcb_grab_keyboard(m_x.get(), 1, m_x.root(), XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr));
    if (!reply || reply->status != XCB_GRAB_STATUS_SUCCESS)
        return true;
    xcb_ungrab_keyboard(m_x.get(), XCB_CURRENT_TIME);
    // A key that is pressed before the server has done it would be lost.
    const XReply<xcb_get_input_focus_reply_t> carriedOut(
        xcb_get_input_focus_reply(m_x.get(), xcb_get_input_focus(m_x.get()), nullptr));
    return false;
}

void DesktopWindows::requestClosing(xcb_window_t window) {
    constexpr std::uint32_t kFromPager = 2;
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = m_x.atom("_NET_CLOSE_WINDOW");
    event.data.data32[1] = kFromPager;
    xcb_send_event(m_x.get(), 0, m_x.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(m_x.get());
}

void DesktopWindows::requestActivation(xcb_window_t window) {
    m_x.requestActivation(window);
}

bool DesktopWindows::activate(xcb_window_t window) {
    requestActivation(window);
    return eventually([this, window] { return active() == window && hasKeyboard(window); });
}

void DesktopWindows::refuseKeyboard(xcb_window_t window) {
    constexpr std::uint32_t kInputHint = 1;
    constexpr std::uint32_t kHints[9]{kInputHint, 0, 0, 0, 0, 0, 0, 0, 0};
    xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 32,
                        std::size(kHints), kHints);
    xcb_flush(m_x.get());
}

} // namespace kestrova::test
