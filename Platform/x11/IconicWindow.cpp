#include "Platform/x11/IconicWindow.h"

#include "Platform/x11/Atoms.h"
#include "Platform/x11/ToolkitConnection.h"
#include "Platform/x11/XcbReply.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QSysInfo>

#include <array>
#include <utility>
#include <vector>

namespace kestrova {
namespace {

// Values of the window manager's protocol.
namespace WindowState {
constexpr std::uint32_t normal = 1;
constexpr std::uint32_t iconic = 3;
} // namespace WindowState

struct Hints {
    static constexpr std::uint32_t hasInput = 1;
    static constexpr std::uint32_t hasInitialState = 2;

    std::uint32_t flags = hasInput | hasInitialState;
    std::uint32_t input = 0;
    std::uint32_t initialState = WindowState::iconic;
    std::array<std::uint32_t, 6> unused{};
};

struct MotifHints {
    static constexpr std::uint32_t hasDecorations = 2;

    std::uint32_t flags = hasDecorations;
    std::array<std::uint32_t, 4> unused{};
};

template<typename Value>
void setNumbers(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                const Value& value) {
    constexpr std::uint8_t bits = 32;
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, type, bits,
                        sizeof value / sizeof(std::uint32_t), &value);
}

void setText(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
             const QByteArray& text) {
    constexpr std::uint8_t bits = 8;
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, type, bits,
                        static_cast<std::uint32_t>(text.size()), text.constData());
}

} // namespace

IconicWindow::~IconicWindow() {
    if (m_window == XCB_NONE)
        return;
    QCoreApplication::instance()->removeNativeEventFilter(this);
    xcb_destroy_window(m_connection, m_window);
    xcb_flush(m_connection);
}

void IconicWindow::appear() {
    m_connection = toolkitConnection();
    if (!m_connection)
        return;
    m_stateAtom = atomNamed(m_connection, "WM_STATE");
    m_changeStateAtom = atomNamed(m_connection, "WM_CHANGE_STATE");
    makeWindow();
    describe();
    QCoreApplication::instance()->installNativeEventFilter(this);
    xcb_map_window(m_connection, m_window);
    xcb_flush(m_connection);
}

void IconicWindow::makeWindow() {
    const auto& screen = screenOf(m_connection);
    m_root = screen.root;
    m_window = xcb_generate_id(m_connection);
    // Should it be seen for a moment, it is a dot.
    constexpr std::uint16_t edge = 1;
    const std::array<std::uint32_t, 2> values{screen.black_pixel, XCB_EVENT_MASK_PROPERTY_CHANGE};
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, m_root, 0, 0, edge, edge, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen.root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values.data());
}

void IconicWindow::describe() {
    const auto name = QGuiApplication::applicationDisplayName().toUtf8();
    const auto className = QCoreApplication::applicationName().toUtf8();
    const auto utf8 = atomNamed(m_connection, "UTF8_STRING");
    setText(m_connection, m_window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, name);
    setText(m_connection, m_window, atomNamed(m_connection, "_NET_WM_NAME"), utf8, name);
    setText(m_connection, m_window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, className + '\0' + className + '\0');
    // Without it the number of the process means nothing.
    setText(m_connection, m_window, XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING,
            QSysInfo::machineHostName().toLocal8Bit());
    setIcon();
    setNumbers(m_connection, m_window, atomNamed(m_connection, "_NET_WM_PID"), XCB_ATOM_CARDINAL,
               static_cast<std::uint32_t>(QCoreApplication::applicationPid()));
    setNumbers(m_connection, m_window, atomNamed(m_connection, "_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM,
               atomNamed(m_connection, "_NET_WM_WINDOW_TYPE_NORMAL"));
    // Zero: it is not to get the keyboard for having come.
    setNumbers(m_connection, m_window, atomNamed(m_connection, "_NET_WM_USER_TIME"), XCB_ATOM_CARDINAL,
               std::uint32_t{0});
    const auto motif = atomNamed(m_connection, "_MOTIF_WM_HINTS");
    setNumbers(m_connection, m_window, motif, motif, MotifHints{});
    setNumbers(m_connection, m_window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, Hints{});
    // It is asked to take the keyboard, and thereby is one of those that a switcher offers, but it does not.
    // And who asks it to close finds it unwilling.
    const std::array<xcb_atom_t, 2> protocols{atomNamed(m_connection, "WM_TAKE_FOCUS"),
                                              atomNamed(m_connection, "WM_DELETE_WINDOW")};
    setNumbers(m_connection, m_window, atomNamed(m_connection, "WM_PROTOCOLS"), XCB_ATOM_ATOM, protocols);
}

void IconicWindow::setIcon() {
    const auto icon = m_icon();
    // Of each size its width, its height and its pixels.
    std::vector<std::uint32_t> numbers;
    for (const auto size : icon.availableSizes()) {
        const auto picture = icon.pixmap(size, 1).toImage().convertToFormat(QImage::Format_ARGB32);
        numbers.push_back(static_cast<std::uint32_t>(picture.width()));
        numbers.push_back(static_cast<std::uint32_t>(picture.height()));
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                numbers.push_back(picture.pixel(x, y));
    }
    constexpr std::uint8_t bits = 32;
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window,
                        atomNamed(m_connection, "_NET_WM_ICON"), XCB_ATOM_CARDINAL, bits,
                        static_cast<std::uint32_t>(numbers.size()), numbers.data());
}

bool IconicWindow::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
    const auto* const event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7F) != XCB_PROPERTY_NOTIFY)
        return false;
    const auto* const change = reinterpret_cast<const xcb_property_notify_event_t*>(event);
    if (change->window == m_window && change->atom == m_stateAtom)
        stateChanged();
    return false;
}

void IconicWindow::stateChanged() {
    const auto before = std::exchange(m_state, state());
    if (m_state != State::normal)
        return;
    minimise();
    // A window manager that shows it at first has not been asked to by a person.
    if (before == State::iconic && onActivate)
        onActivate();
}

IconicWindow::State IconicWindow::state() const {
    const XcbReply<xcb_get_property_reply_t> reply{xcb_get_property_reply(
        m_connection, xcb_get_property(m_connection, 0, m_window, m_stateAtom, m_stateAtom, 0, 1), nullptr)};
    if (!reply || xcb_get_property_value_length(reply.get()) < static_cast<int>(sizeof(std::uint32_t)))
        return State::unmanaged;
    switch (*static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()))) {
    case WindowState::normal:
        return State::normal;
    case WindowState::iconic:
        return State::iconic;
    default:
        return State::unmanaged;
    }
}

void IconicWindow::minimise() {
    xcb_client_message_event_t wish{};
    wish.response_type = XCB_CLIENT_MESSAGE;
    wish.format = 32;
    wish.window = m_window;
    wish.type = m_changeStateAtom;
    wish.data.data32[0] = WindowState::iconic;
    xcb_send_event(m_connection, 0, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&wish));
    xcb_flush(m_connection);
}

} // namespace kestrova
