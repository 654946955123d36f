#include "tests/desktop/ClipboardReader.h"

#include "tests/desktop/Waiting.h"

#include <poll.h>

namespace kestrova::test {

namespace {

QByteArray bytesOf(const xcb_get_property_reply_t& reply) {
    return {static_cast<const char*>(xcb_get_property_value(&reply)), xcb_get_property_value_length(&reply)};
}

bool isPartOfTheProtocol(const QByteArray& target) {
    return target == "TARGETS" || target == "MULTIPLE" || target == "TIMESTAMP" || target == "SAVE_TARGETS" ||
           target == "DELETE";
}

} // namespace

XReply<xcb_generic_event_t> ClipboardReader::waitFor(std::uint8_t type, Clock::time_point end) {
    xcb_flush(m_x.get());
    while (xcb_connection_has_error(m_x.get()) == 0) {
        while (XReply<xcb_generic_event_t> event{xcb_poll_for_event(m_x.get())}) {
            if ((event->response_type & 0x7f) == type)
                return event;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        if (left <= 0)
            return nullptr;
        pollfd waiting{xcb_get_file_descriptor(m_x.get()), POLLIN, 0};
        ::poll(&waiting, 1, static_cast<int>(left));
    }
    return nullptr;
}

XReply<xcb_get_property_reply_t> ClipboardReader::takeProperty(xcb_atom_t property) {
    constexpr std::uint32_t kAllOfIt = 0x1fffffff;
    return XReply<xcb_get_property_reply_t>(xcb_get_property_reply(
        m_x.get(),
        xcb_get_property(m_x.get(), 1, m_x.window(), property, XCB_GET_PROPERTY_TYPE_ANY, 0, kAllOfIt),
        nullptr));
}

std::optional<QByteArray> ClipboardReader::read(const QByteArray& target) {
    const auto end = Clock::now() + kGenerously;
    const xcb_atom_t property = m_x.atom("KESTROVA_TEST_READ");
    xcb_convert_selection(m_x.get(), m_x.window(), m_x.atom("CLIPBOARD"), m_x.atom(target), property,
                          m_x.serverTime());
    const auto event = waitFor(XCB_SELECTION_NOTIFY, end);
    if (!event ||
        reinterpret_cast<const xcb_selection_notify_event_t*>(event.get())->property == XCB_ATOM_NONE)
        return std::nullopt;
    const auto reply = takeProperty(property);
    if (!reply)
        return std::nullopt;
    return reply->type == m_x.atom("INCR") ? readPieces(property, end) : bytesOf(*reply);
}

std::optional<QByteArray> ClipboardReader::readPieces(xcb_atom_t property, Clock::time_point end) {
    QByteArray all;
    while (const auto event = waitFor(XCB_PROPERTY_NOTIFY, end)) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
        if (change.atom != property || change.state != XCB_PROPERTY_NEW_VALUE)
            continue;
        const auto piece = takeProperty(property);
        // Nothing there: the note of a value that was taken before.
        if (!piece || piece->type == XCB_ATOM_NONE)
            continue;
        if (xcb_get_property_value_length(piece.get()) == 0)
            return all;
        all += bytesOf(*piece);
    }
    return std::nullopt;
}

std::vector<QByteArray> ClipboardReader::targets() {
    std::vector<QByteArray> names;
    const QByteArray atoms = read("TARGETS").value_or(QByteArray());
    const auto* first = reinterpret_cast<const xcb_atom_t*>(atoms.constData());
    const auto count = static_cast<std::size_t>(atoms.size()) / sizeof(xcb_atom_t);
    for (std::size_t index = 0; index < count; ++index)
        names.push_back(m_x.atomName(first[index]));
    return names;
}

SelectionScript ClipboardReader::readAll() {
    SelectionScript script;
    for (const QByteArray& target : targets()) {
        if (isPartOfTheProtocol(target))
            continue;
        if (const auto bytes = read(target))
            script.offers.push_back({.target = target, .bytes = *bytes});
    }
    return script;
}

} // namespace kestrova::test
