#include "Platform/x11/SelectionConnection.h"

#include "Platform/x11/Atoms.h"
#include "Platform/x11/PasteboardLog.h"
#include "Platform/x11/SelectionTargets.h"

#include <xcb/xfixes.h>

#include <utility>

namespace kestrova {

namespace {

using namespace Qt::StringLiterals;

// Owners may offer thousands of kinds; nobody reads that far.
constexpr std::size_t mostNamesAsked = 512;
// Programs invent names without end; the known ones are few.
constexpr std::size_t mostNamesKept = 4096;
constexpr std::size_t mostAbandoned = 64;
// What one round trip carries.
constexpr std::uint32_t bytesAtOnce = 4 * 1024 * 1024;

} // namespace

SelectionConnection::SelectionConnection() : m_connection(xcb_connect(nullptr, nullptr)) {
    if (isBroken())
        return;
    const auto* const setup = xcb_get_setup(m_connection);
    m_root = xcb_setup_roots_iterator(setup).data->root;
    m_resourceMask = setup->resource_id_mask;
    m_windows.emplace(m_connection);

    struct Wanted {
        QByteArray name;
        xcb_atom_t* atom;
        xcb_intern_atom_cookie_t cookie;
    };
    std::vector<Wanted> wanted{{"CLIPBOARD"_ba, &m_atoms.clipboard, {}},
                               {"TARGETS"_ba, &m_atoms.targets, {}},
                               {"INCR"_ba, &m_atoms.incr, {}},
                               {"KESTROVA_SELECTION"_ba, &m_atoms.answer, {}}};
    for (auto& name : knownTargets())
        wanted.push_back({std::move(name), nullptr, {}});
    for (auto& want : wanted)
        want.cookie = askForAtom(m_connection, want.name);
    for (auto& want : wanted) {
        const auto atom = atomOf(m_connection, want.cookie);
        if (atom == XCB_ATOM_NONE)
            continue;
        m_names.emplace(atom, want.name);
        if (want.atom)
            *want.atom = atom;
    }
}

SelectionConnection::~SelectionConnection() {
    xcb_disconnect(m_connection);
}

bool SelectionConnection::watchClipboard() {
    const auto* const extension = xcb_get_extension_data(m_connection, &xcb_xfixes_id);
    if (!extension || !extension->present)
        return false;
    m_firstFixesEvent = extension->first_event;
    // The server answers nothing of an extension to clients that have not told their version of it.
    const auto version =
        xcb_xfixes_query_version(m_connection, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION);
    const XcbReply<xcb_xfixes_query_version_reply_t> reply{
        xcb_xfixes_query_version_reply(m_connection, version, nullptr)};
    const auto select = xcb_xfixes_select_selection_input_checked(
        m_connection, m_root, m_atoms.clipboard,
        XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
            XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
            XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    const XcbReply<xcb_generic_error_t> error{xcb_request_check(m_connection, select)};
    return reply && !error && !isBroken();
}

bool SelectionConnection::isBroken() const {
    return xcb_connection_has_error(m_connection) != 0;
}

int SelectionConnection::descriptor() const {
    return xcb_get_file_descriptor(m_connection);
}

void SelectionConnection::flush() {
    xcb_flush(m_connection);
}

XcbReply<xcb_generic_event_t> SelectionConnection::nextEvent() {
    return XcbReply<xcb_generic_event_t>{xcb_poll_for_event(m_connection)};
}

XcbReply<xcb_generic_event_t> SelectionConnection::nextQueuedEvent() {
    return XcbReply<xcb_generic_event_t>{xcb_poll_for_queued_event(m_connection)};
}

bool SelectionConnection::isOwnerNotice(const xcb_generic_event_t& event) const {
    constexpr std::uint8_t sentByClient = 0x80;
    // A client may send such an event itself, but only the server's own are not marked as sent.
    return m_firstFixesEvent != 0 && (event.response_type & sentByClient) == 0 &&
           event.response_type == m_firstFixesEvent + XCB_XFIXES_SELECTION_NOTIFY;
}

bool SelectionConnection::sameClient(std::uint32_t resource, std::uint32_t other) const {
    return (resource & ~m_resourceMask) == (other & ~m_resourceMask);
}

xcb_atom_t SelectionConnection::atom(const QByteArray& name) {
    for (const auto& [atom, known] : m_names) {
        if (known == name)
            return atom;
    }
    return atomNamed(m_connection, name);
}

QList<QByteArray> SelectionConnection::names(const std::vector<xcb_atom_t>& atoms) {
    if (m_names.size() > mostNamesKept) {
        const auto names = knownTargets();
        std::erase_if(m_names, [&](const auto& known) { return !names.contains(known.second); });
    }
    std::vector<std::pair<xcb_atom_t, xcb_get_atom_name_cookie_t>> asked;
    for (const auto atom : atoms) {
        if (asked.size() < mostNamesAsked && atom != XCB_ATOM_NONE && !m_names.contains(atom))
            asked.emplace_back(atom, xcb_get_atom_name(m_connection, atom));
    }
    for (const auto& [atom, cookie] : asked) {
        const XcbReply<xcb_get_atom_name_reply_t> reply{
            xcb_get_atom_name_reply(m_connection, cookie, nullptr)};
        if (reply)
            m_names.emplace(atom, QByteArray(xcb_get_atom_name_name(reply.get()),
                                             xcb_get_atom_name_name_length(reply.get())));
    }
    QList<QByteArray> names;
    for (const auto atom : atoms) {
        if (const auto known = m_names.find(atom); known != m_names.end())
            names.append(known->second);
    }
    return names;
}

xcb_window_t SelectionConnection::takeRequestor() {
    if (!m_idle.empty()) {
        const auto requestor = m_idle.back();
        m_idle.pop_back();
        return requestor;
    }
    const auto requestor = xcb_generate_id(m_connection);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_connection, 0, requestor, m_root, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    return requestor;
}

void SelectionConnection::giveBack(xcb_window_t requestor) {
    m_idle.push_back(requestor);
}

void SelectionConnection::abandon(xcb_window_t requestor) {
    xcb_delete_property(m_connection, requestor, m_atoms.answer);
    m_abandoned.push_back(requestor);
    if (m_abandoned.size() > mostAbandoned) {
        xcb_destroy_window(m_connection, m_abandoned.front());
        m_abandoned.pop_front();
    }
}

std::uint32_t SelectionConnection::convert(xcb_window_t requestor, xcb_atom_t target, xcb_timestamp_t time) {
    const auto cookie =
        xcb_convert_selection(m_connection, requestor, m_atoms.clipboard, target, m_atoms.answer, time);
    xcb_flush(m_connection);
    return cookie.sequence;
}

std::optional<PropertyValue> SelectionConnection::takeAnswer(xcb_window_t requestor, qsizetype limit) {
    PropertyValue value;
    for (;;) {
        const auto cookie =
            xcb_get_property(m_connection, 1, requestor, m_atoms.answer, XCB_GET_PROPERTY_TYPE_ANY,
                             static_cast<std::uint32_t>(value.bytes.size() / 4), bytesAtOnce / 4);
        const XcbReply<xcb_get_property_reply_t> reply{xcb_get_property_reply(m_connection, cookie, nullptr)};
        if (!reply || reply->type == XCB_ATOM_NONE)
            return {};
        value.type = reply->type;
        value.format = reply->format;
        const auto length = xcb_get_property_value_length(reply.get());
        if (value.bytes.size() + length + static_cast<qint64>(reply->bytes_after) > limit) {
            value.tooLarge = true;
            return value;
        }
        value.bytes.append(static_cast<const char*>(xcb_get_property_value(reply.get())), length);
        if (reply->bytes_after == 0)
            return value;
    }
}

void SelectionConnection::dropAnswer(xcb_window_t requestor, xcb_atom_t property) {
    xcb_delete_property(m_connection, requestor, property);
}

} // namespace kestrova
