#pragma once

#include <QByteArray>

#include <xcb/xcb.h>

#include <cstdint>

namespace kestrova {

class SelectionConnection;

/// One request for one form of the clipboard, from asking to the whole answer, however many pieces it comes
/// in. Gone before its end, it leaves nothing that could be taken for the answer to a later request.
class SelectionConversion {
public:
    enum class State {
        Asked,
        Arriving,
        /// `bytes` is all of it.
        Whole,
        Refused,
        TooLarge,
    };

    /// Asks at once. `time` is when the owner became the owner; more than `largest` bytes are not taken.
    SelectionConversion(SelectionConnection& connection, QByteArray target, xcb_atom_t atom,
                        xcb_timestamp_t time, qsizetype largest);
    SelectionConversion(const SelectionConversion&) = delete;
    SelectionConversion& operator=(const SelectionConversion&) = delete;
    ~SelectionConversion();

    /// Whether the event was about this request.
    bool onAnswer(const xcb_selection_notify_event_t& event);
    bool onProperty(const xcb_property_notify_event_t& event);

    State state() const { return m_state; }
    bool isOver() const { return m_state != State::Asked && m_state != State::Arriving; }
    /// Of the request among all of the connection.
    std::uint32_t sequence() const { return m_sequence; }
    /// The unit of `bytes` in bits.
    std::uint8_t format() const { return m_format; }
    const QByteArray& bytes() const { return m_bytes; }

private:
    void startArriving(const QByteArray& promise);

    SelectionConnection& m_connection;
    const QByteArray m_target;
    const xcb_atom_t m_atom;
    const qsizetype m_largest;
    const xcb_window_t m_requestor;
    const std::uint32_t m_sequence;
    State m_state = State::Asked;
    std::uint8_t m_format = 0;
    qsizetype m_promised = 0;
    QByteArray m_bytes;
};

} // namespace kestrova
