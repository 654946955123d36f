#include "Platform/x11/SelectionConversion.h"

#include "Platform/x11/PasteboardLog.h"
#include "Platform/x11/SelectionConnection.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace kestrova {

namespace {

// A promise is only that: no more room than this is made for it in advance.
constexpr qsizetype largestAdvance = qsizetype{64} * 1024 * 1024;

} // namespace

SelectionConversion::SelectionConversion(SelectionConnection& connection, QByteArray target, xcb_atom_t atom,
                                         xcb_timestamp_t time, qsizetype largest)
    : m_connection(connection),
      m_target(std::move(target)),
      m_atom(atom),
      m_largest(largest),
      m_requestor(connection.takeRequestor()),
      m_sequence(connection.convert(m_requestor, atom, time)) {}

SelectionConversion::~SelectionConversion() {
    if (m_state == State::Whole || m_state == State::Refused)
        m_connection.giveBack(m_requestor);
    else
        m_connection.abandon(m_requestor);
}

bool SelectionConversion::onAnswer(const xcb_selection_notify_event_t& event) {
    if (event.requestor != m_requestor || event.target != m_atom || m_state != State::Asked)
        return false;
    auto answer =
        event.property == XCB_ATOM_NONE ? std::nullopt : m_connection.takeAnswer(m_requestor, m_largest);
    if (!answer) {
        m_state = State::Refused;
    } else if (answer->type == m_connection.atoms().incr) {
        startArriving(answer->bytes);
    } else {
        m_state = answer->tooLarge ? State::TooLarge : State::Whole;
        m_format = answer->format;
        m_bytes = std::move(answer->bytes);
    }
    return true;
}

void SelectionConversion::startArriving(const QByteArray& promise) {
    m_state = State::Arriving;
    std::uint32_t promised = 0;
    std::memcpy(&promised, promise.constData(), std::min<std::size_t>(sizeof promised, promise.size()));
    m_promised = promised;
    m_bytes.reserve(std::min({m_promised, m_largest, largestAdvance}));
}

bool SelectionConversion::onProperty(const xcb_property_notify_event_t& event) {
    if (event.window != m_requestor)
        return false;
    if (m_state != State::Arriving || event.state != XCB_PROPERTY_NEW_VALUE ||
        event.atom != m_connection.atoms().answer)
        return true;
    const auto piece = m_connection.takeAnswer(m_requestor, m_largest - m_bytes.size());
    if (!piece)
        return true;
    if (piece->tooLarge) {
        m_state = State::TooLarge;
    } else if (piece->bytes.isEmpty()) {
        m_state = State::Whole;
        // Nothing is promised by owners that convert as they go.
        if (m_promised != 0 && m_bytes.size() != m_promised)
            qCWarning(lcPasteboard, "[Pasteboard] %s came as %lld bytes where %lld were promised",
                      m_target.constData(), static_cast<long long>(m_bytes.size()),
                      static_cast<long long>(m_promised));
    } else {
        m_format = piece->format;
        m_bytes.append(piece->bytes);
    }
    return true;
}

} // namespace kestrova
