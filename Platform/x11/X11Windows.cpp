#include "Platform/x11/X11Windows.h"

#include "Platform/x11/XcbReply.h"

#include <QFile>
#include <QFileInfo>
#include <QList>

#include <cstring>

namespace kestrova {

namespace {

using namespace Qt::StringLiterals;

xcb_intern_atom_cookie_t internAtom(xcb_connection_t* connection, QByteArrayView name) {
    return xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
}

xcb_atom_t atomOf(xcb_connection_t* connection, xcb_intern_atom_cookie_t cookie) {
    const XcbReply<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(connection, cookie, nullptr)};
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

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
    const auto active = internAtom(connection, "_NET_ACTIVE_WINDOW");
    const auto process = internAtom(connection, "_NET_WM_PID");
    m_activeWindowAtom = atomOf(connection, active);
    m_processAtom = atomOf(connection, process);
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
