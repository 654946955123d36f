#include "Platform/x11/X11Windows.h"

#include "Platform/RunningApplication.h"
#include "Platform/x11/Atoms.h"
#include "Platform/x11/XcbReply.h"

#include <QFile>
#include <QFileInfo>
#include <QList>

#include <algorithm>
#include <cstring>

namespace kestrova {

namespace {

using namespace Qt::StringLiterals;

std::uint32_t firstNumber(const xcb_get_property_reply_t* reply) {
    std::uint32_t number = 0;
    if (reply && reply->format == 32 && reply->value_len >= 1)
        std::memcpy(&number, xcb_get_property_value(reply), sizeof number);
    return number;
}

QByteArray processFile(std::int64_t processIdentifier, QLatin1StringView name) {
    QFile file{u"/proc/%1/%2"_s.arg(processIdentifier).arg(name)};
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray{};
}

} // namespace

X11Windows::X11Windows(xcb_connection_t* connection) : m_connection(connection) {
    const auto active = askForAtom(connection, "_NET_ACTIVE_WINDOW");
    const auto process = askForAtom(connection, "_NET_WM_PID");
    const auto clientList = askForAtom(connection, "_NET_CLIENT_LIST");
    const auto supported = askForAtom(connection, "_NET_SUPPORTED");
    const auto check = askForAtom(connection, "_NET_SUPPORTING_WM_CHECK");
    const auto name = askForAtom(connection, "_NET_WM_NAME");
    const auto utf8 = askForAtom(connection, "UTF8_STRING");
    m_activeWindowAtom = atomOf(connection, active);
    m_processAtom = atomOf(connection, process);
    m_clientListAtom = atomOf(connection, clientList);
    m_supportedAtom = atomOf(connection, supported);
    m_checkAtom = atomOf(connection, check);
    m_nameAtom = atomOf(connection, name);
    m_utf8Atom = atomOf(connection, utf8);
    // The first screen: a desktop with several unjoined X screens has no window in front that is common to
    // them.
    if (const auto* const setup = xcb_get_setup(connection); setup && setup->roots_len > 0)
        m_root = xcb_setup_roots_iterator(setup).data->root;
}

xcb_window_t X11Windows::activeWindow() const {
    const auto cookie = xcb_get_property(m_connection, 0, m_root, m_activeWindowAtom, XCB_ATOM_WINDOW, 0, 1);
    const XcbReply<xcb_get_property_reply_t> reply{xcb_get_property_reply(m_connection, cookie, nullptr)};
    return firstNumber(reply.get());
}

std::optional<WindowFacts> X11Windows::facts(xcb_window_t window) const {
    constexpr std::uint32_t longestClass = 256;
    const auto process = xcb_get_property(m_connection, 0, window, m_processAtom, XCB_ATOM_CARDINAL, 0, 1);
    const auto windowClass =
        xcb_get_property(m_connection, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, longestClass);
    const XcbReply<xcb_get_property_reply_t> processReply{
        xcb_get_property_reply(m_connection, process, nullptr)};
    const XcbReply<xcb_get_property_reply_t> classReply{
        xcb_get_property_reply(m_connection, windowClass, nullptr)};
    if (!processReply || !classReply)
        return {};
    WindowFacts facts;
    facts.processIdentifier = firstNumber(processReply.get());
    if (classReply->format == 8)
        facts.windowClass =
            windowClassFromProperty({static_cast<const char*>(xcb_get_property_value(classReply.get())),
                                     xcb_get_property_value_length(classReply.get())});
    return facts;
}

std::optional<std::vector<std::uint32_t>> X11Windows::numbers(xcb_window_t window, xcb_atom_t property,
                                                              xcb_atom_t type) const {
    constexpr std::uint32_t most = 65536;
    const auto cookie = xcb_get_property(m_connection, 0, window, property, type, 0, most);
    const XcbReply<xcb_get_property_reply_t> reply{xcb_get_property_reply(m_connection, cookie, nullptr)};
    if (!reply || reply->format != 32)
        return {};
    std::vector<std::uint32_t> numbers(reply->value_len);
    if (!numbers.empty())
        std::memcpy(numbers.data(), xcb_get_property_value(reply.get()), numbers.size() * sizeof numbers[0]);
    return numbers;
}

xcb_window_t X11Windows::windowOf(const RunningApplication& application) const {
    const auto shown = numbers(m_root, m_clientListAtom, XCB_ATOM_WINDOW);
    // The server gives the number of a window that has gone to another one.
    const auto isOfApplication = [&](xcb_window_t window) {
        const auto found = facts(window);
        return found && found->processIdentifier == application.processIdentifier;
    };
    const bool mayBeShown = !shown || std::ranges::find(*shown, application.window) != shown->end();
    if (application.window != XCB_NONE && mayBeShown && isOfApplication(application.window))
        return application.window;
    if (!shown || application.processIdentifier == 0)
        return XCB_NONE;
    // In the order in which they came.
    const auto newest = std::ranges::find_if(shown->rbegin(), shown->rend(), isOfApplication);
    return newest == shown->rend() ? XCB_NONE : *newest;
}

QString X11Windows::title(xcb_window_t window) const {
    constexpr std::uint32_t longestTitle = 1024;
    const auto name = xcb_get_property(m_connection, 0, window, m_nameAtom, m_utf8Atom, 0, longestTitle);
    const auto oldName =
        xcb_get_property(m_connection, 0, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 0, longestTitle);
    const XcbReply<xcb_get_property_reply_t> nameReply{xcb_get_property_reply(m_connection, name, nullptr)};
    const XcbReply<xcb_get_property_reply_t> oldNameReply{
        xcb_get_property_reply(m_connection, oldName, nullptr)};
    const auto bytes = [](const xcb_get_property_reply_t* reply) {
        return reply && reply->format == 8
                   ? QByteArrayView{static_cast<const char*>(xcb_get_property_value(reply)),
                                    xcb_get_property_value_length(reply)}
                   : QByteArrayView{};
    };
    if (const auto utf8 = bytes(nameReply.get()); !utf8.isEmpty())
        return QString::fromUtf8(utf8);
    return QString::fromLatin1(bytes(oldNameReply.get()));
}

std::optional<QRect> X11Windows::rectangle(xcb_window_t window) const {
    const auto size = xcb_get_geometry(m_connection, window);
    const auto place = xcb_translate_coordinates(m_connection, window, m_root, 0, 0);
    const XcbReply<xcb_get_geometry_reply_t> sizeReply{xcb_get_geometry_reply(m_connection, size, nullptr)};
    const XcbReply<xcb_translate_coordinates_reply_t> placeReply{
        xcb_translate_coordinates_reply(m_connection, place, nullptr)};
    if (!sizeReply || !placeReply)
        return {};
    return QRect{placeReply->dst_x, placeReply->dst_y, sizeReply->width, sizeReply->height};
}

bool X11Windows::isActivationSupported() const {
    // Asked each time: window managers are replaced while programs run.
    const auto supported = numbers(m_root, m_supportedAtom, XCB_ATOM_ATOM);
    if (!supported || std::ranges::find(*supported, m_activeWindowAtom) == supported->end())
        return false;
    // One that has crashed leaves its properties behind, but not its window, which names itself.
    const auto named = [this](xcb_window_t window) {
        const auto cookie = xcb_get_property(m_connection, 0, window, m_checkAtom, XCB_ATOM_WINDOW, 0, 1);
        const XcbReply<xcb_get_property_reply_t> reply{xcb_get_property_reply(m_connection, cookie, nullptr)};
        return xcb_window_t{firstNumber(reply.get())};
    };
    const auto windowManager = named(m_root);
    return windowManager != XCB_NONE && named(windowManager) == windowManager;
}

void X11Windows::bringToFront(xcb_window_t window) const {
    if (isActivationSupported()) {
        // As a pager, on the person's behalf: as an application the request could be taken for focus
        // stealing and answered with a mark in the task bar only.
        constexpr std::uint32_t fromPager = 2;
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window;
        message.type = m_activeWindowAtom;
        message.data.data32[0] = fromPager;
        message.data.data32[1] = XCB_CURRENT_TIME;
        xcb_send_event(m_connection, 0, m_root,
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&message));
    } else {
        constexpr std::uint32_t above = XCB_STACK_MODE_ABOVE;
        // The window may go at any moment; the toolkit would log the errors.
        for (const auto request :
             {xcb_map_window_checked(m_connection, window),
              xcb_configure_window_checked(m_connection, window, XCB_CONFIG_WINDOW_STACK_MODE, &above),
              xcb_set_input_focus_checked(m_connection, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME)})
            xcb_discard_reply(m_connection, request.sequence);
    }
    xcb_flush(m_connection);
}

std::uint64_t processStartTime(std::int64_t processIdentifier) {
    return startTimeInProcessStatus(processFile(processIdentifier, "stat"_L1));
}

std::uint64_t startTimeInProcessStatus(QByteArrayView status) {
    // The name in parentheses, the second field, may hold blanks and parentheses itself; the start time is
    // the 22nd.
    const auto nameEnd = status.lastIndexOf(')');
    if (nameEnd < 0)
        return 0;
    const auto fields = status.sliced(nameEnd + 1).toByteArray().simplified().split(' ');
    constexpr qsizetype startTimeAfterName = 19;
    if (const auto& state = fields.value(0); state == "Z" || state == "X")
        return 0;
    return fields.value(startTimeAfterName).toULongLong();
}

QString executableName(std::int64_t processIdentifier) {
    auto path = QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(processIdentifier));
    // A program that was updated while it runs.
    if (constexpr auto deleted = " (deleted)"_L1; path.endsWith(deleted))
        path.chop(deleted.size());
    return QFileInfo(path).fileName();
}

WindowClass windowClassFromProperty(QByteArrayView value) {
    const auto halves = value.toByteArray().split('\0');
    return {.instance = QString::fromLatin1(halves.value(0)), .name = QString::fromLatin1(halves.value(1))};
}

} // namespace kestrova
